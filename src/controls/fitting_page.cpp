#include "controls/fitting_page.h"

#include <QApplication>
#include <QEvent>
#include <QScrollBar>

namespace kel {

FittingPage::FittingPage(QWidget* content) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  setWidget(content);
  // The tab's own background, which differs from the window's in many styles, shows through.
  content->setAutoFillBackground(false);
  viewport()->setAutoFillBackground(false);
  connect(qApp, &QApplication::focusChanged, this,
          [this](QWidget* /*before*/, QWidget* now) { FollowFocus(now); });
}

void FittingPage::Room(const QSize& room) {
  room_ = room;
  updateGeometry();
}

// A bar that scrolls one way takes room that the content needs the other way.
QSize FittingPage::sizeHint() const {
  QSize size = widget()->sizeHint();
  if (size.height() > room_.height()) size.rwidth() += verticalScrollBar()->sizeHint().width();
  if (size.width() > room_.width()) size.rheight() += horizontalScrollBar()->sizeHint().height();
  return size.boundedTo(room_).expandedTo(minimumSizeHint());
}

bool FittingPage::eventFilter(QObject* watched, QEvent* event) {
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return QScrollArea::eventFilter(watched, event);
}

// The scroll area itself follows the Tab key, but not mnemonics, nor a fault that is pointed at.
void FittingPage::FollowFocus(QWidget* focused) {
  if (focused == nullptr || !widget()->isAncestorOf(focused)) return;
  ensureWidgetVisible(focused);
}

}  // namespace kel
