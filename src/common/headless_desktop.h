// The desktop of a program without a screen.
#pragma once

#include "common/desktop.h"

namespace kel {

/// Writes messages to standard error, one line each, and answers with the default button: the
/// first one, unless the request makes the second the default. Wait windows only keep their state.
class HeadlessDesktop : public Desktop {
 public:
  bool ShowMessage(const MessageRequest& request) override;
  void ShowWait(const WaitRequest& request) override;
  bool StepWait(std::int32_t step, const std::optional<std::string>& caption) override;
  void UnloadWait() override;
  void Flash(const FlashRequest& request) override;
  void SetMousePointer(MousePointer /*pointer*/) override {}
  void DoEvents() override {}
  std::optional<RECT> ScreenRect(Object& /*control*/) override { return std::nullopt; }

 private:
  bool waiting_ = false;
};

}  // namespace kel
