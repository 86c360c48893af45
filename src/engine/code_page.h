// The character tables of text-mode printers.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kel {

/// Turns report text into the bytes of a printer's character table.
///
/// ASCII and control codes stay. A character of the table becomes its byte; any other "?", once for
/// each cell it takes, so that columns stay in line. Composed and decomposed letters are the same.
/// Bytes that are not valid UTF-8 pass unchanged.
class CodePage {
 public:
  /// "CP437", "CP850", "CP858", "CP1252" (as in the Unicode consortium's mapping tables), in any
  /// case; "" and "none" leave every byte as it is. Throws Error 5 for another name.
  explicit CodePage(std::string_view name);

  bool IsNone() const { return bytes_.empty(); }
  /// Appends the bytes of one line to `out`.
  void AppendEncoded(std::string& out, std::string_view line) const;

  /// The names that there are, "none" first.
  static std::array<std::string_view, 5> Names();

 private:
  void AppendGrapheme(std::string& out, std::string_view grapheme, int cells) const;

  std::vector<std::pair<char32_t, char>> bytes_;  // ordered by code point
};

}  // namespace kel
