// A screen that writes down what it is asked for.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/desktop.h"

namespace kel::testing {

class RecordingDesktop : public Desktop {
 public:
  bool ShowMessage(const MessageRequest& request) override {
    messages.push_back(request);
    Record("message");
    return answer;
  }
  std::unique_ptr<WaitWindow> MakeWaitWindow() override {
    return std::make_unique<RecordingWaitWindow>(*this);
  }
  void Flash(const FlashRequest& request) override { flashes.push_back(request); }
  void SetMousePointer(MousePointer pointer) override {
    Record(pointer == MousePointer::kDefault ? "pointer" : "hourglass");
  }
  void DoEvents() override {}
  std::optional<RECT> ScreenRect(Object& /*control*/) override { return std::nullopt; }
  RECT WorkArea() override { return work_area; }
  void DrawWireRects(const RECT& from, const RECT& to, int steps,
                     std::chrono::milliseconds pause) override {
    wire_frames.push_back({from, to, steps, pause});
  }
  void SendKey(int key_code, int shift) override {
    Record("key " + std::to_string(key_code) + " " + std::to_string(shift));
  }
  void ShowTopMost(std::int64_t window) override { Record("top " + std::to_string(window)); }
  void Delay(std::chrono::milliseconds time) override {
    Record("delay " + std::to_string(time.count()));
  }

  struct WireFrame {
    RECT from;
    RECT to;
    int steps;
    std::chrono::milliseconds pause;
  };
  std::vector<WireFrame> wire_frames;
  RECT work_area{0, 0, 1920, 1080};
  std::function<void(std::string_view call)> on_call;  // may throw, as a screen can
  bool answer = true;                                  // to messages and steps
  std::vector<std::string> calls;
  std::vector<MessageRequest> messages;
  std::vector<FlashRequest> flashes;

 private:
  class RecordingWaitWindow : public WaitWindow {
   public:
    explicit RecordingWaitWindow(RecordingDesktop& desktop) : desktop_(desktop) {}
    ~RecordingWaitWindow() override { desktop_.calls.emplace_back("unload"); }
    RecordingWaitWindow(const RecordingWaitWindow&) = delete;
    RecordingWaitWindow& operator=(const RecordingWaitWindow&) = delete;

    void Show(const WaitRequest& request) override {
      desktop_.Record(
          "wait " + request.caption.value_or("-") + " " + std::to_string(request.min.value_or(-1)) +
          ".." + std::to_string(request.max.value_or(-1)) + (request.stop_button ? " stop" : ""));
    }
    bool Step(std::int32_t step, const std::optional<std::string>& caption) override {
      desktop_.Record("step " + std::to_string(step) + " " + caption.value_or("-"));
      return desktop_.answer;
    }

   private:
    RecordingDesktop& desktop_;
  };

  void Record(std::string call) {
    calls.push_back(std::move(call));
    if (on_call) on_call(calls.back());
  }
};

}  // namespace kel::testing
