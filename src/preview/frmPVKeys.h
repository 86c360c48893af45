// The keys of the preview window.
#pragma once

#include <QKeyEvent>
#include <QObject>
#include <QWidget>
#include <optional>

#include "preview/preview_commands.h"

namespace kel {

/// The button that a key presses: with Ctrl alone its letter.
std::optional<PreviewCommand> CommandOfKey(const QKeyEvent& key);
/// Whether the key, without a modifier, moves the page.
bool IsScrollKey(const QKeyEvent& key);

/// Takes the keys of a window before the control that has the focus sees them, as a form with key
/// preview does, and before the shortcuts of the program around it. A key that moves the page moves
/// the cursor of a text box too, where it would.
class PreviewKeys : public QObject {
  Q_OBJECT

 public:
  /// Watches `window` and the controls that it has by now.
  explicit PreviewKeys(QWidget& window);

  bool eventFilter(QObject* watched, QEvent* event) override;

 signals:
  void CommandPressed(kel::PreviewCommand command);
  /// A Qt::Key.
  void ScrollPressed(int key);
  /// Enter without a modifier in the page box.
  void PageTyped();
};

}  // namespace kel
