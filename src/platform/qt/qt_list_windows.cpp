#include "platform/qt/qt_list_windows.h"

#include <QApplication>
#include <QEventLoop>
#include <QPointer>

#include "controls/top_window.h"
#include "controls/widget_object.h"
#include "listview/frmListview.h"
#include "platform/qt/qt_application.h"

namespace kel {
namespace {

// The window that the caller's form is in; without one what a new window belongs above.
QWidget* OwnerFor(const Object* parent) {
  QWidget* const form = parent == nullptr ? nullptr : WidgetOf(*parent);
  return form != nullptr ? form->window() : OwnerForNewWindow();
}

}  // namespace

QtListWindows::QtListWindows() = default;

QtListWindows::~QtListWindows() {
  // A host ends with the process, after the application: too late to take a window down.
  [[maybe_unused]] const frmListview* const left_open = list_.release();
}

void QtListWindows::ShowListView(const Value& column_alignment, ShowStyle style, Object* parent) {
  RequireWindows();
  if (list_) {
    list_->Bind(column_alignment);
  } else {
    Make(column_alignment);
  }
  const QWidget* const above = QApplication::activeModalWidget();
  const bool waits = style == ShowStyle::kModal;
  // Beside a modal window nobody could use it.
  const bool modal = waits || above != nullptr;
  const bool usable = list_->isVisible() && (above == nullptr || above == list_.get());
  if (!usable || (waits && !list_->isModal())) {
    Open(OwnerFor(parent), modal);
    if (modal) return WaitUntilClosed();
  }
  list_->raise();
  list_->activateWindow();
}

void QtListWindows::Make(const Value& column_alignment) {
  auto window = std::make_unique<frmListview>();
  window->Bind(column_alignment);
  QObject::connect(window.get(), &frmListview::Closed, window.get(),
                   [this] { list_.release()->deleteLater(); });
  QObject::connect(qApp, &QCoreApplication::aboutToQuit, window.get(), &QWidget::close);
  list_ = std::move(window);
}

// A window that is open already comes up anew, as its owner or its modality has changed.
void QtListWindows::Open(QWidget* owner, bool modal) {
  list_->hide();
  list_->setWindowModality(modal ? Qt::ApplicationModal : Qt::NonModal);
  if (owner != list_.get()) SetOwner(*list_, owner);
  list_->show();
}

// The program may end meanwhile, which takes the window down as well.
void QtListWindows::WaitUntilClosed() {
  const QPointer<frmListview> window = list_.get();
  QEventLoop loop;
  QObject::connect(window, &frmListview::Closed, &loop, &QEventLoop::quit);
  loop.exec();
  if (window && window == list_.get()) return list_.reset();
  delete window.data();  // at once: a program without an event loop of its own waits here, too
}

}  // namespace kel
