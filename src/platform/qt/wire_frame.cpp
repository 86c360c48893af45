#include "platform/qt/wire_frame.h"

#include <QGuiApplication>
#include <QPainter>
#include <QRegion>
#include <QScreen>
#include <QWidget>
#include <thread>

#include "controls/top_window.h"
#include "toolkit/screen_placement.h"

namespace kel {
namespace {

constexpr int kLineWidth = 2;  // pixels at 100 %
constexpr auto kWindow = Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                         Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus |
                         Qt::BypassWindowManagerHint;

QRect ToQRect(const RECT& rect) {
  return QRect(QPoint(rect.Left, rect.Top), QPoint(rect.Right - 1, rect.Bottom - 1)).normalized();
}

/// A window of which only the outline of one rectangle is there.
class WireFrame : public QWidget {
 public:
  explicit WireFrame(const QRect& area) : QWidget(nullptr, kWindow) {
    setObjectName("WireFrame");
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setGeometry(area);
    SetOwner(*this, OwnerForNewWindow());
  }

  void ShowOutline(const QRect& rect) {
    const QRect inner = rect.adjusted(kLineWidth, kLineWidth, -kLineWidth, -kLineWidth);
    const QRegion outline = QRegion(rect).subtracted(inner).translated(-pos()) & this->rect();
    if (outline.isEmpty()) return hide();  // no mask would mean all of the window
    setMask(outline);
    ShowPainted(*this);
  }

 protected:
  // Light and dark dots show on every background, as inverted lines would.
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.fillRect(rect(), QBrush(Qt::black, Qt::Dense4Pattern));
  }
};

}  // namespace

void DrawWireFrame(const RECT& from, const RECT& to, int steps, std::chrono::milliseconds pause) {
  const QScreen* const screen = QGuiApplication::primaryScreen();
  if (screen == nullptr || QGuiApplication::platformName().startsWith("wayland")) return;
  WireFrame frame(ToQRect(from).united(ToQRect(to)) & screen->virtualGeometry());
  for (int step = 1; step <= steps; ++step) {
    frame.ShowOutline(ToQRect(WireRect(from, to, step, steps)));
    std::this_thread::sleep_for(pause);
  }
}

}  // namespace kel
