// The progress bar of the wait window.
#pragma once

#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <cstdint>

#include "common/ole_color.h"
#include "controls/property_bag.h"

namespace kel {

/// A bar whose inner area, Pic, follows the value over the control's full height. There is no text.
///
/// The width of Pic is Value / (Max - Min) of the control's inner width: the value itself counts,
/// not its distance from Min. With Max not above Min the end of the work is not known; the bar then
/// runs to and fro.
class ProgressBar : public QWidget {
  Q_OBJECT

 public:
  enum Appearance : int { kFlat = 0, k3D = 1 };
  enum BorderStyle : int { kNone = 0, kFixedSingle = 1 };

  explicit ProgressBar(QWidget* parent = nullptr);

  std::int32_t Min() const { return min_; }
  void Min(std::int32_t min);
  std::int32_t Max() const { return max_; }
  void Max(std::int32_t max);
  std::int32_t Value() const { return value_; }
  /// A value outside the range becomes its nearer end.
  void Value(std::int32_t value);
  /// True while Max is not above Min.
  bool IsBusy() const { return max_ <= min_; }

  int Appearance() const { return appearance_; }
  void Appearance(int appearance);
  int BorderStyle() const { return border_style_; }
  void BorderStyle(int style);
  OleColor BackColor() const { return back_color_; }
  void BackColor(OleColor color);
  OleColor ForeColor() const { return fore_color_; }
  void ForeColor(OleColor color);
  /// Shown in the bar in place of the plain fill.
  const QPixmap& Picture() const { return picture_; }
  void Picture(const QPixmap& picture);
  /// While set, the bar area has the size of its picture.
  bool AutoSize() const { return auto_size_; }
  void AutoSize(bool auto_size);

  /// The kept properties by their published keys; Picture is not among those this bag carries.
  void ReadProperties(const PropertyBag& bag);
  PropertyBag WriteProperties() const;

  /// The width of the bar area for a value, in the unit of `inner_width`.
  static double BarWidth(std::int32_t value, std::int32_t min, std::int32_t max,
                         double inner_width);

  QSize sizeHint() const override;

 signals:
  /// A property with that published name has changed.
  void PropertyChanged(const QString& name);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Arrange();
  QRect BarRect() const;
  QRect Inner() const;
  int Border() const;
  void RunWhileBusy();
  void Changed(const char* property);

  std::int32_t min_ = 0;
  std::int32_t max_ = 100;
  std::int32_t value_ = 0;
  int appearance_ = k3D;
  int border_style_ = kNone;
  OleColor back_color_ = system_color::kButtonFace;
  OleColor fore_color_ = system_color::kHighlight;
  QPixmap picture_;
  bool auto_size_ = false;
  QWidget* pic_ = nullptr;  // the bar area; a child
  QTimer busy_timer_;
  double busy_phase_ = 0;  // of one run to and fro, 0 to 1
};

}  // namespace kel
