#include "controls/button_look.h"

#include <QFontMetrics>
#include <QPalette>
#include <QPen>
#include <QStyle>
#include <QStyleOption>
#include <algorithm>
#include <utility>

#include "controls/colors.h"

namespace kel {
namespace {

// Of the drop-down arrow's rectangle, from the right edge of the button, in pixels.
constexpr int kArrowLeft = 15;
constexpr int kArrowRight = 2;

constexpr int kPressedShift = 1;
constexpr int kFocusInset = 3;
constexpr double kCorner = 2.5;
constexpr int kLeastWidthInCharacters = 12;
constexpr double kOutlineStrength = 0.35;  // of the caption's colour on the face
constexpr double kFocusStrength = 0.7;
constexpr double kHotTint = 0.05;
constexpr double kPressedTint = 0.14;

enum class Edge { kNone, kRaisedInner, kRaised, kSunkenOuter };

Edge EdgeOf(int state, bool flat) {
  if (state != Button::kNormal && state != Button::kHot) return Edge::kSunkenOuter;
  const bool hot = state == Button::kHot;
  if (flat) return hot ? Edge::kRaisedInner : Edge::kNone;
  return hot ? Edge::kRaised : Edge::kRaisedInner;
}

QColor Mixed(const QColor& color, const QColor& with, double share) {
  const auto mix = [share](double from, double to) { return from + (to - from) * share; };
  return QColor::fromRgbF(static_cast<float>(mix(color.redF(), with.redF())),
                          static_cast<float>(mix(color.greenF(), with.greenF())),
                          static_cast<float>(mix(color.blueF(), with.blueF())));
}

QColor Faded(QColor color, double opacity) {
  color.setAlphaF(static_cast<float>(opacity));
  return color;
}

}  // namespace

void ButtonLook::Draw(QPainter& painter) const {
  painter.setRenderHint(QPainter::Antialiasing);
  const int shift = IsPressed() ? kPressedShift : 0;
  const QRect area = button_.rect().translated(shift, shift);
  DrawFace(painter);
  DrawCaption(painter, area);
  if (button_.DropDown() != 0) DrawArrow(painter, area);
  DrawEdge(painter);
  if (focused_) DrawFocusRect(painter);
}

QColor ButtonLook::Color(OleColor color) const { return ToQColor(color, button_.palette()); }

void ButtonLook::DrawFace(QPainter& painter) const {
  const double corner = IsFlat() ? 0 : kCorner;
  painter.setPen(Qt::NoPen);
  painter.setBrush(Color(button_.BackColor()));
  painter.drawRoundedRect(QRectF(button_.rect()), corner, corner);
  if (state_ == Button::kNormal) return;
  painter.setBrush(
      Faded(Color(button_.ForeColor()), state_ == Button::kHot ? kHotTint : kPressedTint));
  painter.drawRoundedRect(QRectF(button_.rect()), corner, corner);
}

void ButtonLook::DrawCaption(QPainter& painter, const QRect& area) const {
  constexpr int kFlags = Qt::AlignCenter | Qt::TextSingleLine | Qt::TextShowMnemonic;
  if (button_.isEnabled()) {
    painter.setPen(Color(button_.ForeColor()));
    painter.drawText(area, kFlags, button_.text());
    return;
  }
  // The greyed group's own shades are too close to each other to be read.
  QPalette palette = button_.palette();
  palette.setCurrentColorGroup(QPalette::Active);
  QColor highlight = ToQColor(system_color::kHighlight3d, palette);
  QColor shadow = ToQColor(system_color::kButtonShadow, palette);
  // On a dark face they change places and part, or the caption would be lost in it.
  if (Color(button_.BackColor()).lightnessF() < 0.5F) {
    std::swap(highlight, shadow);
    shadow = Mixed(shadow, ToQColor(button_.ForeColor(), palette), kOutlineStrength);
  }
  painter.setPen(highlight);
  painter.drawText(area.translated(1, 1), kFlags, button_.text());
  painter.setPen(shadow);
  painter.drawText(area, kFlags, button_.text());
}

void ButtonLook::DrawArrow(QPainter& painter, const QRect& area) const {
  QStyleOption option;
  option.initFrom(&button_);  // disabled ones are drawn inactive
  option.palette.setColor(
      QPalette::ButtonText,
      Color(button_.isEnabled() ? button_.ForeColor() : system_color::kButtonShadow));
  option.rect =
      QRect(area.right() + 1 - kArrowLeft, area.top(), kArrowLeft - kArrowRight, area.height());
  button_.style()->drawPrimitive(QStyle::PE_IndicatorArrowDown, &option, &painter, &button_);
}

void ButtonLook::DrawEdge(QPainter& painter) const {
  // Through the middle of the outermost pixels.
  QRectF outline = QRectF(button_.rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setBrush(Qt::NoBrush);
  if (IsFlat()) {
    QPen border(Color(button_.BorderColor()), 1);
    border.setJoinStyle(Qt::MiterJoin);
    painter.setPen(border);
    painter.drawRect(outline);
    outline.adjust(1, 1, -1, -1);
  }
  const Edge edge = EdgeOf(state_, IsFlat());
  if (edge == Edge::kNone && !button_.IsDefault()) return;

  const double corner = IsFlat() ? 0 : kCorner;
  const QColor accent = button_.palette().color(QPalette::Highlight);
  const QColor plain =
      Mixed(Color(button_.BackColor()), Color(button_.ForeColor()), kOutlineStrength);
  painter.setPen(button_.IsDefault() || edge == Edge::kRaised ? accent : plain);
  painter.drawRoundedRect(outline, corner, corner);
  if (button_.IsDefault()) {
    painter.setPen(Faded(accent, kOutlineStrength));
    painter.drawRoundedRect(outline.adjusted(1, 1, -1, -1), corner, corner);
    return;
  }
  const QColor rim =
      Color(edge == Edge::kSunkenOuter ? system_color::kButtonShadow : system_color::kHighlight3d);
  painter.setPen(Faded(rim, kOutlineStrength));
  painter.drawLine(outline.topLeft() + QPointF(corner, 1),
                   outline.topRight() + QPointF(-corner, 1));
}

void ButtonLook::DrawFocusRect(QPainter& painter) const {
  QPen pen(Faded(Color(system_color::kWindowFrame), kFocusStrength), 1);
  pen.setDashPattern({1, 1});
  pen.setCapStyle(Qt::FlatCap);
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(pen);
  painter.setBrush(Qt::NoBrush);
  const int inset = kFocusInset;
  painter.drawRect(button_.rect().adjusted(inset, inset, -inset - 1, -inset - 1));
}

QSize ButtonLook::SizeHint() const {
  const QFontMetrics metrics = button_.fontMetrics();
  const QSize caption = metrics.size(Qt::TextSingleLine | Qt::TextShowMnemonic, button_.text());
  // The caption is centred in the whole button, so the arrow's room is needed on both sides.
  const int beside = button_.DropDown() != 0 ? kArrowLeft : kFocusInset;
  const int width = caption.width() + metrics.height() + 2 * beside;
  const int height = metrics.height() + metrics.height() / 2 + 2 * kFocusInset;
  return {std::max(width, kLeastWidthInCharacters * metrics.averageCharWidth()), height};
}

}  // namespace kel
