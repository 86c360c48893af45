#include "controls/Button.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <string>

#include "controls/button_look.h"
#include "controls/colors.h"

namespace kel {
Button::Button(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

Button::Button(const QString& caption, QWidget* parent) : Button(parent) { Caption(caption); }

void Button::Caption(const QString& caption) {
  setText(caption);  // makes the access key, too
  updateGeometry();
}

void Button::ForeColor(OleColor color) {
  fore_color_ = color;
  update();
}

void Button::BackColor(OleColor color) {
  back_color_ = color;
  update();
}

void Button::BorderColor(OleColor color) {
  border_color_ = color;
  update();
}

void Button::FocusRect(bool draw) {
  focus_rect_ = draw;
  update();
}

void Button::Behavior(int behavior) {
  behavior_ = behavior;
  update();
}

void Button::DropDown(int drop_down) {
  drop_down_ = drop_down;
  updateGeometry();
  update();
}

void Button::Value(bool value) {
  if (value && isEnabled()) click();
}

void Button::Default(bool is_default) {
  default_ = is_default;
  update();
}

void Button::ReadProperties(const PropertyBag& bag) {
  // Everything is read before anything is set: a value of the wrong type leaves the button as is.
  const std::string caption = bag.Read("Caption", objectName().toStdString()).ToText();
  const std::string font_text = bag.Read("Font", "").ToText();
  const OleColor fore = ColorOf(bag.Read("ForeColor", ColorValue(system_color::kButtonText)));
  const OleColor back = ColorOf(bag.Read("BackColor", ColorValue(system_color::kButtonFace)));
  const OleColor border = ColorOf(bag.Read("BorderColor", ColorValue(system_color::kButtonFace)));
  const bool focus_rect = bag.Read("FocusRect", true).ToBoolean();
  const int behavior = bag.Read("Behavior", kStandardBehavior).ToInt32();
  const int drop_down = bag.Read("DropDown", 0).ToInt32();
  const bool enabled = bag.Read("Enabled", true).ToBoolean();

  Caption(QString::fromStdString(caption));
  QFont own;
  const bool has_own = !font_text.empty() && own.fromString(QString::fromStdString(font_text));
  setFont(has_own ? own : QFont());  // else the container's
  ForeColor(fore);
  BackColor(back);
  BorderColor(border);
  FocusRect(focus_rect);
  Behavior(behavior);
  DropDown(drop_down);
  setEnabled(enabled);
}

PropertyBag Button::WriteProperties() const {
  PropertyBag bag;
  bag.Write("Caption", Caption().toStdString());
  // A font that was never set goes on following the container's.
  if (testAttribute(Qt::WA_SetFont)) bag.Write("Font", font().toString().toStdString());
  bag.Write("ForeColor", ColorValue(fore_color_));
  bag.Write("BackColor", ColorValue(back_color_));
  bag.Write("BorderColor", ColorValue(border_color_));
  bag.Write("FocusRect", focus_rect_);
  bag.Write("Behavior", behavior_);
  bag.Write("DropDown", drop_down_);
  bag.Write("Enabled", isEnabledTo(parentWidget()));
  return bag;
}

void Button::DRAWBUTTON(int state) {
  state_ = state;
  update();
}

void Button::DRAWFocus(bool draw) {
  focus_shown_ = draw;
  update();
}

QSize Button::sizeHint() const { return ButtonLook(*this, state_, focus_shown_).SizeHint(); }

bool Button::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::Shortcut:
      if (static_cast<QShortcutEvent*>(event)->isAmbiguous()) break;
      Value(true);
      return true;
    case QEvent::Enter:
      if (!space_down_ && isEnabled()) DRAWBUTTON(kHot);
      break;
    case QEvent::Leave:
      if (!space_down_) DRAWBUTTON(kNormal);
      break;
    case QEvent::Hide:
      Reset();
      break;
    default:
      break;
  }
  return QAbstractButton::event(event);
}

void Button::mousePressEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::LeftButton && !space_down_) DRAWBUTTON(kPressed);
}

// While a button is down every move comes here, wherever the pointer is.
void Button::mouseMoveEvent(QMouseEvent* event) {
  event->accept();
  if (space_down_) return;
  if (!rect().contains(event->pos())) {
    DRAWBUTTON(kNormal);
  } else {
    DRAWBUTTON((event->buttons() & Qt::LeftButton) != 0 ? kPressed : kHot);
  }
}

void Button::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() != Qt::LeftButton || !rect().contains(event->pos())) return;
  DRAWBUTTON(kHot);
  click();  // last, for it may be the end of this button
}

void Button::keyPressEvent(QKeyEvent* event) {
  const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const bool presses = plain && (enter || event->key() == Qt::Key_Space);
  // A key still held from before is no answer to what has come up since.
  if (presses && event->isAutoRepeat()) return event->accept();
  if (plain && event->key() == Qt::Key_Space) {
    space_down_ = true;
    DRAWBUTTON(kPressed);
  } else if (plain && event->key() == Qt::Key_Left) {
    focusPreviousChild();
  } else if (plain && event->key() == Qt::Key_Right) {
    focusNextChild();
  } else if (plain && enter) {
    click();  // the button in hand goes before the window's default one
  } else {
    event->ignore();
  }
}

void Button::keyReleaseEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Space || event->isAutoRepeat() || !space_down_) {
    event->ignore();
    return;
  }
  space_down_ = false;
  DRAWBUTTON(underMouse() ? kHot : kNormal);
  click();
}

void Button::focusInEvent(QFocusEvent* event) {
  QAbstractButton::focusInEvent(event);
  DRAWFocus(true);
}

void Button::focusOutEvent(QFocusEvent* event) {
  QAbstractButton::focusOutEvent(event);
  DRAWFocus(false);
  if (space_down_) Reset();
}

void Button::changeEvent(QEvent* event) {
  QAbstractButton::changeEvent(event);
  if (event->type() == QEvent::EnabledChange && !isEnabled()) Reset();
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) updateGeometry();
  update();
}

void Button::Reset() {
  space_down_ = false;
  DRAWBUTTON(kNormal);
}

void Button::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  ButtonLook(*this, state_, focus_shown_ && focus_rect_).Draw(painter);
}

}  // namespace kel
