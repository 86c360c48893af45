#include "controls/top_window.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QPointer>
#include <QScreen>
#include <QThread>
#include <QWindow>
#include <algorithm>
#include <chrono>

namespace kel {
namespace {

using namespace std::chrono_literals;

// Of a window's frame, which is not known before it is shown, at least, in pixels.
constexpr int kFrame = 8;
constexpr int kTitleBar = 32;
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

QSize RoomOnScreen(const QWidget& window) {
  return window.screen()->availableSize() - QSize(kFrame, kTitleBar + kFrame);
}

QPoint PlaceOver(const QWidget& window, const QWidget& owner) {
  const QRect free = owner.screen()->availableGeometry();
  const QPoint middle = owner.frameGeometry().center() - window.rect().center();
  return {std::max(free.left(), std::min(middle.x(), free.right() + 1 - window.width())),
          std::max(free.top(), std::min(middle.y(), free.bottom() + 1 - window.height()))};
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
