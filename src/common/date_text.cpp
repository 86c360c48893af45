#include "common/date_text.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "common/calendar.h"
#include "common/error.h"

namespace kel {
namespace {

using std::chrono::sys_days;

constexpr int kFirstYearOfTwoDigits = 1930;
constexpr std::size_t kShortestMonthName = 3;
constexpr std::int64_t kMillisecondsPerDay = 86'400'000;

constexpr std::array<std::string_view, 12> kMonths = {
    "january", "february", "march",     "april",   "may",      "june",
    "july",    "august",   "september", "october", "november", "december"};

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }
bool IsBlank(char c) noexcept { return c == ' ' || c == '\t'; }
char Lower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
bool IsLetter(char c) noexcept { return Lower(c) >= 'a' && Lower(c) <= 'z'; }

/// Day, month or year as it stands: a number, or the name of a month.
struct Part {
  int number = 0;
  std::size_t digits = 0;  // 0 for a name
};

/// Reads a text from its beginning.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  bool AtEnd() const noexcept { return rest_.empty(); }

  bool Skip(char c) noexcept {
    if (rest_.empty() || Lower(rest_[0]) != c) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool SkipBlanks() noexcept {
    const std::size_t before = rest_.size();
    while (!rest_.empty() && IsBlank(rest_[0])) rest_.remove_prefix(1);
    return rest_.size() < before;
  }

  /// The mark between two parts, ' ' for blanks alone; 0 when there is none.
  char Separator() noexcept {
    const bool blanks = SkipBlanks();
    constexpr std::string_view kMarks = "/-.,";
    if (rest_.empty() || kMarks.find(rest_[0]) == std::string_view::npos)
      return blanks ? ' ' : '\0';
    const char mark = rest_[0];
    rest_.remove_prefix(1);
    SkipBlanks();
    return mark;
  }

  std::optional<Part> DatePart() noexcept {
    if (rest_.empty()) return std::nullopt;
    return IsDigit(rest_[0]) ? Number(4) : MonthName();
  }

  /// A number of up to `most` digits that no further digit follows.
  std::optional<Part> Number(std::size_t most) noexcept {
    Part part;
    while (part.digits < rest_.size() && IsDigit(rest_[part.digits])) {
      if (part.digits == most) return std::nullopt;
      part.number = part.number * 10 + (rest_[part.digits++] - '0');
    }
    if (part.digits == 0) return std::nullopt;
    rest_.remove_prefix(part.digits);
    return part;
  }

  /// The value of the digits behind a decimal point; there must be one.
  std::optional<double> Fraction() noexcept {
    if (rest_.empty() || !IsDigit(rest_[0])) return std::nullopt;
    double fraction = 0;
    for (double unit = 0.1; !rest_.empty() && IsDigit(rest_[0]); unit /= 10) {
      fraction += unit * (rest_[0] - '0');
      rest_.remove_prefix(1);
    }
    return fraction;
  }

 private:
  std::optional<Part> MonthName() noexcept {
    std::size_t length = 0;
    while (length < rest_.size() && IsLetter(rest_[length])) ++length;
    if (length < kShortestMonthName) return std::nullopt;
    for (std::size_t month = 0; month < kMonths.size(); ++month) {
      if (!IsBeginningOf(kMonths[month], length)) continue;
      rest_.remove_prefix(length);
      return Part{static_cast<int>(month) + 1, 0};
    }
    return std::nullopt;
  }

  bool IsBeginningOf(std::string_view name, std::size_t length) const noexcept {
    if (length > name.size()) return false;
    for (std::size_t i = 0; i < length; ++i) {
      if (Lower(rest_[i]) != name[i]) return false;
    }
    return true;
  }

  std::string_view rest_;
};

struct Calendar {
  Part year, month, day;
};

bool IsMonth(const Part& part) noexcept { return part.number >= 1 && part.number <= 12; }

/// Which part is which; nothing where two names or two long numbers stand.
std::optional<Calendar> Arranged(const Part& first, const Part& second, const Part& third,
                                 DateOrder order) noexcept {
  Calendar date;
  if (first.digits > 2) {
    date = {first, second, third};
  } else if (first.digits == 0 || second.digits == 0) {
    date = first.digits == 0 ? Calendar{third, first, second} : Calendar{third, second, first};
  } else {
    const bool month_first = order == DateOrder::kMonthFirst ? IsMonth(first) : !IsMonth(second);
    date = month_first ? Calendar{third, first, second} : Calendar{third, second, first};
  }
  const bool fits =
      date.year.digits > 0 && date.day.digits > 0 && date.day.digits <= 2 && date.month.digits <= 2;
  return fits ? std::optional(date) : std::nullopt;
}

int FullYear(const Part& year) noexcept {
  if (year.digits > 2) return year.number;
  const int century = kFirstYearOfTwoDigits / 100 * 100;
  const bool is_next = century + year.number < kFirstYearOfTwoDigits;
  return century + year.number + (is_next ? 100 : 0);
}

std::optional<double> DayNumber(const Calendar& date) noexcept {
  const int year = FullYear(date.year);
  const std::chrono::year_month_day day{
      std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(date.month.number)},
      std::chrono::day{static_cast<unsigned>(date.day.number)}};
  if (!day.ok() || year < kFirstYear || year > kLastYear) return std::nullopt;
  return static_cast<double>((sys_days{day} - kDayZero).count());
}

std::optional<double> ReadDay(Reader& reader, DateOrder order) noexcept {
  const std::optional<Part> first = reader.DatePart();
  if (!first) return std::nullopt;
  const char mark = reader.Separator();
  const std::optional<Part> second = reader.DatePart();
  if (!second) return std::nullopt;
  char next_mark = reader.Separator();
  // "Mar. 31, 2026" and "31 Mar., 2026"
  if (next_mark == '.' && second->digits == 0 && reader.Skip(',')) reader.SkipBlanks();
  const std::optional<Part> third = reader.DatePart();
  if (!third || mark == 0 || next_mark == 0) return std::nullopt;

  const bool all_numbers = first->digits > 0 && second->digits > 0;
  if (all_numbers && (mark != next_mark || mark == ' ' || mark == ',')) return std::nullopt;
  const std::optional<Calendar> date = Arranged(*first, *second, *third, order);
  return date ? DayNumber(*date) : std::nullopt;
}

/// The hour of a clock of twelve hours, when AM or PM stands next.
std::optional<int> HourOfDay(Reader& reader, int hour) noexcept {
  reader.SkipBlanks();
  const bool is_afternoon = reader.Skip('p');
  if (!is_afternoon && !reader.Skip('a')) return hour;
  if (!reader.Skip('m') || hour < 1 || hour > 12) return std::nullopt;
  return hour % 12 + (is_afternoon ? 12 : 0);
}

/// The part of a day that a time of day is.
std::optional<double> ReadTime(Reader& reader) noexcept {
  const std::optional<Part> hour = reader.Number(2);
  if (!hour || !reader.Skip(':')) return std::nullopt;
  const std::optional<Part> minute = reader.Number(2);
  if (!minute) return std::nullopt;
  double second = 0;
  if (reader.Skip(':')) {
    const std::optional<Part> whole = reader.Number(2);
    if (!whole) return std::nullopt;
    second = whole->number;
    if (reader.Skip('.')) {
      const std::optional<double> fraction = reader.Fraction();
      if (!fraction) return std::nullopt;
      second += *fraction;
    }
  }
  const std::optional<int> hour_of_day = HourOfDay(reader, hour->number);
  if (!hour_of_day || *hour_of_day > 23 || minute->number > 59 || second >= 60) return std::nullopt;
  constexpr double kSecondsPerDay = 86400;
  return ((*hour_of_day * 60 + minute->number) * 60 + second) / kSecondsPerDay;
}

}  // namespace

std::optional<Date> ReadDate(std::string_view text, DateOrder order) {
  Reader reader(text);
  reader.SkipBlanks();
  const std::optional<double> day = ReadDay(reader, order);
  if (!day) return std::nullopt;
  const bool blanks = reader.SkipBlanks();
  if (reader.AtEnd()) return Date{*day};
  if (!reader.Skip('t') && !blanks) return std::nullopt;
  const std::optional<double> time = ReadTime(reader);
  reader.SkipBlanks();
  if (!time || !reader.AtEnd()) return std::nullopt;
  // Automation counts the time of day away from zero: 1899-12-29 06:00 is -1.25.
  return Date{*day < 0 ? *day - *time : *day + *time};
}

std::string IsoDateText(Date date) {
  const std::optional<Moment> moment = MomentOf(date, kMillisecondsPerDay);
  if (!moment) throw Error(error_number::kOverflow, "Overflow");
  const std::chrono::year_month_day calendar{moment->day};

  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02u", static_cast<int>(calendar.year()),
                static_cast<unsigned>(calendar.month()), static_cast<unsigned>(calendar.day()));
  std::string iso = text.data();
  const auto milliseconds = static_cast<int>(moment->time);
  if (milliseconds == 0) return iso;
  const int seconds = milliseconds / 1000;
  std::snprintf(text.data(), text.size(), " %02d:%02d:%02d", seconds / 3600, seconds / 60 % 60,
                seconds % 60);
  iso += text.data();
  if (milliseconds % 1000 == 0) return iso;
  std::snprintf(text.data(), text.size(), ".%03d", milliseconds % 1000);
  return iso += text.data();
}

}  // namespace kel
