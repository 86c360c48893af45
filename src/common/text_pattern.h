// Text formats such as "(@@@) @@@-@@@@".
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kel {

/// A text format of up to two sections: texts; Null and the empty text. A character is a grapheme
/// (common/text_cells.h).
///
/// Placeholders are filled from the right, and from the left when a "!" stands in the section.
/// Characters left over stand in front of everything, with "!" behind everything.
class TextPattern {
 public:
  explicit TextPattern(std::string_view format);

  void Append(std::string_view value, std::string& text) const;
  void AppendNull(std::string& text) const;

 private:
  enum class Kind : std::uint8_t { kLiteral, kCharacter };
  enum class Case : std::uint8_t { kAsItIs, kLower, kUpper };

  struct Step {
    Kind kind;
    bool fills_with_blank = false;
    std::size_t begin = 0;  // of a literal, in `literals`
    std::size_t count = 0;
  };

  struct Section {
    std::vector<Step> steps;
    std::string literals;
    std::size_t places = 0;
    Case letter_case = Case::kAsItIs;
    bool from_left = false;
    bool exists = false;
  };

  static Section Parse(std::string_view format);
  static void AppendSection(const Section& section, std::string_view value, std::string& text);
  static void AppendCharacters(Case letter_case, std::string_view characters, std::string& text);

  Section for_texts_;
  Section for_nothing_;
};

}  // namespace kel
