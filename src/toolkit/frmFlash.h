// The flash message.
#pragma once

#include <QTimer>
#include <QWidget>
#include <memory>

#include "common/desktop.h"
#include "controls/wrapped_label.h"

namespace kel {

/// A note with rounded corners, above all windows and out of the way of keys and focus. Its timer
/// takes it off the screen and destroys it.
class frmFlash : public QWidget {
 public:
  /// Shows a note in `area`, the part of the screen that windows may cover.
  static void Show(const FlashRequest& request, const RECT& area);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  frmFlash(const FlashRequest& request, const RECT& area);
  void LayOut(int widest);

  WrappedLabel* subject_;  // children
  WrappedLabel* message_;
  QTimer tmr_;
};

}  // namespace kel
