// Loading, going to and finding pages.
#include "common/host.h"
#include "controls/widget_object.h"
#include "preview/frmPV.h"
#include "preview/frmPVToolbar.h"
#include "preview/frmPVView.h"
#include "preview/zoom.h"
#include "toolkit/CZURDLL.h"

namespace kel {
namespace {

constexpr const char* kErrorLocation = "DLL->LoadPage";
constexpr const char* kNotFound = "No more matching items found.";
constexpr const char* kSearchTitle = "Search";
constexpr int kNotFoundTime = 2000;  // milliseconds

constexpr const char* kPageMissing = "The report file ends before this page.";

}  // namespace

void frmPV::LoadPage(bool reset_find) {
  PageSurface& surface = view_->Surface();
  try {
    BeginWork(model_.IsFarAway());
    model_.LoadPage(reset_find, surface.Page());
    view_->Notice(surface.Page().lines.empty() ? QLatin1String(kPageMissing) : QString());
    EndWork();
  } catch (...) {
    ShowPosition();
    ShowFailure();
    return;
  }
  ShowPosition();
  // Also to a match so far right in its line that it is no longer drawn.
  if (model_.MatchColumn() > 0)
    view_->MoveToSelection(model_.MatchLineOfPage(), model_.MatchColumn());
}

void frmPV::ShowPosition() {
  view_->Surface().Redraw();
  toolbar_->PageBox().setText(QString::fromStdString(model_.PageBoxText()));
  if (toolbar_->PageBox().hasFocus()) toolbar_->PageBox().selectAll();
  const double size = view_->Surface().FontSize();
  toolbar_->Enable(PreviewCommand::kPrevious, model_.CanGoPrevious());
  toolbar_->Enable(PreviewCommand::kNext, model_.CanGoNext());
  toolbar_->Enable(PreviewCommand::kZoomOut, CanZoomOut(size));
  toolbar_->Enable(PreviewCommand::kZoomIn, CanZoomIn(size));
}

void frmPV::GoToTypedPage() {
  if (model_.GoToTypedPage(toolbar_->PageBox().text().toStdString())) LoadPage(true);
}

void frmPV::LocatePage() {
  QLineEdit& box = toolbar_->FindBox();
  if (SharedToolkit().CheckEmpty({Value(WidgetObject(box))})) return;
  bool found = false;
  try {
    BeginWork(true);
    found = model_.LocatePage(box.text().toStdString());
    EndWork();
  } catch (...) {
    ShowFailure();
    return;
  }
  if (found) {
    LoadPage(false);
  } else {
    SharedToolkit().MsgBox(kNotFound, msgOK, kSearchTitle, msgInformation, false, kNotFoundTime);
  }
}

// REQUIRES to be called in a catch block: the log knows the failure by itself. The message that it
// shows has no text, as published; the note says what went wrong.
void frmPV::ShowFailure() {
  EndWork();
  view_->Notice(QString::fromStdString(CaughtFailure().Description()));
  try {
    SharedToolkit().ERRORLOG(Value(kErrorLocation), "", true);
  } catch (const Error&) {
    // The note still tells of the page; there is no place left to tell of the log.
  }
}

void frmPV::BeginWork(bool may_take_long) {
  CurrentHost().desktop->SetMousePointer(MousePointer::kHourglass);
  view_->Status(QStringLiteral("Busy"));
  if (may_take_long) view_->PaintStatus();
}

void frmPV::EndWork() noexcept {
  view_->Status(QStringLiteral("Ready"));
  try {
    CurrentHost().desktop->SetMousePointer(MousePointer::kDefault);
  } catch (...) {
    // A screen without a pointer.
  }
}

}  // namespace kel
