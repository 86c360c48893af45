// What a database has to offer for connections and recordsets to work over it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

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
  std::string table;  // the table the column comes from; empty for an expression
};

/// A cell of the current row, in the form the database holds it.
struct CellView {
  enum class Kind : std::uint8_t { kNull, kInteger, kDouble, kText, kBinary };

  Kind kind = Kind::kNull;
  std::int64_t integer = 0;
  double number = 0;
  std::string_view bytes;  // text or binary; good until the next Step
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

/// One open database.
class Driver {
 public:
  virtual ~Driver() = default;

  /// Throws Error naming the SQL text and the database's reason.
  virtual std::unique_ptr<Statement> Prepare(std::string_view sql) = 0;
  /// Runs a statement to its end; the result is the number of records affected.
  virtual std::int64_t Execute(std::string_view sql) = 0;
};

}  // namespace kel
