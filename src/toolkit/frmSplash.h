// The wait window.
#pragma once

#include <QTimer>
#include <QWidget>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "common/desktop.h"
#include "common/twips.h"
#include "controls/Button.h"
#include "controls/ProgressBar.h"
#include "controls/wrapped_label.h"

namespace kel {

/// Tells what the program is at, with a bar and a Stop control where asked for. A press of Stop,
/// or of the window's own close where it has one, asks "Stop?"; Yes takes the window off the
/// screen.
///
/// Show and Step may run the program's event handlers, and one of these may destroy the window:
/// both allow for that.
class frmSplash : public QWidget {
 public:
  static constexpr Twips kLabelWidthWithStop = 2580;
  static constexpr Twips kLabelWidth = 3165;

  frmSplash();

  /// Puts up what the window is to show, and paints it before it returns.
  void Show(const WaitRequest& request, Desktop& desktop);
  /// Advances the bar, and lets events through while Stop is there. The bar that is drawn may lag
  /// behind by a blink. False when the user has stopped the work or the window is gone.
  bool Step(std::int32_t step, const std::optional<std::string>& caption);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  using SteadyClock = std::chrono::steady_clock;

  void PutBar(const WaitRequest& request);
  void PutStop(bool stop_button);
  bool PutCaption(const std::string& caption);
  void PaintCaption();
  void ComeUp(Desktop& desktop);
  void Refresh();
  void RequestStop();
  void ConfirmStop();

  WrappedLabel* lbl_;  // children
  ProgressBar* PB_;
  Button* Pic_;
  QTimer stop_request_;   // runs out when the event that brought it is done
  bool asking_ = false;   // "Stop?" is on the screen, the window is not
  bool stopped_ = false;  // it was answered with Yes
  SteadyClock::time_point next_refresh_;
};

}  // namespace kel
