// The rows of a statement, with ADO's meaning.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/error.h"
#include "common/number_text.h"
#include "common/value.h"
#include "data/Connection.h"
#include "data/driver.h"
#include "data/held_cell.h"
#include "data/live_rows.h"
#include "data/record_changes.h"
#include "data/row_sort.h"
#include "data/row_store.h"

namespace kel {

// ADO's published enumerations.
enum class ObjectState : int { kClosed = 0, kOpen = 1 };
enum class CursorType : int { kForwardOnly = 0, kKeyset = 1, kDynamic = 2, kStatic = 3 };
enum class LockType : int { kReadOnly = 1, kPessimistic = 2, kOptimistic = 3 };
enum class SearchDirection : int { kBackward = -1, kForward = 1 };
enum class EditMode : int { kNone = 0, kInProgress = 1, kAdd = 2 };
enum class AffectRecords : int { kCurrent = 1, kAll = 3 };

/// Bookmarks that every recordset has, for Move and Find.
namespace bookmark {
inline constexpr int kCurrent = 0;
inline constexpr int kFirst = 1;
inline constexpr int kLast = 2;
}  // namespace bookmark

/// Told what happens to a recordset, by the names of ADO's events. The calls come in the middle of
/// the operation: they look, and change nothing.
class RecordsetEvents {
 public:
  virtual ~RecordsetEvents() = default;

  /// Another row is the current one, or none is.
  virtual void MoveComplete() {}
  /// The current row has other values, was added or deleted.
  virtual void RecordChangeComplete() {}
  /// Other rows are there, or in another order: after Open, Close, Requery, Resync, Sort, Filter.
  virtual void RecordsetChangeComplete() {}
  /// Fetch has brought more rows, or found that there are no more.
  virtual void FetchProgress() {}
};

/// Rows of a database, one of which is the current one.
///
///     for (rs.Open(sql, books); !rs.EndOfFile(); rs.MoveNext()) Use(rs.FieldText(0));
///
///     rs.Open("SELECT * FROM Ledger", books, CursorType::kKeyset, LockType::kOptimistic);
///     rs.Sort("[AccName]");
///     rs.Find("[AccName] Like 'Sundry*'");
///     if (!rs.EndOfFile()) {
///       rs.SetFieldValue("Opening", Currency{1250000});
///       rs.Update();
///     }
///
/// A forward-only recordset holds one row, so its memory does not grow with the number of rows; it
/// knows no RecordCount (-1), goes forward only and cannot be changed. All other cursors hold the
/// rows that were there when it was opened, packed; Sort and Filter only change the order in which
/// they are seen. Changes of others show after Requery or Resync. Locks are optimistic: a row that
/// somebody else has changed or deleted meanwhile is an error when it is written, not overwritten;
/// pessimistic ones are taken as optimistic.
///
/// Every operation throws Error with ADO's number: 3704 when the recordset is closed, 3021 where it
/// needs a current row, 3265 for a field that there is not, 3251 for what the cursor cannot.
/// The connection outlives an open recordset that is changed, requeried or resynced.
class Recordset {
 public:
  Recordset();
  ~Recordset();
  Recordset(Recordset&&) noexcept;
  Recordset& operator=(Recordset&&) noexcept;

  /// Runs `source` and goes to its first row. Throws Error for a statement without a result.
  void Open(std::string_view source, Connection& connection,
            CursorType cursor = CursorType::kForwardOnly, LockType lock = LockType::kReadOnly);
  /// The rows of a statement that is already prepared; they cannot be changed nor requeried.
  void Open(std::unique_ptr<Statement> statement, CursorType cursor = CursorType::kForwardOnly);
  /// Drops the rows, and an edit that is not updated.
  void Close();
  ObjectState State() const noexcept;
  /// How many rows the next Open takes at most; 0 for all.
  std::int64_t MaxRecords() const noexcept { return max_records_; }
  void MaxRecords(std::int64_t most);
  /// Opening with it returns after the first row; Fetch brings the others, and RecordCount is -1
  /// until all are there. Find, MoveLast, changes, and a Sort or Filter that is not "" fetch what
  /// is missing first.
  bool FetchesInSlices() const noexcept { return in_slices_; }
  void FetchesInSlices(bool in_slices);
  /// Brings up to `rows` more rows; false when there are no more. When the database fails the rows
  /// fetched so far stay.
  bool Fetch(std::int64_t rows);

  /// BOF and EOF: true for both when there are no rows.
  bool BeginOfFile() const noexcept;
  bool EndOfFile() const noexcept;
  /// The number of rows that Filter lets through; -1 where it is not known.
  std::int64_t RecordCount() const;
  /// The place of the current row from 1; -2 at BOF, -3 at EOF, -1 where it is not known.
  std::int64_t AbsolutePosition() const;
  /// Goes to the row at that place, from 1. Throws Error 3001 when there is none.
  void AbsolutePosition(std::int64_t position);

  void MoveFirst();
  void MoveLast();
  /// Throws Error 3021 at EOF.
  void MoveNext();
  /// Throws Error 3021 at BOF.
  void MovePrevious();
  /// Moves by `records`, back when negative, from a bookmark or from the current row; beyond the
  /// ends to BOF and EOF. Throws Error 3021 when it is there already.
  void Move(std::int64_t records, const Value& start = Value::Missing());
  /// The current row, for going back to it. Good until Close and Requery.
  Value Bookmark() const;
  void Bookmark(const Value& bookmark);

  /// Goes to the next row that meets a condition of one comparison (data/condition.h), beginning
  /// `skip` rows from `start`, or else from the current row. EOF (BOF backwards) when there is
  /// none.
  void Find(std::string_view criteria, std::int64_t skip = 0,
            SearchDirection direction = SearchDirection::kForward,
            const Value& start = Value::Missing());
  /// "[Code] ASC,[Name] DESC"; "" is the order of the statement. Goes to the first row.
  /// A text that is refused leaves Sort as it was; so with Filter.
  std::string Sort() const { return sort_; }
  void Sort(std::string_view fields);
  /// A condition, an array of bookmarks, or "" and 0 for all rows. Goes to the first row.
  Value Filter() const { return filter_; }
  void Filter(const Value& criteria);

  /// Runs the statement again; Sort and Filter stay, but for a Filter of bookmarks. On failure the
  /// rows stay too. Throws Error 3219 while a record is edited.
  void Requery();
  /// Reads the current row, or all rows, again from the database; no rows come or go. Of a join,
  /// and of one row, only the fields of the first table are read. Throws Error when a row is no
  /// longer there, after it has read the others.
  void Resync(AffectRecords affected = AffectRecords::kAll);

  /// Begins a new row, which Update puts into the database and behind the others. An edit that is
  /// open is updated first, as with every move.
  void AddNew();
  /// Writes the fields that were set. On failure the edit stays open, nothing is written.
  void Update();
  void CancelUpdate();
  /// Deletes the current row, which stays current until a move but cannot be read any more.
  void Delete();
  kel::EditMode EditMode() const noexcept;

  int FieldCount() const;
  const ColumnInfo& Field(int index) const;
  /// The field of that name, without regard to case.
  int FieldIndex(std::string_view name) const;
  /// The field's value by its ADO type.
  Value FieldValue(int index) const;
  Value FieldValue(std::string_view name) const { return FieldValue(FieldIndex(name)); }
  /// The field's text as a report shows it, without an allocation per call: numbers in their
  /// shortest decimal form that reads back the same, Null as "". Good until the next move, edit or
  /// Fetch.
  std::string_view FieldText(int index) const;
  /// The field's cell as the database holds it; good as FieldText is.
  CellView FieldCell(int index) const;
  /// Sets a field of the current or new row; Update writes it. Throws Error 13 for a value that the
  /// field's type cannot take.
  void SetFieldValue(int index, const Value& value);
  void SetFieldValue(std::string_view name, const Value& value) {
    SetFieldValue(FieldIndex(name), value);
  }

  // The rows as Sort and Filter let them be seen, without going there: for grids.

  /// How many there are by now; RecordCount once all rows are fetched.
  std::int64_t RowsSeen() const;
  /// A cell of the row at `row`, from 0, with what was set and not yet updated. Good as FieldCell
  /// is. REQUIRES row < RowsSeen().
  CellView CellSeen(std::int64_t row, int field) const;

  /// From now on `events` are told, until they are removed; they outlive the recordset or are
  /// removed before.
  void AddEvents(RecordsetEvents& events) { listeners_.Add(events); }
  void RemoveEvents(RecordsetEvents& events) { listeners_.Remove(events); }

  /// Whether another thread may use the open recordset, one thread at a time.
  bool MayChangeThread() const noexcept;

 private:
  /// The field values that are set and not yet written.
  struct Edit {
    kel::EditMode mode = kel::EditMode::kNone;
    std::vector<std::optional<HeldCell>> cells;  // by field; nothing for fields that were not set
  };

  /// Who listens to this object: what it stays when rows are moved into it or out of it.
  class Listeners {
   public:
    Listeners() = default;
    Listeners(Listeners&& /*other*/) noexcept {}
    Listeners& operator=(Listeners&& /*other*/) noexcept { return *this; }

    void Add(RecordsetEvents& events) { all_.push_back(&events); }
    void Remove(RecordsetEvents& events) { std::erase(all_, &events); }
    void Tell(void (RecordsetEvents::*event)()) const {
      for (RecordsetEvents* const listener : all_) (listener->*event)();
    }

   private:
    std::vector<RecordsetEvents*> all_;
  };

  void Begin(std::unique_ptr<Statement> statement, CursorType cursor);
  void RequireOpen() const;
  void RequireRows() const;
  void RequireChangeable() const;
  void RequireField(int index) const;
  bool HoldsRows() const noexcept { return store_ != nullptr; }

  // Reading of the statement.
  bool StepStatement();
  void FetchAll();
  bool FetchUpTo(std::int64_t position);

  // The order in which rows are seen, and the place in it.
  const std::vector<RowId>& Seen() const noexcept { return view_ ? *view_ : live_.All(); }
  std::int64_t SeenRows() const noexcept { return static_cast<std::int64_t>(Seen().size()); }
  void GoTo(std::int64_t position);
  void FinishEdit();
  std::int64_t PositionOf(const Value& start);
  std::int64_t PositionOfBookmark(const Value& bookmark);
  std::vector<RowId> Arranged(std::span<const SortField> sort, const Value& filter);
  std::vector<RowId> RowsOfBookmarks(const Value::Array& bookmarks) const;
  void Arrange(std::string sort, Value filter);

  // The current row.
  bool OnRow() const noexcept;
  RowId CurrentRow() const;
  CellView CurrentCell(int index) const;
  std::vector<CellView> CellsOf(RowId row) const;
  std::vector<FieldChange> Changes() const;
  void StoreCells(RowId row, const TableCells& cells);
  std::vector<RowId> ResyncFromSource(BaseTable& table);
  BaseTable TableOf(std::span<const std::size_t> columns) const;
  std::vector<std::size_t> ColumnsOfFirstTable() const;
  bool ReadsOneTable() const;

  // Of the next Open.
  std::int64_t max_records_ = 0;
  bool in_slices_ = false;

  // Of the open recordset.
  std::string source_;
  Connection* connection_ = nullptr;  // null for a statement that was handed over
  LockType lock_ = LockType::kReadOnly;
  std::vector<ColumnInfo> columns_;
  std::unique_ptr<Statement> statement_;  // null once its last row is fetched into the store
  std::optional<Error> fetch_failure_;    // why rows are missing
  std::int64_t rows_left_ = 0;            // that MaxRecords still allows
  mutable std::vector<NumberBuffer> number_texts_;  // one for each field

  // Forward-only: the statement's current row is the recordset's.
  bool on_row_ = false;
  bool on_first_row_ = false;
  bool had_rows_ = false;

  // All other cursors.
  std::unique_ptr<RowStore> store_;
  LiveRows live_;
  std::optional<std::vector<RowId>> view_;  // when Sort or Filter is set
  std::int64_t position_ = -1;              // within Seen(): -1 is BOF, behind the last row EOF
  bool on_deleted_ = false;  // the current row is deleted; the one behind it stands at position_
  Edit edit_;
  std::string sort_;
  Value filter_ = "";

  Listeners listeners_;
};

}  // namespace kel
