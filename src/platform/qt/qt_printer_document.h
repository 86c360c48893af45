// A document on its way to one of the system's printers.
#pragma once

#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QTemporaryFile>
#include <memory>
#include <span>
#include <string>

#include "engine/system_printer.h"
#include "platform/qt/sheet_painter.h"

namespace kel {

/// Paper is the printer's own, turned as the settings say; a sheet is what the printer can reach of
/// it.
class QtPrinterDocument : public PrinterDocument {
 public:
  QtPrinterDocument(const QPrinterInfo& printer, const DocumentSettings& settings);
  ~QtPrinterDocument() override;
  QtPrinterDocument(const QtPrinterDocument&) = delete;
  QtPrinterDocument& operator=(const QtPrinterDocument&) = delete;

  double SheetHeight() const override;
  double LineHeight(float points) const override;
  void PrintSheet(std::span<const PrintedLine> lines) override;
  void End() override;

 private:
  void SetPaper(const QPrinterInfo& printer, bool portrait);
  void SpoolToFile();
  void CheckState() const;
  void SendSpooled() const;
  [[noreturn]] void Fail(const char* what) const;

  std::string name_;
  QPrinter printer_;
  // Where the print system takes whole files the document is made into one, which it gets at the
  // end. Left to itself Qt does so too, but it can neither call such a document back nor tell when
  // it was refused or could not be written.
  std::unique_ptr<QTemporaryFile> spool_;
  std::unique_ptr<SheetPainter> sheets_;
  QPainter painter_;
  bool first_ = true;
};

}  // namespace kel
