// Texts as the XML of a workbook can hold them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kel {

/// The longest text of a cell, in UTF-16 units.
inline constexpr std::size_t kMostCellText = 32767;

/// Puts U+FFFD where UTF-8 text holds U+FFFE or U+FFFF, which XML cannot have.
void ReplaceNonCharacters(std::string& text);

/// A text of any bytes as one line of UTF-8 that XML can have.
std::string TextForXml(std::string_view text);

/// Appends a cell's text so that a reader who takes "_x0041_" for the character 0x41 (ECMA-376,
/// 22.9.2.19) gets the text as it is. REQUIRES text that XML can have.
void AppendCellText(std::string& xml, std::string_view text);

/// UTF-16 units of UTF-8 text.
std::size_t Utf16Length(std::string_view text);

/// The name of a report's sheet number `number`, counted from 1: the caption as far as the name of
/// a sheet can hold it, with the number behind it on the second and later ones.
std::string SheetName(std::string_view caption, std::int32_t number);

}  // namespace kel
