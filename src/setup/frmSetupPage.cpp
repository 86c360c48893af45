#include "setup/frmSetupPage.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "controls/widget_object.h"

namespace kel {
namespace {

constexpr int kStep = 8;  // of the space around and between controls, in pixels at 100 %
constexpr int kBoxCharacters = 7;

struct BoxText {
  const char* name;
  const char* label;
};
constexpr std::array<BoxText, kPageFields> kBoxes = {
    {{"mgnTop", QT_TR_NOOP("&Top (lines):")},
     {"mgnBottom", QT_TR_NOOP("&Bottom (lines):")},
     {"mgnLeft", QT_TR_NOOP("&Left (characters):")},
     {"mgnRight", QT_TR_NOOP("&Right (characters):")},
     {"mgnHeight", QT_TR_NOOP("&Height (inches):")},
     {"mgnWidth", QT_TR_NOOP("W&idth (inches):")},
     {"mgnLines", QT_TR_NOOP("Li&nes per page:")}}};

QFormLayout* FieldsOf(QGroupBox* group) {
  auto* const fields = new QFormLayout(group);
  fields->setHorizontalSpacing(kStep);
  fields->setVerticalSpacing(kStep);
  return fields;
}

// With room for the widest text: the window keeps its width while numbers are typed.
QLabel* CapacityLabel(const char* name, const std::string& widest) {
  auto* const label = new QLabel(QString::fromStdString(widest));
  label->setObjectName(name);
  label->setMinimumWidth(label->sizeHint().width());
  return label;
}

constexpr PageCapacity kMost = {kMostCells, kMostCells};

void Tell(QLabel& label, const std::string& text, std::int32_t number) {
  label.setText(QString::fromStdString(text));
  label.setProperty(kTagProperty, number);
}

}  // namespace

SetupPage::SetupPage()
    : lblLines_(CapacityLabel("lblLines", LinesText(kMost))),
      lblColumns_(CapacityLabel("lblColumns", ColumnsText(kMost))),
      chkPrintDateTime_(new QCheckBox(tr("Print date and ti&me in the foot of each page"))),
      chkPrintColumnDivider_(new QCheckBox(tr("Print a di&vider between columns"))) {
  chkPrintDateTime_->setObjectName("chkPrintDateTime");
  chkPrintColumnDivider_->setObjectName("chkPrintColumnDivider");

  auto* const groups = new QHBoxLayout;
  groups->setSpacing(kStep);
  groups->addWidget(MarginsGroup());
  groups->addWidget(SizeGroup());
  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(kStep, kStep, kStep, kStep);
  all->setSpacing(kStep);
  all->addLayout(groups);
  all->addWidget(lblLines_);
  all->addWidget(lblColumns_);
  // No wider than their texts, or scrolling to them would show their middle.
  all->addWidget(chkPrintDateTime_, 0, Qt::AlignLeft);
  all->addWidget(chkPrintColumnDivider_, 0, Qt::AlignLeft);
  all->addStretch();

  for (const PageField size : {PageField::kHeight, PageField::kWidth}) {
    connect(&Box(size), &QLineEdit::textChanged, this, &SetupPage::SizeChanged);
  }
}

QGroupBox* SetupPage::MarginsGroup() {
  auto* const group = new QGroupBox(tr("Margins"));
  FieldsOf(group);
  for (const PageField field :
       {PageField::kTop, PageField::kBottom, PageField::kLeft, PageField::kRight}) {
    AddBox(group, field);
  }
  return group;
}

QGroupBox* SetupPage::SizeGroup() {
  auto* const group = new QGroupBox(tr("Page"));
  FieldsOf(group);
  for (const PageField field : {PageField::kHeight, PageField::kWidth, PageField::kLines}) {
    AddBox(group, field);
  }
  return group;
}

void SetupPage::AddBox(QGroupBox* group, PageField field) {
  const BoxText& text = kBoxes.at(static_cast<std::size_t>(field));
  auto* const box = new QLineEdit;
  box->setObjectName(text.name);
  box->setAlignment(Qt::AlignRight);
  box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QString(kBoxCharacters, '0')));
  box->setAccessibleName(QString("%1, %2").arg(group->title(), tr(text.label).remove('&')));
  boxes_.at(static_cast<std::size_t>(field)) = box;
  static_cast<QFormLayout*>(group->layout())->addRow(tr(text.label), box);
}

void SetupPage::Show(const SetupValues& values) {
  for (std::size_t i = 0; i < kPageFields; ++i) {
    boxes_.at(i)->setText(QString::fromStdString(values.Page()[static_cast<PageField>(i)]));
  }
  chkPrintDateTime_->setChecked(values.print_date_time);
  chkPrintColumnDivider_->setChecked(values.print_column_divider);
}

void SetupPage::TakeInto(SetupValues& values) const {
  for (std::size_t i = 0; i < kPageFields; ++i) {
    values.Page()[static_cast<PageField>(i)] = boxes_.at(i)->text().toStdString();
  }
  values.print_date_time = chkPrintDateTime_->isChecked();
  values.print_column_divider = chkPrintColumnDivider_->isChecked();
}

void SetupPage::ShowCapacity(const PageCapacity& capacity) {
  Tell(*lblLines_, LinesText(capacity), capacity.lines);
  Tell(*lblColumns_, ColumnsText(capacity), capacity.columns);
}

}  // namespace kel
