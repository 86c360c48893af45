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
    WhenModal("frmPalette", [&](QWidget& palette) {
      use(palette);
      if (palette.isVisible()) palette.close();
    });
    Click(control);
  }
  static std::vector<ColorBox*> Cells(const QWidget& palette) {
    std::vector<ColorBox*> cells;
    for (QWidget* cell : palette.findChildren<QWidget*>("Pal")) {
      cells.push_back(static_cast<ColorBox*>(cell));
    }
    return cells;
  }
};

TEST_F(PaletteTest, AClickOnACellTakesItsColourIfItIsAnother) {
  Open();
  SearchFor("cash");
  const auto choose = [&](const char* control, std::size_t cell) {
    OleColor colour = 0;
    WithPalette(control, [&](QWidget& palette) {
      colour = Cells(palette).at(cell)->BackColor();
      QTest::mouseClick(Cells(palette).at(cell), Qt::LeftButton);
      EXPECT_FALSE(palette.isVisible());
    });
    return colour;
  };
  choose("picBack", 0);
  EXPECT_EQ(Pic().Page().match.cells, 4);
  const OleColor back = choose("picBack", 9);
  EXPECT_EQ(Box("picBack").BackColor(), back);
  EXPECT_EQ(Pic().Colors().back, back);
  EXPECT_EQ(Pic().Colors().fore, system_color::kWindowText);
  EXPECT_EQ(Pic().Page().match.cells, 0);  // the page was drawn anew
  const OleColor fore = choose("ForeColor", 30);
  EXPECT_NE(fore, system_color::kWindowText);
  EXPECT_EQ(Pic().Colors().fore, fore);
  EXPECT_EQ(Pic().Colors().back, back);
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

TEST_F(PaletteTest, ItStandsJustBelowItsBoxAsFarAsTheScreenReaches) {
  Open();
  const QRect screen = window_->screen()->availableGeometry();
  for (const QPoint corner : {QPoint(10, 20), QPoint(-3000, -3000), QPoint(3000, 3000)}) {
    window_->move(corner);
    WithPalette("picBack", [&](QWidget& palette) {
      EXPECT_TRUE(screen.contains(palette.frameGeometry()));
      const QWidget& box = Find("picBack");
      const QPoint below = window_->frameGeometry().topLeft() + box.mapTo(window_.get(), QPoint()) +
                           QPoint(3, box.height() + 27);
      const int furthest = screen.right() + 1 - palette.width();
      if (corner.y() != 20) return;
      EXPECT_EQ(palette.pos(), QPoint(std::min(below.x(), furthest), below.y()));
    });
  }
}

TEST_F(PaletteTest, AWindowDestroyedUnderItTakesItAlong) {
  Open();
  WhenModal("frmPalette", [&](QWidget& /*palette*/) { window_.reset(); });
  Click("picBack");
  EXPECT_EQ(window_, nullptr);
}

}  // namespace
}  // namespace kel::testing
