// Drives windows that keep the test waiting until they are closed.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDeadlineTimer>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace kel::testing {

/// Runs `act` once the modal window of that name has the screen, from inside that window's own
/// event loop. A window that does not come is a failure; whatever is modal by then is closed.
inline void WhenModal(const QString& name, const std::function<void(QWidget& window)>& act) {
  constexpr std::chrono::seconds kPatience{20};
  auto* const timer = new QTimer(qApp);
  const QDeadlineTimer deadline(kPatience);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, deadline, name, act] {
    QWidget* const window = QApplication::activeModalWidget();
    const bool there = window != nullptr && window->objectName() == name && window->isVisible();
    if (!there && !deadline.hasExpired()) return;
    timer->stop();
    timer->deleteLater();
    if (there) return act(*window);
    ADD_FAILURE() << name.toStdString() << " did not come";
    if (window != nullptr) window->close();
  });
  timer->start(1);
}

/// A child by its published name; it must be there.
template <typename Widget = QWidget>
Widget& Child(const QWidget& window, const QString& name) {
  auto* const child = window.findChild<Widget*>(name);
  if (child == nullptr) throw std::runtime_error("there is no " + name.toStdString());
  return *child;
}

/// Saves what the user sees beside the test's other output.
inline void SavePicture(QWidget& window, const QString& name) {
  EXPECT_TRUE(window.grab().save(name + ".png"));
}

}  // namespace kel::testing
