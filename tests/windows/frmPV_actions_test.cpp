// What the buttons open: printing, colours, the about window; and closing.
#include <QAccessible>
#include <QSignalSpy>

#include "common/ole_color.h"
#include "controls/colors.h"
#include "preview/zoom.h"
#include "support/paper.h"
#include "windows/preview_fixture.h"

namespace kel::testing {
namespace {

TEST_F(PreviewTest, ColoursAreReadWhenTheWindowLoadsAndWrittenWhenItCloses) {
  settings_->Write("Preview", "BackColor", "255");
  settings_->Write("Preview", "ForeColor", "16777215");
  Open();
  EXPECT_EQ(Pic().grab().toImage().pixelColor(1, 1), QColor(255, 0, 0));
  EXPECT_EQ(Box("picFore").BackColor(), 0xffffffU);
  settings_->Write("Preview", "BackColor", "0");
  EXPECT_TRUE(window_->close());
  EXPECT_EQ(settings_->Read("Preview", "BackColor"), "255");
  EXPECT_EQ(settings_->Read("Preview", "ForeColor"), "16777215");
}

TEST_F(PreviewTest, WithoutSettingsTheSystemsColoursAreUsed) {
  for (const char* stored : {"", "blue", "1E300", "-99999999999", "0.5", "1677721600"}) {
    settings_->Write("Preview", "BackColor", stored);
    Open();
    EXPECT_EQ(Box("picBack").BackColor(), system_color::kWindowBackground) << stored;
    EXPECT_EQ(Box("picFore").BackColor(), system_color::kWindowText);
  }
  window_->close();
  EXPECT_EQ(settings_->Read("Preview", "BackColor"), "-2147483643");
  EXPECT_EQ(settings_->Read("Preview", "ForeColor"), "-2147483640");
}

TEST_F(PreviewTest, ShiftWithTheArrowsGoesThroughTheColoursWhichAreToldByName) {
  settings_->Write("Preview", "ForeColor", "1193046");  // red 0x56, green 0x34, blue 0x12
  Open();
  const auto told = [&](const char* name, QAccessible::Text text) {
    return QAccessible::queryAccessibleInterface(&Find(name))->text(text).toStdString();
  };
  EXPECT_EQ(told("BackColor", QAccessible::Name), "Back Color");
  EXPECT_EQ(told("picBack", QAccessible::Name), "Page colour");
  EXPECT_EQ(told("picFore", QAccessible::Name), "Text colour");
  EXPECT_EQ(told("picFore", QAccessible::Description), "#563412");
  SearchFor("cash");
  Find("picBack").setFocus();
  Press(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(told("picBack", QAccessible::Description), "Window Text");
  EXPECT_EQ(Pic().Colors().back, system_color::kWindowText);
  EXPECT_EQ(Pic().Page().match.cells, 0);
  Press(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(told("picBack", QAccessible::Description), "Window Background");
  EXPECT_EQ(Pic().Colors().back, system_color::kWindowBackground);
}

class RangeAsker : public ReportWindows {
 public:
  std::optional<PageRange> AskPageRange(std::int32_t page_count) override {
    asked_of = page_count;
    return PageRange{2, 3};
  }
  void AskStartPage(JobValues& /*job*/) override {}
  void ShowPreview(const ReportSnapshot& /*report*/, ShowStyle /*style*/) override {}
  void ShowSetup() override {}
  std::int32_t asked_of = 0;
};

TEST_F(PreviewTest, PrintPrintsTheReportOnShowWithItsOwnSettings) {
  const auto asker = std::make_shared<RangeAsker>();
  const auto port = std::make_shared<testing::RecordingPort>();
  CurrentReportHost() = {asker, port, nullptr};
  report_.settings.mode = "DOS";
  Open();
  Press(Qt::Key_P, Qt::ControlModifier);
  EXPECT_EQ(asker->asked_of, 3);
  ASSERT_EQ(port->sent.size(), 3U);
  const std::string whole = ReadFile(report_.page_file);
  EXPECT_EQ(port->sent[1], whole.substr(report_.job.page_offsets->at(1)));
}

TEST_F(PreviewTest, AboutIsShownFromTheButton) {
  Open();
  bool shown = false;
  WhenModal("frmAbout", [&](QWidget& about) { shown = about.close(); });
  Press(Qt::Key_T, Qt::ControlModifier);
  EXPECT_TRUE(shown);
}

TEST_F(PreviewTest, CtrlOClosesTheWindowOnce) {
  Open();
  QSignalSpy closed(window_.get(), &frmPV::Closed);
  Press(Qt::Key_O, Qt::ControlModifier);
  EXPECT_FALSE(window_->isVisible());
  EXPECT_EQ(closed.count(), 1);
  window_->close();
  EXPECT_EQ(closed.count(), 1);
  EXPECT_FALSE(window_->testAttribute(Qt::WA_QuitOnClose));
}

TEST_F(PreviewTest, AnotherReportComesIntoTheSameWindowOnItsFirstPage) {
  settings_->Write("Preview", "BackColor", "65280");
  Open();
  Click("Next");
  Click("ZoomIn");
  settings_->Write("Preview", "BackColor", "255");
  window_->ShowReport(WritePages(folder_ / "next.rpt", {{"Other", "\x0c"}, {"More", "\x0c"}}, 80));
  EXPECT_EQ(PageBox().text(), "1/2");
  EXPECT_EQ(Pic().FontSize(), kFirstZoom + kZoomStep);
  EXPECT_EQ(Pic().Colors().back, 65280U);
  EXPECT_NEAR(Pic().width(), 82 * Pic().Cell().width(), 1);
  EXPECT_EQ(Pic().Page().TextOf(Pic().Page().runs.at(0)), " Other");

  window_->ShowReport(
      WritePages(report_.page_file, Pages(2, std::vector<std::string>(200, "x")), 300));
  Press(Qt::Key_End);
  window_->ShowReport(
      report_ = WritePages(report_.page_file, Pages(1, std::vector<std::string>(200, "y")), 300));
  EXPECT_EQ(VS().value(), -1) << "a report begins at its top";
}

}  // namespace
}  // namespace kel::testing
