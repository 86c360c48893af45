#include "listview/list_windows.h"

#include <chrono>
#include <exception>

#include "common/host.h"

namespace kel {
namespace {

constexpr std::chrono::milliseconds kErrorTime{4000};

class NoWindows : public ListWindows {
 public:
  void ShowListView(const Value& /*column_alignment*/, ShowStyle /*style*/,
                    Object* /*parent*/) override {
    throw Error(error_number::kInvalidProcedureCall, "there is no screen to show the list on");
  }
};

}  // namespace

ListHost& CurrentListHost() {
  static ListHost host{std::make_shared<NoWindows>()};
  return host;
}

void ShowError(const Error& failure, const std::string& caption) noexcept {
  try {
    Desktop& desktop = *CurrentHost().desktop;
    desktop.SetMousePointer(MousePointer::kDefault);
    MessageRequest message;
    message.prompt = failure.what();
    message.title = caption;
    message.unload_time = kErrorTime;
    desktop.ShowMessage(message);
  } catch (const std::exception&) {
    // Where no message can be shown there is nobody to tell.
    return;
  }
}

}  // namespace kel
