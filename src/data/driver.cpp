#include "data/driver.h"

namespace kel {

bool IsNumericType(FieldType type) noexcept {
  switch (type) {
    case FieldType::kSmallInt:
    case FieldType::kInteger:
    case FieldType::kDouble:
    case FieldType::kCurrency:
    case FieldType::kBigInt:
    case FieldType::kNumeric:
      return true;
    case FieldType::kDate:
    case FieldType::kBoolean:
    case FieldType::kText:
    case FieldType::kMemo:
    case FieldType::kBinary:
      return false;
  }
  return false;
}

std::string Driver::QuotedName(std::string_view name) const {
  std::string quoted = "\"";
  for (const char c : name) {
    quoted += c;
    if (c == '"') quoted += c;
  }
  return quoted += '"';
}

std::string Driver::EqualsParameter(const std::string& quoted, const ColumnInfo& /*column*/) const {
  return quoted + " = ?";
}

}  // namespace kel
