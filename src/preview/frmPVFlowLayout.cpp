#include "preview/frmPVFlowLayout.h"

#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace kel {

QLayoutItem* FlowLayout::itemAt(int index) const {
  if (index < 0 || index >= count()) return nullptr;
  return items_[static_cast<std::size_t>(index)].get();
}

QLayoutItem* FlowLayout::takeAt(int index) {
  if (index < 0 || index >= count()) return nullptr;
  const auto place = items_.begin() + index;
  QLayoutItem* item = place->release();
  items_.erase(place);
  return item;
}

QSize FlowLayout::sizeHint() const {
  int width = gap_ * std::max(0, count() - 1);
  for (const auto& item : items_) width += item->sizeHint().width();
  return QSize(width, RowHeight(0, items_.size())).grownBy(contentsMargins());
}

QSize FlowLayout::minimumSize() const {
  QSize size;
  for (const auto& item : items_) size = size.expandedTo(item->minimumSize());
  return size.grownBy(contentsMargins());
}

int FlowLayout::heightForWidth(int width) const {
  const std::vector<QRect> places = Places(QRect(0, 0, width, 0));
  const int bottom = places.empty() ? contentsMargins().top() : places.back().bottom() + 1;
  return bottom + contentsMargins().bottom();
}

void FlowLayout::setGeometry(const QRect& area) {
  QLayout::setGeometry(area);
  const std::vector<QRect> places = Places(area);
  const Qt::LayoutDirection direction = parentWidget()->layoutDirection();
  for (std::size_t i = 0; i < items_.size(); ++i) {
    items_[i]->setGeometry(QStyle::visualRect(direction, area, places[i]));
  }
}

// From left to right, whatever the reading direction.
std::vector<QRect> FlowLayout::Places(const QRect& area) const {
  const QRect inner = area.marginsRemoved(contentsMargins());
  std::vector<QRect> places;
  int top = inner.top();
  for (std::size_t begin = 0; begin < items_.size();) {
    const std::size_t end = RowEnd(begin, inner.width());
    const int height = RowHeight(begin, end);
    int left = inner.left();
    for (const int width : RowWidths(begin, end, inner.width())) {
      places.emplace_back(left, top, width, height);
      left += width + gap_;
    }
    top += height + spacing();
    begin = end;
  }
  return places;
}

std::size_t FlowLayout::RowEnd(std::size_t begin, int width) const {
  int used = items_[begin]->minimumSize().width();
  std::size_t end = begin + 1;
  for (; end < items_.size(); ++end) {
    used += gap_ + items_[end]->minimumSize().width();
    if (used > width) break;
  }
  return end;
}

// The last items of a row give way first.
std::vector<int> FlowLayout::RowWidths(std::size_t begin, std::size_t end, int width) const {
  std::vector<int> widths;
  int missing = gap_ * (static_cast<int>(end - begin) - 1) - width;
  for (std::size_t i = begin; i < end; ++i) {
    widths.push_back(items_[i]->sizeHint().width());
    missing += widths.back();
  }
  for (std::size_t i = end; i > begin && missing > 0; --i) {
    int& last = widths[i - 1 - begin];
    const int given = std::min(missing, last - items_[i - 1]->minimumSize().width());
    last -= given;
    missing -= given;
  }
  return widths;
}

int FlowLayout::RowHeight(std::size_t begin, std::size_t end) const {
  int height = 0;
  for (std::size_t i = begin; i < end; ++i) {
    height = std::max(height, items_[i]->sizeHint().height());
  }
  return height;
}

}  // namespace kel
