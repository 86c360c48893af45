#include "preview/frmPV.h"

#include <cstdlib>

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

TEST_F(PreviewTest, AOnePageReportHasNeitherPreviousNorNext) {
  Open(WritePages(folder_ / "one.rpt", {{"only", "\x0c"}}, 10));
  EXPECT_EQ(PageBox().text(), "1/1");
  EXPECT_FALSE(IsEnabled("Previous"));
  EXPECT_FALSE(IsEnabled("Next"));
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

TEST_F(PreviewTest, TabReachesEveryControlOfTheToolBarInReadingOrder) {
  Open();
  Find<QToolButton>("Print").setFocus();
  int last = -1;
  std::vector<std::string> reached;
  for (QWidget* at = QApplication::focusWidget(); at != &Pic(); at = QApplication::focusWidget()) {
    const int left = at->mapTo(window_.get(), QPoint()).x();
    EXPECT_GT(left, last) << at->objectName().toStdString();
    EXPECT_FALSE(at->accessibleName().isEmpty() && qobject_cast<QLineEdit*>(at) == nullptr);
    last = left;
    reached.push_back(at->objectName().toStdString());
    Press(Qt::Key_Tab);
    ASSERT_LT(reached.size(), 20U);
  }
  const std::vector<std::string> expected = {
      "Print", "txtPage",   "Next",    "ZoomIn",    "ZoomOut", "Best Fit", "Export", "txtFind",
      "Find",  "BackColor", "picBack", "ForeColor", "picFore", "About",    "Close"};
  EXPECT_EQ(reached, expected);  // Previous is disabled
}

TEST_F(PreviewTest, PreviousAndNextTurnThePages) {
  Open();
  Click("Next");
  EXPECT_EQ(PageBox().text(), "2/3");
  EXPECT_TRUE(IsEnabled("Previous"));
  Click("Next");
  EXPECT_EQ(PageBox().text(), "3/3");
  EXPECT_FALSE(IsEnabled("Next"));
  Press(Qt::Key_N, Qt::ControlModifier);
  EXPECT_EQ(PageBox().text(), "3/3");
  Press(Qt::Key_R, Qt::ControlModifier);
  EXPECT_EQ(PageBox().text(), "2/3");
  Click("Previous");
  EXPECT_EQ(PageBox().text(), "1/3");
  Press(Qt::Key_R, Qt::ControlModifier);
  EXPECT_EQ(PageBox().text(), "1/3");
}

TEST_F(PreviewTest, ThePointerIsTheHourglassWhileAPageIsLoaded) {
  Open();
  desktop_->calls.clear();
  Click("Next");
  EXPECT_EQ(desktop_->calls, (std::vector<std::string>{"hourglass", "pointer"}));
  EXPECT_EQ(Find("picAnimate").accessibleName(), "Ready");
  EXPECT_TRUE(Find("fme").isVisible());
}

TEST_F(PreviewTest, ATypedPageIsGoneToWhenItIsAnother) {
  Open();
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"3", "3/3"}, {"2/3", "2/3"}, {" 1", "1/3"}, {"3.0", "3/3"}};
  for (const auto& [typed, shown] : cases) {
    Type(PageBox(), typed);
    Press(Qt::Key_Return);
    EXPECT_EQ(PageBox().text(), shown) << typed;
  }
  for (const char* ignored : {"3", "0", "-1", "4", "99999999999", "page", ""}) {
    Type(PageBox(), ignored);
    if (QString(ignored).isEmpty()) Press(Qt::Key_Delete);
    Press(Qt::Key_Enter);
    EXPECT_EQ(PageBox().text(), ignored);
    EXPECT_TRUE(Pic().Page().TextOf(Pic().Page().runs.at(0)).ends_with("Page 3")) << ignored;
  }
}

TEST_F(PreviewTest, EnterInThePageBoxCountsOnlyWithoutShiftCtrlAndAlt) {
  Open();
  for (const auto modifier : {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier}) {
    Type(PageBox(), "2");
    Press(Qt::Key_Return, modifier);
    EXPECT_EQ(PageBox().text(), "2");
    EXPECT_TRUE(Pic().Page().TextOf(Pic().Page().runs.at(0)).ends_with("Page 1"));
  }
}

TEST_F(PreviewTest, AClickIntoThePageBoxSelectsItsText) {
  Open();
  Click("txtPage");
  ASSERT_TRUE(QTest::qWaitFor([&] { return PageBox().selectedText() == "1/3"; }));
  QTest::keyClicks(&PageBox(), "3");
  Press(Qt::Key_Return);
  EXPECT_EQ(PageBox().text(), "3/3");
}

TEST_F(PreviewTest, ShortcutsWorkAlsoWhileABoxHasTheFocus) {
  int exports = 0;
  CurrentPreviewHost().show_export = [&](const ReportSnapshot&) { ++exports; };
  Open();
  for (const char* box : {"txtPage", "txtFind"}) {
    Find(box).setFocus();
    Press(Qt::Key_N, Qt::ControlModifier);
    Press(Qt::Key_I, Qt::ControlModifier);
    Press(Qt::Key_E, Qt::ControlModifier);
  }
  EXPECT_EQ(PageBox().text(), "3/3");
  EXPECT_EQ(Pic().FontSize(), kFirstZoom + 2 * kZoomStep);
  EXPECT_EQ(exports, 2);
  Press(Qt::Key_M, Qt::ControlModifier);
  EXPECT_EQ(Pic().FontSize(), kFirstZoom + kZoomStep);
  Press(Qt::Key_B, Qt::ControlModifier);
  EXPECT_EQ(Pic().FontSize(), kBestFitStart);
  EXPECT_EQ(FindBox().text(), "");
}

TEST_F(PreviewTest, ShortcutsNeedCtrlAlone) {
  Open();
  for (const auto modifiers :
       {Qt::ControlModifier | Qt::ShiftModifier, Qt::ControlModifier | Qt::AltModifier}) {
    Press(Qt::Key_N, modifiers);
    Press(Qt::Key_I, modifiers);
    Press(Qt::Key_O, modifiers);
  }
  for (int letter = Qt::Key_A; letter <= Qt::Key_Z; ++letter) {
    if (QString("PRNIMBEFTO").contains(QChar(letter))) continue;
    Press(static_cast<Qt::Key>(letter), Qt::ControlModifier);
  }
  EXPECT_EQ(PageBox().text(), "1/3");
  EXPECT_EQ(Pic().FontSize(), kFirstZoom);
  EXPECT_TRUE(window_->isVisible());
}

TEST_F(PreviewTest, ZoomingGoesThroughThePublishedSizes) {
  Open();
  std::vector<double> sizes;
  while (IsEnabled("ZoomOut")) {
    Click("ZoomOut");
    sizes.push_back(Pic().FontSize());
  }
  EXPECT_EQ(sizes, (std::vector<double>{7.5, 6, 4.5, 2.25}));
  Press(Qt::Key_M, Qt::ControlModifier);
  EXPECT_EQ(Pic().FontSize(), 2.25);
  Click("ZoomIn");
  EXPECT_EQ(Pic().FontSize(), 4.5);
  while (IsEnabled("ZoomIn")) Click("ZoomIn");
  EXPECT_EQ(Pic().FontSize(), 25.5);
  Press(Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(Pic().FontSize(), 25.5);
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
  EXPECT_EQ(message.buttons, msgOK);
  EXPECT_EQ(message.icon, msgInformation);
  EXPECT_FALSE(message.animate);
  EXPECT_EQ(message.unload_time.count(), 2000);
  EXPECT_TRUE(message.focus);
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
  const auto share_of = [](const QImage& cell, const QColor& color) {
    int pixels = 0;
    for (int y = 0; y < cell.height(); ++y) {
      for (int x = 0; x < cell.width(); ++x) pixels += cell.pixelColor(x, y) == color ? 1 : 0;
    }
    return 1.0 * pixels / (cell.width() * cell.height());
  };
  EXPECT_GT(share_of(CellImage(1, 2, 4), highlight), 0.3);
  EXPECT_EQ(share_of(CellImage(6, 2, 4), highlight), 0);
  EXPECT_GT(share_of(CellImage(6, 2, 4), paper), 0.3);
  // Something stands in the marked cells that is not the mark.
  const QImage marked = CellImage(1, 2, 4);
  int text = 0;
  for (int y = 0; y < marked.height(); ++y) {
    for (int x = 0; x < marked.width(); ++x) {
      if (std::abs(marked.pixelColor(x, y).lightness() - highlight.lightness()) > 60) ++text;
    }
  }
  EXPECT_GT(text, 10);
}

}  // namespace
}  // namespace kel::testing
