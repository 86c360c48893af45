// The desktop of a program without a screen.
#pragma once

#include "common/desktop.h"

namespace kel {

/// Writes messages to standard error, one line each, and answers with the default button: the
/// first one, unless the request makes the second the default. Wait windows show nothing and are
/// never stopped.
class HeadlessDesktop : public Desktop {
 public:
  bool ShowMessage(const MessageRequest& request) override;
  std::unique_ptr<WaitWindow> MakeWaitWindow() override;
  void Flash(const FlashRequest& request) override;
  void SetMousePointer(MousePointer /*pointer*/) override {}
  void DoEvents() override {}
  std::optional<RECT> ScreenRect(Object& /*control*/) override { return std::nullopt; }
  RECT WorkArea() override { return {}; }
  void DrawWireRects(const RECT& /*from*/, const RECT& /*to*/, int /*steps*/,
                     std::chrono::milliseconds /*pause*/) override {}
  void SendKey(int /*key_code*/, int /*shift*/) override {}
  void ShowTopMost(std::int64_t /*window*/) override {}
  void Delay(std::chrono::milliseconds time) override;
};

}  // namespace kel
