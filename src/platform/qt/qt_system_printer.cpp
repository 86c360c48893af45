#include "platform/qt/qt_system_printer.h"

#include <QApplication>
#include <QFileDialog>
#include <QPrinterInfo>
#include <filesystem>
#include <string_view>

#include "common/error.h"
#include "engine/printer_port.h"
#include "export/pdf_printer.h"
#include "platform/qt/qt_application.h"
#include "platform/qt/qt_printer_document.h"

namespace kel {
namespace {

namespace fs = std::filesystem;

constexpr QLatin1String kPdfEnding(".pdf");

[[noreturn]] void Fail(const std::string& description) {
  throw Error(error_number::kPrinterError, description);
}

// Printers and fonts belong to the application object, whoever made it.
void NeedApplication() {
  if (EnsureApplication()) return;
  if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr) return;
  Fail("the system's printers need a program with a QGuiApplication, made on its main thread");
}

std::string PortOf(const QString& device) {
#ifdef Q_OS_WIN
  return {};  // not told
#else
  return std::string(kQueuePrefix) + device.toStdString();
#endif
}

bool NamesPdfFile(const QString& port) {
  return port.size() > kPdfEnding.size() && port.endsWith(kPdfEnding, Qt::CaseInsensitive);
}

// Empty when the user gives none.
QString AskForFile(const QString& title) {
  if (!CanShowWindows()) {
    Fail("the PDF printer needs a file: give the path of a .pdf file as the port");
  }
  QFileDialog dialog(QApplication::activeWindow(), QObject::tr("Print to PDF"));
  dialog.setObjectName(QStringLiteral("PrintToPdf"));
  dialog.setAttribute(Qt::WA_QuitOnClose, false);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setNameFilter(QObject::tr("PDF Document (*.pdf)"));
  dialog.setDefaultSuffix(QStringLiteral("pdf"));
  QString suggested = title.isEmpty() ? QStringLiteral("Report") : title;
  dialog.selectFile(suggested.replace(QLatin1Char('/'), QLatin1Char('-')) + kPdfEnding);
  if (dialog.exec() != QDialog::Accepted) return {};
  return dialog.selectedFiles().value(0);
}

std::unique_ptr<PrinterDocument> BeginPdf(const DocumentSettings& settings) {
  QString file = QString::fromStdString(settings.port);
  if (!NamesPdfFile(file)) file = AskForFile(QString::fromStdString(settings.title));
  if (file.isEmpty()) return nullptr;
  return BeginPdfDocument(fs::path(file.toStdU16String()), settings);
}

}  // namespace

std::vector<PrinterName> QtSystemPrinter::Printers() {
  NeedApplication();
  std::vector<PrinterName> printers;
  for (const QString& device : QPrinterInfo::availablePrinterNames()) {
    // A printer of the system that makes files itself and has our name would never be reached.
    if (device.toStdString() == kPdfPrinter) continue;
    printers.push_back({device.toStdString(), PortOf(device)});
  }
  printers.push_back({std::string(kPdfPrinter), {}});
  return printers;
}

std::string QtSystemPrinter::DefaultPrinter() {
  NeedApplication();
  return QPrinterInfo::defaultPrinterName().toStdString();
}

std::unique_ptr<PrinterDocument> QtSystemPrinter::Begin(const DocumentSettings& settings) {
  if (settings.device == kPdfPrinter) return BeginPdf(settings);
  NeedApplication();
  const std::string device = settings.device.empty() ? DefaultPrinter() : settings.device;
  if (device.empty()) {
    Fail(
        "there is no default printer: see whether the print server runs, choose a default printer "
        "in the system, or choose a printer, such as " +
        std::string(kPdfPrinter) + ", in the setup");
  }
  const QPrinterInfo printer = QPrinterInfo::printerInfo(QString::fromStdString(device));
  if (printer.isNull()) {
    Fail("the printer " + device + " is not there: see whether it is set up in the system and " +
         "the print server runs, or choose another one in the setup");
  }
  return std::make_unique<QtPrinterDocument>(printer, settings);
}

}  // namespace kel
