#include "platform/qt/qt_report_windows.h"

#include <QApplication>
#include <QEventLoop>

#include "controls/top_window.h"
#include "engine/frmPrint.h"
#include "engine/frmStartPage.h"
#include "platform/qt/qt_application.h"
#include "preview/frmPV.h"
#include "setup/frmSetup.h"

namespace kel {

QtReportWindows::QtReportWindows() = default;

QtReportWindows::~QtReportWindows() {
  // A host ends with the process, after the application: too late to take a window down.
  [[maybe_unused]] const frmPV* const left_open = preview_.release();
}

std::optional<PageRange> QtReportWindows::AskPageRange(std::int32_t page_count) {
  RequireWindows();
  frmPrint dialog(page_count);
  dialog.Ask();
  return dialog.Range();
}

void QtReportWindows::AskStartPage(JobValues& job) {
  RequireWindows();
  frmStartPage(job).Ask();
}

void QtReportWindows::ShowPreview(const ReportSnapshot& report, ShowStyle style) {
  RequireWindows();
  if (preview_) {
    preview_->ShowReport(report);
    BringForward();
    return;
  }
  preview_ = std::make_unique<frmPV>(report);
  // Beside a modal window nobody could use it.
  const bool modal = style == ShowStyle::kModal || QApplication::activeModalWidget() != nullptr;
  if (modal) return OpenUntilClosed();
  OpenBeside();
}

void QtReportWindows::ShowSetup() {
  RequireWindows();
  frmSetup().Ask();
}

// A window that was open before a modal one came up takes no input until it belongs to that.
void QtReportWindows::BringForward() {
  QWidget* const modal = QApplication::activeModalWidget();
  if (modal != nullptr && modal != preview_.get()) {
    preview_->hide();
    SetOwner(*preview_, modal);
    preview_->show();
  }
  preview_->raise();
  preview_->activateWindow();
}

void QtReportWindows::OpenBeside() {
  frmPV* const window = preview_.get();
  QObject::connect(window, &frmPV::Closed, window, [this] { preview_.release()->deleteLater(); });
  QObject::connect(qApp, &QCoreApplication::aboutToQuit, window, &QWidget::close);
  window->show();
}

void QtReportWindows::OpenUntilClosed() {
  QEventLoop loop;
  QObject::connect(preview_.get(), &frmPV::Closed, &loop, &QEventLoop::quit);
  preview_->setWindowModality(Qt::ApplicationModal);
  preview_->show();
  loop.exec();
  preview_.reset();
}

}  // namespace kel
