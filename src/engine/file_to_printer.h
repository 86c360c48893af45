// Printing a page file through the system's printer.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "common/file.h"
#include "engine/print_settings.h"
#include "engine/system_printer.h"

namespace kel {

/// Prints a page file, or any text file, on the printer that `settings` name, else on the default
/// one, as a document of that title. Size and bold hold for a whole line: the first size code found
/// in it (of "-8", "-10" to
/// "-26", in this order), and bold with an ESC "E" anywhere. A line with a Chr(12) ends its page.
/// A configured size that is no size is 10. Codes are removed as StripCodes does. A file without
/// Chr(12) flows from sheet to sheet.
///
/// `next_sheet` is asked before each sheet; False stops. True when the whole file was sent, False
/// when it was stopped or the user gave the PDF printer no file: nothing is printed then. Throws
/// Error when the file cannot be read or the printer fails, 5 for a size that no page has room for.
bool PrintThroughSystem(const std::filesystem::path& file, Links links, const std::string& title,
                        const PrintSettings& settings, SystemPrinter& printer,
                        const std::function<bool()>& next_sheet);

}  // namespace kel
