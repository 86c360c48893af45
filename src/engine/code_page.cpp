#include "engine/code_page.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "common/control_codes.h"
#include "common/error.h"
#include "common/names.h"
#include "common/text_cells.h"

namespace kel {
namespace {

constexpr unsigned kFirstByte = 0x80;
using CodePoints = std::array<std::uint16_t, 128>;

#include "engine/code_page_tables.inc"

struct Table {
  std::string_view name;
  const CodePoints* points;  // null for no conversion
};
constexpr std::array<Table, 5> kTables = {{{"none", nullptr},
                                           {"CP437", &kCp437},
                                           {"CP850", &kCp850},
                                           {"CP858", &kCp858},
                                           {"CP1252", &kCp1252}}};

// The code point of a grapheme that is, or composes to, a single one; 0 otherwise.
char32_t SinglePoint(std::string_view grapheme) {
  utf8proc_uint8_t* composed = nullptr;
  const utf8proc_ssize_t size =
      utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(grapheme.data()),
                   static_cast<utf8proc_ssize_t>(grapheme.size()), &composed,
                   static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE));
  const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(composed, &std::free);
  if (size <= 0) return 0;
  utf8proc_int32_t point = 0;
  return utf8proc_iterate(composed, size, &point) == size ? static_cast<char32_t>(point) : 0;
}

// ESC and a letter, or ESC, "-" and a digit.
bool EndsInCode(std::string_view text) {
  const auto is = [&](std::size_t from_end, char c) {
    return text.size() >= from_end && text[text.size() - from_end] == c;
  };
  return is(1, kEsc) || is(2, kEsc) || (is(2, '-') && is(3, kEsc));
}

}  // namespace

CodePage::CodePage(std::string_view name) {
  const std::string_view wanted = name.empty() ? kTables.front().name : name;
  const auto* const table = std::find_if(kTables.begin(), kTables.end(), [&](const Table& entry) {
    return SameName(entry.name, wanted);
  });
  if (table == kTables.end()) {
    throw Error(error_number::kInvalidProcedureCall,
                "there is no code page " + std::string(name) +
                    "; there are none, CP437, CP850, CP858 and CP1252");
  }
  if (table->points == nullptr) return;
  for (std::size_t i = 0; i < table->points->size(); ++i) {
    const char32_t point = (*table->points)[i];
    if (point != 0) bytes_.emplace_back(point, static_cast<char>(kFirstByte + i));
  }
  std::sort(bytes_.begin(), bytes_.end());
}

std::array<std::string_view, 5> CodePage::Names() {
  std::array<std::string_view, 5> names;
  for (std::size_t i = 0; i < names.size(); ++i) names[i] = kTables[i].name;
  return names;
}

void CodePage::AppendEncoded(std::string& out, std::string_view line) const {
  if (IsNone()) {
    out.append(line);
    return;
  }
  while (!line.empty()) {
    const auto* const ascii_end = std::find_if(line.begin(), line.end(), [](char c) {
      return static_cast<unsigned char>(c) >= kFirstByte;
    });
    auto plain = static_cast<std::size_t>(ascii_end - line.begin());
    // A letter before a combining mark belongs to the grapheme; the last character of a code does
    // not.
    if (plain > 0 && plain < line.size() && !EndsInCode(line.substr(0, plain))) --plain;
    out.append(line.substr(0, plain));
    line.remove_prefix(plain);
    if (line.empty()) return;
    const TextPiece grapheme = FirstGrapheme(line);
    AppendGrapheme(out, line.substr(0, grapheme.bytes), grapheme.cells);
    line.remove_prefix(grapheme.bytes);
  }
}

void CodePage::AppendGrapheme(std::string& out, std::string_view grapheme, int cells) const {
  // ASCII, or what is no UTF-8.
  if (grapheme.size() == 1) {
    out.append(grapheme);
    return;
  }
  const char32_t point = SinglePoint(grapheme);
  const auto found = std::lower_bound(
      bytes_.begin(), bytes_.end(), std::pair(point, '\0'),
      [](const auto& left, const auto& right) { return left.first < right.first; });
  if (point != 0 && found != bytes_.end() && found->first == point) {
    out.push_back(found->second);
  } else {
    out.append(static_cast<std::size_t>(std::max(cells, 0)), '?');
  }
}

}  // namespace kel
