// The variant that callers' objects, recordsets and published arguments exchange.
#pragma once

#include <compare>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace kel {

class Object;
class Value;

/// A fixed-point amount with four decimals, as automation's Currency.
struct Currency {
  std::int64_t ten_thousandths = 0;
  auto operator<=>(const Currency&) const = default;
};

/// A moment in days since 1899-12-30; the fraction is the time of day.
struct Date {
  double days = 0;
  auto operator<=>(const Date&) const = default;
};

/// What a Value holds. A Missing value is an optional argument that was left out.
enum class ValueKind : std::uint8_t {
  kEmpty,
  kNull,
  kMissing,
  kBoolean,
  kInteger,
  kDouble,
  kCurrency,
  kDate,
  kString,
  kObject,
  kArray
};

/// A value of any kind that crosses a late-bound or published boundary.
///
/// Strings are UTF-8. Conversions follow automation's rules: ToText of Null and ToDouble of a text
/// that is no number throw Error (94, 13), numbers out of range throw Error 6.
///
///     Value widths = Value::Array{10, 20, 12};
///     Value caption = "Trial Balance";
///     caption.ToText();
class Value {
 public:
  using Array = std::vector<Value>;
  using ObjectPtr = std::shared_ptr<Object>;

  Value() = default;  // Empty
  // NOLINTBEGIN(google-explicit-constructor): whatever it can hold becomes a Value by itself
  Value(bool boolean) : held_(boolean) {}
  Value(int integer) : held_(std::int64_t{integer}) {}
  Value(std::int64_t integer) : held_(integer) {}
  Value(double number) : held_(number) {}
  Value(Currency amount) : held_(amount) {}
  Value(Date date) : held_(date) {}
  Value(std::string text) : held_(std::move(text)) {}
  Value(std::string_view text) : held_(std::string(text)) {}
  Value(const char* text) : held_(std::string(text)) {}
  Value(ObjectPtr object) : held_(std::move(object)) {}
  Value(Array array) : held_(std::move(array)) {}
  // NOLINTEND(google-explicit-constructor)

  static Value Null() { return Value(NullTag{}); }
  static Value Missing() { return Value(MissingTag{}); }

  ValueKind Kind() const noexcept { return static_cast<ValueKind>(held_.index()); }
  bool IsEmpty() const noexcept { return Kind() == ValueKind::kEmpty; }
  bool IsNull() const noexcept { return Kind() == ValueKind::kNull; }
  bool IsMissing() const noexcept { return Kind() == ValueKind::kMissing; }
  bool IsObject() const noexcept { return Kind() == ValueKind::kObject; }
  bool IsArray() const noexcept { return Kind() == ValueKind::kArray; }

  /// The value as text: numbers in their shortest form that reads back the same, True/False,
  /// Empty as "". Throws Error 94 for Null, 13 for objects, arrays and Missing.
  std::string ToText() const;
  /// The value as a number; a text must be a number as a whole. True is -1.
  double ToDouble() const;
  /// ToDouble rounded half to even. Throws Error 6 outside the 32-bit range.
  std::int32_t ToInt32() const;
  /// The same within 64 bits; an integer, or the text of one, exactly.
  std::int64_t ToInt64() const;
  /// Non-zero numbers and the texts "True" and "False" (any case).
  bool ToBoolean() const;
  /// The object held; Error 13 for other kinds, Error 91 for a null pointer.
  Object& ToObject() const;
  const Array& ToArray() const;

  /// The string held, without a copy. REQUIRES Kind() == kString.
  const std::string& String() const { return std::get<std::string>(held_); }
  /// The pointer held. REQUIRES Kind() == kObject.
  const ObjectPtr& Pointer() const { return std::get<ObjectPtr>(held_); }

  bool operator==(const Value&) const = default;

 private:
  struct NullTag {
    bool operator==(const NullTag&) const = default;
  };
  struct MissingTag {
    bool operator==(const MissingTag&) const = default;
  };
  // The order is that of ValueKind.
  using Held = std::variant<std::monostate, NullTag, MissingTag, bool, std::int64_t, double,
                            Currency, Date, std::string, ObjectPtr, Array>;

  explicit Value(NullTag tag) : held_(tag) {}
  explicit Value(MissingTag tag) : held_(tag) {}

  Held held_;
};

}  // namespace kel
