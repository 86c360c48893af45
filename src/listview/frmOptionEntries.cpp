#include "listview/frmOptionEntries.h"

#include <QLineEdit>
#include <QListView>
#include <QRadioButton>
#include <QScrollBar>
#include <algorithm>
#include <array>
#include <limits>

#include "listview/condition_text.h"

namespace kel {
namespace {

constexpr int kStep = 8;  // of the space between controls, in pixels at 100 %
constexpr int kBarHeight = kStep;
constexpr int kValueCharacters = 32;
// Of a list.
constexpr int kLeastRows = 3;
constexpr int kRows = static_cast<int>(kConditionOperations.size());
constexpr int kLeastCharacters = 12;
constexpr int kMostCharacters = 40;

// Rows and columns of the layout.
enum Row : int { kListLabels, kLists, kValueLabel, kValueBox, kDirection, kBar };
enum Column : int { kFields, kOperations, kColumns };

struct Option {
  const char* text;
  const char* tool_tip;
};
constexpr std::array<Option, 4> kOptions = {{
    {"Find&First", "Search for the First Record with the above condition"},
    {"Find&Next", "Search for the Next Record with the above condition"},
    {"Find&Previous", "Search for the Previous Record with the above condition"},
    {"Find&Last", "Search for the Last Record with the above condition"},
}};
constexpr int kOptionsInRow = 2;

/// Wants the room for a fixed number of rows, and makes do with a few.
class ChoiceList : public QListWidget {
 public:
  QSize sizeHint() const override { return SizeFor(kRows); }
  QSize minimumSizeHint() const override { return SizeFor(kLeastRows); }

 private:
  QSize SizeFor(int rows) const {
    const int character = fontMetrics().averageCharWidth();
    const int width = std::clamp(sizeHintForColumn(0) + verticalScrollBar()->sizeHint().width(),
                                 kLeastCharacters * character, kMostCharacters * character);
    const int row_height = std::max(sizeHintForRow(0), fontMetrics().height());
    return QSize(width, rows * row_height) + QSize(2 * frameWidth(), 2 * frameWidth());
  }
};

QListWidget* NewList(const char* name, const char* tool_tip) {
  auto* const list = new ChoiceList;
  list->setObjectName(name);
  list->setToolTip(tool_tip);
  return list;
}

QStringList TextsOf(const QListWidget& list) {
  QStringList texts;
  for (int row = 0; row < list.count(); ++row) texts << list.item(row)->text();
  return texts;
}

std::string Selected(const QListWidget& list) {
  const QListWidgetItem* const item = list.currentItem();
  return item == nullptr ? std::string() : item->text().toStdString();
}

std::int32_t BarUnits(std::int64_t rows) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(rows, kMost));
}

QLabel* NewLabel(const char* text, QWidget& buddy) {
  auto* const label = new QLabel(text);
  label->setBuddy(&buddy);
  buddy.setAccessibleName(label->text().remove('&').remove(" :"));
  return label;
}

// Nothing jumps when it comes and goes.
void KeepPlaceWhenHidden(QWidget& widget) {
  QSizePolicy policy = widget.sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget.setSizePolicy(policy);
}

}  // namespace

OptionEntries::OptionEntries()
    : all_(new QGridLayout(this)),
      lstFields_(NewList("lstFields", "Select Field Name")),
      lstOp_(NewList("lstOp", "Select Operation")),
      cmbValue_(new QComboBox),
      value_label_(NewLabel("Value or E&xpression :", *cmbValue_)),
      values_(new QStringListModel(this)),
      direction_(new QFrame),
      opt_(new QButtonGroup(this)),
      PBR_(new ProgressBar) {
  all_->setContentsMargins(0, 0, 0, 0);
  all_->setSpacing(kStep);
  AddLists();
  AddValueBox();
  AddDirection();
  AddBar();
}

void OptionEntries::AddLists() {
  all_->setRowStretch(kLists, 1);
  all_->setColumnStretch(kFields, 1);
  all_->addWidget(NewLabel("Fiel&ds :", *lstFields_), kListLabels, kFields);
  all_->addWidget(lstFields_, kLists, kFields);
  all_->addWidget(NewLabel("Opera&tions :", *lstOp_), kListLabels, kOperations);
  all_->addWidget(lstOp_, kLists, kOperations);
  for (const std::string_view operation : kConditionOperations) {
    lstOp_->addItem(QString::fromUtf8(operation.data(), static_cast<qsizetype>(operation.size())));
  }
  lstOp_->setCurrentRow(0);
  connect(lstOp_, &QListWidget::currentRowChanged, this, [this] { ShowValueBox(); });
}

void OptionEntries::AddValueBox() {
  cmbValue_->setObjectName("cmbValue");
  cmbValue_->setToolTip("Enter/Select Value Or Expression");
  cmbValue_->setEditable(true);
  cmbValue_->setInsertPolicy(QComboBox::NoInsert);
  cmbValue_->setDuplicatesEnabled(true);  // or Enter would look for the text among all values
  cmbValue_->setCompleter(nullptr);       // it would make abc of a typed a
  cmbValue_->setModel(values_);
  // What is to cost the same however many values there are: the box's width, the list's layout.
  cmbValue_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  cmbValue_->setMinimumContentsLength(kValueCharacters);
  auto* const list = static_cast<QListView*>(cmbValue_->view());
  list->setUniformItemSizes(true);
  list->setTextElideMode(Qt::ElideRight);
  KeepPlaceWhenHidden(*value_label_);
  KeepPlaceWhenHidden(*cmbValue_);
  all_->addWidget(value_label_, kValueLabel, kFields, 1, kColumns);
  all_->addWidget(cmbValue_, kValueBox, kFields, 1, kColumns);
}

void OptionEntries::AddDirection() {
  direction_->setFrameShape(QFrame::StyledPanel);
  direction_->setAccessibleName("Find");
  opt_->setObjectName("opt");
  auto* const options = new QGridLayout(direction_);
  options->setContentsMargins(kStep, kStep, kStep, kStep);
  options->setSpacing(kStep);
  for (int i = 0; i < static_cast<int>(kOptions.size()); ++i) {
    const Option& text = kOptions.at(static_cast<std::size_t>(i));
    auto* const option = new QRadioButton(text.text);
    option->setObjectName("opt" + QString::number(i));
    option->setToolTip(text.tool_tip);
    option->setProperty("Index", i);
    opt_->addButton(option, i);
    options->addWidget(option, i / kOptionsInRow, i % kOptionsInRow);
  }
  opt_->button(0)->setChecked(true);
  all_->addWidget(direction_, kDirection, kFields, 1, kColumns);
}

void OptionEntries::AddBar() {
  PBR_->setObjectName("PBR");
  PBR_->setAccessibleName("Possible Values");
  PBR_->setFixedHeight(kBarHeight);
  PBR_->hide();
  KeepPlaceWhenHidden(*PBR_);
  all_->addWidget(PBR_, kBar, kFields, 1, kColumns);
}

void OptionEntries::ListFields(const QStringList& fields) {
  if (fields == TextsOf(*lstFields_)) return;
  lstFields_->clear();
  lstFields_->addItems(fields);
  lstFields_->setCurrentRow(0);
  lstOp_->setCurrentRow(0);
  ListValues({});
  cmbValue_->clearEditText();
}

void OptionEntries::ListValues(const QStringList& values) {
  const QString typed = cmbValue_->currentText();
  values_->setStringList(values);
  cmbValue_->setCurrentIndex(-1);  // the first of the values otherwise
  cmbValue_->setEditText(typed);
}

std::string OptionEntries::Field() const { return Selected(*lstFields_); }

std::string OptionEntries::Operation() const { return Selected(*lstOp_); }

std::string OptionEntries::Value() const { return cmbValue_->currentText().toStdString(); }

// An access key only presses its option; it is checked a moment later, and Enter may come first.
FindOption OptionEntries::Direction() const {
  const QList<QAbstractButton*> options = opt_->buttons();
  const auto pressed = std::find_if(options.begin(), options.end(),
                                    [](const QAbstractButton* option) { return option->isDown(); });
  return static_cast<FindOption>(pressed == options.end() ? opt_->checkedId() : opt_->id(*pressed));
}

void OptionEntries::ShowValueBox() {
  const bool shown = Operation() != kIsNullOperation;
  value_label_->setVisible(shown);
  cmbValue_->setVisible(shown);
}

void OptionEntries::FocusValue() {
  if (!cmbValue_->isVisible()) return;
  cmbValue_->setFocus();
  cmbValue_->lineEdit()->selectAll();
}

void OptionEntries::ShowBar(bool shown) {
  PBR_->setVisible(shown);
  PBR_->Value(0);
}

void OptionEntries::PaintBar(std::int64_t done, std::int64_t rows) {
  PBR_->Max(BarUnits(rows));
  PBR_->Value(BarUnits(done));
  PBR_->repaint();
}

}  // namespace kel
