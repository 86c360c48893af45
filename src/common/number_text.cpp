#include "common/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace kel {
namespace {

constexpr double kLeastFixed = 1e-7;
constexpr double kFirstExponential = 1e21;
constexpr double kFirstUnknownDigits = 9007199254740992.0;  // 2^53

// Up to 15 digits no two decimal texts are the same double, so a text found below this size is the
// shortest one.
constexpr double kPaiseExact = 1e13;

std::string_view View(const NumberBuffer& buffer, const char* end) {
  return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

// Most numbers in books have two decimals at the most; these need no general conversion. Empty for
// other numbers.
std::string_view PaiseText(double number, NumberBuffer& buffer) {
  if (!(std::abs(number) < kPaiseExact)) return {};
  const auto paise = static_cast<std::int64_t>(std::llround(number * 100));
  if (static_cast<double>(paise) / 100 != number) return {};
  char* end = buffer.data();
  if (paise < 0) *end++ = '-';
  const std::int64_t size = std::abs(paise);
  end = std::to_chars(end, buffer.data() + buffer.size(), size / 100).ptr;
  const auto fraction = static_cast<int>(size % 100);
  if (fraction != 0) {
    *end++ = '.';
    *end++ = static_cast<char>('0' + fraction / 10);
    if (fraction % 10 != 0) *end++ = static_cast<char>('0' + fraction % 10);
  }
  return View(buffer, end);
}

// A fixed text of a number so large that not all of its digits are known: the digits that tell it
// from its neighbours, then zeros.
char* WriteLarge(double number, NumberBuffer& buffer) {
  NumberBuffer scientific;
  const char* const end = std::to_chars(scientific.data(), scientific.data() + scientific.size(),
                                        number, std::chars_format::scientific)
                              .ptr;
  const char* const exponent_mark = std::find<const char*>(scientific.data(), end, 'e');
  int exponent = 0;
  std::from_chars(exponent_mark + 2, end, exponent);  // behind "e+"
  char* text = std::copy_if(static_cast<const char*>(scientific.data()), exponent_mark,
                            buffer.data(), [](char c) { return c != '.'; });
  const char* const whole_end = buffer.data() + exponent + (number < 0 ? 2 : 1);
  while (text < whole_end) *text++ = '0';
  return text;
}

}  // namespace

std::string NumberText(double number) {
  NumberBuffer buffer;
  return std::string(NumberText(number, buffer));
}

std::string_view NumberText(double number, NumberBuffer& buffer) noexcept {
  const std::string_view paise = PaiseText(number, buffer);
  if (!paise.empty()) return paise;
  const double size = std::abs(number);
  if (size >= kFirstUnknownDigits && size < kFirstExponential) {
    return View(buffer, WriteLarge(number, buffer));
  }
  const auto format = size >= kLeastFixed && size < kFirstUnknownDigits
                          ? std::chars_format::fixed
                          : std::chars_format::scientific;
  char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, format).ptr;
  if (std::isfinite(number)) std::replace(buffer.data(), end, 'e', 'E');
  return View(buffer, end);
}

std::string_view NumberText(std::int64_t number, NumberBuffer& buffer) noexcept {
  return View(buffer, std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr);
}

}  // namespace kel
