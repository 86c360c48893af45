#include "engine/file_to_printer.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/control_codes.h"
#include "common/error.h"
#include "common/file.h"
#include "common/number_text.h"
#include "engine/page_file_reader.h"

namespace kel {
namespace {

constexpr std::string_view kHeadingMark =
    "\x1b\x1b\x1b"
    "E";
constexpr float kHeadingPoints = 14;

struct SizeCode {
  std::string_view code;
  float points;
};
// The order is published: an underlined cell that begins with a zero reads as size 10.
constexpr std::array<SizeCode, 10> kSizeCodes = {{{"\x1b-8", 8},
                                                  {"\x1b-10", 10},
                                                  {"\x1b-12", 12},
                                                  {"\x1b-14", 14},
                                                  {"\x1b-16", 16},
                                                  {"\x1b-18", 18},
                                                  {"\x1b-20", 20},
                                                  {"\x1b-22", 22},
                                                  {"\x1b-24", 24},
                                                  {"\x1b-26", 26}}};

// Where none is set: text mode has no size of its own.
constexpr float kDefaultPoints = 10;
constexpr float kMostPoints = 1638;  // as font dialogs have it

// No paper shows more of a line.
constexpr std::size_t kMostLineBytes = std::size_t{1} << 16;
// A page with more lines than can be drawn at half their size goes on on a further sheet.
constexpr double kSmallestDrawing = 0.5;

bool Holds(std::string_view line, std::string_view code) {
  return line.find(code) != std::string_view::npos;
}

PrintedLine Styled(std::string_view line, bool first, float configured_points) {
  if (line.find(kEsc) == std::string_view::npos) {
    return {StripCodes(line, TitleMark::kRemove), configured_points, false};
  }
  if (first && Holds(line, kHeadingMark)) {
    return {StripCodes(line, TitleMark::kRemove), kHeadingPoints, true};
  }
  const auto* const size =
      std::find_if(kSizeCodes.begin(), kSizeCodes.end(),
                   [&](const SizeCode& entry) { return Holds(line, entry.code); });
  const float points = size == kSizeCodes.end() ? configured_points : size->points;
  return {StripCodes(line, TitleMark::kRemove), points, Holds(line, kBoldOn)};
}

bool HoldsFormFeed(const std::filesystem::path& file) {
  constexpr std::size_t kBlock = std::size_t{1} << 18;
  InputFile input(file);
  std::vector<char> block(kBlock);
  while (const std::size_t count = input.Read(block)) {
    if (std::find(block.data(), block.data() + count, kFormFeed) != block.data() + count) {
      return true;
    }
  }
  return false;
}

float Points(const PrintSettings& settings) {
  if (!(settings.font_size > 0)) return kDefaultPoints;
  if (settings.font_size <= kMostPoints) return settings.font_size;
  throw Error(error_number::kInvalidProcedureCall,
              "cannot print at a font size of " + NumberText(settings.font_size) + ": at most " +
                  NumberText(kMostPoints) + " points are possible");
}

// The first printer of that name; where there is none, the default one.
std::string Chosen(const std::string& device, SystemPrinter& printer) {
  if (device == kPdfPrinter) return device;  // it is there though no print server answers
  const std::vector<PrinterName> printers = printer.Printers();
  const bool there =
      std::any_of(printers.begin(), printers.end(),
                  [&](const PrinterName& candidate) { return candidate.device == device; });
  return there ? device : std::string();
}

DocumentSettings DocumentOf(const std::string& title, const PrintSettings& settings) {
  DocumentSettings document;
  document.port = settings.port;
  document.title = title;
  document.portrait = settings.portrait;
  document.font = settings.font;
  document.font_flags = settings.font_flags;
  document.fore_color = settings.fore_color;
  document.page_width = settings.page_width;
  document.page_height = settings.page_height;
  return document;
}

// The lines of a document on their way to its sheets.
class SheetFiller {
 public:
  SheetFiller(PrinterDocument& document, const std::function<bool()>& next_sheet, bool flows)
      : document_(document),
        next_sheet_(next_sheet),
        room_(document.SheetHeight() / (flows ? 1 : kSmallestDrawing)) {}

  // Each is false when the user has stopped.
  bool Add(PrintedLine line) {
    const double height = HeightOf(line.points);
    if (!lines_.empty() && height_ + height > room_ && !EndSheet()) return false;
    height_ += height;
    lines_.push_back(std::move(line));
    return true;
  }
  bool EndSheet() {
    if (!next_sheet_()) return false;
    document_.PrintSheet(lines_);
    lines_.clear();
    height_ = 0;
    return true;
  }
  // What is left when the file ends; there is no empty sheet behind the last form feed.
  bool EndFile() { return lines_.empty() || EndSheet(); }

 private:
  double HeightOf(float points) {
    if (!known_ || known_->first != points) known_ = {points, document_.LineHeight(points)};
    return known_->second;
  }

  PrinterDocument& document_;
  const std::function<bool()>& next_sheet_;
  double room_;
  double height_ = 0;
  std::vector<PrintedLine> lines_;
  std::optional<std::pair<float, double>> known_;  // the size asked for last, and its height
};

bool Fill(PageFileReader& reader, SheetFiller& sheets, float points) {
  std::string_view line;
  for (bool first = true; reader.NextLineStart(line, kMostLineBytes); first = false) {
    const bool ends_page = line.find(kFormFeed) != std::string_view::npos;
    if (!(ends_page ? sheets.EndSheet() : sheets.Add(Styled(line, first, points)))) return false;
  }
  return sheets.EndFile();
}

}  // namespace

bool PrintThroughSystem(const std::filesystem::path& file, Links links, const std::string& title,
                        const PrintSettings& settings, SystemPrinter& printer,
                        const std::function<bool()>& next_sheet) {
  PageFileReader reader(file, links);
  const float points = Points(settings);
  const bool flows = !HoldsFormFeed(file);
  DocumentSettings chosen = DocumentOf(title, settings);
  chosen.device = Chosen(settings.printer_device, printer);
  const std::unique_ptr<PrinterDocument> document = printer.Begin(chosen);
  if (!document) return false;
  SheetFiller sheets(*document, next_sheet, flows);
  if (!Fill(reader, sheets, points)) return false;
  document->End();
  return true;
}

}  // namespace kel
