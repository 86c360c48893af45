// The viewing area of the preview: the page, its shadow and the bars that move it.
#pragma once

#include <QPoint>
#include <QScrollBar>
#include <QWidget>

#include "preview/frmPVPage.h"
#include "preview/scroll_ranges.h"

namespace kel {

class StatusPicture;
class WrappedLabel;

/// Everything below the tool bar: the container `fme` with the page `Pic` and its shadow `Border`,
/// the bars `VS` and `HS`, and `picAnimate` in the corner between them. It fills its window down
/// to the bottom; what is above it is the tool bar.
class PageView : public QWidget {
  Q_OBJECT

 public:
  explicit PageView(QWidget* parent);

  PageSurface& Surface() { return *page_; }

  /// Gives the page the size of its text, where it stands.
  void SizePage();
  /// Whether a page of that size needs no scrolling.
  bool Holds(const QSize& page) const;

  void ScrollSize();
  /// Scrolls to the page's top left.
  void GoToStart();
  /// Scrolls so that the match, which begins at `column` of `line`, is in view.
  void MoveToSelection(int line, Cells column);
  /// Page Up, Page Down, Home, End and the arrow keys, by their Qt::Key.
  void ScrollByKey(int key);

  /// "Busy" or "Ready"; seen with the next painting, or now.
  void Status(const QString& key);
  void PaintStatus();
  /// A note over the page; none when empty.
  void Notice(const QString& text);

 signals:
  /// The wheel was turned with Ctrl.
  void ZoomWheeled(bool in);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void MakeControls();
  void LayOut();
  ViewMetrics Metrics() const;
  void ScrollVertically();
  void ScrollHorizontally();
  void PlaceTop(double units);
  void PlaceLeft(double units);
  void DrawShadow();
  void PlaceNotice();

  QWidget* container_ = nullptr;
  QWidget* border_ = nullptr;
  PageSurface* page_ = nullptr;
  QScrollBar* vertical_ = nullptr;
  QScrollBar* horizontal_ = nullptr;
  StatusPicture* status_ = nullptr;
  WrappedLabel* notice_ = nullptr;

  QPoint wheel_rest_;  // eighths of a degree not yet scrolled
  bool dragging_ = false;
  QPoint drag_from_;
  QPoint values_at_drag_;
};

}  // namespace kel
