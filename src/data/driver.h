// What a database has to offer for connections and recordsets to work over it.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kel {

/// ADO's codes of field types.
enum class FieldType : int {
  kSmallInt = 2,
  kInteger = 3,
  kDouble = 5,
  kCurrency = 6,
  kDate = 7,
  kBoolean = 11,
  kBigInt = 20,
  kNumeric = 131,
  kText = 202,
  kMemo = 203,
  kBinary = 205,
};

/// True for the types whose values are numbers, which reports align right.
bool IsNumericType(FieldType type) noexcept;

/// One column of a statement's result.
struct ColumnInfo {
  std::string name;
  FieldType type = FieldType::kText;
  std::string table = {};   // the table the column comes from; empty for an expression
  std::string origin = {};  // its name in that table; empty when that is `name`, or not known
  bool comparable = true;   // false for types that its database has no "=" for
};

/// A cell of the current row, in the form the database holds it: a date is its ISO 8601 text, a
/// decimal the shortest text that states it, a boolean the integer 0 or 1.
struct CellView {
  enum class Kind : std::uint8_t { kNull, kInteger, kDouble, kText, kBinary };

  static CellView Integer(std::int64_t integer) { return {Kind::kInteger, integer, 0, {}}; }
  static CellView Double(double number) { return {Kind::kDouble, 0, number, {}}; }
  static CellView Text(std::string_view text) { return {Kind::kText, 0, 0, text}; }

  bool IsNull() const noexcept { return kind == Kind::kNull; }
  bool operator==(const CellView&) const = default;

  Kind kind = Kind::kNull;
  std::int64_t integer = 0;
  double number = 0;
  std::string_view bytes = {};  // text or binary; good until the next Step
};

/// The value for one "?" of a statement, and the type of the field that it is for.
struct Parameter {
  CellView cell;
  FieldType type = FieldType::kText;
};

/// A running statement. Its rows come once, in order.
class Statement {
 public:
  virtual ~Statement() = default;

  /// 0 for a statement without a result.
  virtual int ColumnCount() const = 0;
  /// The type of a column that declares none is that of its value in the first row.
  virtual const ColumnInfo& Column(int column) const = 0;
  /// Goes to the next row; false at the end. Throws Error with the database's own words.
  virtual bool Step() = 0;
  /// REQUIRES that the last Step was true.
  virtual CellView Cell(int column) const = 0;

  /// Whether a thread other than the one that prepared it may step it, one thread at a time.
  virtual bool MayChangeThread() const { return false; }
};

/// One open database. The SQL texts of callers may use [Name] for names and #2026-03-31# for
/// dates on every database; a driver rewrites what its database does not know (sql_rewrite.h).
class Driver {
 public:
  virtual ~Driver() = default;

  /// Starts a statement; `parameters` stand for its "?" in order. Another statement on the same
  /// driver does no harm to one that is still read. Throws Error naming the SQL text and the
  /// database's reason.
  virtual std::unique_ptr<Statement> Prepare(std::string_view sql,
                                             std::span<const Parameter> parameters) = 0;
  std::unique_ptr<Statement> Prepare(std::string_view sql) { return Prepare(sql, {}); }

  /// Runs a statement to its end; the result is the number of records affected.
  virtual std::int64_t Execute(std::string_view sql, std::span<const Parameter> parameters) = 0;
  std::int64_t Execute(std::string_view sql) { return Execute(sql, {}); }

  /// The columns of a table's primary key, in order; none when it has no key, or there is no such
  /// table. The name is spelled as in ColumnInfo::table.
  virtual std::vector<std::string> KeyOf(const std::string& table) = 0;

  /// Whether INSERT and UPDATE may end in "RETURNING columns".
  virtual bool HasReturning() const { return false; }

  /// A name as the database quotes it; standard SQL unless overridden.
  virtual std::string QuotedName(std::string_view name) const;

  /// The SQL condition that a column, already quoted, equals the next "?"; for columns whose cells
  /// hold less than the database does, up to what they hold.
  virtual std::string EqualsParameter(const std::string& quoted, const ColumnInfo& column) const;
};

}  // namespace kel
