#include "platform/qt/qt_printer_document.h"

#include <QFile>
#include <QPageLayout>
#include <algorithm>
#include <filesystem>
#include <system_error>

#include "common/error.h"
#include "platform/qt/print_queue.h"

namespace kel {
namespace {

#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
constexpr bool kPrintsFiles = true;
#else
constexpr bool kPrintsFiles = false;
#endif

constexpr double kPointsPerInch = 72;

// A PDF file names the place of its cross-reference table at its end (ISO 32000-1, 7.5.5). Where
// writing failed on the way, the table is not there.
bool IsWholePdf(QFile& file) {
  constexpr qint64 kTail = 64;
  if (!file.open(QIODevice::ReadOnly)) return false;
  file.seek(std::max<qint64>(0, file.size() - kTail));
  const QByteArray tail = file.readAll().trimmed();
  if (!tail.endsWith("%%EOF")) return false;
  const QList<QByteArray> lines = tail.split('\n');
  if (lines.size() < 2) return false;
  bool is_number = false;
  const qint64 table = lines.at(lines.size() - 2).toLongLong(&is_number);
  return is_number && file.seek(table) && file.read(4) == "xref";
}

QStringList QueueOptions(const QPrinter& printer) {
  const QPageLayout layout = printer.pageLayout();
  QStringList options{QStringLiteral("media=") + layout.pageSize().key()};
  if (layout.orientation() == QPageLayout::Landscape) options << QStringLiteral("landscape");
  return options;
}

}  // namespace

QtPrinterDocument::QtPrinterDocument(const QPrinterInfo& printer, const DocumentSettings& settings)
    : name_(printer.printerName().toStdString()), printer_(printer, QPrinter::HighResolution) {
  if (!printer_.isValid() || printer_.outputFormat() != QPrinter::NativeFormat) {
    Fail("cannot be reached");
  }
  printer_.setDocName(QString::fromStdString(settings.title));
  SetPaper(printer, settings.portrait);
  if (kPrintsFiles) SpoolToFile();
  sheets_ = std::make_unique<SheetPainter>(settings, printer_.resolution());
  if (!painter_.begin(&printer_)) Fail("cannot begin a document");
}

// Cancels what has not ended.
QtPrinterDocument::~QtPrinterDocument() {
  if (!painter_.isActive()) return;
  printer_.abort();
  painter_.end();
}

void QtPrinterDocument::SetPaper(const QPrinterInfo& printer, bool portrait) {
  const QPageSize paper = printer.defaultPageSize();
  if (paper.isValid()) printer_.setPageSize(paper);
  printer_.setPageOrientation(portrait ? QPageLayout::Portrait : QPageLayout::Landscape);
}

void QtPrinterDocument::SpoolToFile() {
  std::error_code failure;  // Qt would take the current folder for one that is not there
  const std::filesystem::path folder = std::filesystem::temp_directory_path(failure);
  if (failure) throw Error::FromSystem(failure.value(), "cannot print: no folder for the document");
  spool_ = std::make_unique<QTemporaryFile>(QString::fromStdU16String(folder.u16string()) +
                                            QStringLiteral("/keldll-XXXXXX"));
  if (!spool_->open()) {
    throw Error(error_number::kPermissionDenied, "cannot write into " + folder.string() + ": " +
                                                     spool_->errorString().toStdString());
  }
  spool_->close();
  printer_.setOutputFileName(spool_->fileName());
}

double QtPrinterDocument::SheetHeight() const {
  return printer_.pageLayout().paintRect(QPageLayout::Point).height();
}

double QtPrinterDocument::LineHeight(float points) const {
  return sheets_->LineHeight(points) * kPointsPerInch / printer_.resolution();
}

void QtPrinterDocument::PrintSheet(std::span<const PrintedLine> lines) {
  if (!first_ && !printer_.newPage()) Fail("does not begin a new page");
  first_ = false;
  sheets_->Draw(painter_, printer_.pageLayout().paintRectPixels(printer_.resolution()).size(),
                lines);
  CheckState();
}

void QtPrinterDocument::End() {
  if (!painter_.end()) Fail("cannot end the document");
  CheckState();
  if (spool_ != nullptr) SendSpooled();
}

void QtPrinterDocument::CheckState() const {
  switch (printer_.printerState()) {
    case QPrinter::Error:
      Fail("reports an error");
    case QPrinter::Aborted:
      Fail("gave the document up");
    case QPrinter::Idle:
    case QPrinter::Active:
      break;
  }
}

void QtPrinterDocument::SendSpooled() const {
  QFile document(spool_->fileName());
  if (!IsWholePdf(document)) {
    throw Error(error_number::kDiskFull, "cannot write all of " +
                                             document.fileName().toStdString() +
                                             ", the document for the printer " + name_);
  }
  SendToQueue(document.fileName(), printer_.printerName(), printer_.docName(),
              QueueOptions(printer_));
}

void QtPrinterDocument::Fail(const char* what) const {
  throw Error(error_number::kPrinterError, "the printer " + name_ + " " + what +
                                               ": see whether it is switched on, connected " +
                                               "and set up in the system, then print again");
}

}  // namespace kel
