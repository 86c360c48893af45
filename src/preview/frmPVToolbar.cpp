#include "preview/frmPVToolbar.h"

#include <QFocusEvent>
#include <QLabel>
#include <QStyleOptionToolBar>
#include <QStylePainter>
#include <algorithm>

#include "common/object.h"
#include "controls/icons.h"
#include "controls/widget_object.h"
#include "preview/frmPVFlowLayout.h"

namespace kel {
namespace {

constexpr const char* kFindPrompt = "Please enter text to find.";

// The longest numbers that a page box is made for, and those of nearly every report.
constexpr const char* kWidestPages = "100000/100000";
constexpr const char* kUsualPages = "9999/9999";
// Most words that are looked for.
constexpr const char* kUsualText = "Amount payable";
constexpr int kEdges = 24;
constexpr int kGap = 4;

// A text box that is as wide as a text, and may be as narrow as another one.
class BarBox : public QLineEdit {
 public:
  BarBox(const char* widest, const char* narrowest, QWidget* parent)
      : QLineEdit(parent), widest_(widest), narrowest_(narrowest) {}

  QSize sizeHint() const override { return SizeFor(widest_); }
  QSize minimumSizeHint() const override { return SizeFor(narrowest_); }

 private:
  QSize SizeFor(const char* text) const {
    const int width = fontMetrics().horizontalAdvance(QLatin1String(text));
    return {width + kEdges, QLineEdit::sizeHint().height()};
  }

  const char* widest_;
  const char* narrowest_;
};

QString ToolTip(const PreviewButton& button) {
  QString caption = QString::fromLatin1(button.caption);
  if (button.letter == 0) return caption;
  return caption + QStringLiteral(" (Ctrl+%1)").arg(QLatin1Char(button.letter));
}

}  // namespace

PreviewToolbar::PreviewToolbar(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("tbrPV"));
  setAccessibleName(QStringLiteral("Preview"));
  LayOut();

  BeginGroup();
  AddButton(PreviewCommand::kPrint);
  BeginGroup();
  AddButton(PreviewCommand::kPrevious);
  AddPageBox();
  AddButton(PreviewCommand::kNext);
  BeginGroup();
  AddButton(PreviewCommand::kZoomIn);
  AddButton(PreviewCommand::kZoomOut);
  AddButton(PreviewCommand::kBestFit);
  BeginGroup();
  AddButton(PreviewCommand::kExport);
  BeginGroup();
  AddFindBox();
  AddButton(PreviewCommand::kFind);
  BeginGroup();
  AddButton(PreviewCommand::kBackColor);
  back_box_ = AddColorBox(QStringLiteral("picBack"), PreviewCommand::kBackColor,
                          QStringLiteral("Page colour"));
  AddButton(PreviewCommand::kForeColor);
  fore_box_ = AddColorBox(QStringLiteral("picFore"), PreviewCommand::kForeColor,
                          QStringLiteral("Text colour"));
  BeginGroup();
  AddButton(PreviewCommand::kAbout);
  AddButton(PreviewCommand::kClose);
}

void PreviewToolbar::LayOut() {
  const int gap = Metric(QStyle::PM_ToolBarSeparatorExtent);
  const int edge = Metric(QStyle::PM_ToolBarFrameWidth) + Metric(QStyle::PM_ToolBarItemMargin);
  auto* groups = new FlowLayout(this, gap + 2 * Metric(QStyle::PM_ToolBarItemSpacing));
  groups->setContentsMargins(edge, edge, edge, edge);
  groups->setSpacing(edge);
}

int PreviewToolbar::Metric(QStyle::PixelMetric metric) const {
  return style()->pixelMetric(metric, nullptr, this);
}

void PreviewToolbar::BeginGroup() {
  auto* group = new QWidget(this);
  group_ = new QHBoxLayout(group);
  group_->setContentsMargins(0, 0, 0, 0);
  group_->setSpacing(Metric(QStyle::PM_ToolBarItemSpacing));
  layout()->addWidget(group);
}

void PreviewToolbar::AddButton(PreviewCommand command) {
  const PreviewButton& known = kPreviewButtons[static_cast<std::size_t>(command)];
  const int side = Metric(QStyle::PM_ToolBarIconSize);
  auto* button = new QToolButton(this);
  button->setObjectName(QString::fromLatin1(known.key));
  button->setAccessibleName(QString::fromLatin1(known.caption));
  button->setToolTip(ToolTip(known));
  button->setIcon(Icon(QString::fromLatin1(known.icon)));
  button->setIconSize({side, side});
  button->setAutoRaise(true);
  connect(button, &QToolButton::clicked, this, [this, command] { emit Pressed(command); });
  group_->addWidget(button);
  buttons_[static_cast<std::size_t>(command)] = button;
}

void PreviewToolbar::AddPageBox() {
  page_box_ = new BarBox(kWidestPages, kUsualPages, this);
  page_box_->setObjectName(QStringLiteral("txtPage"));
  page_box_->setAlignment(Qt::AlignCenter);
  page_box_->installEventFilter(this);
  AddLabel(QStringLiteral("&Page:"), page_box_);
  group_->addWidget(page_box_);
}

void PreviewToolbar::AddFindBox() {
  find_box_ = new BarBox(kFindPrompt, kUsualText, this);
  find_box_->setObjectName(QStringLiteral("txtFind"));
  Member(*WidgetObject(*find_box_), "Tag").Put(kFindPrompt);
  find_box_->setPlaceholderText(QLatin1String(kFindPrompt));
  find_box_->setClearButtonEnabled(true);
  AddLabel(QStringLiteral("&Find:"), find_box_);
  group_->addWidget(find_box_);
}

ColorBox* PreviewToolbar::AddColorBox(const QString& name, PreviewCommand command,
                                      const QString& what) {
  const PreviewButton& button = kPreviewButtons[static_cast<std::size_t>(command)];
  auto* box = new ColorBox(what, this);
  box->setObjectName(name);
  box->setToolTip(QString::fromLatin1(button.caption) + QStringLiteral(" (Shift+Up, Shift+Down)"));
  connect(box, &ColorBox::clicked, this, [this, command] { emit Pressed(command); });
  connect(box, &ColorBox::Stepped, this, &PreviewToolbar::ColorStepped);
  group_->addWidget(box);
  return box;
}

void PreviewToolbar::AddLabel(const QString& text, QWidget* buddy) {
  auto* label = new QLabel(text, this);
  label->setBuddy(buddy);
  label->setContentsMargins(kGap, 0, kGap, 0);
  group_->addWidget(label);
}

void PreviewToolbar::paintEvent(QPaintEvent* /*event*/) {
  QStylePainter painter(this);
  QStyleOptionToolBar bar;
  bar.initFrom(this);
  bar.state |= QStyle::State_Horizontal;
  bar.lineWidth = Metric(QStyle::PM_ToolBarFrameWidth);
  painter.drawControl(QStyle::CE_ToolBar, bar);

  QStyleOption separator;
  separator.initFrom(this);
  separator.state |= QStyle::State_Horizontal;
  for (int i = 1; i < layout()->count(); ++i) {
    separator.rect = GapBefore(i);
    if (separator.rect.isEmpty()) continue;
    painter.drawPrimitive(QStyle::PE_IndicatorToolBarSeparator, separator);
  }
}

// Nothing before the first group of a row.
QRect PreviewToolbar::GapBefore(int index) const {
  const QRect before = layout()->itemAt(index - 1)->geometry();
  const QRect group = layout()->itemAt(index)->geometry();
  if (before.top() != group.top()) return {};
  const int left = std::min(before.right(), group.right()) + 1;
  const int right = std::max(before.left(), group.left()) - 1;
  return {QPoint(left, group.top()), QPoint(right, group.bottom())};
}

// The click that brings the focus selects the page box's text, as Tab does: a number typed then
// replaces what stands there.
bool PreviewToolbar::eventFilter(QObject* watched, QEvent* event) {
  if (watched != page_box_) return QWidget::eventFilter(watched, event);
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
  ButtonOf(command).setEnabled(enabled);
}

void PreviewToolbar::Press(PreviewCommand command) { ButtonOf(command).click(); }

}  // namespace kel
