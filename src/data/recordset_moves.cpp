// The current row of a Recordset, and the order in which its rows are seen.
#include <algorithm>
#include <string>
#include <utility>

#include "data/Recordset.h"
#include "data/ado_errors.h"
#include "data/condition.h"

namespace kel {
namespace {

constexpr std::int64_t kPositionAtBegin = -2;  // ADO's AbsolutePosition, as those below
constexpr std::int64_t kPositionAtEnd = -3;
constexpr std::int64_t kPositionUnknown = -1;

/// "" and 0, ADO's two ways to say that all rows are wanted.
bool IsNoFilter(const Value& filter) {
  switch (filter.Kind()) {
    case ValueKind::kEmpty:
    case ValueKind::kNull:
    case ValueKind::kMissing:
      return true;
    case ValueKind::kString:
      return filter.String().empty();
    case ValueKind::kArray:
    case ValueKind::kObject:
      return false;
    case ValueKind::kBoolean:
    case ValueKind::kInteger:
    case ValueKind::kDouble:
    case ValueKind::kCurrency:
    case ValueKind::kDate:
      return filter.ToDouble() == 0;
  }
  return false;
}

}  // namespace

bool Recordset::BeginOfFile() const noexcept {
  return HoldsRows() ? !on_deleted_ && (position_ < 0 || Seen().empty()) : !had_rows_;
}

bool Recordset::EndOfFile() const noexcept {
  return HoldsRows() ? !on_deleted_ && (position_ >= SeenRows() || Seen().empty()) : !on_row_;
}

bool Recordset::OnRow() const noexcept {
  return !on_deleted_ && position_ >= 0 && position_ < SeenRows();
}

RowId Recordset::CurrentRow() const {
  if (on_deleted_) throw RowIsDeleted();
  if (!OnRow()) throw NoCurrentRecord();
  return Seen()[static_cast<std::size_t>(position_)];
}

std::int64_t Recordset::AbsolutePosition() const {
  RequireOpen();
  if (BeginOfFile()) return kPositionAtBegin;
  if (EndOfFile()) return kPositionAtEnd;
  return OnRow() ? position_ + 1 : kPositionUnknown;
}

void Recordset::AbsolutePosition(std::int64_t position) {
  RequireRows();
  FinishEdit();
  if (position < 1 || !FetchUpTo(position - 1)) {
    throw WrongArguments("there is no record " + std::to_string(position));
  }
  GoTo(position - 1);
}

void Recordset::MoveFirst() {
  RequireOpen();
  if (!HoldsRows()) {
    if (!had_rows_) throw NoCurrentRecord();
    if (!on_first_row_) Requery();
    return;
  }
  FinishEdit();
  if (Seen().empty()) throw NoCurrentRecord();
  GoTo(0);
}

void Recordset::MoveLast() {
  RequireRows();
  FinishEdit();
  FetchAll();
  if (Seen().empty()) throw NoCurrentRecord();
  GoTo(SeenRows() - 1);
}

void Recordset::MoveNext() {
  if (HoldsRows()) {
    // A loop over all rows pays for nothing else.
    const bool plain = edit_.mode == EditMode::kNone && !on_deleted_ && position_ + 1 < SeenRows();
    plain ? GoTo(position_ + 1) : Move(1);
    return;
  }
  RequireOpen();
  if (!on_row_) throw NoCurrentRecord();
  on_row_ = on_first_row_ = false;  // and so it stays when the database fails
  on_row_ = StepStatement();
}

void Recordset::MovePrevious() { Move(-1); }

void Recordset::Move(std::int64_t records, const Value& start) {
  RequireOpen();
  if (!HoldsRows()) {
    if (records < 0 || !start.IsMissing()) throw CannotGoBack();
    for (; records > 0 && on_row_; --records) MoveNext();
    if (records > 0) throw NoCurrentRecord();
    return;
  }
  FinishEdit();
  std::int64_t from = PositionOf(start);
  if (Seen().empty() || (records > 0 && from >= SeenRows()) || (records < 0 && from < 0)) {
    if (!on_deleted_) throw NoCurrentRecord();
  }
  if (on_deleted_ && from == position_ && records > 0) --records;  // the next one stands here
  constexpr std::int64_t kFarAway = std::int64_t{1} << 40;         // more than there can be rows
  const std::int64_t to = from + std::clamp(records, -kFarAway, kFarAway);
  FetchUpTo(to);
  GoTo(std::clamp<std::int64_t>(to, -1, SeenRows()));
}

void Recordset::GoTo(std::int64_t position) {
  position_ = position;
  on_deleted_ = false;
  listeners_.Tell(&RecordsetEvents::MoveComplete);
}

/// Writes an edit that a move would lose.
void Recordset::FinishEdit() {
  if (edit_.mode != EditMode::kNone) Update();
}

Value Recordset::Bookmark() const {
  RequireRows();
  // A Double, so that no bookmark is one of the three that every recordset has.
  return static_cast<double>(CurrentRow());
}

void Recordset::Bookmark(const Value& bookmark) {
  RequireRows();
  FinishEdit();
  GoTo(PositionOfBookmark(bookmark));
}

/// Where a bookmark, or one of the three that every recordset has, stands.
std::int64_t Recordset::PositionOf(const Value& start) {
  if (start.IsMissing()) return position_;
  if (start.Kind() != ValueKind::kInteger) return PositionOfBookmark(start);
  switch (start.ToInt32()) {
    case bookmark::kCurrent:
      return position_;
    case bookmark::kFirst:
      return 0;
    case bookmark::kLast:
      FetchAll();
      return SeenRows() - 1;
    default:
      throw WrongArguments("there is no bookmark " + start.ToText());
  }
}

std::int64_t Recordset::PositionOfBookmark(const Value& bookmark) {
  if (bookmark.Kind() != ValueKind::kDouble) throw WrongArguments("not a bookmark");
  const double number = bookmark.ToDouble();
  const auto& rows = Seen();
  if (number >= 0 && number < static_cast<double>(store_->Rows())) {
    const auto row = static_cast<RowId>(number);
    const auto found = view_ ? std::find(rows.begin(), rows.end(), row)
                             : std::lower_bound(rows.begin(), rows.end(), row);
    if (found != rows.end() && *found == row) return found - rows.begin();
  }
  throw WrongArguments("the bookmarked row is not there");
}

void Recordset::Find(std::string_view criteria, std::int64_t skip, SearchDirection direction,
                     const Value& start) {
  RequireRows();
  FinishEdit();
  const Condition condition(criteria, columns_);
  if (condition.Comparisons() != 1) throw WrongArguments("Find takes one comparison");
  FetchAll();
  std::int64_t position = PositionOf(start);
  const bool forward = direction == SearchDirection::kForward;
  if (on_deleted_ && start.IsMissing()) {
    // The row behind the deleted one stands here.
    if (forward && skip > 0) --skip;
    if (!forward && skip == 0) skip = 1;
  } else if (position < 0 || position >= SeenRows()) {
    throw NoCurrentRecord();
  }
  const std::int64_t step = forward ? 1 : -1;
  position += step * std::clamp<std::int64_t>(skip, -SeenRows() - 1, SeenRows() + 1);
  position =
      std::clamp<std::int64_t>(position, forward ? 0 : -1, forward ? SeenRows() : SeenRows() - 1);
  while (position >= 0 && position < SeenRows() &&
         !condition.Matches(*store_, live_.Values(Seen()[static_cast<std::size_t>(position)]))) {
    position += step;
  }
  GoTo(position);
}

void Recordset::Sort(std::string_view fields) {
  RequireRows();
  Arrange(std::string(fields), filter_);
}

void Recordset::Filter(const Value& criteria) {
  RequireRows();
  Arrange(sort_, IsNoFilter(criteria) ? Value("") : criteria);
}

void Recordset::Arrange(std::string sort, Value filter) {
  std::vector<SortField> fields;
  if (!sort.empty()) fields = ParseSort(sort, columns_);
  FinishEdit();
  if (fields.empty() && IsNoFilter(filter)) {
    view_.reset();
  } else {
    FetchAll();
    view_ = Arranged(fields, filter);
  }
  sort_ = std::move(sort);
  filter_ = std::move(filter);
  listeners_.Tell(&RecordsetEvents::RecordsetChangeComplete);
  GoTo(Seen().empty() ? -1 : 0);
}

/// The rows that a filter lets through, sorted.
std::vector<RowId> Recordset::Arranged(std::span<const SortField> sort, const Value& filter) {
  std::vector<RowId> rows;
  if (IsNoFilter(filter)) {
    rows = live_.All();
    live_.ToValues(rows);
  } else if (filter.IsArray()) {
    rows = RowsOfBookmarks(filter.ToArray());
    live_.ToValues(rows);
  } else {
    const Condition condition(filter.ToText(), columns_);
    const std::vector<std::uint8_t> matches = condition.MatchAll(*store_);
    for (const RowId row : live_.All()) {
      const RowId values = live_.Values(row);
      if (matches[values] != 0) rows.push_back(values);
    }
  }
  if (!sort.empty()) SortRows(*store_, columns_, sort, rows);
  live_.FromValues(rows);
  return rows;
}

std::vector<RowId> Recordset::RowsOfBookmarks(const Value::Array& bookmarks) const {
  std::vector<RowId> rows;
  for (const Value& bookmark : bookmarks) {
    const double number = bookmark.ToDouble();
    const bool is_row = number >= 0 && number < static_cast<double>(store_->Rows()) &&
                        live_.Contains(static_cast<RowId>(number));
    if (!is_row) throw WrongArguments("the bookmarked row is not there");
    rows.push_back(static_cast<RowId>(number));
  }
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

}  // namespace kel
