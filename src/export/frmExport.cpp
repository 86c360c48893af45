#include "export/frmExport.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <optional>
#include <utility>

#include "common/host.h"
#include "controls/widget_object.h"
#include "export/frmExportBar.h"
#include "export/office.h"
#include "toolkit/CZURDLL.h"

namespace kel {
namespace {

constexpr const char* kErrorLocation = "DLL.Export";
constexpr const char* kAskName = "Please enter attachment name.";
constexpr const char* kFileNameLabel = "&File Name :";
constexpr int kStep = 8;        // of the space between controls, in pixels at 100 %
constexpr int kNameChars = 40;  // that the name box shows at least

QString Plain(const QString& label) { return QString(label).remove('&').remove(" :"); }

}  // namespace

frmExport::frmExport(ReportSnapshot report)
    : EntryDialog("frmExport", tr("Export Report")),
      report_(std::move(report)),
      store_(CurrentHost().settings),
      form_(*store_),
      fields_(new QWidget) {
  MakeFields();
  MakeBar();
  OK_ = AddButton("OK", tr("&OK"), QDialogButtonBox::AcceptRole);
  const Button* const cancel = AddButton("Cancel", tr("&Cancel"), QDialogButtonBox::RejectRole);
  connect(OK_, &Button::clicked, this, &frmExport::Start);
  connect(cancel, &Button::clicked, this, &frmExport::reject);
  cmbFormat_->setFocus();
}

void frmExport::MakeFields() {
  auto* const grid = new QGridLayout(fields_);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(kStep);
  grid->setVerticalSpacing(kStep);
  grid->setColumnStretch(1, 1);
  static_cast<QVBoxLayout*>(layout())->insertWidget(0, fields_);

  cmbFormat_ = AddChoice("cmbFormat", tr("&Format :"), 0);
  for (const char* const text : kFormatTexts) cmbFormat_->addItem(text);
  cmbFormat_->setCurrentIndex(static_cast<int>(form_.Format()));
  cmbDestination_ = AddChoice("cmbDestination", tr("&Destination :"), 1);
  for (const char* const text : kDestinationTexts) cmbDestination_->addItem(text);
  cmbDestination_->setCurrentIndex(static_cast<int>(form_.Destination()));
  MakeNameRow(2);

  connect(cmbFormat_, &QComboBox::currentIndexChanged, this, [this](int index) {
    form_.Format(static_cast<ExportFormat>(index));
    ShowName();
  });
  connect(cmbDestination_, &QComboBox::currentIndexChanged, this, [this](int index) {
    form_.Destination(static_cast<ExportDestination>(index));
    ShowName();
  });
}

QComboBox* frmExport::AddChoice(const char* name, const QString& label, int row) {
  auto* const choice = new QComboBox;
  choice->setObjectName(name);
  choice->setAccessibleName(Plain(label));
  auto* const text = new QLabel(label);
  text->setBuddy(choice);
  auto* const grid = static_cast<QGridLayout*>(fields_->layout());
  grid->addWidget(text, row, 0);
  grid->addWidget(choice, row, 1, 1, 2);
  return choice;
}

// It keeps its width whatever it says later, so that no control moves.
QLabel* frmExport::WidestNameLabel() {
  auto* const label = new QLabel;
  for (const auto destination : {ExportDestination::kDiskFile, ExportDestination::kMail}) {
    label->setText(ExportForm::NameLabel(destination));
    label->setMinimumWidth(std::max(label->minimumWidth(), label->sizeHint().width()));
  }
  return label;
}

void frmExport::MakeNameRow(int row) {
  name_label_ = WidestNameLabel();
  txtFilename_ = new QLineEdit;
  txtFilename_->setObjectName("txtFilename");
  txtFilename_->setProperty(kTagProperty, QString(kAskName));
  txtFilename_->setMinimumWidth(kNameChars * txtFilename_->fontMetrics().averageCharWidth());
  name_label_->setBuddy(txtFilename_);
  cmdBrowse_ = new Button(tr("&Browse"));
  cmdBrowse_->setObjectName("cmdBrowse");
  auto* const grid = static_cast<QGridLayout*>(fields_->layout());
  grid->addWidget(name_label_, row, 0);
  grid->addWidget(txtFilename_, row, 1);
  grid->addWidget(cmdBrowse_, row, 2);
  connect(txtFilename_, &QLineEdit::textEdited, this,
          [this](const QString& typed) { form_.Name(typed.toStdString()); });
  connect(cmdBrowse_, &Button::clicked, this, &frmExport::Browse);
  ShowName();
}

// Its place stays empty while there is nothing to show.
void frmExport::MakeBar() {
  PB_ = new ProgressBar;
  PB_->setObjectName("PB");
  PB_->setAccessibleName(tr("Progress"));
  QSizePolicy policy = PB_->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  PB_->setSizePolicy(policy);
  PB_->hide();
  static_cast<QVBoxLayout*>(layout())->insertWidget(1, PB_);
}

void frmExport::ShowName() {
  const QString label(ExportForm::NameLabel(form_.Destination()));
  const QString name = QString::fromStdString(form_.Name());
  name_label_->setText(label);
  name_label_->setEnabled(form_.IsNameEnabled());
  txtFilename_->setAccessibleName(Plain(label));
  txtFilename_->setEnabled(form_.IsNameEnabled());
  txtFilename_->setReadOnly(form_.IsNameReadOnly());
  txtFilename_->setText(name);
  txtFilename_->setToolTip(form_.IsNameReadOnly() ? name : QString());
  cmdBrowse_->setEnabled(form_.CanBrowse());
}

void frmExport::Start() {
  while (form_.OnOk() == ExportForm::Step::kBrowse) {
    if (!Browse()) return;
  }
  if (form_.OnOk() == ExportForm::Step::kAskName) {
    SharedToolkit().CheckEmpty({WidgetObject(*txtFilename_)});
    return;
  }
  Export();
}

bool frmExport::Browse() {
  const ExportFormat format = form_.Format();
  const QPointer<QFileDialog> dialog = new QFileDialog(this, tr("Export Report As"));
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setNameFilter(kFormatTexts.at(static_cast<std::size_t>(format)));
  dialog->setDefaultSuffix(QString::fromStdString(ExtensionOf(format)).mid(1));
  dialog->setLabelText(QFileDialog::FileName, tr(kFileNameLabel));
  if (!form_.Name().empty()) dialog->selectFile(QString::fromStdString(form_.Name()));
  const bool chosen = dialog->exec() == QDialog::Accepted;
  if (!dialog) return false;  // gone with this window
  if (chosen) {
    form_.Choose(dialog->selectedFiles().value(0).toStdString());
    ShowName();
  }
  delete dialog;
  return chosen;
}

void frmExport::Export() {
  const QPointer<frmExport> self(this);
  const std::shared_ptr<Office> office = CurrentExportHost().office;
  ExportBar progress(*PB_);
  running_ = &progress;
  BeginWork();
  std::optional<Error> failure;
  bool done = false;
  try {
    done = ExportReport(form_.Order(report_), *office, progress);
  } catch (...) {
    failure = CaughtFailure();
  }
  if (self) EndWork();
  if (failure) SharedToolkit().ReportFailure(*failure, kErrorLocation);
  if (self && done) Finish();
}

// The focus rests on no control: an Enter pressed twice must not press Cancel.
void frmExport::BeginWork() {
  focused_ = focusWidget();
  setFocus();
  fields_->setEnabled(false);
  OK_->setEnabled(false);
  PB_->Max(0);
  PB_->show();
}

void frmExport::EndWork() {
  running_ = nullptr;
  PB_->hide();
  OK_->setEnabled(true);
  fields_->setEnabled(true);
  if (focused_) focused_->setFocus();
}

// The file is made, so choices that cannot be stored are no reason to ask for it again.
void frmExport::Finish() {
  const QPointer<frmExport> self(this);
  try {
    form_.Keep();
  } catch (...) {
    SharedToolkit().ReportFailure(CaughtFailure(), kErrorLocation);
  }
  if (self) accept();
}

void frmExport::reject() {
  if (running_ != nullptr) return running_->Stop();
  EntryDialog::reject();
}

}  // namespace kel
