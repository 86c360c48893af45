// How a Button looks.
#pragma once

#include <QColor>
#include <QPainter>
#include <QRect>
#include <QSize>

#include "common/ole_color.h"
#include "controls/Button.h"

namespace kel {

/// One drawing of a button in a state of Button::State. It must not outlive the button.
class ButtonLook {
 public:
  ButtonLook(const Button& button, int state, bool focused)
      : button_(button), state_(state), focused_(focused) {}

  void Draw(QPainter& painter) const;
  QSize SizeHint() const;

 private:
  void DrawFace(QPainter& painter) const;
  void DrawCaption(QPainter& painter, const QRect& area) const;
  void DrawArrow(QPainter& painter, const QRect& area) const;
  void DrawEdge(QPainter& painter) const;
  void DrawFocusRect(QPainter& painter) const;

  bool IsPressed() const { return state_ != Button::kNormal && state_ != Button::kHot; }
  bool IsFlat() const { return button_.Behavior() < Button::kStandardBehavior; }
  QColor Color(OleColor color) const;

  const Button& button_;
  int state_;
  bool focused_;
};

}  // namespace kel
