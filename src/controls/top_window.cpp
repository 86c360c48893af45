#include "controls/top_window.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QPointer>
#include <QThread>
#include <QWindow>
#include <chrono>

namespace kel {
namespace {

using namespace std::chrono_literals;

constexpr int kTitleButtons = 120;  // and the window's icon, in pixels
constexpr auto kLongestWait = 200ms;
constexpr unsigned long kPollInterval = 1;  // milliseconds

}  // namespace

QWidget* OwnerForNewWindow() {
  QWidget* const modal = QApplication::activeModalWidget();
  return modal != nullptr ? modal : QApplication::activeWindow();
}

void SetOwner(QWidget& window, QWidget* owner) {
  window.winId();  // makes the window's handle
  QWindow* const above = owner == nullptr ? nullptr : owner->window()->windowHandle();
  if (above != window.windowHandle()) window.windowHandle()->setTransientParent(above);
}

int WidthForTitle(const QWidget& window) {
  QFont bold = window.font();  // as many frames have it
  bold.setBold(true);
  return QFontMetrics(bold).horizontalAdvance(window.windowTitle()) + kTitleButtons;
}

void ShowPainted(QWidget& window) {
  const QPointer<QWidget> shown(&window);
  const QDeadlineTimer deadline(kLongestWait);
  window.show();
  do {
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    if (shown.isNull()) return;
    if (shown->windowHandle() == nullptr || shown->windowHandle()->isExposed()) break;
    QThread::msleep(kPollInterval);
  } while (!deadline.hasExpired());
  shown->repaint();
}

}  // namespace kel
