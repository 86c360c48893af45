#include "common/date_pattern.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "common/calendar.h"
#include "common/number_text.h"
#include "common/pattern_reader.h"

namespace kel {
namespace {

constexpr std::string_view kShortDate = "dd/mm/yyyy";
constexpr std::string_view kLongDate = "dddd, dd mmmm yyyy";
constexpr std::string_view kLongTime = "hh:mm:ss";
constexpr std::string_view kLongTimeLetters = "ttttt";
constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::size_t kWholeName = std::string_view::npos;
constexpr std::size_t kShortName = 3;

constexpr std::array<std::string_view, 7> kDays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                   "Thursday", "Friday", "Saturday"};
constexpr std::array<std::string_view, 12> kMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

void AppendDigits(unsigned number, std::size_t width, std::string& text) {
  NumberBuffer buffer;
  const std::string_view digits = NumberText(std::int64_t{number}, buffer);
  text.append(width - std::min(width, digits.size()), '0');
  text += digits;
}

char UpperLetter(char c) noexcept {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

bool BeginsWithDateLetter(std::string_view format) noexcept {
  constexpr std::string_view kLetters = "cdwmqyhns";
  if (format.empty()) return false;
  if (kLetters.find(LowerLetter(format[0])) != std::string_view::npos) return true;
  PatternReader reader(format);
  return reader.SkipWord(kLongTimeLetters) || reader.SkipWord("am/pm") || reader.SkipWord("a/p") ||
         reader.SkipWord("ampm");
}

DatePattern::DatePattern(std::string_view format) { Parse(format); }

void DatePattern::Parse(std::string_view format) {
  PatternReader reader(format);
  while (!reader.AtEnd()) ReadNext(reader);
}

void DatePattern::ReadNext(PatternReader& reader) {
  std::string quoted;
  if (reader.TakeQuoted(quoted)) {
    AddLiteral(quoted);
  } else if (reader.Peek() == '<' || reader.Peek() == '>') {
    case_ = reader.Take() == '<' ? Case::kLower : Case::kUpper;
  } else if (!BeginsWithDateLetter(reader.Rest())) {
    const char c = reader.Take();
    AddLiteral({&c, 1});
  } else if (reader.SkipWord(kLongTimeLetters)) {
    Parse(kLongTime);
  } else if (!ReadHalfDay(reader)) {
    ReadLetters(reader);
  }
}

bool DatePattern::ReadHalfDay(PatternReader& reader) {
  const bool is_small = reader.Peek() == 'a';
  const bool follows_system = reader.SkipWord("ampm");
  const bool is_word = follows_system || reader.SkipWord("am/pm");
  if (!is_word && !reader.SkipWord("a/p")) return false;
  steps_.push_back(
      {Kind::kHalfDay, is_word ? std::size_t{2} : std::size_t{1}, is_small && !follows_system});
  has_half_days_ = true;
  return true;
}

void DatePattern::ReadLetters(PatternReader& reader) {
  constexpr std::size_t kLongestDay = 6;
  constexpr std::size_t kLongestMonth = 4;
  constexpr std::size_t kLongestYear = 4;
  const char letter = LowerLetter(reader.Peek());
  switch (letter) {
    case 'c':
      reader.Take();
      return Add(Kind::kGeneral, 1);
    case 'd':
      return ReadDay(reader.TakeRun(kLongestDay));
    case 'm':
      return ReadMonth(reader.TakeRun(kLongestMonth));
    case 'w':
      return reader.TakeRun(2) == 2 ? Add(Kind::kWeek, 1) : Add(Kind::kWeekday, 1);
    case 'q':
      reader.Take();
      return Add(Kind::kQuarter, 1);
    case 'y': {
      // "yyy" is "yy" and "y".
      const std::size_t most = reader.SkipWord("yyyy") ? kLongestYear : reader.TakeRun(2);
      return most == 1 ? Add(Kind::kDayOfYear, 1) : Add(Kind::kYear, most);
    }
    case 'h':
      Add(Kind::kHour, reader.TakeRun(2));
      behind_hour_ = true;
      return;
    case 'n':
      return Add(Kind::kMinute, reader.TakeRun(2));
    default:
      return Add(Kind::kSecond, reader.TakeRun(2));
  }
}

void DatePattern::ReadDay(std::size_t letters) {
  if (letters <= 2) return Add(Kind::kDay, letters);
  if (letters == 3) return Add(Kind::kDayName, kShortName);
  if (letters == 4) return Add(Kind::kDayName, kWholeName);
  Parse(letters == 5 ? kShortDate : kLongDate);
}

void DatePattern::ReadMonth(std::size_t letters) {
  if (letters <= 2) return Add(behind_hour_ ? Kind::kMinute : Kind::kMonth, letters);
  Add(Kind::kMonthName, letters == 3 ? kShortName : kWholeName);
}

void DatePattern::Add(Kind kind, std::size_t width) {
  steps_.push_back({kind, width});
  behind_hour_ = false;
}

void DatePattern::AddLiteral(std::string_view literal) {
  if (steps_.empty() || steps_.back().kind != Kind::kLiteral) {
    Step step{Kind::kLiteral};
    step.begin = literals_.size();
    steps_.push_back(step);
  }
  literals_ += literal;
  steps_.back().count += literal.size();
}

/// A date taken apart.
struct DatePattern::Clock {
  Clock(const Moment& moment, Date date_of_moment)
      : date(date_of_moment),
        day(moment.day),
        calendar(moment.day),
        seconds(static_cast<unsigned>(moment.time)) {}

  unsigned Weekday() const { return std::chrono::weekday{day}.c_encoding(); }
  unsigned Month() const { return static_cast<unsigned>(calendar.month()); }
  unsigned Year() const { return static_cast<unsigned>(static_cast<int>(calendar.year())); }
  unsigned DayOfYear() const {
    const std::chrono::sys_days first = calendar.year() / std::chrono::January / 1;
    return static_cast<unsigned>((day - first).count()) + 1;
  }
  unsigned Week() const {
    // The days of the first week that belong to the year before.
    const unsigned before = (Weekday() + 7 - (DayOfYear() - 1) % 7) % 7;
    return (DayOfYear() - 1 + before) / 7 + 1;
  }
  unsigned Hour() const { return seconds / 3600; }

  Date date;
  std::chrono::sys_days day;
  std::chrono::year_month_day calendar;
  unsigned seconds;
};

bool DatePattern::Append(Date date, std::string& text) const {
  const std::optional<Moment> moment = MomentOf(date, kSecondsPerDay);
  if (!moment) return false;
  const Clock clock(*moment, date);
  const auto begin = static_cast<std::ptrdiff_t>(text.size());
  for (const Step& step : steps_) AppendStep(step, clock, text);
  if (case_ == Case::kAsItIs) return true;
  std::transform(text.begin() + begin, text.end(), text.begin() + begin,
                 case_ == Case::kLower ? LowerLetter : UpperLetter);
  return true;
}

void DatePattern::AppendStep(const Step& step, const Clock& clock, std::string& text) const {
  constexpr unsigned kHoursOfClock = 12;
  constexpr unsigned kCentury = 100;
  switch (step.kind) {
    case Kind::kLiteral:
      text.append(literals_, step.begin, step.count);
      return;
    case Kind::kGeneral:
      return AppendGeneral(clock, text);
    case Kind::kDay:
      return AppendDigits(static_cast<unsigned>(clock.calendar.day()), step.width, text);
    case Kind::kDayName:
      text += kDays[clock.Weekday()].substr(0, step.width);
      return;
    case Kind::kWeekday:
      return AppendDigits(clock.Weekday() + 1, step.width, text);
    case Kind::kWeek:
      return AppendDigits(clock.Week(), step.width, text);
    case Kind::kMonth:
      return AppendDigits(clock.Month(), step.width, text);
    case Kind::kMonthName:
      text += kMonths[clock.Month() - 1].substr(0, step.width);
      return;
    case Kind::kQuarter:
      return AppendDigits((clock.Month() + 2) / 3, step.width, text);
    case Kind::kDayOfYear:
      return AppendDigits(clock.DayOfYear(), step.width, text);
    case Kind::kYear:
      return AppendDigits(step.width == 2 ? clock.Year() % kCentury : clock.Year(), step.width,
                          text);
    case Kind::kHour: {
      const unsigned hour = (clock.Hour() + kHoursOfClock - 1) % kHoursOfClock + 1;
      return AppendDigits(has_half_days_ ? hour : clock.Hour(), step.width, text);
    }
    case Kind::kMinute:
      return AppendDigits(clock.seconds / 60 % 60, step.width, text);
    case Kind::kSecond:
      return AppendDigits(clock.seconds % 60, step.width, text);
    case Kind::kHalfDay:
      return AppendHalfDay(step, clock, text);
  }
}

// The date without a time at midnight, the time without a date on day zero.
void DatePattern::AppendGeneral(const Clock& clock, std::string& text) {
  static const DatePattern date(kShortDate);
  static const DatePattern time(kLongTime);
  const bool has_date = clock.day != kDayZero;
  if (has_date) date.Append(clock.date, text);
  if (has_date && clock.seconds != 0) text += ' ';
  if (!has_date || clock.seconds != 0) time.Append(clock.date, text);
}

void DatePattern::AppendHalfDay(const Step& step, const Clock& clock, std::string& text) {
  constexpr unsigned kNoon = 12;
  const std::string_view mark =
      step.is_small ? (clock.Hour() < kNoon ? "am" : "pm") : (clock.Hour() < kNoon ? "AM" : "PM");
  text += mark.substr(0, step.width);
}

}  // namespace kel
