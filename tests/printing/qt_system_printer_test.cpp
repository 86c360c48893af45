#include "platform/qt/qt_system_printer.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QPainter>
#include <QProcess>
#include <QRegion>
#include <QTest>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "common/ole_color.h"
#include "platform/qt/sheet_painter.h"
#include "support/errors.h"
#include "support/file_size_limit.h"
#include "support/modal_window.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using testing::ErrorOf;
using testing::TestFolder;

DocumentSettings DocumentFor(const std::string& device, const std::string& port = {}) {
  DocumentSettings settings;
  settings.device = device;
  settings.port = port;
  settings.title = "Day/Book";
  settings.font = "Courier New";
  settings.page_width = 8.5F;
  settings.page_height = 11;
  return settings;
}

const std::vector<PrintedLine> kSheet = {{"Cash in hand", 10, false}, {"Bank", 12, true}};

// A print server of this program's own.
class QtSystemPrinterTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder = std::make_unique<TestFolder>();
    server = std::make_unique<QProcess>();
    server->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    server->start(KELDLL_PYTHON, {KELDLL_CUPS_SERVER, QString::fromStdString(*folder / "cups")});
    ASSERT_TRUE(server->waitForReadyRead());
    qputenv("CUPS_SERVER", server->readLine().trimmed());
  }
  static void TearDownTestSuite() {
    server->closeWriteChannel();
    server->waitForFinished();
    server.reset();
    folder.reset();
  }

  // What the printer got of the jobs that the server counts from 1.
  static bool WaitForJob(const std::string& queue, int number) {
    const auto file = *folder / ("cups/out/" + queue + "-" + std::to_string(number));
    return QTest::qWaitFor([&] { return std::filesystem::exists(file); }, 30000);
  }

  static inline std::unique_ptr<TestFolder> folder;
  static inline std::unique_ptr<QProcess> server;
  QtSystemPrinter printer;
};

TEST_F(QtSystemPrinterTest, ThePrintersAreTheSystemsWithTheirQueuesAndThePdfPrinter) {
  std::vector<std::string> told;
  for (const PrinterName& name : printer.Printers()) told.push_back(name.device + " " + name.port);
  EXPECT_EQ(told, (std::vector<std::string>{"closed queue:closed", "pdf queue:pdf", "raw queue:raw",
                                            "stopped queue:stopped", "PDF "}));
  EXPECT_EQ(printer.DefaultPrinter(), "pdf");
  const Error missing = ErrorOf([&] { printer.Begin(DocumentFor("office")); });
  EXPECT_EQ(missing.Number(), error_number::kPrinterError);
  EXPECT_TRUE(testing::Contains(missing, "the printer office is not there"));
}

TEST_F(QtSystemPrinterTest, OnlyAnEndedAndWholeDocumentGoesToThePrinter) {
  const TestFolder temporary;
  qputenv("TMPDIR", temporary.Path().c_str());
  printer.Begin(DocumentFor("pdf"))->PrintSheet(kSheet);  // cancelled
  {
    const std::unique_ptr<PrinterDocument> document = printer.Begin(DocumentFor("pdf"));
    const testing::FileSizeLimit full_disk(1000);
    document->PrintSheet(kSheet);
    EXPECT_EQ(ErrorOf([&] { document->End(); }).Number(), error_number::kDiskFull);
  }
  const std::unique_ptr<PrinterDocument> document = printer.Begin(DocumentFor("pdf"));
  EXPECT_NEAR(document->SheetHeight(), 11 * 72 - 2 * 18, 0.01);
  EXPECT_NEAR(document->LineHeight(24), 2 * document->LineHeight(12), 0.1);
  document->PrintSheet(kSheet);
  document->PrintSheet({});
  document->End();
  EXPECT_TRUE(WaitForJob("pdf", 1)) << "no document before it has become a job";
  qputenv("TMPDIR", "/dev/null/folder");
  EXPECT_EQ(ErrorOf([&] { printer.Begin(DocumentFor("pdf")); }).Number(),
            error_number::kPathNotFound);
  qunsetenv("TMPDIR");
}

TEST_F(QtSystemPrinterTest, ThePdfPrinterAsksForAFileUnlessThePortIsOne) {
  for (const char* port : {"queue:raw", ".pdf", "LPT1:"}) {
    testing::WhenModal("PrintToPdf", [](QWidget& window) {
      EXPECT_TRUE(testing::Child<QLineEdit>(window, "fileNameEdit").text().startsWith("Day-Book"));
      QTest::keyClick(&window, Qt::Key_Escape);
    });
    EXPECT_EQ(printer.Begin(DocumentFor("PDF", port)), nullptr);
  }
  const auto prints = [&](const std::string& port, const std::string& file) {
    const std::unique_ptr<PrinterDocument> document = printer.Begin(DocumentFor("PDF", port));
    document->PrintSheet(kSheet);
    document->End();
    EXPECT_EQ(testing::ReadFile(file).substr(0, 5), "%PDF-");
  };
  testing::WhenModal("PrintToPdf", [](QWidget& window) {
    testing::Child<QLineEdit>(window, "fileNameEdit")
        .setText(QString::fromStdString(*folder / "asked"));
    QTest::keyClick(&window, Qt::Key_Return);
  });
  prints("LPT1:", *folder / "asked.pdf");
  prints(*folder / "\xc3\xa9.PDF", *folder / "\xc3\xa9.PDF");
}

QRect InkOf(const QImage& image) {
  QRect ink;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixel(x, y) != qRgb(255, 255, 255)) ink |= QRect(x, y, 1, 1);
    }
  }
  return ink;
}

TEST(SheetPainterTest, NothingFallsOffTheSheetAndCellsKeepTheirPlaces) {
  constexpr int kDots = 144;  // an inch
  constexpr int kEdge = 100;
  constexpr int kCell = 12;  // of 10 points
  const QSize sheet(1000, 1200);
  const std::string hindi =
      "\xe0\xa4\x96\xe0\xa4\xbe\xe0\xa4\xa4\xe0\xa4\xbe";  // two letters, a cell each
  const auto drawn = [&](const DocumentSettings& settings, const std::vector<PrintedLine>& lines) {
    QImage paper(sheet + QSize(2 * kEdge, 2 * kEdge), QImage::Format_RGB32);
    paper.fill(Qt::white);
    QPainter painter(&paper);
    painter.translate(kEdge, kEdge);
    SheetPainter(settings, kDots).Draw(painter, sheet, lines);
    return paper;
  };
  const QRect area = QRect(QPoint(kEdge, kEdge), sheet).adjusted(-1, -1, 1, 1);
  DocumentSettings settings = DocumentFor("");
  for (const std::vector<PrintedLine>& lines : std::vector<std::vector<PrintedLine>>{
           {{std::string(400, 'W'), 10, true}},
           {{std::string(400, 'W') + std::string(900, ' '), 10, true}},
           std::vector<PrintedLine>(300, {"gW", 10, false}),
           {{hindi + std::string(100, 'W'), 26, false}, {"", 8, false}}}) {
    const QRect ink = InkOf(drawn(settings, lines));
    EXPECT_TRUE(area.contains(ink)) << ink.right() << ' ' << ink.bottom();
    EXPECT_TRUE(ink.width() > 0.9 * sheet.width() || ink.height() > 0.9 * sheet.height())
        << "no smaller than it must be";
  }

  // The bar stands in the same place behind any five cells, upright or italic, and a rule through
  // or under the text spans its blanks, not those behind it.
  settings.font_flags.italic = true;
  const auto right_of = [&](const PrintedLine& line) {
    return InkOf(drawn(settings, {line})).right();
  };
  const int bar = right_of({"abcde|", 10, false});
  for (const std::string& text : {std::string("     "), "   " + hindi, std::string("WWWWW")}) {
    for (const bool bold : {false, true}) EXPECT_NEAR(right_of({text + "|", 10, bold}), bar, 3);
  }
  for (bool FontFlags::*const flag : {&FontFlags::underline, &FontFlags::strikethrough}) {
    settings.font_flags = {};
    settings.font_flags.*flag = true;
    const QImage paper = drawn(settings, {{"a    b    ", 10, false}});
    const QRect between(kEdge + 2 * kCell, kEdge, 2 * kCell, 2 * kCell);
    EXPECT_GE(InkOf(paper.copy(between)).width(), between.width() - 1);
    EXPECT_GE(InkOf(paper).left(), kEdge - 1) << "nothing before the line either";
    EXPECT_LT(InkOf(paper).right(), kEdge + 6 * kCell + 2);
  }

  // Black on white paper also where the theme's text is white.
  QApplication::setPalette(QPalette(Qt::black));
  settings.fore_color = static_cast<std::int32_t>(system_color::kWindowText);
  EXPECT_FALSE(InkOf(drawn(settings, kSheet)).isEmpty());
  settings.fore_color = 0x0000ff;
  EXPECT_GT(qRed(drawn(settings, {{"WWWW", 26, true}}).pixel(kEdge + 20, kEdge + 30)), 200);
}

}  // namespace
}  // namespace kel
