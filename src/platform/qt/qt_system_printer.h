// The system's printers through Qt.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engine/system_printer.h"

namespace kel {

/// Every printer that the system tells of, and the PDF printer behind them. Where the PDF printer
/// is given no file as its port it asks for one; without a screen to ask on that is Error 482.
class QtSystemPrinter : public SystemPrinter {
 public:
  std::vector<PrinterName> Printers() override;
  std::string DefaultPrinter() override;
  std::unique_ptr<PrinterDocument> Begin(const DocumentSettings& settings) override;
};

}  // namespace kel
