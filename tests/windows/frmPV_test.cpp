#include "preview/frmPV.h"

#include "common/ole_color.h"
#include "controls/colors.h"
#include "preview/zoom.h"
#include "windows/preview_fixture.h"

namespace kel::testing {
namespace {

TEST_F(PreviewTest, OpensOverTheWholeScreenOnPageOneWithTheFocusOnThePage) {
  window_ = std::make_unique<frmPV>(report_);
  EXPECT_EQ(window_->geometry(), window_->screen()->geometry());
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
  EXPECT_TRUE(window_->isMaximized());
  EXPECT_EQ(PageBox().text(), "1/3");
  EXPECT_EQ(QApplication::focusWidget(), &Pic());
  EXPECT_FALSE(IsEnabled("Previous"));
  EXPECT_TRUE(IsEnabled("Next"));
  EXPECT_EQ(Pic().FontSize(), kFirstZoom);
}

TEST_F(PreviewTest, EveryButtonTellsItsNameAndItsKey) {
  Open();
  const std::vector<std::pair<const char*, const char*>> expected = {
      {"Print", "Print (Ctrl+P)"},      {"Previous", "Previous (Ctrl+R)"},
      {"Next", "Next (Ctrl+N)"},        {"ZoomIn", "Zoom In (Ctrl+I)"},
      {"ZoomOut", "Zoom Out (Ctrl+M)"}, {"Best Fit", "Best Fit (Ctrl+B)"},
      {"Export", "Export (Ctrl+E)"},    {"Find", "Find (Ctrl+F)"},
      {"BackColor", "Back Color"},      {"ForeColor", "Fore Color"},
      {"About", "About (Ctrl+T)"},      {"Close", "Close (Ctrl+O)"}};
  for (const auto& [key, tool_tip] : expected) {
    const QToolButton& button = Find<QToolButton>(key);
    EXPECT_EQ(button.toolTip(), tool_tip);
    EXPECT_EQ(button.accessibleName(), QString(tool_tip).section(" (", 0, 0));
    EXPECT_FALSE(button.icon().isNull()) << key;
    EXPECT_TRUE(button.isVisible()) << key;
  }
}

TEST_F(PreviewTest, PreviousAndNextTurnThePages) {
  Open();
  desktop_->calls.clear();
  Click("Next");
  EXPECT_EQ(desktop_->calls, (std::vector<std::string>{"hourglass", "pointer"}));
  EXPECT_TRUE(IsEnabled("Previous"));
  Press(Qt::Key_N, Qt::ControlModifier);
  EXPECT_FALSE(IsEnabled("Next"));
  Press(Qt::Key_N, Qt::ControlModifier);
  EXPECT_EQ(PageBox().text(), "3/3");
  Press(Qt::Key_R, Qt::ControlModifier);
  EXPECT_EQ(PageBox().text(), "2/3");
  Click("Previous");
  Press(Qt::Key_R, Qt::ControlModifier);
  EXPECT_EQ(PageBox().text(), "1/3");
}

TEST_F(PreviewTest, ATypedPageIsGoneToByEnterAloneWhenItIsAnother) {
  Open();
  Click("txtPage");
  ASSERT_TRUE(QTest::qWaitFor([&] { return PageBox().selectedText() == "1/3"; }));
  QTest::keyClicks(&PageBox(), "3.0");
  Press(Qt::Key_Return);
  EXPECT_EQ(PageBox().text(), "3/3");
  const auto type = [&](const char* typed, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    Type(PageBox(), typed);
    Press(key, modifiers);
    EXPECT_EQ(PageBox().text(), typed);
    EXPECT_TRUE(Pic().Page().TextOf(Pic().Page().runs.at(0)).ends_with("Page 3")) << typed;
  };
  for (const char* ignored : {"3", "4"}) type(ignored, Qt::Key_Enter, Qt::NoModifier);
  for (const auto modifier : {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier}) {
    type("2", Qt::Key_Return, modifier);
  }
}

TEST_F(PreviewTest, ShortcutsWorkInEveryBoxWithCtrlAlone) {
  int exports = 0;
  Open();
  for (const char* box : {"txtPage", "txtFind"}) {
    Find(box).setFocus();
    WhenModal("frmExport", [&](QWidget& dialog) {
      exports += dialog.close() ? 1 : 0;
      window_->activateWindow();  // which the offscreen platform leaves to us
    });
    for (const auto key : {Qt::Key_N, Qt::Key_I, Qt::Key_E, Qt::Key_Q}) {
      Press(key, Qt::ControlModifier);
      ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    }
  }
  Pic().setFocus();
  for (const auto other : {Qt::ShiftModifier, Qt::AltModifier}) {
    for (const auto key : {Qt::Key_R, Qt::Key_I, Qt::Key_O})
      Press(key, Qt::ControlModifier | other);
  }
  EXPECT_EQ(PageBox().text(), "3/3");
  EXPECT_EQ(Pic().FontSize(), kFirstZoom + 2 * kZoomStep);
  EXPECT_EQ(exports, 2);
  Press(Qt::Key_M, Qt::ControlModifier);
  EXPECT_EQ(Pic().FontSize(), kFirstZoom + kZoomStep);
  Press(Qt::Key_B, Qt::ControlModifier);
  EXPECT_EQ(Pic().FontSize(), kBestFitStart);
  EXPECT_EQ(FindBox().text(), "");
  EXPECT_TRUE(window_->isVisible());
}

TEST_F(PreviewTest, ZoomingEndsAtThePublishedSizes) {
  Open();
  while (IsEnabled("ZoomOut")) Click("ZoomOut");
  EXPECT_EQ(Pic().FontSize(), 2.25);
  Press(Qt::Key_M, Qt::ControlModifier);
  EXPECT_EQ(Pic().FontSize(), 2.25);
  while (IsEnabled("ZoomIn")) Click("ZoomIn");
  EXPECT_EQ(Pic().FontSize(), 25.5);
  Press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(Pic().FontSize(), 25.5);
  TurnWheel(Pic(), {0, -120}, Qt::ControlModifier);
  EXPECT_EQ(Pic().FontSize(), 24);
}

TEST_F(PreviewTest, FindGoesFromMatchToMatchAndStartsOverAfterTheLast) {
  Open();
  const auto at = [&] {
    const MarkedCells& match = Pic().Page().match;
    return PageBox().text().toStdString() + " " + std::to_string(match.line) + ":" +
           std::to_string(match.column) + "+" + std::to_string(match.cells);
  };
  SearchFor("CASH");
  EXPECT_EQ(at(), "2/3 2:1+4");
  Press(Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(at(), "2/3 2:21+4");
  Click("Find");
  EXPECT_EQ(at(), "3/3 2:1+4");
  EXPECT_TRUE(desktop_->messages.empty());
  Press(Qt::Key_Return);
  ASSERT_EQ(desktop_->messages.size(), 1U);
  const MessageRequest& message = desktop_->messages.front();
  EXPECT_EQ(message.prompt, "No more matching items found.");
  EXPECT_EQ(message.title, "Search");
  EXPECT_EQ(message.unload_time.count(), 2000);
  EXPECT_TRUE(message.buttons == msgOK && message.icon == msgInformation);
  EXPECT_TRUE(message.focus && !message.animate);
  Press(Qt::Key_Return);
  EXPECT_EQ(at(), "2/3 2:1+4");
}

TEST_F(PreviewTest, AnEmptyFindBoxIsToldByItsOwnPrompt) {
  Open();
  Type(FindBox(), "   ");
  Press(Qt::Key_F, Qt::ControlModifier);
  ASSERT_EQ(desktop_->messages.size(), 1U);
  const MessageRequest& message = desktop_->messages.front();
  EXPECT_EQ(message.prompt, "Please enter text to find.");
  EXPECT_EQ(message.title, window_->windowTitle().toStdString());
  EXPECT_EQ(message.unload_time.count(), 2000);
  FindBox().clear();
  Press(Qt::Key_Return);
  EXPECT_EQ(desktop_->messages.size(), 1U);
  Click("Find");
  EXPECT_EQ(desktop_->messages.size(), 2U);
}

TEST_F(PreviewTest, AZoomStepRemovesTheMark) {
  Open();
  SearchFor("cash");
  ASSERT_EQ(Pic().Page().match.cells, 4);
  Click("ZoomIn");
  EXPECT_EQ(Pic().Page().match.cells, 0);
  SearchFor("trial");
  EXPECT_EQ(PageBox().text(), "2/3");  // from the top of the page on show
}

TEST_F(PreviewTest, AMatchIsMarkedInTheHighlightColour) {
  Open();
  SearchFor("cash");
  const QColor highlight = Pic().palette().color(QPalette::Active, QPalette::Highlight);
  const QColor paper = ToQColor(system_color::kWindowBackground, Pic().palette());
  // The share of a colour in four cells.
  const auto share_of = [&](int column, const QColor& color) {
    const QImage cells = CellImage(column, 2, 4);
    int pixels = 0;
    for (int i = 0; i < cells.width() * cells.height(); ++i) {
      const QColor pixel = cells.pixelColor(i % cells.width(), i / cells.width());
      pixels += pixel == color ? 1 : 0;
    }
    return 1.0 * pixels / (cells.width() * cells.height());
  };
  EXPECT_GT(share_of(1, highlight), 0.3);
  EXPECT_LT(share_of(1, highlight), 0.95) << "the text is gone";
  EXPECT_EQ(share_of(6, highlight), 0);
  EXPECT_GT(share_of(6, paper), 0.3);
}

}  // namespace
}  // namespace kel::testing
