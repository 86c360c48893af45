// What becomes of an open preview when its report, or its settings, go wrong.
#include <sys/stat.h>

#include <fstream>

#include "common/temp_folder.h"
#include "toolkit/CZURDLL.h"
#include "toolkit/error_log.h"
#include "windows/preview_fixture.h"

namespace kel::testing {
namespace {

class PreviewFaultTest : public PreviewTest {
 protected:
  void SetUp() override {
    PreviewTest::SetUp();
    SharedToolkit();
    std::filesystem::remove(TempFolder() / kErrorLogName);
    Open();
  }
  static std::string Log() {
    const auto log = TempFolder() / kErrorLogName;
    return std::filesystem::exists(log) ? ReadFile(log) : "";
  }
  // The window still turns pages.
  void ExpectUsable() {
    report_ = WritePages(report_.page_file, ThreePages(), 40);
    Type(PageBox(), PageBox().text() == "1/3" ? "2" : "1");
    Press(Qt::Key_Return);
    EXPECT_EQ(Notice(), "");
    EXPECT_FALSE(Pic().Page().runs.empty());
  }
};

TEST_F(PreviewFaultTest, APageOfAFileThatIsGoneIsToldAndLogged) {
  std::filesystem::remove(report_.page_file);
  Click("Next");
  ASSERT_EQ(desktop_->messages.size(), 1U);
  EXPECT_EQ(desktop_->messages[0].title, "Error Log");
  EXPECT_EQ(desktop_->messages[0].prompt, "");
  EXPECT_EQ(desktop_->messages[0].icon, msgCritical);
  EXPECT_NE(Log().find(",[DLL->LoadPage],\r\n"), std::string::npos) << Log();
  EXPECT_NE(Notice().indexOf("report.rpt"), -1) << Notice().toStdString();
  const QWidget& notice = Find("lblNotice");
  EXPECT_GE(notice.height(), notice.fontMetrics().height());
  EXPECT_EQ(notice.width(), Find("fme").width());
  ASSERT_GE(desktop_->calls.size(), 2U);
  EXPECT_EQ(desktop_->calls[desktop_->calls.size() - 2], "pointer");
  EXPECT_EQ(desktop_->calls.back(), "message");
  EXPECT_EQ(Find("picAnimate").accessibleName(), "Ready");
  EXPECT_TRUE(Find("fme").isVisible());
  EXPECT_EQ(PageBox().text(), "2/3");
  EXPECT_TRUE(IsEnabled("Previous"));
  ExpectUsable();
}

TEST_F(PreviewFaultTest, WhatIsNoFileInItsPlaceIsAFailureLikeAnyOther) {
  for (const bool pipe : {false, true}) {
    desktop_->messages.clear();
    std::filesystem::remove(report_.page_file);
    if (pipe) {
      ASSERT_EQ(::mkfifo(report_.page_file.c_str(), 0600), 0);
    } else {
      std::filesystem::create_directory(report_.page_file);
    }
    Click(IsEnabled("Next") ? "Next" : "Previous");
    EXPECT_NE(Notice(), "");
    std::filesystem::remove(TempFolder() / kErrorLogName);
    SearchFor("cash");
    EXPECT_NE(Log().find("[DLL->LoadPage]"), std::string::npos);
    EXPECT_NE(Notice(), "");
    EXPECT_EQ(desktop_->messages.size(), 2U);
    std::filesystem::remove(report_.page_file);
    ExpectUsable();
  }
}

TEST_F(PreviewFaultTest, APageBeyondTheEndOfACutFileIsSaidToBeMissing) {
  std::filesystem::resize_file(report_.page_file, 10);
  Click("Next");
  EXPECT_EQ(Notice(), "The report file ends before this page.");
  EXPECT_TRUE(desktop_->messages.empty());
  window_->grab();
  ExpectUsable();
}

TEST_F(PreviewFaultTest, MegabyteLinesAndGarbageAreDrawnWithoutHarm) {
  std::string garbage = "\x01";
  for (int i = 0; i < 1 << 20; ++i) garbage += static_cast<char>(i * 7 + i / 251);
  WritePages(report_.page_file,
             {{"a", "b", "c", "d", "e"},
              {std::string(4 << 20, 'm'), garbage, "\x01\x1b", "\x1b\x1b\x0c", "\xff\xfe"}},
             40);
  Click("Next");
  EXPECT_FALSE(window_->grab().isNull());
  SearchFor("mmmm");
  EXPECT_EQ(Pic().Page().match.cells, 4);
  while (IsEnabled("ZoomIn")) Click("ZoomIn");
  EXPECT_FALSE(window_->grab().isNull());
  ExpectUsable();
}

TEST_F(PreviewFaultTest, ALogThatCannotBeWrittenLeavesTheNote) {
  std::filesystem::create_directory(TempFolder() / kErrorLogName);
  std::filesystem::remove(report_.page_file);
  Click("Next");
  EXPECT_NE(Notice(), "");
  ExpectUsable();
}

// A store whose disk is gone.
class BrokenStore : public MemorySettingsStore {
 public:
  using SettingsStore::Read;
  std::optional<std::string> Read(std::string_view /*section*/, std::string_view /*key*/) override {
    throw Error(error_number::kDeviceIoError, "settings cannot be read");
  }
  void Write(std::string_view /*section*/, std::string_view /*key*/,
             std::string_view /*text*/) override {
    throw Error(error_number::kDiskFull, "settings cannot be written");
  }
};

TEST_F(PreviewFaultTest, SettingsThatFailAreLoggedAndTheWindowOpensAndCloses) {
  settings_ = std::make_shared<BrokenStore>();
  CurrentHost().settings = settings_;
  Open();
  EXPECT_EQ(Box("picBack").BackColor(), system_color::kWindowBackground);
  EXPECT_TRUE(window_->close());
  EXPECT_FALSE(window_->isVisible());
  EXPECT_NE(Log().find("settings cannot be read"), std::string::npos);
  EXPECT_NE(Log().find("settings cannot be written"), std::string::npos);
  EXPECT_TRUE(desktop_->messages.empty());
}

TEST_F(PreviewFaultTest, AReportWithoutAPageOpensAsAFailure) {
  Open(ReportSnapshot());
  EXPECT_NE(Notice(), "");
  for (const char* button : {"Next", "Previous", "Best Fit", "ZoomIn", "ZoomOut"}) Click(button);
  SearchFor("cash");
  Press(Qt::Key_PageDown);
  window_->grab();
  window_->ShowReport(report_);
  EXPECT_EQ(PageBox().text(), "1/3");
  EXPECT_EQ(Notice(), "");
}

TEST_F(PreviewFaultTest, AHugePageIsPaintedOnlyWhereItIsSeen) {
  constexpr int kWidth = 32765;
  while (IsEnabled("ZoomIn")) Click("ZoomIn");
  const Pages pages = {std::vector<std::string>(200, std::string(kWidth, 'M'))};
  window_->ShowReport(WritePages(folder_ / "huge.rpt", pages, kWidth));
  HS().setValue(HS().maximum());
  Press(Qt::Key_End);
  const QImage shown = Find("fme").grab().toImage();
  int dark = 0;  // near the lower right corner
  for (int x = shown.width() - 150; x < shown.width(); ++x) {
    for (int y = shown.height() - 100; y < shown.height(); ++y) {
      dark += shown.pixelColor(x, y).lightness() < 60 ? 1 : 0;
    }
  }
  EXPECT_GT(dark, 100);
  EXPECT_LT(dark, 150 * 100 * 3 / 4);
}

}  // namespace
}  // namespace kel::testing
