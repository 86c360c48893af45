#include "common/headless_desktop.h"

#include <cstdio>
#include <string_view>
#include <thread>

#include "common/text_cells.h"

namespace kel {
namespace {

// The published default title of the message box, without the blanks that set it off there.
constexpr std::string_view kDefaultTitle = "Information";

constexpr int kButtonStyleMask = 3;

// One write, so that lines of several threads do not mix.
void PutLine(std::string_view title, std::string_view message) {
  std::string line;
  if (!title.empty()) line.append(CleanText(title)).append(": ");
  line.append(CleanText(message)).push_back('\n');
  std::fwrite(line.data(), 1, line.size(), stderr);
}

bool DefaultAnswer(int buttons) {
  const bool two_buttons = (buttons & kButtonStyleMask) >= msgYesNo;
  return !two_buttons || (buttons & msgDefault2) == 0;
}

class HeadlessWaitWindow : public WaitWindow {
 public:
  void Show(const WaitRequest& /*request*/) override {}
  bool Step(std::int32_t /*step*/, const std::optional<std::string>& /*caption*/) override {
    return true;
  }
};

}  // namespace

bool HeadlessDesktop::ShowMessage(const MessageRequest& request) {
  PutLine(request.title ? TrimBlanks(*request.title) : kDefaultTitle, request.prompt);
  return DefaultAnswer(request.buttons);
}

std::unique_ptr<WaitWindow> HeadlessDesktop::MakeWaitWindow() {
  return std::make_unique<HeadlessWaitWindow>();
}

void HeadlessDesktop::Flash(const FlashRequest& request) {
  PutLine(request.subject ? TrimBlanks(*request.subject) : std::string_view(), request.message);
}

void HeadlessDesktop::Delay(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

}  // namespace kel
