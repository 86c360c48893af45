// The toolkit: what data-entry programs do again and again, each in one call.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "common/desktop.h"
#include "common/enumerations.h"
#include "common/error.h"
#include "common/value.h"

namespace kel {

class Connection;
class Object;
class Recordset;

/// What a book-keeping program asks of the library beside its reports: lists filled from tables,
/// records moved between forms and tables, checks of what was typed, messages, a wait window, a
/// note that closes by itself, and a log of everything that went wrong.
///
///     kel::CZURDLL zur;
///     zur.FillControl(books, *party, "Ledger", "AccName");
///     if (!zur.CheckEmpty({party, amount})) zur.Save(books, *form, "DayBook");
///
///     zur.OnError([](std::int32_t& Number, std::string& Description, bool& Response) {
///       Response = false;  // this program tells its users in its own way
///     });
///     zur.ShowWait(true, "Posting vouchers...", 0, count);
///     for (const Voucher& voucher : vouchers) {
///       Post(voucher);
///       if (!zur.StepWait()) break;  // the user pressed Stop
///     }
///     zur.UnloadWait();
///
/// No operation but ERRORLOG throws. A failure is kept in LastError, raised as the Error event and,
/// unless the handler takes it over, shown in the message box and appended to Error.log in the
/// temporary folder; the operation then returns its neutral result. An object is used by one
/// thread; Desktop and Clock are those of CurrentHost().
///
/// SQL texts are put together from the arguments as they are: nothing in a table, a field, a
/// pattern, a name or a criterion is quoted, escaped or checked. A text typed by a user that is
/// handed on so breaks the statement at its first quote, and a malicious one runs as SQL of its
/// own. Put names in with QuoteName and values with QuoteValue of data/sql_quote.h:
///
///     zur.Delete(books, QuoteName("Day Book"), "Party = " + QuoteValue(typed));
///
/// Statements run on the caller's open connection, which is neither opened nor closed. Controls
/// and forms are Objects, used by member names. Filling a list control, moving a record and
/// emptying a form show the hourglass meanwhile.
class CZURDLL {
 public:
  /// The Error event. All arguments may be changed; only Response has an effect: false keeps the
  /// failure from the message box and the log. What a handler throws is dropped.
  using ErrorHandler =
      std::function<void(std::int32_t& Number, std::string& Description, bool& Response)>;

  /// Empties the temporary folder of earlier work files. A failure to make the folder is told by
  /// LastError; the object is good nevertheless.
  CZURDLL();
  /// Closes this object's wait window.
  ~CZURDLL();
  CZURDLL(const CZURDLL&) = delete;
  CZURDLL& operator=(const CZURDLL&) = delete;

  /// Sets the handler of the Error event, in place of the one before.
  void OnError(ErrorHandler handler);

  /// Logs an error of the caller's own; shows it first when `Respond` is true. `ErrLocation`
  /// receives the form in which it is logged: "[" + ErrLocation + "]", or "[Not Specified]" for
  /// Value::Missing(). Does nothing when `ErrDesc` is empty and no failure is being handled (that
  /// of an operation whose Error event is raised, or an exception in its catch block).
  /// Throws Error when the log cannot be written.
  void ERRORLOG(Value& ErrLocation, const std::string& ErrDesc = "", bool Respond = true);
  void ERRORLOG(Value&& ErrLocation = Value::Missing(), const std::string& ErrDesc = "",
                bool Respond = true);

  /// The library temporary folder of this thread, without a trailing separator; "" on failure.
  std::string GetDLLTempPath();

  /// Shows a message and waits for the answer: true for OK and Yes; false for Cancel, No, Escape
  /// and when it closed by itself. `Buttons` is a style and default flag added together,
  /// `UnloadTime` in milliseconds (0: it stays), `ConvergeToCtrl` the control that it grows out of
  /// and, with `Focus`, hands the focus back to.
  bool MsgBox(const std::string& Prompt, int Buttons = msgOK,
              const std::optional<std::string>& Title = std::nullopt,
              IconStyles Icons = msgInformation, bool Animate = false, std::int32_t UnloadTime = 0,
              Object* ConvergeToCtrl = nullptr, bool Focus = true);

  /// Opens the wait window or changes the open one. The bar is shown when either end is given.
  /// Failures are ignored: work does not stop for want of a window.
  void ShowWait(bool STOPBUTTON = false, const std::optional<std::string>& Caption = std::nullopt,
                std::optional<std::int32_t> Min = std::nullopt,
                std::optional<std::int32_t> Max = std::nullopt);
  /// Advances the bar. False when no wait window is open: never shown, or stopped by the user.
  bool StepWait(std::int32_t STEP = 1, const std::optional<std::string>& Caption = std::nullopt);
  void UnloadWait();
  /// True when the user has stopped the wait window that was opened last.
  bool WaitWasStopped() const { return wait_stopped_; }

  /// Shows a note that closes by itself after `Interval` milliseconds.
  void Flash(const std::string& Message, const std::optional<std::string>& Subject = std::nullopt,
             std::int32_t Interval = 3000, AlignObject Align = zurAlignCenter);

  /// Empties a list control and adds the different values of a field, in order:
  /// "SELECT DISTINCT <Fld> FROM <Table> WHERE <Pattern> AND <Fld> Is Not Null ORDER BY <Fld>".
  /// Without a `Pattern` all values are taken (<Fld> Like('%')). `Fld` may stand in brackets; it
  /// must be a name that the result has. `PreserveData` puts the control's text back afterwards, as
  /// far as the control takes it.
  void FillControl(Connection& Cnn, Object& Ctrl, const std::string& Table, const std::string& Fld,
                   const std::string& Pattern = "", bool PreserveData = false);

  /// The value of column `Fld`, from 0, in the first row of a statement: Empty when there is no row
  /// and where the value is Null.
  Value GetField(Connection& Cnn, const std::string& SQL, std::int16_t Fld = 0);

  /// A value as it is, but Empty for Null; `Str` itself becomes Empty then.
  Value CheckNull(Value& Str);
  Value CheckNull(Value&& Str);

  /// The largest value of a field: "SELECT MAX(<Field>) FROM  <Table> WHERE <Pattern>". Empty when
  /// no row has a value. Without a `Pattern` all rows count (<Field> Like('%')).
  Value GetMaxValue(Connection& Cnn, const std::string& Table, const std::string& Field,
                    const std::string& Pattern = "");

  /// Empties a list control and adds the first column of a statement, without Nulls, with the item
  /// "All" above them when `All` is true. The control's text is put back with `PreserveData`,
  /// otherwise it becomes "All" if that was added.
  void FillPattern(Connection& Cnn, const std::string& SQL, Object& Ctrl, bool All = true,
                   bool PreserveData = false);

  /// Empties a list control and adds the rows of a statement, their columns joined with `Divider`
  /// (one blank when it is empty); Null adds nothing to its row. `WidthArray` has no effect.
  void FillControlSQL(Connection& Cnn, Object& Ctrl, const std::string& SQL,
                      const Value& WidthArray = Value::Missing(), const std::string& Divider = "",
                      bool PreserveData = false);

  /// Empties a list control and adds column 1 of a statement as items, with column 0, a number, as
  /// their ItemData.
  void FillItemData(Connection& Cnn, Object& Ctrl, const std::string& SQL,
                    bool PreserveData = false);

  /// The number of an account, 0 when there is none:
  /// "SELECT AccCode FROM  Ledger WHERE AccName='<AcctName>' AND <Criteria>". A quote in the name
  /// is an error; for names that may have one:
  ///
  ///     zur.GetField(books, "SELECT AccCode FROM Ledger WHERE AccName=" + QuoteValue(name));
  std::int32_t GetAccountCode(Connection& Cnn, const std::string& AcctName,
                              const Value& Criteria = Value::Missing());
  /// The name of an account, "" when there is none:
  /// "SELECT AccName FROM  Ledger WHERE AccCode= <AcctCode> AND <Criteria>".
  std::string GetAccountName(Connection& Cnn, std::int32_t AcctCode,
                             const Value& Criteria = Value::Missing());

  /// Fills a list view with the rows of a statement: column 0 is an item's text, the others are its
  /// SubItems. Ends at a Null in one of these (Error 94).
  void ListView(Connection& Cnn, Object& List, const std::string& strSQL);

  /// Shows the first row of a statement in controls: column i in element i of `Fields`, elements
  /// that are no objects are passed over. A label takes it as Caption; a check box and a date
  /// picker as Value; all others as Text, a combo box after its ListIndex has become -1. Where a
  /// control cannot hold Null it is emptied; one that cannot be emptied either is a failure. More
  /// elements than columns are Error 3265. Without a row nothing changes. Failures are logged as of
  /// "DLL.BinTo", its published misspelling.
  void BindTo(Connection& Cnn, const std::string& SQL, const Value::Array& Fields);

  /// Adds a record to a table. Each field takes the value of the control that has its name; a
  /// field without one is a failure, unless `AvoidFields` names it: field names and places from 0,
  /// each between semicolons (";0;Remarks;"), in any case of letters. A field that is avoided keeps
  /// its default.
  ///
  /// What a control holds (its default member) becomes, by the field's type: a whole or a floating
  /// number as ExVal reads it, so 0 for an empty text; a decimal number or a currency exactly as
  /// typed, group commas apart; a date when it is a valid one, day first, else Null; anything
  /// else as it is. True on success.
  bool Save(Connection& Cnn, Object& Frm, const std::string& Table,
            const std::string& AvoidFields = "");

  /// Writes the form into the first record of "SELECT * FROM <Table> WHERE <Pattern>", by the rules
  /// of Save. Error 3021 when no record matches.
  ///
  /// Give a `Pattern`: without one the first record of the whole table is overwritten. `BookMark`
  /// has a meaning only then: it moves a recordset that an operation of this object, the one that
  /// is calling back, has open; Error 91 when it is not 0 and there is none.
  bool Update(Connection& Cnn, Object& Frm, const std::string& Table,
              const std::string& Pattern = "", std::int32_t BookMark = 0,
              const std::string& AvoidFields = "");

  /// "DELETE FROM <Table> WHERE <Pattern>". True when it has deleted a record; otherwise Error
  /// 3021, "No such records found.".
  bool Delete(Connection& Cnn, const std::string& Table, const std::string& Pattern);

  /// Shows the first record of "SELECT * FROM <Table> WHERE <Pattern>" in the form: each field in
  /// the control of its name. Check boxes and option buttons take 1 for True and 1, else 0; others
  /// take the value by their default member, or are emptied where they cannot hold Null; one that
  /// cannot be emptied either is a failure. True also when no record matches; the form stays as it
  /// is then.
  bool SetFields(Connection& Cnn, Object& Frm, const std::string& Table,
                 const std::string& Pattern);
  /// The same with a whole statement.
  bool SetSQLFields(Connection& Cnn, Object& Frm, const std::string& SQL);

  /// Empties all controls of a form, except labels and those that `AvoidCtrls` names. A drop-down
  /// list gets ListIndex -1, a check box Value 0, a date picker with a check box Value Null and one
  /// without stays as it is, all others get Text "". What cannot be emptied is passed over.
  void Clear(Object& Frm, const Value::Array& AvoidCtrls = {});
  /// Empties these controls, by the rules of Clear; one that cannot be emptied is a failure.
  void ClearCtrls(const Value::Array& Ctrls);

  /// Checks text boxes before a record is saved. The first of `Ctrl` (an array of controls) whose
  /// Text is empty or blank is told in the message box, with its Tag in place of the standard text
  /// when it has one, and gets the focus. True when there was such a control.
  bool CheckEmpty(const Value::Array& Ctrl);

  /// The same for a Text whose number (ExVal) is 0.
  bool CheckZero(const Value::Array& Ctrl);
  /// The same for a Text whose number does not meet the condition with the number of `Value`. A
  /// condition outside the enumeration checks nothing.
  bool CheckValue(Validation Condition, const kel::Value& Value, const kel::Value::Array& Ctrl);

  /// True when the texts of two values are equal without regard to case.
  bool EQUAL(const Value& String1, const Value& String2);

  /// Looks below the fixed rows of a grid for two rows whose texts in the columns `Cols`, joined
  /// without a separator ("ab" "c" is "a" "bc"), are equal without regard to case. The later one of
  /// the first such pair is told in the message box and becomes the grid's Row, the first of `Cols`
  /// its Col; the grid gets the focus.
  bool CheckDuplicateRows(Object& MSFG, const Value::Array& Cols);

  /// The number that a text begins with, 0 when there is none: never an error.
  double ExVal(const std::string& Expression);

  /// A text as exactly `Ln` display cells: cut, or filled with blanks. `Align` is 0 for centred, 1
  /// for left and any other for right; -1 is right for numbers and left for all else. The result
  /// is stored in `Text` too. Error 5 for a negative `Ln`.
  std::string AlignString(std::string& Text, std::int32_t Ln, int Align = -1);
  std::string AlignString(std::string&& Text, std::int32_t Ln, int Align = -1);

  /// A number as text with exactly `Places` decimals, rounded half away from zero as it is written
  /// (1.005 is "1.01"). A text may have group commas; one that is no number counts as far as it is
  /// one (ExVal), so "0.00" for none. Null and Empty are 0. Error 5 for `Places` outside 0 to 255.
  kel::Value FixFor(const kel::Value& Value, std::int32_t Places = 2);

  /// "dd/mm/yyyy" of a date or of a text that states one, day first; Empty for anything else.
  Value FDate(const Value& dt);

  /// Lets a text box stand for a date field: completes what was typed in Ctrl.Text to dd/mm/yyyy.
  /// "5" is the 5th of this month; "5/3", "5-3", "5 mar" and "0503" are of this year; "050326" and
  /// "05032026" are whole. Two-digit years are 1930 to 2029. What is no such date stays as it is.
  void SimulateDate(Object& Ctrl);

  /// The index of the first item behind `Start` whose text is `mStr` without regard to case, going
  /// round from the last item to the first; -1 when there is none.
  std::int32_t FindItem(Object& Ctrl, const std::string& mStr, std::int32_t Start = -1);

  /// Lets at most `MaxChar` characters be typed into a combo box; any number with 0.
  void FixCombo(Object& Ctrl, std::int32_t MaxChar);
  /// The size in twips of the list that a combo box drops; what is left out stays.
  void SetComboRect(Object& Ctrl, const Value& Width = Value::Missing(),
                    const Value& Height = Value::Missing());

  /// Selects all items of a list, or the whole text of a text control. `Reverse` turns each item's
  /// selection round; in a text nothing is selected then, with the caret at the end.
  void MakeSelected(Object& Ctrl, bool Reverse = false);

  /// The ItemData of a list's selected items, or of a combo box's current one, joined with commas
  /// for SQL's IN (...); "" when nothing is selected. `StringBind` puts each between single quotes,
  /// with quotes inside doubled.
  std::string GetSelectedItemData(Object& Ctrl, bool StringBind = false);
  /// The same of their texts. Without `StringBind` a text with a comma cannot be told from two.
  std::string GetSelectedItems(Object& Ctrl, bool StringBind = true);

  /// Makes a row of a grid bold, or not; the current one when `Row` is left out. `GLine` gives it
  /// the colour of buttons too, so that reports draw rules around it as around headings.
  void MakeBold(Object& MSFG, const Value& Row = Value::Missing(), bool GLine = false,
                bool Bold = true);

  /// Presses and releases a key in the window that has the focus: a virtual key code (9 Tab, 13
  /// Return), and 1 for Shift, 2 for Ctrl and 4 for Alt added together.
  void SendKey(std::int32_t KeyCode, std::int32_t Shift);

  /// Centres a form over another one, or on the screen when that is left out or nothing.
  void Center(Object& Frm, const Value& Parent = Value::Missing());

  /// Keeps a window of the program above all others.
  void ShowTopMost(std::int64_t hWnd);

  /// Returns after that time; the program's windows stay alive meanwhile.
  void Delay(double Seconds);

  /// Moves a form (Left, Top, Width, Height in twips) to an edge, a corner or the centre of the
  /// part of the screen that windows may cover.
  void AlignForm(Object& Frm, AlignObject Align = zurAlignRightBottom);

  /// The number of steps for DrawWireRects: the largest distance between two like edges divided by
  /// `Fraction`, rounded to the nearest integer.
  std::int16_t GetSteps(const RECT& r1, const RECT& r2, double Fraction = 8);
  /// Lets the outline of a rectangle grow from `rFrom` to `rTo` in `Steps` steps of `mSeconds`
  /// milliseconds, in pixels of the screen. With 0 steps nothing is drawn.
  void DrawWireRects(const RECT& rFrom, const RECT& rTo, std::int16_t Steps,
                     std::int32_t mSeconds = 3);

  /// The failure of the last operation; nothing when it succeeded.
  const std::optional<Error>& LastError() const { return last_error_; }

  /// Takes a failure of another subsystem through the common error path, as a failure of this
  /// object's own operations. `ErrLocation` is "DLL." and the operation's name, or "". Never
  /// throws; a failure that comes up while one is being reported is logged without event and
  /// message.
  void ReportFailure(const Error& failure, const std::string& ErrLocation) noexcept;

 private:
  template <typename Result, typename Operation>
  Result Guarded(const char* location, Result neutral, Operation operation) noexcept;
  template <typename Operation>
  void Guarded(const char* location, Operation operation) noexcept;
  void ReportCaught(const char* location) noexcept;
  void HandleError(bool& Respond, const std::string& ErrLocation);
  void RaiseError(const Error& failure, bool& Response) const;

  bool ShowRecord(Connection& connection, Object& form, const std::string& sql);

  ErrorHandler error_handler_;
  std::optional<Error> last_error_;
  std::shared_ptr<Recordset> recordset_;   // the shared one; empty between operations
  std::shared_ptr<Desktop> wait_desktop_;  // of the wait window, which it has to outlive
  std::unique_ptr<WaitWindow> wait_;       // empty when none is shown
  bool wait_stopped_ = false;
};

/// The toolkit of the library's own subsystems: one per thread, made at its first use, when it
/// empties the temporary folder like every new object.
CZURDLL& SharedToolkit();

/// The exception that is being handled as a failure of the library: an Error as it is, 7 for want
/// of memory, 51 for any other. REQUIRES to be called in a catch block.
Error CaughtFailure();

}  // namespace kel
