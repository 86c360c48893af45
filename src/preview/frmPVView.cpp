#include "preview/frmPVView.h"

#include <QAccessible>
#include <QApplication>
#include <QGridLayout>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "controls/wrapped_label.h"
#include "preview/frmPVStatus.h"

namespace kel {
namespace {

// Degrees are counted in eighths; a notch of a wheel is 15.
constexpr int kNotch = 120;

constexpr int kNoticeMargin = 8;

int ToPixels(double units) { return static_cast<int>(std::lround(units * kPixelsPerUnit)); }

bool HasRange(const QScrollBar& bar) { return bar.maximum() > kScrollMinimum; }

// The page stays where it is until it is placed.
void SetRange(QScrollBar& bar, std::int32_t maximum, double view_units) {
  const QSignalBlocker quiet(bar);
  bar.setRange(kScrollMinimum, maximum);
  bar.setSingleStep(1);
  bar.setPageStep(std::max(1, static_cast<int>(view_units)));
}

// Whole steps of the wheel; what is less stays in `rest`.
int TakeSteps(int& rest, int unit) {
  const int steps = rest / unit;
  rest -= steps * unit;
  return steps;
}

}  // namespace

PageView::PageView(QWidget* parent) : QWidget(parent) {
  setLayoutDirection(Qt::LeftToRight);  // the page is not mirrored, so its bars are not either
  MakeControls();
  LayOut();
  connect(vertical_, &QScrollBar::valueChanged, this, &PageView::ScrollVertically);
  connect(horizontal_, &QScrollBar::valueChanged, this, &PageView::ScrollHorizontally);
}

void PageView::MakeControls() {
  container_ = new QWidget(this);
  container_->setObjectName(QStringLiteral("fme"));
  container_->setBackgroundRole(QPalette::Mid);
  container_->setAutoFillBackground(true);

  border_ = new QWidget(container_);
  border_->setObjectName(QStringLiteral("Border"));
  border_->setBackgroundRole(QPalette::Shadow);
  border_->setAutoFillBackground(true);

  page_ = new PageSurface(container_);

  notice_ = new WrappedLabel({}, container_);
  notice_->setObjectName(QStringLiteral("lblNotice"));
  notice_->setContentsMargins(kNoticeMargin, kNoticeMargin, kNoticeMargin, kNoticeMargin);
  notice_->setBackgroundRole(QPalette::ToolTipBase);
  notice_->setForegroundRole(QPalette::ToolTipText);
  notice_->setAutoFillBackground(true);
  notice_->hide();

  vertical_ = new QScrollBar(Qt::Vertical, this);
  vertical_->setRange(kScrollMinimum, kScrollMinimum);
  vertical_->setObjectName(QStringLiteral("VS"));
  vertical_->setAccessibleName(QStringLiteral("Move the page up and down"));
  horizontal_ = new QScrollBar(Qt::Horizontal, this);
  horizontal_->setRange(kScrollMinimum, kScrollMinimum);
  horizontal_->setObjectName(QStringLiteral("HS"));
  horizontal_->setAccessibleName(QStringLiteral("Move the page left and right"));

  status_ = new StatusPicture(this);
  status_->setObjectName(QStringLiteral("picAnimate"));
}

void PageView::LayOut() {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(0);
  grid->addWidget(container_, 0, 0);
  grid->addWidget(vertical_, 0, 1);
  grid->addWidget(horizontal_, 1, 0);
  grid->addWidget(status_, 1, 1);
  grid->setRowStretch(0, 1);
  grid->setColumnStretch(0, 1);
}

void PageView::SizePage() {
  page_->resize(page_->PageSize());
  DrawShadow();
}

bool PageView::Holds(const QSize& page) const {
  return page.width() <= container_->width() && page.height() <= container_->height();
}

void PageView::resizeEvent(QResizeEvent* /*event*/) {
  ScrollSize();
  PlaceNotice();
}

void PageView::ScrollSize() {
  const ViewMetrics view = Metrics();
  const ScrollRange down = VerticalRange(view);
  SetRange(*vertical_, down.maximum, view.view_height);
  PlaceTop(down.centred_edge.value_or(-vertical_->value()));

  const ScrollRange across = HorizontalRange(view);
  SetRange(*horizontal_, across.maximum, view.view_width);
  PlaceLeft(across.centred_edge.value_or(-horizontal_->value()));
}

void PageView::GoToStart() {
  vertical_->setValue(vertical_->minimum());
  horizontal_->setValue(horizontal_->minimum());
}

ViewMetrics PageView::Metrics() const {
  const auto units = [](int pixels) { return pixels / kPixelsPerUnit; };
  ViewMetrics view;
  view.inner_width = units(window()->width());
  view.inner_height = units(window()->height());
  view.bar_width = units(vertical_->width());
  view.bar_height = units(horizontal_->height());
  view.toolbar_height = units(window()->height() - height());
  view.view_width = units(container_->width());
  view.view_height = units(container_->height());
  view.page_width = units(page_->width());
  view.page_height = units(page_->height());
  return view;
}

void PageView::ScrollVertically() { PlaceTop(-vertical_->value()); }

void PageView::ScrollHorizontally() { PlaceLeft(-horizontal_->value()); }

void PageView::PlaceTop(double units) {
  page_->move(page_->x(), ToPixels(units));
  DrawShadow();
}

void PageView::PlaceLeft(double units) {
  page_->move(ToPixels(units), page_->y());
  DrawShadow();
}

void PageView::DrawShadow() {
  const QPoint offset(ToPixels(kShadowRight), ToPixels(kShadowDown));
  border_->setGeometry(QRect(page_->pos() + offset, page_->size()));
}

void PageView::MoveToSelection(int line, Cells column) {
  const QSizeF cell = page_->Cell();
  const auto move = [](QScrollBar& bar, double edge) {
    bar.setValue(ValueForSelection(bar.value(), bar.maximum(), edge / kPixelsPerUnit));
  };
  move(*vertical_, line * cell.height());
  move(*horizontal_, column * cell.width());
}

void PageView::ScrollByKey(int key) {
  const auto step = [](QScrollBar& bar, int by) {
    bar.setValue(Stepped(bar.value(), by, bar.maximum()));
  };
  const bool moves_across = horizontal_->maximum() >= 1;
  switch (key) {
    case Qt::Key_PageUp:
      return step(*vertical_, -vertical_->pageStep());
    case Qt::Key_PageDown:
      return step(*vertical_, vertical_->pageStep());
    case Qt::Key_Home:
      return vertical_->setValue(vertical_->minimum());
    case Qt::Key_End:
      return vertical_->setValue(vertical_->maximum());
    case Qt::Key_Up:
      return step(*vertical_, -1);
    case Qt::Key_Down:
      return step(*vertical_, 1);
    case Qt::Key_Left:
      if (moves_across) step(*horizontal_, -horizontal_->pageStep());
      return;
    case Qt::Key_Right:
      if (moves_across) step(*horizontal_, horizontal_->pageStep());
      return;
    default:
      return;
  }
}

// A notch scrolls as many lines of the page as the user's desktop says.
void PageView::wheelEvent(QWheelEvent* event) {
  wheel_rest_ += event->angleDelta();
  if (event->modifiers().testFlag(Qt::ControlModifier)) {
    const int notches = TakeSteps(wheel_rest_.ry(), kNotch);
    for (int i = 0; i < std::abs(notches); ++i) emit ZoomWheeled(notches > 0);
    return;
  }
  const double notch_units =
      QApplication::wheelScrollLines() * page_->Cell().height() / kPixelsPerUnit;
  const int eighths_per_unit = std::max(1, static_cast<int>(kNotch / std::max(1.0, notch_units)));
  const auto scroll = [&](QScrollBar& bar, int& rest) {
    bar.setValue(Stepped(bar.value(), -TakeSteps(rest, eighths_per_unit), bar.maximum()));
  };
  scroll(*vertical_, wheel_rest_.ry());
  scroll(*horizontal_, wheel_rest_.rx());
}

void PageView::mousePressEvent(QMouseEvent* event) {
  dragging_ = event->button() == Qt::LeftButton && (HasRange(*vertical_) || HasRange(*horizontal_));
  if (!dragging_) return;
  drag_from_ = event->globalPosition().toPoint();
  values_at_drag_ = {horizontal_->value(), vertical_->value()};
  container_->setCursor(Qt::ClosedHandCursor);
}

void PageView::mouseMoveEvent(QMouseEvent* event) {
  if (!dragging_) return;
  const QPoint moved = event->globalPosition().toPoint() - drag_from_;
  horizontal_->setValue(values_at_drag_.x() -
                        static_cast<int>(std::lround(moved.x() / kPixelsPerUnit)));
  vertical_->setValue(values_at_drag_.y() -
                      static_cast<int>(std::lround(moved.y() / kPixelsPerUnit)));
}

void PageView::mouseReleaseEvent(QMouseEvent* /*event*/) {
  dragging_ = false;
  container_->unsetCursor();
}

void PageView::Status(const QString& key) { status_->Show(key); }

void PageView::PaintStatus() { status_->repaint(); }

void PageView::Notice(const QString& text) {
  notice_->setText(text);
  notice_->setAccessibleName(text);
  notice_->setVisible(!text.isEmpty());
  PlaceNotice();
  if (text.isEmpty()) return;
  QAccessibleEvent alert(notice_, QAccessible::Alert);  // read out, as the message has no text
  QAccessible::updateAccessibility(&alert);
}

void PageView::PlaceNotice() {
  const int width = container_->width();
  const int text_height = notice_->heightForWidth(width - 2 * kNoticeMargin);
  notice_->setGeometry(0, 0, width, text_height + 2 * kNoticeMargin);
}

}  // namespace kel
