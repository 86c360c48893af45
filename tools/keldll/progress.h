// What a terminal shows of long work.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "common/headless_desktop.h"
#include "common/job_values.h"

namespace kel::command {

/// The desktop of the command. While the library waits for rows, a terminal on standard error
/// shows, after one second, how many rows and pages are done and how fast; the line goes away
/// with the wait window.
class ProgressDesktop : public HeadlessDesktop {
 public:
  /// `pages` tells how many pages are done; it is asked only when the line is drawn.
  explicit ProgressDesktop(std::function<std::int64_t()> pages);
  ~ProgressDesktop() override;
  ProgressDesktop(const ProgressDesktop&) = delete;
  ProgressDesktop& operator=(const ProgressDesktop&) = delete;

  void ShowWait(const WaitRequest& request) override;
  bool StepWait(std::int32_t step, const std::optional<std::string>& caption) override;
  void UnloadWait() override;

 private:
  using Time = std::chrono::steady_clock;

  void LookAtClock();
  void Draw(Time::duration worked);
  void Erase();

  std::function<std::int64_t()> pages_;
  bool terminal_;
  std::int64_t rows_ = 0;
  int steps_until_look_ = 0;
  Time::time_point begun_;
  Time::time_point last_look_;
  Time::time_point draw_next_;
  std::size_t drawn_ = 0;  // characters on the terminal's line
};

}  // namespace kel::command
