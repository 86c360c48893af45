#include "listview/condition_text.h"

#include "common/format_pattern.h"

namespace kel {
namespace {

enum class FieldKind { kText, kDate, kNumber };

// ADO's text of variable length in bytes; our own databases have wide texts only.
constexpr auto kVariableText = static_cast<FieldType>(200);

FieldKind KindOf(FieldType type) {
  if (type == kVariableText || type == FieldType::kText) return FieldKind::kText;
  return type == FieldType::kDate ? FieldKind::kDate : FieldKind::kNumber;
}

std::string Operand(FieldType type, std::string_view value) {
  switch (KindOf(type)) {
    case FieldKind::kText:
      return "'" + std::string(value) + "'";
    case FieldKind::kDate:
      return "#" + FormatPattern("dd/mmmm/yyyy").Format(Value(value)) + "#";
    case FieldKind::kNumber:
      break;
  }
  return std::string(value);
}

}  // namespace

std::string ConditionText(std::string_view field, FieldType type, std::string_view operation,
                          std::string_view value) {
  if (operation == kExpressionOperation) return std::string(value);
  const std::string name = "[" + std::string(field) + "]";
  if (operation == kIsNullOperation) return name + " = Null";
  return name + " " + std::string(operation) + " " + Operand(type, value);
}

}  // namespace kel
