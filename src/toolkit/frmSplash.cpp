#include "toolkit/frmSplash.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointer>
#include <algorithm>
#include <limits>

#include "controls/top_window.h"
#include "toolkit/CZURDLL.h"
#include "toolkit/screen_placement.h"

namespace kel {
namespace {

using namespace std::chrono_literals;

constexpr int kStep = 8;  // of the space around and between things, in pixels at 100 %
constexpr int kLeastLines = 2;
constexpr qsizetype kLongestCaption = 500;

// Drawing and events take at most one part in six of the caller's time, at most 40 times a second.
constexpr auto kLeastInterval = 25ms;
// An event that took long, such as a question to the user, is no measure of what events cost.
constexpr auto kMostInterval = 200ms;
constexpr int kWorkShare = 5;

constexpr const char* kStopPrompt = "Stop?";
constexpr const char* kStopTitle = "Confirmation";

}  // namespace

frmSplash::frmSplash()
    : QWidget(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      lbl_(new WrappedLabel),
      PB_(new ProgressBar),
      Pic_(new Button("Stop")) {
  setObjectName("frmSplash");
  setAttribute(Qt::WA_QuitOnClose, false);
  setWindowTitle(QGuiApplication::applicationDisplayName());
  lbl_->setObjectName("lbl");
  lbl_->setMinimumHeight(kLeastLines * fontMetrics().lineSpacing());
  PB_->setObjectName("PB");
  Pic_->setObjectName("Pic");
  connect(Pic_, &Button::clicked, this, [this] { RequestStop(); });
  stop_request_.setSingleShot(true);
  connect(&stop_request_, &QTimer::timeout, this, [this] { ConfirmStop(); });

  auto* const layout = new QGridLayout(this);
  layout->setContentsMargins(2 * kStep, 2 * kStep, 2 * kStep, 2 * kStep);
  layout->setSpacing(kStep);
  layout->addWidget(lbl_, 0, 0);
  layout->addWidget(Pic_, 0, 1, Qt::AlignTop);
  layout->addWidget(PB_, 1, 0, 1, 2);
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

void frmSplash::Show(const WaitRequest& request, Desktop& desktop) {
  stopped_ = false;
  PutBar(request);
  PutStop(request.stop_button);
  if (request.caption) PutCaption(*request.caption);
  next_refresh_ = {};
  if (!asking_) ComeUp(desktop);
}

void frmSplash::PutBar(const WaitRequest& request) {
  if (request.min) PB_->Min(*request.min);
  if (request.max) PB_->Max(*request.max);
  const bool bar = request.min || request.max;
  if (bar) PB_->Value(PB_->Min());
  PB_->setVisible(bar);
}

// The window's own close is there only while it leads somewhere. Without Stop the window leaves
// the focus where it is: nobody can do anything on it.
void frmSplash::PutStop(bool stop_button) {
  lbl_->setFixedWidth(PixelsOf(stop_button ? kLabelWidthWithStop : kLabelWidth));
  Pic_->setVisible(stop_button);
  setAttribute(Qt::WA_ShowWithoutActivating, !stop_button);
  if (windowFlags().testFlag(Qt::WindowCloseButtonHint) == stop_button) return;
  setWindowFlag(Qt::WindowCloseButtonHint, stop_button);  // takes it off the screen
}

// False when it stands there already.
bool frmSplash::PutCaption(const std::string& caption) {
  const QString text = Shortened(QString::fromStdString(caption), kLongestCaption);
  if (text == lbl_->text()) return false;
  lbl_->setText(text);
  return true;
}

// At once: the next step may be seconds away.
void frmSplash::PaintCaption() {
  const int height_before = height();
  layout()->activate();
  if (height() == height_before) {
    lbl_->repaint();
  } else {
    repaint();
  }
}

void frmSplash::ComeUp(Desktop& desktop) {
  layout()->activate();
  if (isHidden()) {
    const RECT place = AlignedRect(desktop.WorkArea(), width(), height(), zurAlignCenter);
    move(place.Left, place.Top);
    SetOwner(*this, OwnerForNewWindow());
    if (!Pic_->isHidden()) Pic_->setFocus();
  }
  ShowPainted(*this);
}

bool frmSplash::Step(std::int32_t step, const std::optional<std::string>& caption) {
  if (stopped_) return false;
  if (asking_ && !stop_request_.isActive()) return true;
  if (isHidden()) show();
  if (caption && PutCaption(*caption)) PaintCaption();
  if (!PB_->isHidden()) {
    using Limits = std::numeric_limits<std::int32_t>;
    const std::int64_t value = std::int64_t{PB_->Value()} + step;
    PB_->Value(
        static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max())));
  }
  const QPointer<frmSplash> self(this);
  Refresh();
  return !self.isNull() && !stopped_;
}

void frmSplash::Refresh() {
  const auto start = SteadyClock::now();
  if (start < next_refresh_) return;
  const QPointer<frmSplash> self(this);
  if (Pic_->isHidden()) {
    repaint();
  } else {
    QCoreApplication::processEvents();
  }
  if (self.isNull()) return;
  const auto end = SteadyClock::now();
  next_refresh_ = end + std::clamp<SteadyClock::duration>(kWorkShare * (end - start),
                                                          kLeastInterval, kMostInterval);
}

void frmSplash::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (!Pic_->isHidden()) RequestStop();
}

void frmSplash::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter || event->isAutoRepeat() || Pic_->isHidden()) return event->ignore();
  RequestStop();
}

// Asks when the event that brought the press is done: the answer may destroy this window, and the
// event still needs it.
void frmSplash::RequestStop() {
  if (asking_ || stopped_) return;
  asking_ = true;
  stop_request_.start();
}

void frmSplash::ConfirmStop() {
  hide();
  const QPointer<frmSplash> self(this);
  const bool stop = SharedToolkit().MsgBox(kStopPrompt, msgYesNo, kStopTitle, msgQuestion);
  if (self.isNull()) return;
  asking_ = false;
  stopped_ = stop;
  next_refresh_ = {};
  if (!stop) ShowPainted(*this);
}

}  // namespace kel
