#include "toolkit/form_controls.h"

#include <array>
#include <charconv>
#include <optional>

#include "common/date_text.h"
#include "common/decimal_text.h"
#include "common/numeric_value.h"
#include "common/text_cells.h"
#include "data/field_value.h"
#include "data/folded_text.h"
#include "toolkit/control_members.h"

namespace kel {
namespace {

// ExVal, but whole numbers that a double cannot tell apart keep every digit.
Value TolerantNumber(const std::string& text) {
  std::int64_t whole = 0;
  const std::string_view digits = TrimBlanks(text);
  const char* const end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, whole);
  if (read.ec == std::errc() && read.ptr == end) return whole;
  return ExVal(text);
}

// Sums of money must not drift, so what is a number as a whole never goes through a double.
Value ExactNumber(const std::string& text, FieldType type) {
  std::optional<std::string> decimal = DecimalText(text);
  if (!decimal) return ExVal(text);
  const std::optional<Currency> amount =
      type == FieldType::kCurrency ? ParseCurrency(*decimal) : std::nullopt;
  return amount ? Value(*amount) : Value(*std::move(decimal));
}

Value DateOrNull(const Value& value) {
  if (value.Kind() == ValueKind::kDate) return value;
  if (value.Kind() != ValueKind::kString) return Value::Null();
  const std::optional<Date> date = ReadDate(value.String(), DateOrder::kDayFirst);
  return date ? Value(*date) : Value::Null();
}

bool IsTrueOrOne(const Value& value) {
  if (value.IsNull()) return false;
  if (value.Kind() == ValueKind::kBoolean) return value.ToBoolean();
  const std::string text = value.ToText();
  return text == "1" || text == "-1" || Folded(text) == "true";
}

}  // namespace

FormControls::FormControls(Object& form) : controls_(Member(form, "Controls").Get()) {}

std::int32_t FormControls::Count() { return Member(controls_.ToObject(), "Count").Get().ToInt32(); }

Value::ObjectPtr FormControls::Find(const Value& index) {
  const std::array<Value, 1> indexes = {index};
  const Value control = controls_.ToObject().Get(Object::kDefaultMember, indexes);
  control.ToObject();
  return control.Pointer();
}

AvoidList::AvoidList(std::string_view fields) : folded_(Folded(fields)) {}

bool AvoidList::Names(int place, std::string_view name) const {
  if (folded_.empty()) return false;
  const auto has = [this](const std::string& field) {
    return folded_.find(Folded(";" + field + ";")) != std::string::npos;
  };
  return has(std::to_string(place)) || has(std::string(name));
}

Value ValueForField(Object& control, FieldType type) {
  Value value = control.Get(Object::kDefaultMember);
  if (value.IsNull()) value = "";
  switch (type) {
    case FieldType::kSmallInt:
    case FieldType::kInteger:
    case FieldType::kDouble:
    case FieldType::kBigInt:
      return TolerantNumber(value.ToText());
    case FieldType::kCurrency:
    case FieldType::kNumeric:
      return ExactNumber(value.ToText(), type);
    case FieldType::kDate:
      return DateOrNull(value);
    case FieldType::kBoolean:
    case FieldType::kText:
    case FieldType::kMemo:
    case FieldType::kBinary:
      break;
  }
  return value;
}

void ShowFieldValue(Object& control, const Value& value) {
  if (IsKind(control, "OptionButton") || IsKind(control, "CheckBox")) {
    Member(control, "Value").Put(IsTrueOrOne(value) ? 1 : 0);
  } else {
    PutOrBlank(control, Object::kDefaultMember, value);
  }
}

}  // namespace kel
