#include "engine/print_files.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "common/control_codes.h"
#include "common/error.h"
#include "common/file.h"
#include "common/numeric_value.h"
#include "common/text_cells.h"
#include "engine/page_format.h"

namespace kel {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kTemplateName = "_kelPRT.kel";
constexpr std::array<std::string_view, 2> kProgramInformation = {"_kelPRT1.pif", "_kelPRT2.pif"};

// The character of that number (Chr).
char Character(double number, std::string_view what) {
  const double code = std::nearbyint(number);
  if (!(code >= 0 && code <= std::numeric_limits<unsigned char>::max())) {
    throw Error(error_number::kInvalidProcedureCall,
                std::string(what) + " is not between 0 and 255");
  }
  return static_cast<char>(static_cast<unsigned char>(code));
}

bool MayStandInPort(char c) {
  constexpr std::string_view kRefused = " \"'`&%";
  constexpr char kDelete = '\x7f';
  return static_cast<unsigned char>(c) >= ' ' && c != kDelete &&
         kRefused.find(c) == std::string_view::npos;
}

std::string Quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

std::string TypeLine(const fs::path& file, std::string_view port) {
  return "Type " + Quoted(file.string()) + " > " + Quoted(port) + std::string(kLineEnd);
}

std::string Batch(const fs::path& folder, std::string_view pages, std::string_view port) {
  return "CD\\" + std::string(kLineEnd) + TypeLine(folder / kSetUpFileName, port) +
         TypeLine(folder / pages, port) + TypeLine(folder / kResetFileName, port);
}

using Contents = std::vector<std::pair<fs::path, std::string>>;

Contents PrintFiles(const fs::path& folder, const PrinterCodes& codes, std::string_view port) {
  return {{folder / kSetUpFileName, codes.set_up},
          {folder / kResetFileName, codes.reset},
          {folder / kWholeBatchName, Batch(folder, kPageFileName, port)},
          {folder / kRangeBatchName, Batch(folder, kPageRangeFileName, port)}};
}

void WriteWhole(const fs::path& path, std::string_view bytes) {
  OutputFile file(path, Links::kRefuse);
  file.Write(bytes);
  file.Commit();
}

bool Holds(const fs::path& path, std::string_view bytes) {
  try {
    const InputFile file(path, Links::kRefuse);
    if (file.Size() != bytes.size()) return false;
    std::string held(bytes.size(), '\0');
    return file.ReadAt(0, held) == held.size() && held == bytes;
  } catch (const Error&) {
    return false;
  }
}

}  // namespace

PrinterCodes CodesFor(const PrintSettings& settings, SettingsStore& store) {
  const std::string pitch = store.Read(kCharactersSection, settings.font, kDefaultPitchCode);
  const char length = Character(settings.page_height, "the page height in inches");
  const char code = Character(ExVal(pitch), "the code of the character set " + settings.font);
  return {{kEsc, 'C', '\0', length, kEsc, code}, {kEsc, 'C', '\0', '\0', kEsc, '@'}};
}

void RequirePortName(std::string_view port) {
  if (std::all_of(port.begin(), port.end(), MayStandInPort)) return;
  throw Error(error_number::kPrinterError,
              "cannot print to the port \"" + std::string(port) +
                  "\": its name holds a blank, a quote, &, % or a control character");
}

void BuildPrintFiles(const fs::path& folder, const PrinterCodes& codes, std::string& port) {
  if (TrimBlanks(port).empty()) port = kDefaultPort;
  RequirePortName(port);
  for (const auto& [path, bytes] : PrintFiles(folder, codes, port)) WriteWhole(path, bytes);
  for (const std::string_view name : kProgramInformation) {
    std::error_code ignored;  // the batch files run without them too
    fs::copy_file(folder / kTemplateName, folder / name, fs::copy_options::overwrite_existing,
                  ignored);
  }
}

bool PrintFilesAreCurrent(const fs::path& folder, const PrinterCodes& codes,
                          std::string_view port) {
  const std::string_view used = TrimBlanks(port).empty() ? kDefaultPort : port;
  for (const auto& [path, bytes] : PrintFiles(folder, codes, used)) {
    if (!Holds(path, bytes)) return false;
  }
  return true;
}

}  // namespace kel
