// The picture that tells whether the preview is at work.
#pragma once

#include <QPainter>
#include <QWidget>

#include "controls/icons.h"

namespace kel {

/// `picAnimate`: shows the image "Busy" or "Ready".
class StatusPicture : public QWidget {
 public:
  explicit StatusPicture(QWidget* parent) : QWidget(parent) { Show(QStringLiteral("Ready")); }

  void Show(const QString& key) {
    if (key == accessibleName()) return;
    setAccessibleName(key);
    setToolTip(key);
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    (accessibleName() == QLatin1String("Busy") ? busy_ : ready_).paint(&painter, rect());
  }

 private:
  QIcon busy_ = Icon(QStringLiteral("busy"));
  QIcon ready_ = Icon(QStringLiteral("ready"));
};

}  // namespace kel
