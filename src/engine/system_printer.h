// The system's printers.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/print_settings.h"

namespace kel {

/// A printer that a document can be sent to.
struct PrinterName {
  std::string device;
  std::string port;  // what text mode reaches it through, "queue:office"; empty when it cannot be
};

/// The printer that is always there and makes a PDF file of what it prints.
inline constexpr std::string_view kPdfPrinter = "PDF";

/// What a document is printed with. A font that is not installed is replaced by the system's
/// nearest one.
struct DocumentSettings {
  std::string device;  // one of Printers(); empty: the default printer
  /// Where the PDF printer puts its file, when it ends in ".pdf"; otherwise it asks. Other printers
  /// know their own.
  std::string port;
  std::string title;
  bool portrait = true;
  std::string font;
  FontFlags font_flags;
  std::int32_t fore_color = 0;  // OLE colour
  float page_width = 0;         // inches, upright; only the PDF printer has its paper from them
  float page_height = 0;
};

/// One line in one look.
struct PrintedLine {
  std::string text;
  float points = 0;  // size of its font
  bool bold = false;
};

/// A document on its way to a printer, from its beginning to its end. One that is destroyed before
/// End is cancelled: nothing is left of it where the printer can take it back.
class PrinterDocument {
 public:
  virtual ~PrinterDocument() = default;

  /// The height that a sheet has for lines, and the height of a line, both in points.
  virtual double SheetHeight() const = 0;
  virtual double LineHeight(float points) const = 0;
  /// Prints one sheet, line below line from its top. Lines too many or too wide for it are drawn
  /// smaller, all of the sheet alike: nothing falls off the paper. No lines make an empty sheet.
  virtual void PrintSheet(std::span<const PrintedLine> lines) = 0;
  /// Ends the document: it goes to the printer as it stands.
  virtual void End() = 0;
};

/// The printers of this computer. Calls come on the thread of the job. Throws Error 482 when a
/// printer cannot be reached or refuses, and what the disk says when a document cannot be kept.
class SystemPrinter {
 public:
  virtual ~SystemPrinter() = default;

  /// In the system's order; the PDF printer last.
  virtual std::vector<PrinterName> Printers() = 0;
  /// The device name of the default printer; empty when there is none.
  virtual std::string DefaultPrinter() = 0;
  /// Null when the user was asked for a file and gave none.
  virtual std::unique_ptr<PrinterDocument> Begin(const DocumentSettings& settings) = 0;
};

}  // namespace kel
