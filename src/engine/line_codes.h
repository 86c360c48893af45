// The codes that stand inside a line, read in order, from left to right, so
// that nothing behind a code is taken for a part of it.
#pragma once

#include <cstddef>
#include <string_view>

namespace kel {

/// The code that `text` begins with: kBoldOn, kBoldOff, kUnderlineOn or kUnderlineOff; empty when
/// it begins with none.
std::string_view CodeAt(std::string_view text);

/// True when the text holds an ESC or a Chr(1).
bool MayHoldCodes(std::string_view text);

/// Removes ESC "E", ESC "F", ESC "-1", ESC "-0" and Chr(1) from the bytes at `begin`; returns how
/// many are left. Any other ESC stays.
std::size_t RemoveCodes(char* begin, std::size_t size);

/// Bytes at the end of `text` that are the beginning of a code which may be longer.
std::size_t UnfinishedCode(std::string_view text);

}  // namespace kel
