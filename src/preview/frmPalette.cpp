#include "preview/frmPalette.h"

#include <QGridLayout>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <algorithm>

#include "common/twips.h"
#include "preview/frmPVColorBox.h"
#include "preview/palette_colors.h"

namespace kel {
namespace {

// From the place of the box to that of the palette.
constexpr Twips kRightOfBox = 50;
constexpr Twips kBelowBox = 400;

constexpr int kMargin = 8;
constexpr int kGap = 4;

}  // namespace

// A popup is closed by a click beside it, which a modal window would swallow.
frmPalette::frmPalette(QWidget* parent) : QDialog(parent, Qt::Popup | Qt::FramelessWindowHint) {
  setObjectName(QStringLiteral("frmPalette"));
  setAttribute(Qt::WA_QuitOnClose, false);
  AddCells();
}

void frmPalette::AddCells() {
  auto* cells = new QGridLayout(this);
  cells->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  cells->setSpacing(kGap);
  cells->setSizeConstraint(QLayout::SetFixedSize);
  for (std::size_t i = 0; i < kPaletteColors.size(); ++i) {
    const PaletteColor& color = kPaletteColors[i];
    auto* cell = new ColorBox(QString::fromLatin1(color.name), this);
    cell->setObjectName(QStringLiteral("Pal"));
    cell->setProperty("Index", static_cast<int>(i));
    cell->setFocusPolicy(Qt::NoFocus);  // so that every key reaches the window
    cell->BackColor(color.color);
    connect(cell, &ColorBox::clicked, this, [this, cell] {
      chosen_ = cell->BackColor();
      accept();
    });
    cells->addWidget(cell, static_cast<int>(i / kPaletteColumns),
                     static_cast<int>(i % kPaletteColumns));
  }
}

void frmPalette::ShowPalette(ColorBox& box) {
  const QPointer<ColorBox> asked_for(&box);
  const QPointer<frmPalette> self(this);
  chosen_ = box.BackColor();
  setWindowTitle(box.accessibleName());
  setAccessibleName(box.accessibleName());
  for (ColorBox* cell : findChildren<ColorBox*>()) cell->Mark(cell->BackColor() == chosen_);
  PlaceBelow(box);
  exec();
  if (self && asked_for) asked_for->BackColor(chosen_);
}

void frmPalette::PlaceBelow(const ColorBox& box) {
  const QWidget* window = box.window();
  const QPoint box_place = box.mapTo(window, QPoint(0, 0));
  const QPoint wanted = window->frameGeometry().topLeft() + box_place +
                        QPoint(PixelsOf(kRightOfBox), box.height() + PixelsOf(kBelowBox));
  adjustSize();
  const QRect screen = window->screen()->availableGeometry();
  move(std::max(screen.left(), std::min(wanted.x(), screen.right() + 1 - width())),
       std::max(screen.top(), std::min(wanted.y(), screen.bottom() + 1 - height())));
}

void frmPalette::keyPressEvent(QKeyEvent* /*event*/) { reject(); }

void frmPalette::paintEvent(QPaintEvent* event) {
  QDialog::paintEvent(event);
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace kel
