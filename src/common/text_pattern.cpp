#include "common/text_pattern.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>

#include "common/code_point.h"
#include "common/pattern_reader.h"
#include "common/text_cells.h"

namespace kel {
namespace {

std::size_t CountCharacters(std::string_view text) noexcept {
  std::size_t count = 0;
  for (; !text.empty(); ++count) text.remove_prefix(FirstGrapheme(text).bytes);
  return count;
}

std::string_view TakeCharacters(std::string_view& text, std::size_t count) noexcept {
  std::string_view rest = text;
  for (; count > 0; --count) rest.remove_prefix(FirstGrapheme(rest).bytes);
  const std::string_view taken = text.substr(0, text.size() - rest.size());
  text = rest;
  return taken;
}

}  // namespace

TextPattern::TextPattern(std::string_view format) : for_texts_(Parse(TakeSection(format))) {
  for_nothing_ = Parse(TakeSection(format));
}

TextPattern::Section TextPattern::Parse(std::string_view format) {
  Section section;
  section.exists = !format.empty();
  PatternReader reader(format);
  while (!reader.AtEnd()) {
    const std::size_t begin = section.literals.size();
    if (!reader.TakeQuoted(section.literals)) {
      const char c = reader.Take();
      if (c == '@' || c == '&') {
        section.steps.push_back({Kind::kCharacter, c == '@'});
        ++section.places;
      } else if (c == '<' || c == '>') {
        section.letter_case = c == '<' ? Case::kLower : Case::kUpper;
      } else if (c == '!') {
        section.from_left = true;
      } else {
        section.literals += c;
      }
    }
    const std::size_t count = section.literals.size() - begin;
    if (count > 0) section.steps.push_back({Kind::kLiteral, false, begin, count});
  }
  return section;
}

void TextPattern::Append(std::string_view value, std::string& text) const {
  const bool is_nothing = value.empty() && for_nothing_.exists;
  AppendSection(is_nothing ? for_nothing_ : for_texts_, value, text);
}

void TextPattern::AppendNull(std::string& text) const {
  if (for_nothing_.exists) AppendSection(for_nothing_, {}, text);
}

void TextPattern::AppendSection(const Section& section, std::string_view value, std::string& text) {
  const std::size_t characters = CountCharacters(value);
  const std::size_t filled = std::min(characters, section.places);
  const std::size_t left_over = characters - filled;
  const std::size_t first_filled = section.from_left ? 0 : section.places - filled;
  if (!section.from_left) {
    AppendCharacters(section.letter_case, TakeCharacters(value, left_over), text);
  }
  std::size_t place = 0;
  for (const Step& step : section.steps) {
    if (step.kind == Kind::kLiteral) {
      text.append(section.literals, step.begin, step.count);
      continue;
    }
    if (place >= first_filled && place < first_filled + filled) {
      AppendCharacters(section.letter_case, TakeCharacters(value, 1), text);
    } else if (step.fills_with_blank) {
      text += ' ';
    }
    ++place;
  }
  AppendCharacters(section.letter_case, value, text);
}

void TextPattern::AppendCharacters(Case letter_case, std::string_view characters,
                                   std::string& text) {
  if (letter_case == Case::kAsItIs) {
    text += characters;
    return;
  }
  while (!characters.empty()) {
    const CodePoint first = FirstCodePoint(characters);
    if (first.IsValid()) {
      const std::int32_t changed = letter_case == Case::kLower ? utf8proc_tolower(first.value)
                                                               : utf8proc_toupper(first.value);
      std::array<utf8proc_uint8_t, 4> bytes{};
      const utf8proc_ssize_t count = utf8proc_encode_char(changed, bytes.data());
      text.append(bytes.begin(), bytes.begin() + count);
    } else {
      text += characters[0];
    }
    characters.remove_prefix(first.bytes);
  }
}

}  // namespace kel
