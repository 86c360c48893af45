// What a terminal shows of long work.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

#include "common/headless_desktop.h"

namespace kel::command {

/// The desktop of the command: its wait windows are a line on the terminal.
class ProgressDesktop : public HeadlessDesktop {
 public:
  /// `pages` tells how many pages are done; it is asked only when a line is drawn.
  explicit ProgressDesktop(std::function<std::int64_t()> pages) : pages_(std::move(pages)) {}

  std::unique_ptr<WaitWindow> MakeWaitWindow() override;

 private:
  std::function<std::int64_t()> pages_;
};

}  // namespace kel::command
