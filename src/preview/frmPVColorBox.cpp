#include "preview/frmPVColorBox.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

#include "controls/colors.h"
#include "preview/palette_colors.h"

namespace kel {
namespace {

constexpr int kHalfOfLightness = 128;

QColor ReadableOn(const QColor& color) {
  return color.lightness() < kHalfOfLightness ? Qt::white : Qt::black;
}

QString ColorName(OleColor color, const QPalette& palette) {
  const std::size_t index = PaletteIndex(color);
  if (index < kPaletteColors.size()) return QString::fromLatin1(kPaletteColors[index].name);
  return ToQColor(color, palette).name();
}

// Round and round; from a colour of the user's own to the first or the last.
OleColor NextInPalette(OleColor color, bool forward) {
  constexpr std::size_t kCount = kPaletteColors.size();
  const std::size_t index = PaletteIndex(color);
  if (index == kCount) return kPaletteColors[forward ? 0 : kCount - 1].color;
  return kPaletteColors[(index + (forward ? 1 : kCount - 1)) % kCount].color;
}

QRect Shrunk(const QRect& rect, int by) { return rect.adjusted(by, by, -by, -by); }

}  // namespace

ColorBox::ColorBox(const QString& accessible_name, QWidget* parent) : QAbstractButton(parent) {
  setAccessibleName(accessible_name);
  setToolTip(accessible_name);
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  BackColor(back_color_);
}

void ColorBox::BackColor(OleColor color) {
  back_color_ = color;
  const QString name = ColorName(color, palette());
  setAccessibleDescription(name == accessibleName() ? QString() : name);
  update();
}

void ColorBox::Mark(bool marked) {
  marked_ = marked;
  update();
}

QSize ColorBox::sizeHint() const {
  const int side = style()->pixelMetric(QStyle::PM_ToolBarIconSize, nullptr, this);
  return {side, side};
}

void ColorBox::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QColor color = ToQColor(back_color_, palette());
  const QRect edge = rect().adjusted(0, 0, -1, -1);
  painter.setPen(
      palette().color(underMouse() || hasFocus() ? QPalette::Highlight : QPalette::WindowText));
  painter.setBrush(color);
  painter.drawRect(edge);
  painter.setBrush(Qt::NoBrush);
  if (hasFocus()) painter.drawRect(Shrunk(edge, 1));
  if (marked_) {
    painter.setPen(ReadableOn(color));
    painter.drawRect(Shrunk(edge, 2));
    painter.drawRect(Shrunk(edge, 3));
  }
}

void ColorBox::keyPressEvent(QKeyEvent* event) {
  const bool forward = event->key() == Qt::Key_Down;
  const bool steps = event->modifiers() == Qt::ShiftModifier;
  if (!steps || (!forward && event->key() != Qt::Key_Up)) {
    QAbstractButton::keyPressEvent(event);
    return;
  }
  BackColor(NextInPalette(back_color_, forward));
  emit Stepped();
}

}  // namespace kel
