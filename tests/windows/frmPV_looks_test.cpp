// The preview as it looks; every case leaves its picture beside the test's output.
#include <QLabel>
#include <QStyleFactory>

#include "common/job_values.h"
#include "common/temp_folder.h"
#include "controls/colors.h"
#include "engine/CPrint.h"
#include "engine/memory_grid.h"
#include "engine/page_format.h"
#include "windows/preview_fixture.h"

namespace kel::testing {
namespace {

QPalette DarkPalette() {
  QPalette dark(QColor(53, 53, 53));
  dark.setColor(QPalette::Base, QColor(35, 35, 35));
  dark.setColor(QPalette::Text, QColor(240, 240, 240));
  dark.setColor(QPalette::WindowText, QColor(240, 240, 240));
  dark.setColor(QPalette::ButtonText, QColor(240, 240, 240));
  return dark;
}

// A trial balance with names in three scripts, bold and underlined cells.
ReportSnapshot PrepareTrialBalance() {
  MemoryGrid grid("Trial Balance");
  grid.AddRow({"Code", "Account", "Debit", "Credit"});
  const std::vector<std::string_view> names = {"Cash in hand",      "रोकड़ बाकी",
                                               "રોકડ સિલક",         "Bank of Baroda (₹)",
                                               "देनदार - उत्तर क्षेत्र", "લેણદારો"};
  for (std::int32_t row = 1; row <= 120; ++row) {
    const std::string code = std::to_string(1000 + row);
    grid.AddRow({code, names[static_cast<std::size_t>(row) % names.size()], "1,25,000.00", "0.50"});
    if (row % 5 == 0) grid.Font(row, 1, {true, false});
    if (row % 7 == 0) grid.Font(row, 2, {false, true});
  }
  grid.ColAlignment(2, kAlignRight);
  grid.ColAlignment(3, kAlignRight);
  CPrint print;
  print.ColWidth(Value::Array{6, 40, 16, 16});
  print.ReportTitle(Value::Array{"ACME Traders", "2026-27"});
  print.PrepareReport(grid, 0, 0, 120, 3, 0);
  EXPECT_FALSE(print.LastError());
  ReportSnapshot report;
  report.page_file = print.GetKelFile();
  report.job = CurrentJob();
  return report;
}

class PreviewLooksTest : public PreviewTest {
 protected:
  void TearDown() override {
    PreviewTest::TearDown();
    QApplication::setPalette(light_);
    QApplication::setFont(font_);
  }

  void OpenTrialBalance(QSize size = {1280, 720}) {
    Open(PrepareTrialBalance(), size);
    ASSERT_EQ(PageBox().text().section('/', 0, 0), "1");
  }

  // No text is cut off and all stands in one row.
  void ExpectWellLaidOut() {
    const QWidget& toolbar = Find("tbrPV");
    std::vector<QRect> places;
    for (const QWidget* control : ToolbarControls()) {
      places.emplace_back(control->mapTo(&toolbar, QPoint()), control->size());
      EXPECT_GE(control->height(), control->minimumSizeHint().height());
      EXPECT_GE(control->width(), control->minimumSizeHint().width());
    }
    std::sort(places.begin(), places.end(),
              [](const QRect& a, const QRect& b) { return a.x() < b.x(); });
    int right = 0;
    for (const QRect& place : places) {
      EXPECT_GE(place.x(), right);
      right = place.right() + 1;
    }
    EXPECT_LE(right, toolbar.width());
    EXPECT_LE(PageBox().fontMetrics().horizontalAdvance("99999/99999"), PageBox().width());
    EXPECT_LE(FindBox().fontMetrics().horizontalAdvance(FindBox().placeholderText()),
              FindBox().width());
  }

  void SavePicture(const char* name) {
    EXPECT_TRUE(window_->grab().save(QString("frmPV_%1.png").arg(name)));
  }

  const QPalette light_ = QApplication::palette();
  const QFont font_ = QApplication::font();
};

TEST_F(PreviewLooksTest, LightWithAMatch) {
  OpenTrialBalance();
  SearchFor("baroda");
  ExpectWellLaidOut();
  SavePicture("light");
}

TEST_F(PreviewLooksTest, Dark) {
  QApplication::setPalette(DarkPalette());
  OpenTrialBalance();
  SearchFor("सिलक");
  SearchFor("बाकी");
  EXPECT_GT(Pic().Page().match.cells, 0);
  EXPECT_EQ(CellImage(60, 3).pixelColor(1, 1), QColor(35, 35, 35));
  ExpectWellLaidOut();
  SavePicture("dark");
}

TEST_F(PreviewLooksTest, LargeFont) {
  QFont large = font_;
  large.setPointSizeF(2 * large.pointSizeF());
  QApplication::setFont(large);
  OpenTrialBalance({1680, 900});
  ExpectWellLaidOut();
  SavePicture("large_font");
}

TEST_F(PreviewLooksTest, LargestZoom) {
  OpenTrialBalance();
  while (IsEnabled("ZoomIn")) Click("ZoomIn");
  SearchFor("રોકડ");
  SavePicture("largest_zoom");
  EXPECT_GT(VS().maximum(), 0);
  ExpectWellLaidOut();
}

TEST_F(PreviewLooksTest, BestFit) {
  OpenTrialBalance();
  Click("Best Fit");
  SavePicture("best_fit");
  EXPECT_LE(Pic().height(), Find("fme").height());
}

TEST_F(PreviewLooksTest, ChosenColoursAndAFailure) {
  settings_->Write("Preview", "BackColor", "13492222");
  settings_->Write("Preview", "ForeColor", "5708288");
  OpenTrialBalance();
  std::filesystem::remove(TempFolder() / kPageFileName);
  Click("Next");
  QWidget& notice = Find("lblNotice");
  EXPECT_TRUE(notice.isVisible());
  EXPECT_GE(notice.height(), notice.fontMetrics().height());
  EXPECT_EQ(notice.width(), Find("fme").width());
  SavePicture("failure");
}

TEST_F(PreviewLooksTest, BoldIsHeavierAndUnderlinedHasALine) {
  report_ = WritePages(folder_ / "codes.rpt",
                       {{"\x01plain \x1b"
                         "Eplain\x1b"
                         "F \x1b-1plain\x1b-0"}},
                       30);
  Open();
  while (IsEnabled("ZoomIn")) Click("ZoomIn");
  const auto ink = [&](int column) {
    const QImage cells = CellImage(column, 0, 5);
    double dark = 0;
    for (int y = 0; y < cells.height(); ++y) {
      for (int x = 0; x < cells.width(); ++x) dark += 255 - cells.pixelColor(x, y).lightness();
    }
    return dark;
  };
  EXPECT_GT(ink(7), 1.1 * ink(1));
  EXPECT_GT(ink(13), 1.1 * ink(1));
}

}  // namespace
}  // namespace kel::testing
