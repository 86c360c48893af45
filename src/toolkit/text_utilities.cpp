// CZURDLL: texts and numbers.
#include <algorithm>

#include "common/decimal_text.h"
#include "common/numeric_value.h"
#include "common/text_cells.h"
#include "toolkit/CZURDLL_p.h"
#include "toolkit/rounded_amount.h"

namespace kel {
namespace {

constexpr int kByContents = -1;  // alignments of AlignString
constexpr int kCentered = 0;
constexpr int kLeft = 1;
constexpr int kRight = 2;

constexpr std::int32_t kMostPlaces = 255;

std::string Blanks(Cells count) {
  return std::string().append(static_cast<std::size_t>(count), ' ');
}

// `room` is what the text lacks to its width.
std::string Padded(const std::string& text, Cells room, int align) {
  if (align == kByContents) align = IsNumeric(text) ? kRight : kLeft;
  const Cells before = align == kCentered ? room / 2 : align == kLeft ? 0 : room;
  return Blanks(before) + text + Blanks(room - before);
}

// The decimal text of a value that is meant as a number.
std::string TolerantDecimal(const Value& value) {
  switch (value.Kind()) {
    case ValueKind::kEmpty:
    case ValueKind::kNull:
      return "0";
    case ValueKind::kDouble:
      return PlainText(value.ToDouble());
    default:
      break;
  }
  const std::string text = value.ToText();
  if (std::optional<std::string> decimal = DecimalText(text)) return *std::move(decimal);
  return PlainText(ExVal(text));
}

// Adds one to the last of a text of digits.
void CountUp(std::string& digits) {
  std::size_t at = digits.size();
  while (at > 0 && digits[at - 1] == '9') digits[--at] = '0';
  if (at > 0) {
    ++digits[at - 1];
  } else {
    digits.insert(0, 1, '1');
  }
}

// A decimal text with exactly `places` decimals, rounded half away from zero on its digits. What
// rounds to zero has no sign.
std::string RoundedDecimal(std::string_view decimal, std::size_t places) {
  const bool negative = decimal.front() == '-';
  if (negative) decimal.remove_prefix(1);
  const std::size_t point = std::min(decimal.find('.'), decimal.size());
  const std::string_view fraction = decimal.substr(std::min(point + 1, decimal.size()));
  std::string digits(decimal.substr(0, point));
  digits.append(fraction.substr(0, places)).resize(point + places, '0');
  if (fraction.size() > places && fraction[places] >= '5') CountUp(digits);

  const bool is_zero = digits.find_first_not_of('0') == std::string::npos;
  if (places > 0) digits.insert(digits.size() - places, 1, '.');
  if (negative && !is_zero) digits.insert(0, 1, '-');
  return digits;
}

}  // namespace

double CZURDLL::ExVal(const std::string& Expression) {
  last_error_.reset();
  return kel::ExVal(Expression);
}

std::string CZURDLL::AlignString(std::string& Text, std::int32_t Ln, int Align) {
  return Guarded("DLL.AlignString", std::string(), [&] {
    if (Ln < 0) throw Error(error_number::kInvalidProcedureCall, "Ln is negative");
    const TextPiece piece = FitCells(Text, Ln);
    if (piece.bytes < Text.size()) {
      // A wide character that does not fit as a whole leaves a cell blank.
      Text.resize(piece.bytes);
      Text += Blanks(Ln - piece.cells);
    } else if (piece.cells < Ln) {
      Text = Padded(Text, Ln - piece.cells, Align);
    }
    return Text;
  });
}

std::string CZURDLL::AlignString(std::string&& Text, std::int32_t Ln, int Align) {
  return AlignString(Text, Ln, Align);
}

Value CZURDLL::FixFor(const kel::Value& Value, std::int32_t Places) {
  return Guarded("DLL.FixFor", kel::Value(), [&]() -> kel::Value {
    if (Places < 0 || Places > kMostPlaces) {
      throw Error(error_number::kInvalidProcedureCall, "Places is outside 0 to 255");
    }
    return RoundedDecimal(TolerantDecimal(Value), static_cast<std::size_t>(Places));
  });
}

}  // namespace kel
