// The push button of the library's windows.
#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QString>

#include "common/ole_color.h"
#include "controls/property_bag.h"

namespace kel {

/// An owner-drawn push button: edges that rise under the mouse and sink when pressed, an optional
/// drop-down arrow, an optional focus rectangle, and one event, Click (QAbstractButton::clicked).
///
/// Space presses it; Left and Right move the focus to the previous and the next control; the
/// caption's "&" marks the access key.
///
///     auto* ok = new kel::Button(tr("&OK"), this);
///     connect(ok, &kel::Button::clicked, this, &QDialog::accept);
class Button : public QAbstractButton {
  Q_OBJECT

 public:
  /// The states in which DRAWBUTTON paints; every other value is pressed.
  enum State : int { kNormal = 0, kHot = 1, kPressed = 2 };
  /// The standard three-dimensional look; values below it add a rectangle in BorderColor.
  static constexpr int kStandardBehavior = 2;

  explicit Button(QWidget* parent = nullptr);
  explicit Button(const QString& caption, QWidget* parent = nullptr);

  QString Caption() const { return text(); }
  void Caption(const QString& caption);
  OleColor ForeColor() const { return fore_color_; }
  void ForeColor(OleColor color);
  OleColor BackColor() const { return back_color_; }
  void BackColor(OleColor color);
  OleColor BorderColor() const { return border_color_; }
  void BorderColor(OleColor color);
  bool FocusRect() const { return focus_rect_; }
  void FocusRect(bool draw);
  int Behavior() const { return behavior_; }
  void Behavior(int behavior);
  int DropDown() const { return drop_down_; }
  void DropDown(int drop_down);
  /// True raises Click on an enabled button. There is no reading it.
  void Value(bool value);
  /// Draws the button as the one that Enter presses; the window sees to Enter itself.
  void Default(bool is_default);
  bool IsDefault() const { return default_; }

  /// The kept properties by their published keys. A missing key means the published default.
  void ReadProperties(const PropertyBag& bag);
  PropertyBag WriteProperties() const;

  /// Paints the button in a state.
  void DRAWBUTTON(int state);
  /// Paints the focus rectangle, or removes it.
  void DRAWFocus(bool draw);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Reset();

  int state_ = kNormal;
  bool focus_shown_ = false;
  bool space_down_ = false;
  bool default_ = false;
  OleColor fore_color_ = system_color::kButtonText;
  OleColor back_color_ = system_color::kButtonFace;
  OleColor border_color_ = system_color::kButtonFace;
  bool focus_rect_ = true;
  int behavior_ = kStandardBehavior;
  int drop_down_ = 0;
};

}  // namespace kel
