// The work files of text-mode printing.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "common/settings_store.h"
#include "engine/print_settings.h"

namespace kel {

inline constexpr std::string_view kSetUpFileName = "_kelSet1.rpt";
inline constexpr std::string_view kResetFileName = "_kelSet2.rpt";
inline constexpr std::string_view kWholeBatchName = "_kelPRT1.bat";
inline constexpr std::string_view kRangeBatchName = "_kelPRT2.bat";

/// The port of a job whose settings name none.
inline constexpr std::string_view kDefaultPort = "LPT1:";

/// Where the printer's code page is stored.
inline constexpr std::string_view kTextModeSection = "Setup\\DOS";
inline constexpr std::string_view kCodePageKey = "CodePage";

/// The section of the settings store that pairs character-set names with the decimal code that
/// follows ESC to select them, and the code of a set that is not stored: ESC "P", 10 characters
/// per inch.
inline constexpr std::string_view kCharactersSection = "Characters";
inline constexpr std::string_view kDefaultPitchCode = "80";

/// What a printer is sent before and after the pages.
struct PrinterCodes {
  std::string set_up;  // ESC "C" NUL inches: form length; ESC pitch: characters per inch
  std::string reset;   // ESC "C" NUL NUL, ESC "@"
  bool operator==(const PrinterCodes&) const = default;
};

/// The codes for a page height and the character set that `settings.font` names (ESC/P: form
/// length in inches, pitch, initialise). Throws Error 5 for a height or a stored code that is no
/// byte.
PrinterCodes CodesFor(const PrintSettings& settings, SettingsStore& store);

/// Throws Error 482 for a port whose name holds what a batch file cannot pass on: a blank, a quote,
/// "&", "%" or a control character.
void RequirePortName(std::string_view port);

/// Writes the two code files, the two batch files and, where the template `_kelPRT.kel` stands in
/// the folder, the two program information files. A blank `port` becomes "LPT1:". Throws Error, 482
/// for a bad port name before anything is written.
void BuildPrintFiles(const std::filesystem::path& folder, const PrinterCodes& codes,
                     std::string& port);

/// False when one of the code and batch files is missing or says something else.
bool PrintFilesAreCurrent(const std::filesystem::path& folder, const PrinterCodes& codes,
                          std::string_view port);

}  // namespace kel
