#include "data/sqlite_statement.h"

#include <array>
#include <utility>

#include "data/sql_text.h"

namespace kel {
namespace {

struct DeclaredType {
  std::string_view part;  // of the declaration, in capitals
  FieldType type;
};

/// The first one that is part of a declaration decides, as in SQLite's own rules of affinity.
constexpr std::array kDeclaredTypes = {
    DeclaredType{"SMALLINT", FieldType::kSmallInt},
    DeclaredType{"REAL", FieldType::kDouble},
    DeclaredType{"FLOAT", FieldType::kDouble},
    DeclaredType{"DOUBLE", FieldType::kDouble},
    DeclaredType{"BOOL", FieldType::kBoolean},
    DeclaredType{"DATE", FieldType::kDate},
    DeclaredType{"TIMESTAMP", FieldType::kDate},
    DeclaredType{"MONEY", FieldType::kCurrency},
    DeclaredType{"CURRENCY", FieldType::kCurrency},
    DeclaredType{"DECIMAL", FieldType::kNumeric},
    // CREATE TABLE ... AS declares NUMERIC columns as NUM; NUMBER(10,2) is one too.
    DeclaredType{"NUM", FieldType::kNumeric},
    DeclaredType{"MEMO", FieldType::kMemo},
    DeclaredType{"CLOB", FieldType::kMemo},
    DeclaredType{"BLOB", FieldType::kBinary},
    DeclaredType{"INT", FieldType::kInteger},
};

FieldType TypeOfDeclaration(std::string_view declaration) {
  std::string capitals(declaration);
  for (char& c : capitals) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  for (const DeclaredType& declared : kDeclaredTypes) {
    if (capitals.find(declared.part) != std::string::npos) return declared.type;
  }
  return FieldType::kText;
}

FieldType TypeOfCell(const CellView& cell) {
  switch (cell.kind) {
    case CellView::Kind::kInteger:
      return FieldType::kInteger;
    case CellView::Kind::kDouble:
      return FieldType::kDouble;
    case CellView::Kind::kBinary:
      return FieldType::kBinary;
    case CellView::Kind::kNull:
    case CellView::Kind::kText:
      return FieldType::kText;
  }
  return FieldType::kText;
}

std::string TextOrEmpty(const char* text) { return text == nullptr ? "" : text; }

/// `index` counts from 1. A text for a number field is left to the column's affinity, which takes
/// it as a number where that loses nothing.
int BindCell(sqlite3_stmt* statement, int index, const CellView& cell) {
  switch (cell.kind) {
    case CellView::Kind::kNull:
      return sqlite3_bind_null(statement, index);
    case CellView::Kind::kInteger:
      return sqlite3_bind_int64(statement, index, cell.integer);
    case CellView::Kind::kDouble:
      return sqlite3_bind_double(statement, index, cell.number);
    case CellView::Kind::kText:
      // Of a null pointer SQLite would make Null.
      return sqlite3_bind_text64(statement, index, cell.bytes.empty() ? "" : cell.bytes.data(),
                                 cell.bytes.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    case CellView::Kind::kBinary:
      if (cell.bytes.empty()) return sqlite3_bind_zeroblob(statement, index, 0);
      return sqlite3_bind_blob64(statement, index, cell.bytes.data(), cell.bytes.size(),
                                 SQLITE_TRANSIENT);
  }
  return SQLITE_MISUSE;
}

}  // namespace

Error SqliteError(const std::string& what_failed, std::string_view reason) {
  return {error_number::kDatabase, what_failed + ": " + std::string(reason)};
}

void BindParameters(sqlite3* database, sqlite3_stmt* statement,
                    std::span<const Parameter> parameters) {
  const std::string what_failed = "cannot run " + OneLineSql(TextOrEmpty(sqlite3_sql(statement)));
  const int wanted = sqlite3_bind_parameter_count(statement);
  if (parameters.size() != static_cast<std::size_t>(wanted)) {
    throw SqliteError(what_failed, "it takes " + std::to_string(wanted) + " values, not " +
                                       std::to_string(parameters.size()));
  }
  for (int i = 0; i < wanted; ++i) {
    if (BindCell(statement, i + 1, parameters[static_cast<std::size_t>(i)].cell) != SQLITE_OK) {
      throw SqliteError(what_failed, sqlite3_errmsg(database));
    }
  }
}

SqliteStatement::SqliteStatement(SqliteDatabase database, SqliteHandle handle, std::string sql)
    : database_(std::move(database)), handle_(std::move(handle)), sql_(std::move(sql)) {
  if (sqlite3_column_count(handle_.get()) == 0) return;
  // Only the first step finds out that another program has made the tables anew meanwhile, and then
  // compiles the statement anew: what stands in its columns is not known before.
  first_row_waits_ = Step();
  const int count = sqlite3_column_count(handle_.get());
  for (int i = 0; i < count; ++i) columns_.push_back(DescribeColumn(i));
}

ColumnInfo SqliteStatement::DescribeColumn(int column) const {
  sqlite3_stmt* const statement = handle_.get();
  const std::string declaration = TextOrEmpty(sqlite3_column_decltype(statement, column));
  const std::string database = TextOrEmpty(sqlite3_column_database_name(statement, column));
  ColumnInfo info;
  info.name = TextOrEmpty(sqlite3_column_name(statement, column));
  info.type = TypeOfDeclaration(declaration);
  if (declaration.empty() && first_row_waits_) info.type = TypeOfCell(Cell(column));
  info.table = TextOrEmpty(sqlite3_column_table_name(statement, column));
  if (!database.empty() && database != "main" && database != "temp") {
    info.table.insert(0, database + ".");  // the name alone may mean another database's table
  }
  info.origin = TextOrEmpty(sqlite3_column_origin_name(statement, column));
  if (info.origin == info.name) info.origin.clear();
  return info;
}

bool SqliteStatement::Step() {
  if (std::exchange(first_row_waits_, false)) return true;
  if (finished_) return false;  // another step would run the statement again
  const int code = sqlite3_step(handle_.get());
  if (code == SQLITE_ROW) {
    ++rows_;
    return true;
  }
  finished_ = true;
  if (code == SQLITE_DONE) return false;
  const std::string place =
      rows_ == 0 ? "cannot run " : "cannot read row " + std::to_string(rows_ + 1) + " of ";
  throw SqliteError(place + sql_, sqlite3_errmsg(database_.get()));
}

// The value is fetched once and asked through sqlite3_value_*, which takes a third off the cost of
// a cell. That is sound for a connection opened without a mutex (SQLITE_OPEN_NOMUTEX): its values
// are all "protected" (sqlite.org/c3ref/value.html).
CellView SqliteStatement::Cell(int column) const {
  CellView cell;
  sqlite3_value* const value = sqlite3_column_value(handle_.get(), column);
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      cell.kind = CellView::Kind::kInteger;
      cell.integer = sqlite3_value_int64(value);
      break;
    case SQLITE_FLOAT:
      cell.kind = CellView::Kind::kDouble;
      cell.number = sqlite3_value_double(value);
      break;
    case SQLITE_TEXT:
      cell.kind = CellView::Kind::kText;
      cell.bytes = Bytes(value, sqlite3_value_text(value));
      break;
    case SQLITE_BLOB:
      cell.kind = CellView::Kind::kBinary;
      cell.bytes = Bytes(value, sqlite3_value_blob(value));
      break;
    default:
      break;
  }
  return cell;
}

/// SQLite gives no bytes for an empty blob, and where memory fails.
std::string_view SqliteStatement::Bytes(sqlite3_value* value, const void* bytes) const {
  const auto size = static_cast<std::size_t>(sqlite3_value_bytes(value));
  if (bytes != nullptr) return {static_cast<const char*>(bytes), size};
  if (sqlite3_errcode(database_.get()) == SQLITE_NOMEM) {
    throw Error(error_number::kOutOfMemory, "out of memory for a value of " + sql_);
  }
  return {};
}

}  // namespace kel
