#include "preview/frmPV.h"

#include <QCloseEvent>
#include <QScreen>
#include <QVBoxLayout>

#include "common/host.h"
#include "controls/icons.h"
#include "preview/frmPVKeys.h"
#include "preview/frmPVToolbar.h"
#include "preview/frmPVView.h"
#include "preview/preview_colors.h"
#include "toolkit/CZURDLL.h"

namespace kel {
namespace {

constexpr const char* kCaption = "Print Preview";

// Settings that cannot be read or written keep nobody from reading a report.
void LogFailure() noexcept {
  try {
    SharedToolkit().ERRORLOG(Value(kPreviewLocation), CaughtFailure().Description(), false);
  } catch (...) {
    // The log's disk is as full as the settings'.
  }
}

}  // namespace

frmPV::frmPV(const ReportSnapshot& report, QWidget* parent)
    : QWidget(parent, Qt::Window), model_(report) {
  setObjectName(QStringLiteral("frmPV"));
  setWindowTitle(QLatin1String(kCaption));
  setWindowIcon(Icon(QStringLiteral("print")));
  setAttribute(Qt::WA_QuitOnClose, false);
  setGeometry(screen()->geometry());
  setWindowState(Qt::WindowMaximized);
  MakeControls();
  ConnectControls();
  LoadColors();
  ShowReport(report);
  view_->Surface().setFocus();
}

frmPV::~frmPV() {
  if (loaded_) StoreColors();
}

void frmPV::MakeControls() {
  toolbar_ = new PreviewToolbar(this);
  view_ = new PageView(this);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(toolbar_);
  column->addWidget(view_, 1);
}

void frmPV::ConnectControls() {
  connect(toolbar_, &PreviewToolbar::Pressed, this, &frmPV::Press);
  connect(toolbar_, &PreviewToolbar::ColorStepped, this, &frmPV::TakeColors);
  connect(&toolbar_->FindBox(), &QLineEdit::returnPressed, this, [this] {
    if (!toolbar_->FindBox().text().isEmpty()) toolbar_->Press(PreviewCommand::kFind);
  });
  connect(view_, &PageView::ZoomWheeled, this, [this](bool in) {
    toolbar_->Press(in ? PreviewCommand::kZoomIn : PreviewCommand::kZoomOut);
  });
  auto* keys = new PreviewKeys(*this);
  connect(keys, &PreviewKeys::CommandPressed, toolbar_, &PreviewToolbar::Press);
  connect(keys, &PreviewKeys::ScrollPressed, view_, &PageView::ScrollByKey);
  connect(keys, &PreviewKeys::PageTyped, this, &frmPV::GoToTypedPage);
}

void frmPV::LoadColors() {
  PreviewColors colors;
  try {
    colors = LoadPreviewColors(*CurrentHost().settings);
  } catch (...) {
    LogFailure();
  }
  toolbar_->BackBox().BackColor(colors.back);
  toolbar_->ForeBox().BackColor(colors.fore);
  view_->Surface().Colors(colors);
}

void frmPV::ShowReport(const ReportSnapshot& report) {
  loaded_ = true;
  model_ = PageModel(report);
  view_->Surface().Extent(model_.PageWidth(), model_.LinesPerPage());
  view_->SizePage();
  LoadPage(true);
  view_->ScrollSize();
  view_->GoToStart();
}

void frmPV::closeEvent(QCloseEvent* event) {
  event->accept();
  if (!loaded_) return;
  loaded_ = false;
  StoreColors();
  emit Closed();
}

void frmPV::StoreColors() noexcept {
  try {
    StorePreviewColors(*CurrentHost().settings,
                       {toolbar_->BackBox().BackColor(), toolbar_->ForeBox().BackColor()});
  } catch (...) {
    LogFailure();
  }
}

}  // namespace kel
