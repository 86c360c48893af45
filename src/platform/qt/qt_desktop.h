// The desktop of a Qt program.
#pragma once

#include "common/desktop.h"
#include "common/headless_desktop.h"

namespace kel {

/// Shows the library's windows: frmMsg, frmSplash, frmFlash and the wire frame. The application
/// object is made when the first window is (EnsureApplication). Where no window can be shown
/// (CanShowWindows) it does as HeadlessDesktop does.
class QtDesktop : public Desktop {
 public:
  bool ShowMessage(const MessageRequest& request) override;
  std::unique_ptr<WaitWindow> MakeWaitWindow() override;
  void Flash(const FlashRequest& request) override;
  /// Sets the hourglass once, however often it is asked for, and takes away what it has set.
  void SetMousePointer(MousePointer pointer) override;
  void DoEvents() override;
  std::optional<RECT> ScreenRect(Object& control) override;
  /// Of the screen that the active window is on.
  RECT WorkArea() override;
  void DrawWireRects(const RECT& from, const RECT& to, int steps,
                     std::chrono::milliseconds pause) override;
  /// The key's text is that of a US keyboard. Shortcuts and mnemonics do not see the key.
  void SendKey(int key_code, int shift) override;
  void ShowTopMost(std::int64_t window) override;
  void Delay(std::chrono::milliseconds time) override;

 private:
  HeadlessDesktop headless_;
  bool hourglass_ = false;
};

}  // namespace kel
