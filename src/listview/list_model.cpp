#include "listview/list_model.h"

#include <algorithm>
#include <limits>
#include <string>

#include "common/error.h"
#include "engine/memory_grid.h"
#include "listview/list_model_p.h"
#include "listview/list_report.h"
#include "toolkit/hourglass.h"

namespace kel {
namespace {

using std::chrono::milliseconds;

// Between two looks at the clock; between two looks at the Stop button.
constexpr std::int64_t kRowsAtOnce = 256;
constexpr milliseconds kStopTime{30};

constexpr std::string_view kAscending = "ASC";
constexpr std::string_view kDescending = "DESC";

}  // namespace

void ListModel::LoadCaption() {
  if (settings_.caption.empty()) settings_.caption = kDefaultListCaption;
  caption_ = settings_.caption;
}

void ListModel::Bind(const Value& column_alignment) {
  const std::shared_ptr<Recordset> records = settings_.rdset;
  if (!records) throw ObjectNotSet();
  records->RowsSeen();  // open, and with rows that can be gone through
  std::vector<ListColumn> columns = MakeColumns(*records);
  PrepareColumns(settings_, column_alignment, *records, columns);
  records_ = records;
  connection_ = settings_.cnn;
  columns_ = std::move(columns);
  load_failed_ = false;
}

Recordset& ListModel::Required() const {
  if (!settings_.rdset) throw ObjectNotSet();
  return *settings_.rdset;
}

std::int64_t ListModel::Rows() const {
  try {
    return records_ ? records_->RowsSeen() : 0;
  } catch (const Error&) {
    return 0;  // closed, or opened anew to go forward only
  }
}

bool ListModel::IsLoading() const {
  const bool open = records_ && records_->State() == ObjectState::kOpen;
  return open && !load_failed_ && records_->RecordCount() < 0;
}

void ListModel::Load(milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  try {
    while (IsLoading() && std::chrono::steady_clock::now() < end) records_->Fetch(kRowsAtOnce);
  } catch (...) {
    load_failed_ = true;
    throw;
  }
}

/// Reads what is missing; false when the user stopped that.
bool ListModel::LoadAll() {
  if (!IsLoading()) return true;
  const WaitScope wait = WaitScope::Stoppable("Reading Records...");
  while (IsLoading()) {
    Load(kStopTime);
    if (!wait.Step()) return false;
  }
  return true;
}

void ListModel::AppendText(std::int64_t row, int column, std::string& text) const {
  AppendCellText(columns_[static_cast<std::size_t>(column)], records_->CellSeen(row, column), text);
}

void ListModel::SortAscending(int first_selected, int last_selected, int current) {
  Sort(first_selected, last_selected, current, kAscending);
}

void ListModel::SortDescending(int first_selected, int last_selected, int current) {
  Sort(first_selected, last_selected, current, kDescending);
}

void ListModel::HeadingClick(int first_selected, int last_selected, int current) {
  const bool descending = tag_ == kDescending;
  tag_ = descending ? kAscending : kDescending;  // also when the sort is refused
  Sort(first_selected, last_selected, current, descending ? kDescending : kAscending);
}

void ListModel::Sort(int first_selected, int last_selected, int current,
                     std::string_view direction) {
  Recordset& records = Required();
  std::string sort;
  for (int column = first_selected; column <= last_selected; ++column) {
    if (!sort.empty()) sort += ',';
    sort += Bracketed(records.Field(column < 0 ? current : column).name) + ' ';
    sort += direction;
  }
  if (LoadAll()) SortBy(records, sort);
}

void ListModel::SortBy(Recordset& records, const std::string& sort) const {
  const Hourglass hourglass;
  const auto wait = WaitForRows(records, "Sorting Records...");
  records.Sort(sort);
}

void ListModel::MoveFirst() { Required().MoveFirst(); }

void ListModel::MoveLast() {
  Recordset& records = Required();
  if (LoadAll()) records.MoveLast();
}

std::string ListModel::TotalRecordsText() const {
  const Recordset& records = Required();
  const std::int64_t count = records.RecordCount();
  return "Total number of Records : " +
         (count < 0 ? std::to_string(records.RowsSeen()) + " so far" : std::to_string(count));
}

void ListModel::Refresh() {
  Recordset& records = Required();
  const Hourglass hourglass;
  const std::string sort = records.Sort();
  const Value filter = records.Filter();
  records.Filter("");
  records.Sort("");
  try {
    records.Requery();
  } catch (...) {
    records.Sort(sort);
    records.Filter(filter);
    throw;
  }
  load_failed_ = false;
  caption_ = settings_.caption;
  if (&records != records_.get()) return;  // the grid has the columns of another one
  // The table may have got other fields meanwhile.
  if (static_cast<int>(columns_.size()) != records.FieldCount()) columns_ = MakeColumns(records);
  RefreshColumns(settings_, records, columns_);
}

bool ListModel::MayTotal(int column) const {
  switch (columns_[static_cast<std::size_t>(column)].type) {
    case FieldType::kSmallInt:
    case FieldType::kInteger:
    case FieldType::kDouble:
      return true;
    default:
      return false;
  }
}

void ListModel::TotalColumn(int column, bool total) {
  total ? AddColumn(settings_.col_sums, column) : RemoveColumn(settings_.col_sums, column);
}

void ListModel::Print() {
  const std::shared_ptr<CPrint> print = WriteReport();
  if (!print) return;
  MemoryGrid written(caption_);
  print->PreparePrint(written);
}

void ListModel::PrintPreview() {
  const std::shared_ptr<CPrint> print = WriteReport();
  if (!print) return;
  MemoryGrid written(caption_);
  print->PrintPreview(written);
}

/// The job that the list is a prepared report of now; null when reading on was stopped.
std::shared_ptr<CPrint> ListModel::WriteReport() {
  Required();
  // Kept, whatever the program sets while it is let work on.
  const std::shared_ptr<Recordset> records = settings_.rdset;
  std::shared_ptr<CPrint> print = settings_.pg;
  if (!print) throw ObjectNotSet();
  if (!LoadAll()) return nullptr;
  const Hourglass hourglass;
  // Those of a recordset that is not the one on show; after a failure that is told again.
  if (records->RecordCount() < 0) records->Fetch(std::numeric_limits<std::int64_t>::max());
  WriteListReport(*records, columns_, caption_, settings_.col_sums, *print);
  return print;
}

}  // namespace kel
