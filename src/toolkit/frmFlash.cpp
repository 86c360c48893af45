#include "toolkit/frmFlash.h"

#include <QBitmap>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QToolTip>
#include <algorithm>
#include <chrono>
#include <limits>

#include "controls/top_window.h"
#include "toolkit/screen_placement.h"

namespace kel {
namespace {

using namespace std::chrono_literals;

constexpr int kMarginX = 10;  // pixels at 100 %
constexpr int kMarginY = 5;
constexpr double kCornerEllipse = 15;  // its width and height
constexpr int kCharactersInLine = 60;
constexpr double kWidestPart = 0.4;  // of the screen
constexpr qsizetype kLongestSubject = 200;
constexpr qsizetype kLongestMessage = 1500;
constexpr double kHighestPart = 0.8;  // of the screen, for the message

constexpr auto kWindow =
    Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus;

QPainterPath RoundRect(const QRectF& rect) {
  QPainterPath path;
  path.addRoundedRect(rect, kCornerEllipse / 2, kCornerEllipse / 2);
  return path;
}

// As much of the text as the height has room for.
void Fit(WrappedLabel& label, int widest, int highest) {
  while (WrappedLabel::TextSize(label.text(), label.font(), widest).height() > highest &&
         label.text().size() > 1) {
    label.setText(Shortened(label.text(), label.text().size() * 2 / 3));
  }
}

void SetToolTipColors(QWidget& widget) {
  widget.setForegroundRole(QPalette::ToolTipText);
  widget.setBackgroundRole(QPalette::ToolTipBase);
}

}  // namespace

void frmFlash::Show(const FlashRequest& request, const RECT& area) {
  // It owns itself from here on: its timer closes it, and closing destroys it.
  const QPointer<frmFlash> note = std::unique_ptr<frmFlash>(new frmFlash(request, area)).release();
  SetOwner(*note, nullptr);
  ShowPainted(*note);
  if (note) note->tmr_.start();
}

frmFlash::frmFlash(const FlashRequest& request, const RECT& area)
    : QWidget(nullptr, kWindow),
      subject_(new WrappedLabel(
          Shortened(QString::fromStdString(request.subject.value_or("")), kLongestSubject), this)),
      message_(new WrappedLabel(Shortened(QString::fromStdString(request.message), kLongestMessage),
                                this)),
      tmr_(this) {
  setObjectName("frmFlash");
  setAttribute(Qt::WA_QuitOnClose, false);
  setAttribute(Qt::WA_DeleteOnClose);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setPalette(QToolTip::palette());
  SetToolTipColors(*this);
  subject_->setObjectName("Subject");
  SetToolTipColors(*subject_);
  QFont bold = font();
  bold.setBold(true);
  subject_->setFont(bold);
  message_->setObjectName("Message");
  SetToolTipColors(*message_);
  setAccessibleName(subject_->text());
  setAccessibleDescription(message_->text());

  const int widest = std::min(static_cast<int>((area.Right - area.Left) * kWidestPart),
                              fontMetrics().averageCharWidth() * kCharactersInLine);
  Fit(*message_, widest, static_cast<int>((area.Bottom - area.Top) * kHighestPart));
  LayOut(widest);
  const RECT place = AlignedRect(area, width(), height(), request.align);
  move(place.Left, place.Top);

  tmr_.setObjectName("tmr");
  tmr_.setSingleShot(true);
  connect(&tmr_, &QTimer::timeout, this, &QWidget::close);
  constexpr std::chrono::milliseconds kLongest(std::numeric_limits<int>::max());
  tmr_.setInterval(std::clamp<std::chrono::milliseconds>(request.interval, 1ms, kLongest));
}

void frmFlash::LayOut(int widest) {
  const auto needed = [&](const WrappedLabel& label) {
    if (label.text().isEmpty()) return QSize(0, 0);
    return WrappedLabel::TextSize(label.text(), label.font(), widest);
  };
  const QSize subject = needed(*subject_);
  const QSize message = needed(*message_);
  const int wide = std::max(subject.width(), message.width());
  subject_->setGeometry(kMarginX, kMarginY, wide, subject.height());
  message_->setGeometry(kMarginX, kMarginY + subject.height(), wide, message.height());
  setFixedSize(wide + 2 * kMarginX, subject.height() + message.height() + 2 * kMarginY);
  QBitmap shape(size());
  shape.clear();
  QPainter(&shape).fillPath(RoundRect(rect()), Qt::color1);
  setMask(shape);
}

void frmFlash::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect(), palette().toolTipBase());
  painter.setPen(palette().color(QPalette::ToolTipText));
  painter.drawPath(RoundRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5)));
}

}  // namespace kel
