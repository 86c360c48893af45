// A page of a tab that scrolls on a screen too small for it.
#pragma once

#include <QScrollArea>

namespace kel {

/// As large as its content, without a frame: it looks as if it were not there. With less room it
/// scrolls, to the control that gets the focus, too.
class FittingPage : public QScrollArea {
 public:
  /// Owns the content.
  explicit FittingPage(QWidget* content);

  /// The most it asks for, in pixels.
  void Room(const QSize& room);

  QSize sizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void FollowFocus(QWidget* focused);

  QSize room_{QWIDGETSIZE_MAX, QWIDGETSIZE_MAX};
};

}  // namespace kel
