#include "export/sheet_texts.h"

#include <algorithm>
#include <cctype>

#include "common/names.h"
#include "common/text_cells.h"
#include "engine/page_line.h"

namespace kel {
namespace {

constexpr std::size_t kMostSheetName = 31;  // UTF-16 units
constexpr std::string_view kNotInSheetNames = "[]:*?/\\";
constexpr const char* kUntitled = "Report";
constexpr const char* kReservedName = "History";

// True when `text` begins with _xHHHH_.
bool BeginsWithEscape(std::string_view text) {
  constexpr std::size_t kEscapeSize = 7;
  return text.size() >= kEscapeSize && text[1] == 'x' && text[kEscapeSize - 1] == '_' &&
         std::all_of(text.begin() + 2, text.begin() + kEscapeSize - 1,
                     [](unsigned char c) { return std::isxdigit(c) != 0; });
}

// The first graphemes that take no more than `most` UTF-16 units.
std::string_view FitUtf16(std::string_view text, std::size_t most) {
  std::size_t bytes = 0;
  for (std::size_t units = 0; bytes < text.size();) {
    const std::size_t next = FirstGrapheme(text.substr(bytes)).bytes;
    units += Utf16Length(text.substr(bytes, next));
    if (units > most) break;
    bytes += next;
  }
  return text.substr(0, bytes);
}

}  // namespace

void ReplaceNonCharacters(std::string& text) {
  constexpr std::string_view kBegin = "\xef\xbf";
  for (std::size_t at = text.find(kBegin); at != std::string::npos;
       at = text.find(kBegin, at + 3)) {
    if (at + 2 < text.size() && static_cast<unsigned char>(text[at + 2]) >= 0xbe) {
      text[at + 2] = '\xbd';
    }
  }
}

std::string TextForXml(std::string_view text) {
  PageText page;
  AppendRawLine(page, text);
  if (page.text.empty()) return {};
  ReplaceNonCharacters(page.text);
  return page.text.substr(kGutter);
}

void AppendCellText(std::string& xml, std::string_view text) {
  for (std::size_t at = text.find("_x"); at != std::string_view::npos; at = text.find("_x", at)) {
    xml.append(text, 0, at);
    text.remove_prefix(at);
    if (BeginsWithEscape(text)) xml += "_x005F";
    xml += '_';
    text.remove_prefix(1);
    at = 0;
  }
  xml.append(text);
}

std::size_t Utf16Length(std::string_view text) {
  std::size_t units = 0;
  for (const char c : text) {
    constexpr unsigned char kFirstOfFour = 0xf0;  // bytes, for two units
    const auto byte = static_cast<unsigned char>(c);
    const bool is_first = (byte & 0xc0U) != 0x80;
    if (is_first) units += byte >= kFirstOfFour ? 2 : 1;
  }
  return units;
}

std::string SheetName(std::string_view caption, std::int32_t number) {
  std::string name = TextForXml(caption);
  std::replace_if(
      name.begin(), name.end(),
      [](char c) { return kNotInSheetNames.find(c) != std::string_view::npos; }, '_');
  std::string suffix;
  if (number > 1) suffix = " (" + std::to_string(number) + ")";
  name = FitUtf16(TrimBlanks(name), kMostSheetName - suffix.size());
  name = TrimBlanks(name);
  if (name.empty()) name = kUntitled;
  if (SameName(name, kReservedName)) name += '_';
  if (name.front() == '\'') name.front() = '_';
  if (name.back() == '\'') name.back() = '_';
  return name + suffix;
}

}  // namespace kel
