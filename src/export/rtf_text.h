// Text as Rich Text Format (1.9.1) writes it.
#pragma once

#include <string>
#include <string_view>

namespace kel {

/// How the second of two blanks is written. Where two follow each other, LibreOffice reads a
/// four-per-em space and a blank in any font but Courier New; blanks kept apart stay blanks.
enum class BlankRuns { kAsTheyAre, kApart };

/// Appends UTF-8 as ASCII. A byte that is no UTF-8, and a character that would end the line or is
/// none (controls, separators, noncharacters), is U+FFFD.
void AppendRtfText(std::string& rtf, std::string_view text, BlankRuns blanks);

/// Appends a control word and its number: \fs20.
void AppendRtfControl(std::string& rtf, std::string_view word, long number);

}  // namespace kel
