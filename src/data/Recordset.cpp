#include "data/Recordset.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "common/names.h"
#include "data/ado_errors.h"
#include "data/field_value.h"
#include "data/sql_text.h"

namespace kel {
namespace {

constexpr std::int64_t kAllRows = std::numeric_limits<std::int64_t>::max();

std::unique_ptr<Statement> PrepareRows(std::string_view source, Connection& connection) {
  std::unique_ptr<Statement> statement = connection.Driver().Prepare(source);
  if (statement->ColumnCount() > 0) return statement;
  throw Error(error_number::kDatabase, OneLineSql(source) + " gives no records");
}

}  // namespace

Recordset::Recordset() = default;
Recordset::~Recordset() = default;
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;

void Recordset::Open(std::string_view source, Connection& connection, CursorType cursor,
                     LockType lock) {
  if (State() == ObjectState::kOpen) throw ObjectIsOpen();
  Begin(PrepareRows(source, connection), cursor);
  source_ = source;
  connection_ = &connection;
  lock_ = lock;
  listeners_.Tell(&RecordsetEvents::RecordsetChangeComplete);
}

void Recordset::Open(std::unique_ptr<Statement> statement, CursorType cursor) {
  if (State() == ObjectState::kOpen) throw ObjectIsOpen();
  if (statement->ColumnCount() == 0) {
    throw Error(error_number::kDatabase, "the statement gives no records");
  }
  Begin(std::move(statement), cursor);
  listeners_.Tell(&RecordsetEvents::RecordsetChangeComplete);
}

/// Takes the rows of a statement that has a result; a failure leaves the recordset closed.
void Recordset::Begin(std::unique_ptr<Statement> statement, CursorType cursor) {
  try {
    for (int i = 0; i < statement->ColumnCount(); ++i) columns_.push_back(statement->Column(i));
    number_texts_.resize(columns_.size());
    statement_ = std::move(statement);
    rows_left_ = max_records_ > 0 ? max_records_ : kAllRows;
    if (cursor == CursorType::kForwardOnly) {
      on_row_ = on_first_row_ = had_rows_ = StepStatement();
      return;
    }
    store_ = std::make_unique<RowStore>(columns_.size());
    Fetch(in_slices_ ? 1 : kAllRows);
    if (SeenRows() > 0) position_ = 0;
  } catch (...) {
    Close();
    throw;
  }
}

void Recordset::Close() {
  Recordset closed;
  closed.max_records_ = max_records_;
  closed.in_slices_ = in_slices_;
  *this = std::move(closed);
  listeners_.Tell(&RecordsetEvents::RecordsetChangeComplete);
}

ObjectState Recordset::State() const noexcept {
  return columns_.empty() ? ObjectState::kClosed : ObjectState::kOpen;
}

void Recordset::MaxRecords(std::int64_t most) {
  if (State() == ObjectState::kOpen) throw ObjectIsOpen();
  if (most < 0) throw WrongArguments("MaxRecords is " + std::to_string(most));
  max_records_ = most;
}

void Recordset::FetchesInSlices(bool in_slices) {
  if (State() == ObjectState::kOpen) throw ObjectIsOpen();
  in_slices_ = in_slices;
}

bool Recordset::Fetch(std::int64_t rows) {
  RequireRows();
  if (fetch_failure_) throw Error(*fetch_failure_);
  try {
    for (; rows > 0 && statement_ != nullptr; --rows) {
      if (StepStatement()) {
        live_.Add(store_->Append(*statement_));
      } else {
        statement_.reset();
        store_->Seal();
      }
    }
    listeners_.Tell(&RecordsetEvents::FetchProgress);
  } catch (const Error& failure) {
    fetch_failure_ = failure;
    throw;
  } catch (const std::bad_alloc&) {
    fetch_failure_ = Error(error_number::kOutOfMemory, "Out of memory");  // a row is lost
    throw;
  }
  return statement_ != nullptr;
}

bool Recordset::StepStatement() {
  if (rows_left_ == 0) return false;
  --rows_left_;
  return statement_->Step();
}

void Recordset::FetchAll() {
  if (statement_ != nullptr) Fetch(kAllRows);
}

/// Fetches as far as the row at `position`; false when there are not so many.
bool Recordset::FetchUpTo(std::int64_t position) {
  constexpr std::int64_t kSlice = 256;
  while (position >= SeenRows() && statement_ != nullptr) {
    Fetch(std::max(kSlice, position - SeenRows() + 1));
  }
  return position < SeenRows();
}

std::int64_t Recordset::RecordCount() const {
  RequireOpen();
  return HoldsRows() && statement_ == nullptr ? SeenRows() : -1;
}

bool Recordset::MayChangeThread() const noexcept {
  return statement_ != nullptr && statement_->MayChangeThread();
}

int Recordset::FieldCount() const {
  RequireOpen();
  return static_cast<int>(columns_.size());
}

const ColumnInfo& Recordset::Field(int index) const {
  RequireField(index);
  return columns_[static_cast<std::size_t>(index)];
}

int Recordset::FieldIndex(std::string_view name) const {
  RequireOpen();
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (SameName(columns_[i].name, name)) return static_cast<int>(i);
  }
  throw ItemNotFound();
}

Value Recordset::FieldValue(int index) const {
  const CellView cell = FieldCell(index);
  return CellValue(cell, columns_[static_cast<std::size_t>(index)].type);
}

std::string_view Recordset::FieldText(int index) const {
  const CellView cell = FieldCell(index);
  const auto field = static_cast<std::size_t>(index);
  return CellText(cell, columns_[field].type, number_texts_[field]);
}

CellView Recordset::FieldCell(int index) const {
  RequireField(index);
  return CurrentCell(index);
}

CellView Recordset::CurrentCell(int index) const {
  const auto field = static_cast<std::size_t>(index);
  if (!HoldsRows()) {
    if (!on_row_) throw NoCurrentRecord();
    return statement_->Cell(index);
  }
  if (edit_.mode != EditMode::kNone && edit_.cells[field]) return edit_.cells[field]->View();
  if (edit_.mode == EditMode::kAdd) return {};
  return store_->Cell(live_.Values(CurrentRow()), field);
}

std::int64_t Recordset::RowsSeen() const {
  RequireRows();
  return SeenRows();
}

CellView Recordset::CellSeen(std::int64_t row, int field) const {
  RequireField(field);
  const auto column = static_cast<std::size_t>(field);
  const bool edited = edit_.mode == EditMode::kInProgress && row == position_;
  if (edited && edit_.cells[column]) return edit_.cells[column]->View();
  return store_->Cell(live_.Values(Seen()[static_cast<std::size_t>(row)]), column);
}

void Recordset::RequireOpen() const {
  if (State() == ObjectState::kClosed) throw ObjectIsClosed();
}

void Recordset::RequireRows() const {
  RequireOpen();
  if (!HoldsRows()) throw CannotGoBack();
}

void Recordset::RequireField(int index) const {
  RequireOpen();
  if (index < 0 || static_cast<std::size_t>(index) >= columns_.size()) throw ItemNotFound();
}

}  // namespace kel
