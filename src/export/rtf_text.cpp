#include "export/rtf_text.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "common/code_point.h"

namespace kel {
namespace {

constexpr std::string_view kBlankApart = "\\u32?";
constexpr utf8proc_int32_t kReplacement = 0xFFFD;
constexpr utf8proc_int32_t kFirstOfTwoUnits = 0x10000;

// Printable ASCII that stands for itself, blanks left out.
constexpr std::array<bool, 256> kStandsForItself = [] {
  std::array<bool, 256> plain{};
  for (unsigned char c = '!'; c <= '~'; ++c) plain[c] = c != '\\' && c != '{' && c != '}';
  return plain;
}();

bool IsText(utf8proc_int32_t character) {
  switch (utf8proc_category(character)) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
      return false;
    default:  // Unicode 23.7: noncharacters
      return (character < 0xFDD0 || character > 0xFDEF) && (character & 0xFFFE) != 0xFFFE;
  }
}

void AppendUnit(std::string& rtf, std::int32_t unit) {
  AppendRtfControl(rtf, "\\u", static_cast<std::int16_t>(unit));
  rtf.push_back('?');
}

// Appends the first character of a text; returns its bytes.
std::size_t AppendCharacter(std::string& rtf, std::string_view text) {
  const CodePoint first = FirstCodePoint(text);
  const std::int32_t character =
      first.IsValid() && IsText(first.value) ? first.value : kReplacement;
  if (character == '\\' || character == '{' || character == '}') {
    rtf.push_back('\\');
    rtf.push_back(static_cast<char>(character));
  } else if (character < kFirstOfTwoUnits) {
    AppendUnit(rtf, character);
  } else {
    AppendUnit(rtf, 0xD800 + ((character - kFirstOfTwoUnits) >> 10));
    AppendUnit(rtf, 0xDC00 + ((character - kFirstOfTwoUnits) & 0x3FF));
  }
  return first.bytes;
}

void AppendBlanks(std::string& rtf, std::size_t count, BlankRuns blanks) {
  if (blanks == BlankRuns::kAsTheyAre) {
    rtf.append(count, ' ');
    return;
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (rtf.ends_with(' ')) {
      rtf += kBlankApart;
    } else {
      rtf.push_back(' ');
    }
  }
}

}  // namespace

void AppendRtfText(std::string& rtf, std::string_view text, BlankRuns blanks) {
  for (std::size_t done = 0; done < text.size();) {
    std::size_t end = done;
    while (end < text.size() && kStandsForItself[static_cast<unsigned char>(text[end])]) ++end;
    rtf.append(text, done, end - done);
    done = end;
    while (end < text.size() && text[end] == ' ') ++end;
    AppendBlanks(rtf, end - done, blanks);
    done = end;
    if (done < text.size() && !kStandsForItself[static_cast<unsigned char>(text[done])]) {
      done += AppendCharacter(rtf, text.substr(done));
    }
  }
}

void AppendRtfControl(std::string& rtf, std::string_view word, long number) {
  rtf += word;
  rtf += std::to_string(number);
}

}  // namespace kel
