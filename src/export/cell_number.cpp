#include "export/cell_number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

#include "common/text_cells.h"
#include "engine/page_format.h"

namespace kel {
namespace {

constexpr std::size_t kExactDigits = 15;  // that every double holds
constexpr std::size_t kGroupDigits = 3;   // of a western group, and of the last Indian one
constexpr std::size_t kIndianGroupDigits = 2;

enum class Grouping { kNone, kWestern, kIndian };

// The parts of a number's text.
struct NumberText {
  char sign = 0;  // '+' or '-'; 0 when there is none
  bool sign_behind = false;
  std::string_view whole;  // digits and commas
  std::string_view decimals;
  std::string_view tail;  // blanks and the divider
};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsSign(char c) { return c == '+' || c == '-'; }

std::string_view TakeDigits(std::string_view& text, bool with_commas) {
  std::size_t count = 0;
  while (count < text.size() && (IsDigit(text[count]) || (with_commas && text[count] == ','))) {
    ++count;
  }
  const std::string_view digits = text.substr(0, count);
  text.remove_prefix(count);
  return digits;
}

std::optional<NumberText> Split(std::string_view text) {
  NumberText number;
  text = TrimBlanks(text);
  if (!text.empty() && text.back() == kColumnDivider) {
    const std::size_t end = text.substr(0, text.size() - 1).find_last_not_of(' ') + 1;
    number.tail = text.substr(end);
    text = text.substr(0, end);
  }
  if (!text.empty() && IsSign(text.front())) {
    number.sign = text.front();
    text.remove_prefix(1);
  } else if (!text.empty() && IsSign(text.back())) {
    number.sign = text.back();
    number.sign_behind = true;
    text.remove_suffix(1);
  }
  number.whole = TakeDigits(text, true);
  if (!text.empty() && text.front() == '.') {
    text.remove_prefix(1);
    number.decimals = TakeDigits(text, false);
    if (number.decimals.empty()) return std::nullopt;
  }
  const bool has_digits = !number.whole.empty() || !number.decimals.empty();
  return text.empty() && has_digits ? std::optional(number) : std::nullopt;
}

// Nothing when the commas stand where neither way of grouping has them.
std::optional<Grouping> GroupingOf(std::string_view whole) {
  std::size_t digits_of_group = 0;
  std::size_t commas = 0;
  bool western = true;
  bool indian = true;
  for (std::size_t i = whole.size(); i > 0; --i) {
    if (whole[i - 1] != ',') {
      ++digits_of_group;
      continue;
    }
    western &= digits_of_group == kGroupDigits;
    indian &= digits_of_group == (commas == 0 ? kGroupDigits : kIndianGroupDigits);
    ++commas;
    digits_of_group = 0;
  }
  if (commas == 0) return Grouping::kNone;
  if (whole.front() == ',' || whole.front() == '0') return std::nullopt;
  if (western && digits_of_group <= kGroupDigits) return Grouping::kWestern;
  if (indian && digits_of_group <= kIndianGroupDigits) return Grouping::kIndian;
  return std::nullopt;
}

// The value without its sign; nothing when a double cannot hold all digits.
std::optional<double> ValueOf(const NumberText& number) {
  constexpr std::size_t kMostWhole = 2 * kExactDigits;  // commas and leading zeros are among them
  if (number.whole.size() > kMostWhole || number.decimals.size() > kExactDigits) {
    return std::nullopt;
  }
  std::array<char, kMostWhole + 1 + kExactDigits> text{};
  std::size_t size = 0;
  std::size_t exact_digits = 0;
  for (const std::string_view part : {number.whole, std::string_view("."), number.decimals}) {
    for (const char c : part) {
      if (c == ',') continue;
      if (IsDigit(c) && (exact_digits > 0 || c != '0')) ++exact_digits;
      text[size++] = c;
    }
  }
  double value = 0;
  const auto [end, failure] = std::from_chars(text.data(), text.data() + size, value);
  if (exact_digits > kExactDigits || failure != std::errc()) return std::nullopt;
  return value;
}

std::string WesternWhole(std::string_view whole, Grouping grouping) {
  if (grouping == Grouping::kWestern) return "#,##0";
  if (whole.empty()) return "#";
  std::string zeros(whole.front() == '0' ? whole.size() : 1, '0');
  return zeros;
}

// Number formats have no Indian grouping; commas are literals where it differs from the western.
std::string IndianWhole(std::size_t commas) {
  std::string format = "##0";
  for (std::size_t i = 0; i < commas; ++i) format.insert(0, R"(##\,)");
  return format;
}

// For other values in the same cell: each number of commas begins at a power of ten.
std::string IndianSections(std::size_t commas, const std::string& behind) {
  constexpr std::size_t kFirstCondition = 3;  // 1,00,00,000
  const std::size_t most = std::max(commas, kFirstCondition);
  std::string format;
  for (std::size_t section = most; section + 1 >= most; --section) {
    format +=
        "[>=1" + std::string(2 * section + 1, '0') + "]" + IndianWhole(section) + behind + ";";
  }
  return format + (most == kFirstCondition ? "##,##0" : IndianWhole(most - 2)) + behind;
}

std::string FormatOf(const NumberText& number, Grouping grouping) {
  std::string decimals;
  if (!number.decimals.empty()) decimals = "." + std::string(number.decimals.size(), '0');
  std::string tail;
  if (!number.tail.empty()) tail = "\"" + std::string(number.tail) + "\"";

  std::string whole = WesternWhole(number.whole, grouping);
  if (grouping == Grouping::kIndian) {
    const auto commas = std::count(number.whole.begin(), number.whole.end(), ',');
    if (number.sign == 0) return IndianSections(static_cast<std::size_t>(commas), decimals + tail);
    whole = IndianWhole(static_cast<std::size_t>(commas));
  }
  const std::string digits = whole + decimals;
  if (number.sign_behind && number.sign == '-')
    return digits + tail + ";" + digits + "\"-\"" + tail;
  if (number.sign_behind) return digits + "\"+\"" + tail + ";" + digits + "\"-\"" + tail;
  if (number.sign == '+') return "\"+\"" + digits + tail + ";\"-\"" + digits + tail;
  return digits + tail;  // the sign of negative numbers comes by itself
}

}  // namespace

std::optional<CellNumber> ReadCellNumber(std::string_view text) {
  constexpr std::size_t kMostFormat = 127;  // characters that libxlsxwriter keeps
  const std::optional<NumberText> number = Split(text);
  if (!number) return std::nullopt;
  const std::optional<Grouping> grouping = GroupingOf(number->whole);
  const std::optional<double> value = ValueOf(*number);
  if (!grouping || !value) return std::nullopt;
  const bool negative = number->sign == '-';
  if (negative && *value == 0) return std::nullopt;  // no cell keeps the sign of nothing
  CellNumber cell{negative ? -*value : *value, FormatOf(*number, *grouping)};
  if (cell.format.size() > kMostFormat) return std::nullopt;
  return cell;
}

}  // namespace kel
