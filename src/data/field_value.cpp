#include "data/field_value.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

#include "common/date_text.h"
#include "common/decimal_text.h"
#include "common/error.h"

namespace kel {
namespace {

constexpr int kCurrencyDecimals = 4;
constexpr double kSecondsPerDay = 86400;
constexpr std::chrono::year kFirstYear{100};  // of automation's dates

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

Value PlainValue(const CellView& cell) {
  switch (cell.kind) {
    case CellView::Kind::kNull:
      return Value::Null();
    case CellView::Kind::kInteger:
      return cell.integer;
    case CellView::Kind::kDouble:
      return cell.number;
    case CellView::Kind::kText:
    case CellView::Kind::kBinary:
      return cell.bytes;
  }
  return Value::Null();
}

std::optional<Currency> CellCurrency(const CellView& cell) {
  // 309 digits before the point, and 324 zeros and 17 digits behind it, are the most a double has.
  std::array<char, 400> text{};
  std::to_chars_result end{text.data(), std::errc()};
  switch (cell.kind) {
    case CellView::Kind::kInteger:
      end = std::to_chars(text.data(), text.data() + text.size(), cell.integer);
      break;
    case CellView::Kind::kDouble:
      end = std::to_chars(text.data(), text.data() + text.size(), cell.number,
                          std::chars_format::fixed);
      break;
    case CellView::Kind::kText:
      return ParseCurrency(cell.bytes);
    case CellView::Kind::kNull:
    case CellView::Kind::kBinary:
      return std::nullopt;
  }
  return ParseCurrency({text.data(), static_cast<std::size_t>(end.ptr - text.data())});
}

bool HasCurrencyDecimals(std::string_view text) {
  const std::size_t point = text.find('.');
  return point == std::string_view::npos || text.size() - point - 1 <= kCurrencyDecimals;
}

Value DecimalValue(const CellView& cell) {
  NumberBuffer buffer;
  const std::string_view text = CellText(cell, FieldType::kNumeric, buffer);
  if (cell.kind != CellView::Kind::kBinary && HasCurrencyDecimals(text)) {
    if (const auto amount = ParseCurrency(text)) return *amount;
  }
  return PlainValue(cell);
}

[[noreturn]] void ThrowTypeMismatch(const std::string& reason) {
  throw Error(error_number::kTypeMismatch, "Type mismatch: " + reason);
}

HeldCell SmallIntCell(const Value& value) {
  using Limits = std::numeric_limits<std::int16_t>;
  const std::int64_t number = value.ToInt64();
  if (number < Limits::min() || number > Limits::max()) {
    throw Error(error_number::kOverflow, "Overflow");
  }
  return HeldCell(CellView::Integer(number));
}

HeldCell DecimalCell(const Value& value) {
  if (value.Kind() == ValueKind::kInteger) return HeldCell(CellView::Integer(value.ToInt64()));
  if (value.Kind() == ValueKind::kBoolean) return HeldCell(CellView::Integer(value.ToInt64()));
  const std::string text = value.ToText();
  if (auto decimal = DecimalText(text)) return HeldCell(std::move(*decimal));
  return HeldCell(NumberText(value.ToDouble()));  // one with an exponent
}

HeldCell DateCell(const Value& value) {
  if (value.Kind() == ValueKind::kString) {
    const std::optional<Date> date = ReadDate(value.String(), DateOrder::kDayFirst);
    if (!date) ThrowTypeMismatch("not a date: " + value.String());
    return HeldCell(IsoDateText(*date));
  }
  return HeldCell(IsoDateText(Date{value.ToDouble()}));
}

/// Appends a decimal digit to a magnitude; false when it would pass `limit`.
bool AppendDigit(std::uint64_t& magnitude, unsigned digit, std::uint64_t limit) noexcept {
  if (magnitude > (limit - digit) / 10) return false;
  magnitude = magnitude * 10 + digit;
  return true;
}

/// Whether digits that follow the last one kept round its magnitude up, half to even.
bool RoundsUp(std::string_view dropped, bool odd) noexcept {
  if (dropped.empty() || dropped[0] < '5') return false;
  const bool more_than_half =
      dropped[0] > '5' || dropped.find_first_not_of('0', 1) != std::string_view::npos;
  return more_than_half || odd;
}

/// Reads a text from its beginning; what does not fit makes the reader fail for good.
class TextReader {
 public:
  explicit TextReader(std::string_view text) : rest_(text) {}

  bool AtEnd() const noexcept { return rest_.empty(); }
  bool Failed() const noexcept { return failed_; }

  bool Skip(std::string_view choices) noexcept {
    if (rest_.empty() || choices.find(rest_[0]) == std::string_view::npos) return false;
    rest_.remove_prefix(1);
    return true;
  }
  void Expect(std::string_view choices) noexcept { failed_ |= !Skip(choices); }

  /// A number of exactly `digits` digits.
  int Number(std::size_t digits) noexcept {
    int number = 0;
    for (std::size_t i = 0; i < digits; ++i) {
      if (rest_.empty() || !IsDigit(rest_[0])) {
        failed_ = true;
        return 0;
      }
      number = number * 10 + (rest_[0] - '0');
      rest_.remove_prefix(1);
    }
    return number;
  }

  /// The value of digits behind a decimal point; there must be one.
  double Fraction() noexcept {
    double fraction = 0;
    double unit = 0.1;
    failed_ |= rest_.empty() || !IsDigit(rest_[0]);
    for (; !rest_.empty() && IsDigit(rest_[0]); rest_.remove_prefix(1), unit /= 10) {
      fraction += unit * (rest_[0] - '0');
    }
    return fraction;
  }

 private:
  std::string_view rest_;
  bool failed_ = false;
};

/// The part of a day that a time of day makes.
double ReadTime(TextReader& reader) noexcept {
  const int hour = reader.Number(2);
  reader.Expect(":");
  const int minute = reader.Number(2);
  double second = 0;
  if (reader.Skip(":")) {
    second = reader.Number(2);
    if (reader.Skip(".")) second += reader.Fraction();
  }
  if (hour > 23 || minute > 59 || second >= 60) reader.Expect("");
  return ((hour * 60 + minute) * 60 + second) / kSecondsPerDay;
}

}  // namespace

Value CellValue(const CellView& cell, FieldType type) {
  if (type == FieldType::kBoolean && cell.kind == CellView::Kind::kInteger) {
    return cell.integer != 0;
  }
  if (type == FieldType::kCurrency) {
    if (const auto amount = CellCurrency(cell)) return *amount;
  }
  if (type == FieldType::kNumeric) return DecimalValue(cell);
  if (type == FieldType::kDate && cell.kind == CellView::Kind::kText) {
    if (const auto date = ParseIsoDate(cell.bytes)) return *date;
  }
  return PlainValue(cell);
}

std::string_view CellText(const CellView& cell, FieldType type, NumberBuffer& buffer) noexcept {
  switch (cell.kind) {
    case CellView::Kind::kNull:
      return "";
    case CellView::Kind::kInteger:
      if (type == FieldType::kBoolean) return cell.integer != 0 ? "True" : "False";
      return NumberText(cell.integer, buffer);
    case CellView::Kind::kDouble:
      return NumberText(cell.number, buffer);
    case CellView::Kind::kText:
    case CellView::Kind::kBinary:
      return cell.bytes;
  }
  return "";
}

HeldCell CellFor(const Value& value, FieldType type) {
  if (value.IsNull() || value.IsEmpty() || value.IsMissing()) return {};
  switch (type) {
    case FieldType::kSmallInt:
      return SmallIntCell(value);
    case FieldType::kInteger:  // as wide as the database has them
    case FieldType::kBigInt:
      return HeldCell(CellView::Integer(value.ToInt64()));
    case FieldType::kDouble:
      return HeldCell(CellView::Double(value.ToDouble()));
    case FieldType::kCurrency:
    case FieldType::kNumeric:
      return DecimalCell(value);
    case FieldType::kDate:
      return DateCell(value);
    case FieldType::kBoolean:
      return HeldCell(CellView::Integer(value.ToBoolean() ? 1 : 0));
    case FieldType::kText:
    case FieldType::kMemo:
      return HeldCell(value.ToText());
    case FieldType::kBinary: {
      const std::string bytes = value.ToText();
      return HeldCell(CellView{CellView::Kind::kBinary, 0, 0, bytes});
    }
  }
  ThrowTypeMismatch("a field of this type cannot be set");
}

std::optional<Currency> ParseCurrency(std::string_view text) noexcept {
  const bool negative = !text.empty() && text[0] == '-';
  if (negative || (!text.empty() && text[0] == '+')) text.remove_prefix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string_view whole = text.substr(0, point);
  const std::string_view decimals = text.substr(std::min(point + 1, text.size()));
  if (whole.empty() && decimals.empty()) return std::nullopt;
  if (!std::all_of(whole.begin(), whole.end(), IsDigit) ||
      !std::all_of(decimals.begin(), decimals.end(), IsDigit)) {
    return std::nullopt;
  }

  const std::uint64_t limit =
      std::uint64_t{std::numeric_limits<std::int64_t>::max()} + (negative ? 1 : 0);
  std::uint64_t magnitude = 0;
  for (const char c : whole) {
    if (!AppendDigit(magnitude, static_cast<unsigned>(c - '0'), limit)) return std::nullopt;
  }
  for (std::size_t i = 0; i < kCurrencyDecimals; ++i) {
    const unsigned digit = i < decimals.size() ? static_cast<unsigned>(decimals[i] - '0') : 0;
    if (!AppendDigit(magnitude, digit, limit)) return std::nullopt;
  }
  const std::size_t kept = std::min<std::size_t>(decimals.size(), kCurrencyDecimals);
  if (RoundsUp(decimals.substr(kept), magnitude % 2 != 0) && magnitude++ == limit) {
    return std::nullopt;
  }
  return Currency{static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude)};
}

std::optional<Date> ParseIsoDate(std::string_view text) noexcept {
  using std::chrono::sys_days;
  constexpr std::chrono::year_month_day kDayZero{std::chrono::year{1899}, std::chrono::December,
                                                 std::chrono::day{30}};

  TextReader reader(text);
  const std::chrono::year year{reader.Number(4)};
  reader.Expect("-");
  const std::chrono::month month{static_cast<unsigned>(reader.Number(2))};
  reader.Expect("-");
  const std::chrono::day day{static_cast<unsigned>(reader.Number(2))};
  const double time = reader.Skip(" T") ? ReadTime(reader) : 0;
  const std::chrono::year_month_day date{year, month, day};
  if (reader.Failed() || !reader.AtEnd() || !date.ok() || year < kFirstYear) return std::nullopt;

  const auto days = static_cast<double>((sys_days{date} - sys_days{kDayZero}).count());
  // Automation counts the time of day away from zero: 1899-12-29 06:00 is -1.25.
  return Date{days < 0 ? days - time : days + time};
}

}  // namespace kel
