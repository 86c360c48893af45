// The toolkit: messages, the wait window and the error path of the library.
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

class Object;

/// What a book-keeping program asks of the library beside its reports: messages, a wait window,
/// a note that closes by itself, and a log of everything that went wrong.
///
///     kel::CZURDLL zur;
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

  /// Checks text boxes before a record is saved. The first of `Ctrl` (an array of controls) whose
  /// Text is empty or blank is told in the message box, with its Tag in place of the standard text
  /// when it has one, and gets the focus. True when there was such a control.
  bool CheckEmpty(const Value::Array& Ctrl);

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
  /// object's own operations. `ErrLocation` is "DLL." and the operation's name. Never throws; a
  /// failure that comes up while one is being reported is logged without event and message.
  void ReportFailure(const Error& failure, const std::string& ErrLocation) noexcept;

 private:
  template <typename Result, typename Operation>
  Result Guarded(const char* location, Result neutral, Operation operation) noexcept;
  void ReportCaught(const char* location) noexcept;
  void HandleError(bool& Respond, const std::string& ErrLocation);
  void RaiseError(const Error& failure, bool& Response) const;

  ErrorHandler error_handler_;
  std::optional<Error> last_error_;
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
