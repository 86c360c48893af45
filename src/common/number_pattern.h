// Number formats such as "#,##0.00;(#,##0.00)".
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/decimal_digits.h"

namespace kel {

/// Whether digit placeholders (0 #) stand in a format text outside of literals.
bool HasDigitPlaceholders(std::string_view format);

/// A number format of up to four sections: positive numbers, negative ones, zero, Null. An empty
/// section is the first one; an empty first one shows numbers as they are.
class NumberPattern {
 public:
  explicit NumberPattern(std::string_view format);

  /// Appends `decimal`, a text that DecimalDigits reads; false for others.
  bool Append(std::string_view decimal, std::string& text) const;
  void AppendNull(std::string& text) const;

 private:
  enum class Kind : std::uint8_t { kLiteral, kWhole, kPoint, kFraction, kExponent };

  /// A run of characters of one kind.
  struct Step {
    Kind kind;
    bool zeros = false;     // of placeholders: shown also where the number has no digit
    bool is_first = false;  // of whole places: those in front of them show all digits left over
    bool plus = false;      // of an exponent: one that is not negative has a sign too
    std::size_t begin = 0;  // of a literal: in `literals`; of places: the one next to the point,
                            // counted from the point
    std::size_t count = 0;
  };

  struct Section {
    std::vector<Step> steps;
    std::string literals;
    std::int64_t shift = 0;  // the power of ten that % and scaling commas are
    std::size_t whole_places = 0;
    std::size_t fraction_places = 0;
    bool is_scientific = false;
    bool has_groups = false;
  };

  class SectionParser;

  static constexpr std::size_t kPositive = 0;
  static constexpr std::size_t kNegative = 1;
  static constexpr std::size_t kZero = 2;
  static constexpr std::size_t kNull = 3;
  static constexpr std::size_t kMostSections = 4;

  std::size_t SectionOf(const DecimalDigits& number) const noexcept;
  /// Rounds to what the section shows; the exponent that it then has.
  static std::int64_t Fit(const Section& section, DecimalDigits& number) noexcept;
  static void AppendSection(const Section& section, const DecimalDigits& number,
                            std::int64_t exponent, std::string& text);
  static void AppendWhole(const Step& step, const DecimalDigits& number, bool has_groups,
                          std::string& text);
  static void AppendFraction(const Step& step, const DecimalDigits& number, std::string& text);
  static void AppendExponent(const Step& step, std::int64_t exponent, std::string& text);

  std::array<Section, kMostSections> sections_;
};

}  // namespace kel
