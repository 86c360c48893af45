// A printer and a port that keep what they are sent.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/printer_port.h"
#include "engine/system_printer.h"
#include "support/test_folder.h"

namespace kel::testing {

class RecordingPort : public PrinterPort {
 public:
  void Send(const PortJob& job) override {
    jobs.push_back(job);
    if (on_send) on_send();
    sent.clear();
    for (const PortJob::Part& part : job.parts) sent.push_back(ReadFile(part.file));
  }

  std::function<void()> on_send;  // may throw, as a port can
  std::vector<PortJob> jobs;
  std::vector<std::string> sent;  // the parts of the last job
};

class RecordingPrinter : public SystemPrinter {
 public:
  static constexpr double kLinesPerSheet = 10;

  std::vector<PrinterName> Printers() override { return printers; }
  std::string DefaultPrinter() override { return "office"; }
  std::unique_ptr<PrinterDocument> Begin(const DocumentSettings& settings) override {
    begun.push_back(settings);
    sheets.clear();
    ended = false;
    return gives_file ? std::make_unique<Document>(*this) : nullptr;
  }

  std::vector<PrinterName> printers = {{"office", "queue:office"}, {"LX", ""}, {"PDF", ""}};
  bool gives_file = true;
  std::function<void()> on_sheet;  // may throw, as a printer can
  std::vector<DocumentSettings> begun;
  std::vector<std::vector<PrintedLine>> sheets;  // of the last document
  bool ended = false;

 private:
  class Document : public PrinterDocument {
   public:
    explicit Document(RecordingPrinter& printer) : printer_(printer) {}
    double SheetHeight() const override { return kLinesPerSheet * LineHeight(10); }
    double LineHeight(float points) const override { return points; }
    void PrintSheet(std::span<const PrintedLine> lines) override {
      if (printer_.on_sheet) printer_.on_sheet();
      printer_.sheets.emplace_back(lines.begin(), lines.end());
    }
    void End() override { printer_.ended = true; }

   private:
    RecordingPrinter& printer_;
  };
};

}  // namespace kel::testing
