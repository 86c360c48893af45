// A wait window for as long as a piece of work takes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kel {

/// The wait window of the shared toolkit, which closes on every way out of the scope.
class WaitScope {
 public:
  /// Without both ends, or with `max` not above `min`, the bar only shows that work goes on.
  explicit WaitScope(const std::string& caption, std::optional<std::int32_t> min = std::nullopt,
                     std::optional<std::int32_t> max = std::nullopt)
      : WaitScope(false, caption, min, max) {}
  /// A wait window with a Stop button.
  static WaitScope Stoppable(const std::string& caption) {
    return {true, caption, std::nullopt, std::nullopt};
  }
  ~WaitScope();
  WaitScope(const WaitScope&) = delete;
  WaitScope& operator=(const WaitScope&) = delete;

  /// False once the user has pressed Stop. Work does not stop for want of a window.
  bool Step(std::int32_t steps = 1) const;

 private:
  WaitScope(bool stop_button, const std::string& caption, std::optional<std::int32_t> min,
            std::optional<std::int32_t> max);
};

}  // namespace kel
