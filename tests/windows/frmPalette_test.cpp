#include "preview/frmPalette.h"

#include <QScreen>
#include <functional>

#include "windows/preview_fixture.h"

namespace kel::testing {
namespace {

class PaletteTest : public PreviewTest {
 protected:
  // Opens the palette by a click on `control` and hands it to `use`.
  void WithPalette(const char* control, const std::function<void(QWidget&)>& use) {
    bool used = false;
    Soon([&] {
      QWidget* palette = QApplication::activeModalWidget();
      if (palette == nullptr) return;
      used = palette->objectName() == "frmPalette";
      use(*palette);
      if (palette->isVisible()) palette->close();
    });
    Click(control);
    EXPECT_TRUE(used);
  }
  static std::vector<ColorBox*> Cells(const QWidget& palette) {
    std::vector<ColorBox*> cells;
    for (QWidget* cell : palette.findChildren<QWidget*>("Pal")) {
      cells.push_back(static_cast<ColorBox*>(cell));
    }
    return cells;
  }
};

TEST_F(PaletteTest, AClickOnACellTakesItsColour) {
  Open();
  SearchFor("cash");
  OleColor clicked = 0;
  WithPalette("picBack", [&](QWidget& palette) {
    ColorBox* cell = Cells(palette).at(9);
    clicked = cell->BackColor();
    QTest::mouseClick(cell, Qt::LeftButton);
    EXPECT_FALSE(palette.isVisible());
  });
  EXPECT_EQ(Box("picBack").BackColor(), clicked);
  EXPECT_EQ(Pic().Colors().back, clicked);
  EXPECT_EQ(Pic().Colors().fore, system_color::kWindowText);
  EXPECT_EQ(Pic().Page().match.cells, 0);  // the page was drawn anew
}

TEST_F(PaletteTest, TheButtonsOpenThePaletteOfTheirBox) {
  Open();
  WithPalette("ForeColor",
              [&](QWidget& palette) { QTest::mouseClick(Cells(palette).at(30), Qt::LeftButton); });
  EXPECT_EQ(Pic().Colors().back, system_color::kWindowBackground);
  EXPECT_EQ(Pic().Colors().fore, Box("picFore").BackColor());
  EXPECT_NE(Pic().Colors().fore, system_color::kWindowText);
}

TEST_F(PaletteTest, AnyKeyClosesItWithTheColourAsItWas) {
  Open();
  for (const auto key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Space, Qt::Key_A, Qt::Key_Tab,
                         Qt::Key_Down, Qt::Key_Shift}) {
    WithPalette("picBack", [&](QWidget& palette) {
      QTest::keyClick(&palette, key);
      EXPECT_FALSE(palette.isVisible()) << key;
    });
    EXPECT_EQ(Box("picBack").BackColor(), system_color::kWindowBackground);
  }
}

TEST_F(PaletteTest, TheSameColourDoesNotDrawThePageAgain) {
  Open();
  SearchFor("cash");
  WithPalette("picBack",
              [&](QWidget& palette) { QTest::mouseClick(Cells(palette).at(0), Qt::LeftButton); });
  EXPECT_EQ(Pic().Page().match.cells, 4);
}

TEST_F(PaletteTest, ItShowsTheSystemsColoursFirstAndMarksTheOneInUse) {
  Open();
  WithPalette("picFore", [&](QWidget& palette) {
    const auto cells = Cells(palette);
    ASSERT_GE(cells.size(), 40U);
    EXPECT_EQ(cells[0]->BackColor(), system_color::kWindowBackground);
    EXPECT_EQ(cells[1]->BackColor(), system_color::kWindowText);
    std::set<OleColor> colours;
    std::set<QString> names;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      EXPECT_EQ(cells[i]->property("Index").toInt(), static_cast<int>(i));
      EXPECT_EQ(cells[i]->IsMarked(), i == 1);
      colours.insert(cells[i]->BackColor());
      names.insert(cells[i]->accessibleName());
    }
    EXPECT_EQ(colours.size(), cells.size());
    EXPECT_EQ(names.size(), cells.size());
    palette.grab().save("frmPalette.png");
  });
}

TEST_F(PaletteTest, ItStandsJustBelowItsBox) {
  Open();
  window_->move(10, 20);
  WithPalette("picBack", [&](QWidget& palette) {
    const QWidget& box = Find("picBack");
    const QPoint below = window_->frameGeometry().topLeft() + box.mapTo(window_.get(), QPoint()) +
                         QPoint(3, box.height() + 27);
    const QRect screen = window_->screen()->availableGeometry();
    const int furthest = screen.right() + 1 - palette.width();
    EXPECT_EQ(palette.pos(), QPoint(std::min(below.x(), furthest), below.y()));
  });
}

TEST_F(PaletteTest, ItStaysOnTheScreen) {
  Open();
  const QRect screen = window_->screen()->availableGeometry();
  for (const QPoint corner : {QPoint(-3000, -3000), QPoint(3000, 3000)}) {
    window_->move(corner);
    WithPalette("picFore",
                [&](QWidget& palette) { EXPECT_TRUE(screen.contains(palette.frameGeometry())); });
  }
}

TEST_F(PaletteTest, AWindowDestroyedUnderItTakesItAlong) {
  Open();
  Soon([&] { window_.reset(); });
  Click("picBack");
  EXPECT_EQ(window_, nullptr);
}

}  // namespace
}  // namespace kel::testing
