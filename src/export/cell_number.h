// Report texts that are numbers.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kel {

/// A number and the number format (ECMA-376, 18.8.31) that shows it as the report does.
struct CellNumber {
  double value = 0;
  std::string format;
};

/// The number that is the whole text of a cell: digits with decimals, western (1,234,567) or Indian
/// (12,34,567) group commas, a sign in front or behind. Blanks in front are not part of what the
/// format shows; a divider at the text's end, and the blanks before it, are. Nothing for any other
/// text, and for a number that a double or a number format cannot show exactly so.
std::optional<CellNumber> ReadCellNumber(std::string_view text);

}  // namespace kel
