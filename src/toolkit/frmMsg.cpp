#include "toolkit/frmMsg.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>
#include <limits>

#include "common/error.h"
#include "common/object.h"
#include "controls/icons.h"
#include "controls/top_window.h"
#include "controls/wrapped_label.h"
#include "toolkit/screen_placement.h"

namespace kel {
namespace {

using namespace std::chrono_literals;

constexpr const char* kDesignCaption = "  Information";
constexpr const char* kFontFamily = "Tahoma";
constexpr int kButtonStyleMask = 3;

constexpr double kWireFraction = 8;
constexpr auto kWirePause = 3ms;

constexpr auto kBlinkInterval = 500ms;
constexpr int kSwitches = 6;  // three blinks; then the picture stays

constexpr int kStep = 8;  // of the space around and between things, in pixels at 100 %
constexpr int kCharactersInLine = 72;
constexpr double kWidestPart = 0.6;  // of the screen, for the prompt
constexpr double kHighestPart = 0.5;
constexpr qsizetype kMeasured = 5000;  // characters; more never fit
// Breaking into lines takes time that grows with the square of a word's length. The clipboard gets
// all of the prompt.
constexpr qsizetype kLongestShown = 20000;
constexpr qsizetype kLongestTitle = 250;
constexpr int kTextEdge = 2;  // what an edit keeps beyond its text
constexpr int kLeastCharacters = 30;

// Both flags count: a box of two buttons never loses its way out to a caller's odd flag.
bool HasTwoButtons(int buttons) { return (buttons & kButtonStyleMask) >= msgYesNo; }

// A number outside the list shows the picture of a plain message.
const frmMsg::ListImage& ImageOf(IconStyles icon) {
  const bool known = icon >= msgSave && icon <= msgExclamation;
  return frmMsg::Imgs().at(static_cast<std::size_t>(known ? icon : msgInformation) - 1);
}

// A control that has gone while the box was open, or that knows no focus, is passed over.
void HandFocusTo(Object& control) {
  Object::MemberId set_focus = 0;
  try {
    set_focus = control.Resolve("SetFocus");
  } catch (const Error&) {
    return;
  }
  Arguments none;
  control.Call(set_focus, none);
}

}  // namespace

const std::array<frmMsg::ListImage, 9>& frmMsg::Imgs() {
  static constexpr std::array<ListImage, 9> kImages = {{{"Save", "save"},
                                                        {"Update", "update"},
                                                        {"Delete", "delete"},
                                                        {"Print", "message-print"},
                                                        {"CloseAll", "close-all"},
                                                        {"Information", "information"},
                                                        {"Question", "question"},
                                                        {"Critical", "critical"},
                                                        {"Exclamation", "exclamation"}}};
  return kImages;
}

frmMsg::frmMsg(const MessageRequest& request)
    : request_(request),
      prompt_text_(QString::fromStdString(request.prompt)),
      two_buttons_(HasTwoButtons(request.buttons)),
      Pic_(new QLabel(this)),
      prompt_(new QPlainTextEdit(this)),
      OK_(new Button(this)),
      Cancel_(new Button(this)),
      utmr_(this),
      tmr_(this),
      switches_left_(kSwitches) {
  setObjectName("frmMsg");
  setAttribute(Qt::WA_QuitOnClose, false);
  setWindowTitle(request.title ? Shortened(QString::fromStdString(*request.title), kLongestTitle)
                               : QString(kDesignCaption));
  setAccessibleDescription(Shortened(prompt_text_, kMeasured));
  if (QFontDatabase::hasFamily(kFontFamily)) {
    QFont tahoma = font();
    tahoma.setFamily(kFontFamily);
    setFont(tahoma);
  }
  PutPicture();
  PutPrompt();
  PutButtons();
  LayOut();

  utmr_.setObjectName("utmr");
  utmr_.setSingleShot(true);
  connect(&utmr_, &QTimer::timeout, this, &QDialog::reject);
  tmr_.setObjectName("tmr");
  connect(&tmr_, &QTimer::timeout, this, [this] { Blink(); });
}

void frmMsg::PutPicture() {
  const ListImage& image = ImageOf(request_.icon);
  const int extent = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
  Pic_->setObjectName("Pic");
  Pic_->setAccessibleName(image.key);
  Pic_->setPixmap(Icon(image.icon).pixmap(QSize(extent, extent), devicePixelRatioF()));
  QSizePolicy policy = Pic_->sizePolicy();
  policy.setRetainSizeWhenHidden(true);  // the prompt stays where it is while the picture blinks
  Pic_->setSizePolicy(policy);
}

// A prompt that fits is plain to look at, and a press on it is one on the window. One that does
// not scrolls, takes the focus and can be selected.
void frmMsg::PutPrompt() {
  const QSize room = screen()->availableSize();
  const int widest = std::min(static_cast<int>(room.width() * kWidestPart),
                              fontMetrics().averageCharWidth() * kCharactersInLine);
  const int highest = static_cast<int>(room.height() * kHighestPart);
  const bool measured = prompt_text_.size() <= kMeasured;
  const QSize needed = measured ? WrappedLabel::TextSize(prompt_text_, font(), widest)
                                : QSize(widest, std::numeric_limits<int>::max());
  const bool scrolls = needed.height() > highest;

  prompt_->setObjectName("Prompt");
  prompt_->setReadOnly(true);
  prompt_->setTabChangesFocus(true);
  prompt_->document()->setDocumentMargin(scrolls ? kStep / 2 : 0);
  prompt_->setPlainText(Shortened(prompt_text_, kLongestShown));
  prompt_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  if (scrolls) {
    prompt_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    prompt_->setMinimumSize(widest + prompt_->verticalScrollBar()->sizeHint().width(), highest);
    return;
  }
  prompt_->setFrameShape(QFrame::NoFrame);
  prompt_->viewport()->setAutoFillBackground(false);
  prompt_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  prompt_->setTextInteractionFlags(Qt::NoTextInteraction);
  prompt_->setFocusPolicy(Qt::NoFocus);
  prompt_->setAttribute(Qt::WA_TransparentForMouseEvents);
  prompt_->setFixedSize(needed.width() + kTextEdge, needed.height() + kTextEdge);
}

void frmMsg::PutButtons() {
  const bool yes_no = (request_.buttons & kButtonStyleMask) == msgYesNo;
  OK_->setObjectName("OK");
  OK_->Caption(yes_no ? "&Yes" : "&OK");
  OK_->installEventFilter(this);
  connect(OK_, &Button::clicked, this, &QDialog::accept);
  Cancel_->setObjectName("Cancel");
  Cancel_->Caption(yes_no ? "&No" : "&Cancel");
  Cancel_->installEventFilter(this);
  connect(Cancel_, &Button::clicked, this, &QDialog::reject);
  Cancel_->setVisible(two_buttons_);
  MakeDefault(two_buttons_ && (request_.buttons & msgDefault2) != 0 ? Cancel_ : OK_);
}

void frmMsg::LayOut() {
  auto* const message = new QHBoxLayout;
  message->setSpacing(2 * kStep);
  message->addWidget(Pic_, 0, Qt::AlignTop);
  const bool fits = prompt_->focusPolicy() == Qt::NoFocus;
  message->addWidget(prompt_, 1, fits ? Qt::AlignVCenter | Qt::AlignLeft : Qt::Alignment());

  auto* const buttons = new QDialogButtonBox;
  buttons->addButton(OK_, QDialogButtonBox::AcceptRole);
  buttons->addButton(Cancel_, QDialogButtonBox::RejectRole);
  Cancel_->setVisible(two_buttons_);

  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(2 * kStep, 2 * kStep, 2 * kStep, 2 * kStep);
  all->setSpacing(2 * kStep);
  all->addLayout(message, 1);
  all->addWidget(buttons);
  const int least = fontMetrics().averageCharWidth() * kLeastCharacters;
  const int widest = static_cast<int>(screen()->availableSize().width() * kWidestPart);
  all->addStrut(std::max(least, std::min(WidthForTitle(*this), widest)) - 4 * kStep);
  // There is nothing to gain by a larger window, unless the prompt scrolls.
  if (fits) all->setSizeConstraint(QLayout::SetFixedSize);
}

bool frmMsg::Ask(Desktop& desktop) {
  SetOwner(*this, OwnerForNewWindow());
  const QSize size = sizeHint().expandedTo(minimumSize());
  const RECT place = AlignedRect(desktop.WorkArea(), size.width(), size.height(), zurAlignCenter);
  setGeometry(place.Left, place.Top, size.width(), size.height());

  Object* const control = request_.converge_to;
  if (request_.animate && control != nullptr) GrowOutOf(*control, desktop);
  const bool answer = exec() == Accepted;
  if (request_.focus && control != nullptr) HandFocusTo(*control);
  return answer;
}

void frmMsg::GrowOutOf(Object& control, Desktop& desktop) {
  const std::optional<RECT> from = desktop.ScreenRect(control);
  if (!from) return;
  const QRect frame = frameGeometry();
  const RECT to = {frame.x(), frame.y(), frame.x() + frame.width(), frame.y() + frame.height()};
  desktop.DrawWireRects(*from, to, WireSteps(*from, to, kWireFraction), kWirePause);
}

void frmMsg::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  default_->setFocus();
  tmr_.start(kBlinkInterval);
  constexpr std::chrono::milliseconds kLongest(std::numeric_limits<int>::max());
  if (request_.unload_time > 0ms) utmr_.start(std::min(request_.unload_time, kLongest));
}

// Of the buttons. A key that is still held down from before the box came up does not answer it.
bool frmMsg::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn) MakeDefault(watched == OK_ ? OK_ : Cancel_);
  return event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->isAutoRepeat();
}

void frmMsg::MakeDefault(Button* button) {
  if (default_ != nullptr) default_->Default(false);
  default_ = button;
  default_->Default(true);
}

void frmMsg::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return QApplication::clipboard()->setText(prompt_text_);
  Button* const pressed = ButtonFor(*event);
  if (pressed == nullptr) return event->ignore();
  pressed->Value(true);
}

Button* frmMsg::ButtonFor(const QKeyEvent& event) const {
  constexpr auto kCommand = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
  if (event.isAutoRepeat() || (event.modifiers() & kCommand) != 0) return nullptr;
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return default_;
    case Qt::Key_O:
    case Qt::Key_Y:
      return OK_;
    case Qt::Key_C:
    case Qt::Key_N:
    case Qt::Key_Escape:
      return two_buttons_ ? Cancel_ : nullptr;
    default:
      return nullptr;
  }
}

void frmMsg::mousePressEvent(QMouseEvent* /*event*/) { SwitchPicture(); }

void frmMsg::SwitchPicture() { Pic_->setVisible(Pic_->isHidden()); }

void frmMsg::Blink() {
  SwitchPicture();
  if (--switches_left_ > 0) return;
  tmr_.stop();
  Pic_->show();
}

}  // namespace kel
