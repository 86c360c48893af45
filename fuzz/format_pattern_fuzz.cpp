// Any bytes as a format text and a value: formatting never fails and never writes more than format
// and value have bytes for; a plain number format says what a second, slower reading of it says.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "common/format_pattern.h"
#include "common/numeric_value.h"

namespace {

constexpr std::size_t kLongestExponent = 9999;  // a number's zeros that its text doesn't have
constexpr std::size_t kLongestMark = 64;        // what one letter of a format may become

void Require(bool holds) {
  if (!holds) std::abort();
}

// "12.34" of digits and a point only, with up to `places` decimals: rounded as a person would.
std::string Rounded(std::string digits, std::size_t places) {
  const std::size_t point = std::min(digits.find('.'), digits.size());
  std::string fraction = point < digits.size() ? digits.substr(point + 1) : "";
  std::string all = "0" + digits.substr(0, point);
  const bool up = fraction.size() > places && fraction[places] >= '5';
  fraction.resize(places, '0');
  all += fraction;
  if (up) {
    std::size_t last = all.size() - 1;
    while (all[last] == '9') all[last--] = '0';
    ++all[last];
  }
  const std::size_t whole = all.size() - places;
  const std::size_t first = std::min(all.find_first_not_of('0'), whole);
  return all.substr(first, whole - first) + "." + all.substr(whole);
}

// The format [#,]##0.00## of `least` zeros and more places to the left and right.
struct PlainFormat {
  std::size_t whole = 0;
  std::size_t zeros = 0;
  std::size_t marks = 0;
  bool has_groups = false;

  std::string Text() const {
    return (has_groups ? "#,#" : "#") + std::string(whole, '0') + "." + std::string(zeros, '0') +
           std::string(marks, '#');
  }

  std::string Apply(const std::string& number) const {
    std::string shown = Rounded(number, zeros + marks);
    const std::size_t point = shown.find('.');
    std::size_t optional = marks;
    for (; optional > 0 && shown.back() == '0'; --optional) shown.pop_back();
    if (point < whole) shown.insert(0, whole - point, '0');
    for (std::size_t i = shown.find('.'); has_groups && i > 3;) shown.insert(i -= 3, 1, ',');
    return shown;
  }
};

void CheckPlain(std::string_view shape, std::string_view value) {
  if (shape.size() < 4) return;
  const auto byte = [&shape](std::size_t i) { return static_cast<unsigned char>(shape[i]); };
  const PlainFormat format{byte(0) % 8U, byte(1) % 8U, byte(2) % 8U, byte(3) % 2 == 1};
  std::string number;
  for (const char c : value) {
    const bool is_point = c == '.' && number.find('.') == std::string::npos;
    if ((c >= '0' && c <= '9') || is_point) number += c;
  }
  if (number.empty() || number == ".") return;
  std::string shown;
  kel::FormatPattern(format.Text()).AppendNumber(number, shown);
  Require(shown == format.Apply(number));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view all(reinterpret_cast<const char*>(data), size);
  const std::size_t end = std::min(all.find('\n'), all.size());
  const std::string_view format = all.substr(0, end);
  const std::string_view value = all.substr(std::min(end + 1, all.size()));
  const kel::FormatPattern pattern(format);
  const std::size_t most =
      (format.size() + 1) * kLongestMark + 2 * (2 * value.size() + kLongestExponent);

  std::string text;
  pattern.AppendText(value, text);
  Require(text.size() <= most);
  text.clear();
  pattern.AppendNumber(value, text);
  Require(text.size() <= most);
  text.clear();
  pattern.AppendNull(text);
  Require(text.size() <= most);
  double days = 0;
  std::memcpy(&days, value.data(), std::min(sizeof days, value.size()));
  for (const double day : {days, kel::ExVal(value)}) {
    text.clear();
    pattern.AppendDate(kel::Date{day}, text);
    Require(text.size() <= most);
  }
  CheckPlain(format, value);
  return 0;
}
