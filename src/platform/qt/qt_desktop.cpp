#include "platform/qt/qt_desktop.h"

#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QPointer>
#include <QScreen>
#include <QThread>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <cstdlib>

#include "common/error.h"
#include "controls/top_window.h"
#include "controls/widget_object.h"
#include "platform/qt/qt_application.h"
#include "platform/qt/virtual_keys.h"
#include "platform/qt/wire_frame.h"
#include "toolkit/frmFlash.h"
#include "toolkit/frmMsg.h"
#include "toolkit/frmSplash.h"

namespace kel {
namespace {

RECT ToRect(const QRect& rect) {
  return {rect.x(), rect.y(), rect.x() + rect.width(), rect.y() + rect.height()};
}

// The program's own application, before any window of ours has called for one.
bool IsWindowThread() {
  return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr &&
         QCoreApplication::instance()->thread() == QThread::currentThread();
}

// Set when the process ends: Qt's own statics may be gone before a caller's are, and with them the
// means to destroy a window.
bool process_ending = false;

void NoticeProcessEnd() {
  [[maybe_unused]] static const int registered = std::atexit([] { process_ending = true; });
}

/// Owns a frmSplash. Its own end may come while the window waits in Step or for the answer to
/// "Stop?"; what is destroyed then is not touched any more.
class QtWaitWindow : public WaitWindow {
 public:
  explicit QtWaitWindow(Desktop& desktop) : desktop_(desktop), window_(new frmSplash) {
    NoticeProcessEnd();
  }
  ~QtWaitWindow() override {
    if (QCoreApplication::instance() != nullptr && !process_ending) delete window_.data();
  }
  QtWaitWindow(const QtWaitWindow&) = delete;
  QtWaitWindow& operator=(const QtWaitWindow&) = delete;

  void Show(const WaitRequest& request) override {
    if (window_) window_->Show(request, desktop_);
  }
  bool Step(std::int32_t step, const std::optional<std::string>& caption) override {
    return window_ && window_->Step(step, caption);
  }

 private:
  Desktop& desktop_;
  QPointer<frmSplash> window_;
};

}  // namespace

bool QtDesktop::ShowMessage(const MessageRequest& request) {
  if (!CanShowWindows()) return headless_.ShowMessage(request);
  return frmMsg(request).Ask(*this);
}

std::unique_ptr<WaitWindow> QtDesktop::MakeWaitWindow() {
  if (!CanShowWindows()) return headless_.MakeWaitWindow();
  return std::make_unique<QtWaitWindow>(*this);
}

void QtDesktop::Flash(const FlashRequest& request) {
  if (!CanShowWindows()) return headless_.Flash(request);
  frmFlash::Show(request, WorkArea());
}

void QtDesktop::SetMousePointer(MousePointer pointer) {
  const bool hourglass = pointer == MousePointer::kHourglass;
  if (!IsWindowThread() || hourglass == hourglass_) return;
  hourglass_ = hourglass;
  if (hourglass) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

void QtDesktop::DoEvents() {
  if (IsWindowThread()) QApplication::processEvents();
}

std::optional<RECT> QtDesktop::ScreenRect(Object& control) {
  if (!IsWindowThread()) return std::nullopt;
  const QWidget* const widget = WidgetOf(control);
  if (widget == nullptr || !widget->isVisible()) return std::nullopt;
  return ToRect({widget->mapToGlobal(QPoint(0, 0)), widget->size()});
}

RECT QtDesktop::WorkArea() {
  if (!CanShowWindows()) return headless_.WorkArea();
  const QWidget* const owner = OwnerForNewWindow();
  const QScreen* const screen =
      owner != nullptr ? owner->screen() : QGuiApplication::primaryScreen();
  return screen != nullptr ? ToRect(screen->availableGeometry()) : RECT();
}

void QtDesktop::DrawWireRects(const RECT& from, const RECT& to, int steps,
                              std::chrono::milliseconds pause) {
  if (steps > 0 && CanShowWindows()) DrawWireFrame(from, to, steps, pause);
}

void QtDesktop::SendKey(int key_code, int shift) {
  const TypedKey key = TypedKeyOf(key_code, shift);
  if (!IsWindowThread()) return;
  // The window hands the key on as it does one from the keyboard: to an open list first.
  QWindow* const window = QGuiApplication::focusWindow();
  if (window == nullptr) return;
  for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QCoreApplication::postEvent(window, new QKeyEvent(type, key.key, key.modifiers, key.text));
  }
}

void QtDesktop::ShowTopMost(std::int64_t window) {
  if (!IsWindowThread()) return;
  QWidget* const widget = QWidget::find(static_cast<WId>(window));
  if (widget == nullptr) {
    throw Error(error_number::kInvalidProcedureCall, "There is no window of that handle");
  }
  QWidget* const top = widget->window();
  // Not QWidget::setWindowFlag: that hides the window and may give it another handle.
  top->overrideWindowFlags(top->windowFlags() | Qt::WindowStaysOnTopHint);
  if (QWindow* const handle = top->windowHandle()) {
    handle->setFlag(Qt::WindowStaysOnTopHint);
    handle->raise();
  }
}

void QtDesktop::Delay(std::chrono::milliseconds time) {
  if (!IsWindowThread()) return headless_.Delay(time);
  QEventLoop loop;
  QTimer timer;
  timer.setTimerType(Qt::PreciseTimer);
  timer.setSingleShot(true);
  QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
  timer.start(time);
  loop.exec();
}

}  // namespace kel
