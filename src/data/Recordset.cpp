#include "data/Recordset.h"

#include <utility>

#include "common/error.h"
#include "data/ado_errors.h"
#include "data/field_value.h"
#include "data/sql_text.h"

namespace kel {
namespace {

void RequireResult(const Statement& statement, std::string_view what) {
  if (statement.ColumnCount() > 0) return;
  throw Error(error_number::kDatabase, std::string(what) + " gives no records");
}

}  // namespace

void Recordset::Open(std::string_view source, Connection& connection) {
  if (State() == ObjectState::kOpen) throw ObjectIsOpen();
  std::unique_ptr<Statement> statement = connection.Driver().Prepare(source);
  RequireResult(*statement, OneLineSql(source));
  Open(std::move(statement));
}

void Recordset::Open(std::unique_ptr<Statement> statement) {
  if (State() == ObjectState::kOpen) throw ObjectIsOpen();
  RequireResult(*statement, "the statement");
  on_row_ = had_rows_ = statement->Step();
  number_texts_.assign(static_cast<std::size_t>(statement->ColumnCount()), {});
  statement_ = std::move(statement);
}

void Recordset::Close() {
  statement_.reset();
  on_row_ = had_rows_ = false;
}

ObjectState Recordset::State() const noexcept {
  return statement_ == nullptr ? ObjectState::kClosed : ObjectState::kOpen;
}

bool Recordset::BeginOfFile() const noexcept { return !had_rows_; }

bool Recordset::EndOfFile() const noexcept { return !on_row_; }

void Recordset::MoveNext() {
  if (statement_ == nullptr) throw ObjectIsClosed();
  if (!on_row_) throw NoCurrentRecord();
  on_row_ = false;  // and so it stays when the database fails
  on_row_ = statement_->Step();
}

bool Recordset::MayChangeThread() const noexcept {
  return statement_ != nullptr && statement_->MayChangeThread();
}

int Recordset::FieldCount() const {
  if (statement_ == nullptr) throw ObjectIsClosed();
  return statement_->ColumnCount();
}

const ColumnInfo& Recordset::Field(int index) const {
  RequireField(index);
  return statement_->Column(index);
}

Value Recordset::FieldValue(int index) const {
  const CellView cell = CurrentCell(index);
  return CellValue(cell, statement_->Column(index).type);
}

std::string_view Recordset::FieldText(int index) const {
  const CellView cell = CurrentCell(index);
  NumberBuffer& number_text = number_texts_[static_cast<std::size_t>(index)];
  switch (cell.kind) {
    case CellView::Kind::kNull:
      return "";
    case CellView::Kind::kInteger:
      if (statement_->Column(index).type == FieldType::kBoolean) {
        return cell.integer != 0 ? "True" : "False";
      }
      return NumberText(cell.integer, number_text);
    case CellView::Kind::kDouble:
      return NumberText(cell.number, number_text);
    case CellView::Kind::kText:
    case CellView::Kind::kBinary:
      return cell.bytes;
  }
  return "";
}

CellView Recordset::CurrentCell(int index) const {
  RequireField(index);
  if (!on_row_) throw NoCurrentRecord();
  return statement_->Cell(index);
}

void Recordset::RequireField(int index) const {
  if (statement_ == nullptr) throw ObjectIsClosed();
  if (index < 0 || static_cast<std::size_t>(index) >= number_texts_.size()) throw ItemNotFound();
}

}  // namespace kel
