#include "common/number_pattern.h"

#include <algorithm>
#include <cstdlib>

#include "common/number_text.h"
#include "common/pattern_reader.h"

namespace kel {
namespace {

constexpr std::int64_t kGroup = 3;

bool IsPlaceholder(char c) noexcept { return c == '0' || c == '#'; }

// The places from `top` down to `lowest`, counted from the point; a group mark behind each third.
void AppendPlaces(const DecimalDigits& number, std::int64_t top, std::int64_t lowest,
                  bool has_groups, std::string& text) {
  if (top < lowest) return;
  const std::int64_t marks =
      has_groups ? top / kGroup - std::max<std::int64_t>(lowest - 1, 0) / kGroup : 0;
  text.append(static_cast<std::size_t>(top - lowest + 1 + marks), '0');
  char* end = text.data() + text.size();
  std::int64_t until_mark = -1;
  if (has_groups) until_mark = lowest == 0 ? kGroup : (kGroup - lowest % kGroup) % kGroup;
  const std::int64_t units = number.Point() - 1;
  for (std::int64_t place = lowest; place <= top; ++place) {
    if (until_mark-- == 0) {
      *--end = ',';
      until_mark = kGroup - 1;
    }
    *--end = number.Digit(units - place);
  }
}

}  // namespace

bool HasDigitPlaceholders(std::string_view format) {
  PatternReader reader(format);
  std::string literal;
  while (!reader.AtEnd()) {
    if (reader.TakeQuoted(literal)) continue;
    if (IsPlaceholder(reader.Take())) return true;
  }
  return false;
}

/// Reads one section.
class NumberPattern::SectionParser {
 public:
  explicit SectionParser(std::string_view text)
      : reader_(text), part_(HasDigitPlaceholders(text) ? Part::kWhole : Part::kLiteral) {}

  Section Parse() {
    while (!reader_.AtEnd()) ReadNext();
    if (part_ == Part::kWhole) EndWholePart();
    PlaceSteps();
    return std::move(section_);
  }

 private:
  enum class Part { kWhole, kFraction, kLiteral };

  void ReadNext() {
    if (reader_.TakeQuoted(quoted_)) {
      AddLiteral(quoted_);
      quoted_.clear();
    } else if (part_ == Part::kLiteral) {
      AddLiteral(reader_.Take());
    } else if (IsPlaceholder(reader_.Peek())) {
      AddPlace(reader_.Take() == '0');
    } else if (IsPoint()) {
      reader_.Take();
      EndWholePart();
      section_.steps.push_back({Kind::kPoint});
      part_ = Part::kFraction;
    } else if (!ReadCommas() && !ReadExponent()) {
      const char c = reader_.Take();
      if (c == '%') section_.shift += 2;
      AddLiteral(c);
    }
  }

  // One beside no place is none: "Rs. 0.00".
  bool IsPoint() const {
    const std::string_view rest = reader_.Rest();
    return part_ == Part::kWhole && rest[0] == '.' &&
           (section_.whole_places > 0 || (rest.size() > 1 && IsPlaceholder(rest[1])));
  }

  void AddLiteral(char c) { AddLiteral(std::string_view(&c, 1)); }

  void AddLiteral(std::string_view literal) {
    if (literal.empty()) return;
    if (section_.steps.empty() || section_.steps.back().kind != Kind::kLiteral) {
      Step step{Kind::kLiteral};
      step.begin = section_.literals.size();
      section_.steps.push_back(step);
    }
    section_.literals += literal;
    section_.steps.back().count += literal.size();
  }

  void AddPlace(bool is_zero) {
    const Kind kind = part_ == Part::kWhole ? Kind::kWhole : Kind::kFraction;
    if (kind == Kind::kWhole) {
      if (commas_ > 0) section_.has_groups = true;
      commas_ = 0;
      // Right of a zero a # is one too: "0##" shows 5 as 005.
      seen_zero_ = is_zero = seen_zero_ || is_zero;
    }
    std::size_t& places = kind == Kind::kWhole ? section_.whole_places : section_.fraction_places;
    const bool continues = !section_.steps.empty() && section_.steps.back().kind == kind &&
                           section_.steps.back().zeros == is_zero;
    if (!continues) {
      Step step{kind};
      step.zeros = is_zero;
      step.is_first = kind == Kind::kWhole && places == 0;
      section_.steps.push_back(step);
    }
    ++section_.steps.back().count;
    ++places;
  }

  // A comma means something beside a placeholder or the point only.
  bool ReadCommas() {
    if (part_ != Part::kWhole || reader_.Peek() != ',') return false;
    const bool behind_place = !section_.steps.empty() && section_.steps.back().kind == Kind::kWhole;
    const std::size_t count = reader_.TakeRun(reader_.Rest().size());
    const bool before_place =
        !reader_.AtEnd() && (IsPlaceholder(reader_.Peek()) || reader_.Peek() == '.');
    if (behind_place || before_place) {
      commas_ += static_cast<std::int64_t>(count);
    } else {
      AddLiteral(std::string(count, ','));
    }
    return true;
  }

  // Commas between the last place and the point scale the number by a thousand each.
  void EndWholePart() {
    section_.shift -= kGroup * commas_;
    commas_ = 0;
    if (section_.whole_places > 0) return;
    // The digits left over need a place to be shown at: ".00".
    Step step{Kind::kWhole};
    step.is_first = true;
    section_.steps.push_back(step);
  }

  bool ReadExponent() {
    const std::string_view rest = reader_.Rest();
    const bool is_exponent = rest.size() >= 3 && LowerLetter(rest[0]) == 'e' &&
                             (rest[1] == '+' || rest[1] == '-') && IsPlaceholder(rest[2]) &&
                             section_.whole_places + section_.fraction_places > 0;
    if (!is_exponent) return false;
    if (part_ == Part::kWhole) EndWholePart();
    AddLiteral(reader_.Take());
    Step step{Kind::kExponent};
    step.plus = reader_.Take() == '+';
    while (!reader_.AtEnd() && IsPlaceholder(reader_.Peek())) {
      if (reader_.Take() == '0' || step.count > 0) ++step.count;
    }
    section_.steps.push_back(step);
    section_.is_scientific = true;
    part_ = Part::kLiteral;
    return true;
  }

  void PlaceSteps() {
    std::size_t left_of_point = section_.whole_places;
    std::size_t right_of_point = 0;
    for (Step& step : section_.steps) {
      if (step.kind == Kind::kWhole) step.begin = left_of_point -= step.count;
      if (step.kind != Kind::kFraction) continue;
      step.begin = right_of_point;
      right_of_point += step.count;
    }
    // Left of a zero a # behind the point is one too: "0.#0" shows 5 as 5.00.
    bool is_zero = false;
    for (std::size_t i = section_.steps.size(); i-- > 0;) {
      Step& step = section_.steps[i];
      if (step.kind == Kind::kFraction) step.zeros = is_zero = is_zero || step.zeros;
    }
  }

  PatternReader reader_;
  Part part_;
  Section section_;
  std::string quoted_;
  std::int64_t commas_ = 0;  // read, with nothing behind them that tells what they mean
  bool seen_zero_ = false;
};

NumberPattern::NumberPattern(std::string_view format) {
  for (Section& section : sections_) section = SectionParser(TakeSection(format)).Parse();
}

bool NumberPattern::Append(std::string_view decimal, std::string& text) const {
  DecimalDigits number;
  if (!number.Read(decimal)) return false;
  std::size_t section = SectionOf(number);
  std::int64_t exponent = Fit(sections_[section], number);
  if (number.IsZero()) {  // by rounding perhaps, so that it is no longer negative
    section = SectionOf(number);
    exponent = 0;
  }
  if (section == kPositive && number.IsNegative() && !number.IsZero()) text += '-';
  AppendSection(sections_[section], number, exponent, text);
  return true;
}

void NumberPattern::AppendNull(std::string& text) const {
  if (sections_[kNull].steps.empty()) return;
  AppendSection(sections_[kNull], DecimalDigits(), 0, text);
}

std::size_t NumberPattern::SectionOf(const DecimalDigits& number) const noexcept {
  const std::size_t section =
      number.IsZero() ? kZero : (number.IsNegative() ? kNegative : kPositive);
  return sections_[section].steps.empty() ? kPositive : section;
}

std::int64_t NumberPattern::Fit(const Section& section, DecimalDigits& number) noexcept {
  const auto whole = static_cast<std::int64_t>(section.whole_places);
  const auto fraction = static_cast<std::int64_t>(section.fraction_places);
  if (whole + fraction == 0) return 0;
  number.Shift(section.shift);
  if (!section.is_scientific) {
    number.RoundTo(number.Point() + fraction);
    return 0;
  }
  number.RoundTo(whole + fraction);
  const std::int64_t exponent = number.IsZero() ? 0 : number.Point() - whole;
  number.Shift(-exponent);
  return exponent;
}

void NumberPattern::AppendSection(const Section& section, const DecimalDigits& number,
                                  std::int64_t exponent, std::string& text) {
  if (section.steps.empty()) {
    text += number.IsZero() ? "0" : number.UnsignedText();
    return;
  }
  for (const Step& step : section.steps) {
    switch (step.kind) {
      case Kind::kLiteral:
        text.append(section.literals, step.begin, step.count);
        break;
      case Kind::kWhole:
        AppendWhole(step, number, section.has_groups, text);
        break;
      case Kind::kPoint:
        text += '.';
        break;
      case Kind::kFraction:
        AppendFraction(step, number, text);
        break;
      case Kind::kExponent:
        AppendExponent(step, exponent, text);
        break;
    }
  }
}

void NumberPattern::AppendWhole(const Step& step, const DecimalDigits& number, bool has_groups,
                                std::string& text) {
  const auto lowest = static_cast<std::int64_t>(step.begin);
  const std::int64_t highest = number.Point() - 1;
  std::int64_t top = lowest + static_cast<std::int64_t>(step.count) - 1;
  if (step.is_first) top = std::max(top, highest);
  if (!step.zeros) top = std::min(top, highest);
  AppendPlaces(number, top, lowest, has_groups, text);
}

void NumberPattern::AppendFraction(const Step& step, const DecimalDigits& number,
                                   std::string& text) {
  const auto count = static_cast<std::int64_t>(step.count);
  const std::int64_t first = number.Point() + static_cast<std::int64_t>(step.begin);
  const std::int64_t shown =
      step.zeros ? count : std::clamp<std::int64_t>(number.Count() - first, 0, count);
  for (std::int64_t i = 0; i < shown; ++i) text += number.Digit(first + i);
}

void NumberPattern::AppendExponent(const Step& step, std::int64_t exponent, std::string& text) {
  NumberBuffer buffer;
  const std::string_view digits = NumberText(std::abs(exponent), buffer);
  if (exponent < 0) text += '-';
  if (exponent >= 0 && step.plus) text += '+';
  text.append(step.count - std::min(step.count, digits.size()), '0');
  text += digits;
}

}  // namespace kel
