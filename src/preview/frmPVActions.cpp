// What the buttons of the preview do.
#include <QPointer>

#include "engine/CPrint.h"
#include "engine/memory_grid.h"
#include "export/frmExport.h"
#include "preview/frmPV.h"
#include "preview/frmPVToolbar.h"
#include "preview/frmPVView.h"
#include "preview/frmPalette.h"
#include "preview/zoom.h"
#include "toolkit/CZURDLL.h"
#include "toolkit/frmAbout.h"

namespace kel {
namespace {

constexpr const char* kAboutTag = "PREVIEW";

}  // namespace

// No failure may leave the window's event handling.
void frmPV::Press(PreviewCommand command) noexcept {
  try {
    Perform(command);
  } catch (...) {
    SharedToolkit().ReportFailure(CaughtFailure(), kPreviewLocation);
  }
}

void frmPV::Perform(PreviewCommand command) {
  switch (command) {
    case PreviewCommand::kPrint:
      return Print();
    case PreviewCommand::kPrevious:
      model_.GoPrevious();
      return LoadPage(true);
    case PreviewCommand::kNext:
      model_.GoNext();
      return LoadPage(true);
    case PreviewCommand::kZoomIn:
      return Zoom(true);
    case PreviewCommand::kZoomOut:
      return Zoom(false);
    case PreviewCommand::kBestFit:
      return BestFit();
    case PreviewCommand::kExport:
      return Export();
    case PreviewCommand::kFind:
      return LocatePage();
    case PreviewCommand::kBackColor:
      return ChooseColor(toolbar_->BackBox());
    case PreviewCommand::kForeColor:
      return ChooseColor(toolbar_->ForeBox());
    case PreviewCommand::kAbout:
      frmAbout::Show(QLatin1String(kAboutTag), this);
      return;
    case PreviewCommand::kClose:
      close();
      return;
  }
}

// The page file is there already, so the grid that a job wants is never looked at.
void frmPV::Print() {
  CPrint print(model_.Report());
  MemoryGrid none("");
  print.PreparePrint(none);
}

void frmPV::Zoom(bool in) { SetFontSize(ZoomedSize(view_->Surface().FontSize(), in)); }

void frmPV::BestFit() {
  PageSurface& page = view_->Surface();
  SetFontSize(BestFitSize([&](double points) { return view_->Holds(page.PageSizeAt(points)); }));
}

void frmPV::SetFontSize(double points) {
  view_->Surface().FontSize(points);
  view_->SizePage();
  LoadPage(true);
  view_->ScrollSize();
}

// The dialog lets the program run, which may destroy it, and this window, too.
void frmPV::Export() {
  const QPointer<frmExport> dialog = new frmExport(model_.Report());
  dialog->Ask();
  delete dialog;
}

void frmPV::ChooseColor(ColorBox& box) {
  const QPointer<frmPV> self(this);
  const QPointer<frmPalette> palette = new frmPalette(this);
  palette->ShowPalette(box);
  if (palette) palette->deleteLater();
  if (self) TakeColors();
}

void frmPV::TakeColors() {
  const PreviewColors shown = view_->Surface().Colors();
  const PreviewColors chosen{toolbar_->BackBox().BackColor(), toolbar_->ForeBox().BackColor()};
  if (chosen.back == shown.back && chosen.fore == shown.fore) return;
  view_->Surface().Colors(chosen);
  LoadPage(true);
}

}  // namespace kel
