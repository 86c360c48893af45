// The control codes inside report lines, and the code remover.
#pragma once

#include <string>
#include <string_view>

namespace kel {

inline constexpr char kEsc = '\x1b';
inline constexpr char kTitleMark = '\x01';  // first character of a line that needs code handling
inline constexpr char kFormFeed = '\x0c';   // alone on the last line of every page

inline constexpr std::string_view kBoldOn = "\033E";
inline constexpr std::string_view kBoldOff = "\033F";
inline constexpr std::string_view kUnderlineOn = "\x1b-1";
inline constexpr std::string_view kUnderlineOff = "\x1b-0";

enum class TitleMark { kKeep, kRemove };

/// Deletes every occurrence of, in this order, ESC "E", ESC "F", ESC "-26", "-24", ... "-8",
/// ESC "-1", ESC "-0" and, when asked, Chr(1). Each code is deleted from what the one before it
/// left, so an underlined 2,500 loses its 2 (ESC "-1" and "2" read as ESC "-12"); printing and
/// text export are published to do so.
std::string StripCodes(std::string_view line, TitleMark mark);

/// The same, within the caller's buffer.
void StripCodesInPlace(std::string& line, TitleMark mark);

}  // namespace kel
