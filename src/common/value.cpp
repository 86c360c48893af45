#include "common/value.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>

#include "common/calendar.h"
#include "common/error.h"
#include "common/number_text.h"
#include "common/numeric_value.h"

namespace kel {
namespace {

// Room for any double in fixed notation within the limits above, sign and point included.
constexpr std::size_t kNumberCapacity = 64;

constexpr std::int64_t kCurrencyScale = 10000;

constexpr std::int64_t kSecondsPerDay = 86400;

[[noreturn]] void ThrowTypeMismatch() { throw Error(error_number::kTypeMismatch, "Type mismatch"); }

[[noreturn]] void ThrowOverflow() { throw Error(error_number::kOverflow, "Overflow"); }

[[noreturn]] void ThrowInvalidNull() {
  throw Error(error_number::kInvalidUseOfNull, "Invalid use of Null");
}

std::string CurrencyText(Currency amount) {
  std::string text = amount.ten_thousandths < 0 ? "-" : "";
  text += std::to_string(std::abs(amount.ten_thousandths / kCurrencyScale));
  const std::int64_t fraction = std::abs(amount.ten_thousandths % kCurrencyScale);
  if (fraction == 0) return text;
  // The 1 in front keeps the leading zeros of the decimals; the point takes its place.
  std::string decimals = std::to_string(kCurrencyScale + fraction);
  decimals[0] = '.';
  decimals.erase(decimals.find_last_not_of('0') + 1);
  return text += decimals;
}

std::string DateText(Date date) {
  const std::optional<Moment> moment = MomentOf(date, kSecondsPerDay);
  if (!moment) ThrowOverflow();
  const std::chrono::year_month_day calendar{moment->day};
  std::array<char, kNumberCapacity> text{};
  int length = std::snprintf(
      text.data(), text.size(), "%02u/%02u/%04d", static_cast<unsigned>(calendar.day()),
      static_cast<unsigned>(calendar.month()), static_cast<int>(calendar.year()));
  const auto time = static_cast<int>(moment->time);
  if (time != 0) {
    length = std::snprintf(text.data() + length, text.size() - static_cast<std::size_t>(length),
                           " %02d:%02d:%02d", time / 3600, time / 60 % 60, time % 60) +
             length;
  }
  return {text.data(), static_cast<std::size_t>(length)};
}

double NumberOf(std::string_view text) {
  const std::optional<double> number = ReadNumber(text);
  if (!number) ThrowTypeMismatch();
  if (std::isinf(*number)) ThrowOverflow();
  return *number;
}

bool EqualsIgnoringCase(std::string_view text, std::string_view lower_case) {
  return std::equal(
      text.begin(), text.end(), lower_case.begin(), lower_case.end(),
      [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; });
}

// Not std::nearbyint: the host program may have set another rounding mode.
double RoundHalfToEven(double number) {
  const double below = std::floor(number);
  const double above_half = number - below - 0.5;
  if (above_half < 0) return below;
  if (above_half > 0) return below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

}  // namespace

std::string Value::ToText() const {
  switch (Kind()) {
    case ValueKind::kEmpty:
      return {};
    case ValueKind::kNull:
      ThrowInvalidNull();
    case ValueKind::kBoolean:
      return std::get<bool>(held_) ? "True" : "False";
    case ValueKind::kInteger:
      return std::to_string(std::get<std::int64_t>(held_));
    case ValueKind::kDouble:
      return NumberText(std::get<double>(held_));
    case ValueKind::kCurrency:
      return CurrencyText(std::get<Currency>(held_));
    case ValueKind::kDate:
      return DateText(std::get<Date>(held_));
    case ValueKind::kString:
      return String();
    case ValueKind::kMissing:
    case ValueKind::kObject:
    case ValueKind::kArray:
      break;
  }
  ThrowTypeMismatch();
}

double Value::ToDouble() const {
  switch (Kind()) {
    case ValueKind::kEmpty:
      return 0;
    case ValueKind::kNull:
      ThrowInvalidNull();
    case ValueKind::kBoolean:
      return std::get<bool>(held_) ? -1 : 0;
    case ValueKind::kInteger:
      return static_cast<double>(std::get<std::int64_t>(held_));
    case ValueKind::kDouble:
      return std::get<double>(held_);
    case ValueKind::kCurrency:
      return static_cast<double>(std::get<Currency>(held_).ten_thousandths) / kCurrencyScale;
    case ValueKind::kDate:
      return std::get<Date>(held_).days;
    case ValueKind::kString:
      return NumberOf(String());
    case ValueKind::kMissing:
    case ValueKind::kObject:
    case ValueKind::kArray:
      break;
  }
  ThrowTypeMismatch();
}

std::int32_t Value::ToInt32() const {
  using Limits = std::numeric_limits<std::int32_t>;
  const double rounded = RoundHalfToEven(ToDouble());
  if (!(rounded >= Limits::min() && rounded <= Limits::max())) ThrowOverflow();
  return static_cast<std::int32_t>(rounded);
}

std::int64_t Value::ToInt64() const {
  constexpr double kBeyond = 9223372036854775808.0;  // 2^63
  if (Kind() == ValueKind::kInteger) return std::get<std::int64_t>(held_);
  if (Kind() == ValueKind::kString) {
    std::int64_t integer = 0;
    const char* const end = String().data() + String().size();
    const auto read = std::from_chars(String().data(), end, integer);
    if (read.ec == std::errc() && read.ptr == end) return integer;
  }
  const double rounded = RoundHalfToEven(ToDouble());
  if (!(rounded >= -kBeyond && rounded < kBeyond)) ThrowOverflow();
  return static_cast<std::int64_t>(rounded);
}

bool Value::ToBoolean() const {
  if (Kind() == ValueKind::kString) {
    if (EqualsIgnoringCase(String(), "true")) return true;
    if (EqualsIgnoringCase(String(), "false")) return false;
  }
  return ToDouble() != 0;
}

Object& Value::ToObject() const {
  if (!IsObject()) ThrowTypeMismatch();
  if (Pointer() == nullptr) {
    throw Error(error_number::kObjectNotSet, "Object variable not set");
  }
  return *Pointer();
}

const Value::Array& Value::ToArray() const {
  if (!IsArray()) ThrowTypeMismatch();
  return std::get<Array>(held_);
}

}  // namespace kel
