// A layout that goes on in another row where a row is full.
#pragma once

#include <QLayout>
#include <cstddef>
#include <memory>
#include <vector>

namespace kel {

/// Items one after another in reading direction, in as many rows as the width needs; spacing() lies
/// between rows, `gap` between the items of one. An item that does not fit is narrowed to its
/// minimum before it begins a row of its own; nothing is ever hidden, or wider than its size hint.
class FlowLayout : public QLayout {
 public:
  FlowLayout(QWidget* parent, int gap) : QLayout(parent), gap_(gap) {}

  void addItem(QLayoutItem* item) override { items_.emplace_back(item); }
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  int count() const override { return static_cast<int>(items_.size()); }

  /// The size of a single row.
  QSize sizeHint() const override;
  /// The size of the widest item, narrowed.
  QSize minimumSize() const override;
  Qt::Orientations expandingDirections() const override { return {}; }
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  void setGeometry(const QRect& area) override;

 private:
  std::vector<QRect> Places(const QRect& area) const;
  std::size_t RowEnd(std::size_t begin, int width) const;
  std::vector<int> RowWidths(std::size_t begin, std::size_t end, int width) const;
  int RowHeight(std::size_t begin, std::size_t end) const;

  std::vector<std::unique_ptr<QLayoutItem>> items_;
  int gap_;
};

}  // namespace kel
