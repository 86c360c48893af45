#include "preview/frmPV_toolbar.h"

#include <QFocusEvent>
#include <QLabel>

#include "common/object.h"
#include "controls/icons.h"
#include "controls/widget_object.h"

namespace kel {
namespace {

constexpr const char* kFindPrompt = "Please enter text to find.";

// The longest numbers that a page box is made for.
constexpr const char* kWidestPages = "100000/100000";
constexpr int kEdges = 24;
constexpr int kGap = 4;

QString ToolTip(const PreviewButton& button) {
  QString caption = QString::fromLatin1(button.caption);
  if (button.letter == 0) return caption;
  return caption + QStringLiteral(" (Ctrl+%1)").arg(QLatin1Char(button.letter));
}

}  // namespace

PreviewToolbar::PreviewToolbar(QWidget* parent) : QToolBar(parent) {
  setObjectName(QStringLiteral("tbrPV"));
  setAccessibleName(QStringLiteral("Preview"));
  setMovable(false);
  setContextMenuPolicy(Qt::PreventContextMenu);

  AddButton(PreviewCommand::kPrint);
  addSeparator();
  AddButton(PreviewCommand::kPrevious);
  AddPageBox();
  AddButton(PreviewCommand::kNext);
  addSeparator();
  AddButton(PreviewCommand::kZoomIn);
  AddButton(PreviewCommand::kZoomOut);
  AddButton(PreviewCommand::kBestFit);
  addSeparator();
  AddButton(PreviewCommand::kExport);
  addSeparator();
  AddFindBox();
  AddButton(PreviewCommand::kFind);
  addSeparator();
  AddButton(PreviewCommand::kBackColor);
  back_box_ = AddColorBox(QStringLiteral("picBack"), PreviewCommand::kBackColor);
  AddButton(PreviewCommand::kForeColor);
  fore_box_ = AddColorBox(QStringLiteral("picFore"), PreviewCommand::kForeColor);
  addSeparator();
  AddButton(PreviewCommand::kAbout);
  AddButton(PreviewCommand::kClose);
  SizeBoxes();
}

void PreviewToolbar::AddButton(PreviewCommand command) {
  const PreviewButton& button = kPreviewButtons[static_cast<std::size_t>(command)];
  QAction* action =
      addAction(Icon(QString::fromLatin1(button.icon)), QString::fromLatin1(button.caption));
  action->setToolTip(ToolTip(button));
  connect(action, &QAction::triggered, this, [this, command] { emit Pressed(command); });
  actions_[static_cast<std::size_t>(command)] = action;

  QWidget* shown = widgetForAction(action);
  shown->setObjectName(QString::fromLatin1(button.key));
  shown->setAccessibleName(action->text());
  shown->setFocusPolicy(Qt::TabFocus);
}

void PreviewToolbar::AddPageBox() {
  page_box_ = new QLineEdit(this);
  page_box_->setObjectName(QStringLiteral("txtPage"));
  page_box_->setAlignment(Qt::AlignCenter);
  page_box_->installEventFilter(this);
  AddLabel(QStringLiteral("&Page:"), page_box_);
  addWidget(page_box_);
}

void PreviewToolbar::AddFindBox() {
  find_box_ = new QLineEdit(this);
  find_box_->setObjectName(QStringLiteral("txtFind"));
  Member(*WidgetObject(*find_box_), "Tag").Put(kFindPrompt);
  find_box_->setPlaceholderText(QLatin1String(kFindPrompt));
  find_box_->setClearButtonEnabled(true);
  AddLabel(QStringLiteral("&Find:"), find_box_);
  addWidget(find_box_);
}

ColorBox* PreviewToolbar::AddColorBox(const QString& name, PreviewCommand command) {
  const PreviewButton& button = kPreviewButtons[static_cast<std::size_t>(command)];
  auto* box = new ColorBox(QString::fromLatin1(button.caption), this);
  box->setObjectName(name);
  box->setToolTip(box->accessibleName() + QStringLiteral(" (Shift+Up, Shift+Down)"));
  connect(box, &ColorBox::clicked, this, [this, command] { emit Pressed(command); });
  connect(box, &ColorBox::Stepped, this, &PreviewToolbar::ColorStepped);
  addWidget(box);
  return box;
}

void PreviewToolbar::AddLabel(const QString& text, QWidget* buddy) {
  auto* label = new QLabel(text, this);
  label->setBuddy(buddy);
  label->setContentsMargins(kGap, 0, kGap, 0);
  addWidget(label);
}

void PreviewToolbar::SizeBoxes() {
  const QFontMetrics metrics = page_box_->fontMetrics();
  page_box_->setFixedWidth(metrics.horizontalAdvance(QLatin1String(kWidestPages)) + kEdges);
  find_box_->setFixedWidth(metrics.horizontalAdvance(QLatin1String(kFindPrompt)) + kEdges);
}

void PreviewToolbar::changeEvent(QEvent* event) {
  QToolBar::changeEvent(event);
  if (event->type() == QEvent::FontChange && find_box_ != nullptr) SizeBoxes();
}

// The click that brings the focus selects the page box's text, as Tab does: a number typed then
// replaces what stands there.
bool PreviewToolbar::eventFilter(QObject* watched, QEvent* event) {
  if (watched != page_box_) return QToolBar::eventFilter(watched, event);
  if (event->type() == QEvent::FocusIn) {
    focused_by_click_ = static_cast<QFocusEvent*>(event)->reason() == Qt::MouseFocusReason;
  } else if (event->type() == QEvent::MouseButtonPress && focused_by_click_) {
    focused_by_click_ = false;
    page_box_->selectAll();
    return true;
  }
  return false;
}

void PreviewToolbar::Enable(PreviewCommand command, bool enabled) {
  ActionOf(command).setEnabled(enabled);
}

void PreviewToolbar::Press(PreviewCommand command) { ActionOf(command).trigger(); }

}  // namespace kel
