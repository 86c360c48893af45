#include "preview/frmPVKeys.h"

#include <QLineEdit>

namespace kel {
namespace {

// The number block's keys are keys like any other.
Qt::KeyboardModifiers Modifiers(const QKeyEvent& key) {
  return key.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
}

bool MovesInTextBox(const QObject* control, const QKeyEvent& key) {
  if (qobject_cast<const QLineEdit*>(control) == nullptr) return false;
  const int code = key.key();
  return code == Qt::Key_Left || code == Qt::Key_Right || code == Qt::Key_Home ||
         code == Qt::Key_End;
}

bool IsPageTyped(const QObject* control, const QKeyEvent& key) {
  return (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) &&
         Modifiers(key) == Qt::NoModifier && control->objectName() == QLatin1String("txtPage");
}

}  // namespace

std::optional<PreviewCommand> CommandOfKey(const QKeyEvent& key) {
  if (Modifiers(key) != Qt::ControlModifier) return std::nullopt;
  for (const PreviewButton& button : kPreviewButtons) {
    if (button.letter != 0 && key.key() == button.letter) return button.command;
  }
  return std::nullopt;
}

bool IsScrollKey(const QKeyEvent& key) {
  if (Modifiers(key) != Qt::NoModifier) return false;
  switch (key.key()) {
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
      return true;
    default:
      return false;
  }
}

PreviewKeys::PreviewKeys(QWidget& window) : QObject(&window) {
  window.installEventFilter(this);
  for (QWidget* control : window.findChildren<QWidget*>()) control->installEventFilter(this);
}

bool PreviewKeys::eventFilter(QObject* watched, QEvent* event) {
  const bool pressed = event->type() == QEvent::KeyPress;
  if (!pressed && event->type() != QEvent::ShortcutOverride) return false;
  const auto& key = static_cast<const QKeyEvent&>(*event);
  const std::optional<PreviewCommand> command = CommandOfKey(key);
  const bool typed = IsPageTyped(watched, key);
  const bool scrolls = IsScrollKey(key);
  if (!command && !typed && !scrolls) return false;
  // A key that also moves in a text box does both.
  const bool taken = !scrolls || !MovesInTextBox(watched, key);
  if (taken) event->accept();
  if (!pressed) return taken;
  if (command) emit CommandPressed(*command);
  if (typed) emit PageTyped();
  if (scrolls) emit ScrollPressed(key.key());
  return taken;
}

}  // namespace kel
