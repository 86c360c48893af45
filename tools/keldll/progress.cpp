#include "keldll/progress.h"

#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <utility>

namespace kel::command {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kQuietTime{1000};
constexpr milliseconds kBetweenDraws{100};
// Rows may take a microsecond each; the clock is not to be what takes the time.
constexpr int kStepsBetweenLooks = 256;
// Rows that come slowly, from a pipe or a far database, are looked at one by one.
constexpr milliseconds kSlowLook{10};

std::string PerSecond(std::int64_t count, double seconds) {
  return std::to_string(static_cast<std::int64_t>(static_cast<double>(count) / seconds));
}

// While the library waits for rows, a terminal on standard error shows, after one second, how many
// rows and pages are done and how fast; the line goes away with the wait window.
class ProgressLine : public WaitWindow {
 public:
  explicit ProgressLine(std::function<std::int64_t()> pages)
      : pages_(std::move(pages)), terminal_(isatty(STDERR_FILENO) == 1) {}
  ~ProgressLine() override { Erase(); }
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  // What is laid out has a known range of rows; what is printed goes by pages.
  void Show(const WaitRequest& request) override {
    counts_rows_ = request.min.has_value();
    steps_ = 0;
    steps_until_look_ = kStepsBetweenLooks;
    begun_ = last_look_ = Time::now();
    draw_next_ = begun_ + kQuietTime;
  }
  bool Step(std::int32_t step, const std::optional<std::string>& /*caption*/) override {
    steps_ += step;
    if (terminal_ && --steps_until_look_ <= 0) LookAtClock();
    return true;
  }

 private:
  using Time = std::chrono::steady_clock;

  void LookAtClock();
  void Draw(Time::duration worked);
  void Erase();

  std::function<std::int64_t()> pages_;
  bool terminal_;
  bool counts_rows_ = true;
  std::int64_t steps_ = 0;
  int steps_until_look_ = 0;
  Time::time_point begun_;
  Time::time_point last_look_;
  Time::time_point draw_next_;
  std::size_t drawn_ = 0;  // characters on the terminal's line
};

void ProgressLine::LookAtClock() {
  const Time::time_point now = Time::now();
  steps_until_look_ = now - last_look_ > kSlowLook ? 1 : kStepsBetweenLooks;
  last_look_ = now;
  if (now < draw_next_) return;
  Draw(now - begun_);
  draw_next_ = now + kBetweenDraws;
}

void ProgressLine::Draw(Time::duration worked) {
  const double seconds = std::chrono::duration<double>(worked).count();
  const std::int64_t pages = counts_rows_ ? pages_() : steps_;
  std::string line;
  if (counts_rows_) line = std::to_string(steps_) + " rows, ";
  line += std::to_string(pages) + " pages, ";
  if (counts_rows_) line += PerSecond(steps_, seconds) + " rows/s, ";
  line += PerSecond(pages, seconds) + " pages/s";
  const std::size_t length = line.size();
  if (length < drawn_) line.append(drawn_ - length, ' ');
  drawn_ = length;
  line.insert(line.begin(), '\r');
  std::fwrite(line.data(), 1, line.size(), stderr);
}

void ProgressLine::Erase() {
  if (drawn_ == 0) return;
  const std::string blank = '\r' + std::string(drawn_, ' ') + '\r';
  std::fwrite(blank.data(), 1, blank.size(), stderr);
  drawn_ = 0;
}

}  // namespace

std::unique_ptr<WaitWindow> ProgressDesktop::MakeWaitWindow() {
  return std::make_unique<ProgressLine>(pages_);
}

}  // namespace kel::command
