#include "controls/ProgressBar.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <chrono>
#include <cmath>

#include "controls/colors.h"

namespace kel {
namespace {

constexpr std::chrono::milliseconds kBusyTick{33};
constexpr double kBusyStep = 0.015;  // of a run to and fro
constexpr int kBusyShare = 4;        // the running piece is a fourth of the bar
constexpr double kLineStrength = 0.35;

// The bar area: the picture, else the plain colour.
class BarArea : public QWidget {
 public:
  explicit BarArea(ProgressBar& bar) : QWidget(&bar), bar_(bar) {
    setObjectName("Pic");
    setAttribute(Qt::WA_TransparentForMouseEvents);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.fillRect(rect(), ToQColor(bar_.ForeColor(), palette()));
    if (!bar_.Picture().isNull()) painter.drawTiledPixmap(rect(), bar_.Picture());
  }

 private:
  const ProgressBar& bar_;
};

}  // namespace

ProgressBar::ProgressBar(QWidget* parent) : QWidget(parent), pic_(new BarArea(*this)) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  busy_timer_.setInterval(kBusyTick);
  connect(&busy_timer_, &QTimer::timeout, this, [this] {
    busy_phase_ = std::fmod(busy_phase_ + kBusyStep, 1.0);
    Arrange();
  });
}

void ProgressBar::Min(std::int32_t min) {
  min_ = min;
  Changed("Min");
  Value(value_);
}

void ProgressBar::Max(std::int32_t max) {
  max_ = max;
  Changed("Max");
  Value(value_);
}

void ProgressBar::Value(std::int32_t value) {
  const std::int32_t within = value < min_ ? min_ : std::min(value, std::max(min_, max_));
  if (within != value_) {
    value_ = within;
    Changed("Value");
  }
  RunWhileBusy();
  Arrange();
}

void ProgressBar::Appearance(int appearance) {
  appearance_ = appearance;
  Changed("Appearance");
  Arrange();
}

void ProgressBar::BorderStyle(int style) {
  border_style_ = style;
  Changed("BorderStyle");
  Arrange();
}

void ProgressBar::BackColor(OleColor color) {
  back_color_ = color;
  Changed("BackColor");
}

void ProgressBar::ForeColor(OleColor color) {
  fore_color_ = color;
  Changed("ForeColor");
}

void ProgressBar::Picture(const QPixmap& picture) {
  picture_ = picture;
  Changed("Picture");
  Arrange();
}

void ProgressBar::AutoSize(bool auto_size) {
  auto_size_ = auto_size;
  Changed("AutoSize");
  Arrange();
}

void ProgressBar::Changed(const char* property) {
  update();
  pic_->update();
  emit PropertyChanged(QLatin1String(property));
}

double ProgressBar::BarWidth(std::int32_t value, std::int32_t min, std::int32_t max,
                             double inner_width) {
  if (max <= min) return 0;
  return value / (static_cast<double>(max) - min) * inner_width;
}

void ProgressBar::ReadProperties(const PropertyBag& bag) {
  // Everything is read before anything is set: a value of the wrong type leaves the bar as it is.
  const std::int32_t min = bag.Read("Min", 0).ToInt32();
  const std::int32_t max = bag.Read("Max", 100).ToInt32();
  const std::int32_t value = bag.Read("Value", 0).ToInt32();
  const int appearance = bag.Read("Appearance", k3D).ToInt32();
  const int border_style = bag.Read("BorderStyle", kNone).ToInt32();
  const OleColor back = ColorOf(bag.Read("BackColor", ColorValue(system_color::kButtonFace)));
  const OleColor fore = ColorOf(bag.Read("ForeColor", ColorValue(system_color::kHighlight)));
  const bool auto_size = bag.Read("AutoSize", 0).ToBoolean();

  Min(min);
  Max(max);
  Value(value);
  Appearance(appearance);
  BorderStyle(border_style);
  BackColor(back);
  ForeColor(fore);
  AutoSize(auto_size);
}

PropertyBag ProgressBar::WriteProperties() const {
  PropertyBag bag;
  bag.Write("Min", min_);
  bag.Write("Max", max_);
  bag.Write("Value", value_);
  bag.Write("Appearance", appearance_);
  bag.Write("BorderStyle", border_style_);
  bag.Write("BackColor", ColorValue(back_color_));
  bag.Write("ForeColor", ColorValue(fore_color_));
  bag.Write("AutoSize", auto_size_ ? 1 : 0);
  return bag;
}

QSize ProgressBar::sizeHint() const {
  const int height = fontMetrics().height();
  return {height * 10, height};
}

void ProgressBar::Arrange() { pic_->setGeometry(BarRect()); }

QRect ProgressBar::BarRect() const {
  const QRect inner = Inner();
  if (IsBusy()) {
    const int piece = inner.width() / kBusyShare;
    const double there = 1 - std::abs(2 * busy_phase_ - 1);
    const int left = static_cast<int>(std::lround((inner.width() - piece) * there));
    return {inner.left() + left, inner.top(), piece, inner.height()};
  }
  if (auto_size_ && !picture_.isNull()) {
    return {inner.topLeft(), picture_.deviceIndependentSize().toSize()};
  }
  const double width = BarWidth(value_, min_, max_, inner.width());
  const double possible = std::clamp(std::round(width), 0.0, double{QWIDGETSIZE_MAX});
  return {inner.left(), inner.top(), static_cast<int>(possible), inner.height()};
}

QRect ProgressBar::Inner() const {
  const int border = Border();
  return rect().adjusted(border, border, -border, -border);
}

int ProgressBar::Border() const {
  if (border_style_ == kNone) return 0;
  return appearance_ == kFlat ? 1 : 2;
}

void ProgressBar::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), ToQColor(back_color_, palette()));
  QColor line = palette().color(QPalette::WindowText);
  line.setAlphaF(static_cast<float>(kLineStrength));
  painter.setPen(line);
  const QRect edge = rect().adjusted(0, 0, -1, -1);
  if (border_style_ != kNone) painter.drawRect(edge);
  if (appearance_ == kFlat) return;
  // The shade of a hollow, so that the unfilled part shows on a window of its own colour.
  line.setAlphaF(static_cast<float>(kLineStrength / 2));
  painter.setPen(line);
  const int inset = border_style_ == kNone ? 0 : 1;
  painter.drawRect(edge.adjusted(inset, inset, -inset, -inset));
}

void ProgressBar::resizeEvent(QResizeEvent* /*event*/) { Arrange(); }

void ProgressBar::showEvent(QShowEvent* /*event*/) { RunWhileBusy(); }

void ProgressBar::hideEvent(QHideEvent* /*event*/) { busy_timer_.stop(); }

void ProgressBar::RunWhileBusy() {
  if (!IsBusy() || !isVisible()) {
    busy_timer_.stop();
  } else if (!busy_timer_.isActive()) {
    busy_timer_.start();
  }
}

void ProgressBar::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) updateGeometry();
  update();
}

}  // namespace kel
