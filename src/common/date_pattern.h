// Date and time formats such as "dd/mmmm/yyyy".
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/value.h"

namespace kel {

class PatternReader;

/// Whether a letter of a date and time format stands at the beginning of `format`.
bool BeginsWithDateLetter(std::string_view format) noexcept;

/// A date and time format. Weeks begin on Sunday, and the week of 1 January is the first one. The
/// time is rounded to the second.
class DatePattern {
 public:
  explicit DatePattern(std::string_view format);

  /// False, and nothing appended, outside the years 100 to 9999.
  bool Append(Date date, std::string& text) const;

 private:
  enum class Kind : std::uint8_t {
    kLiteral,
    kGeneral,
    kDay,
    kDayName,
    kWeekday,
    kWeek,
    kMonth,
    kMonthName,
    kQuarter,
    kDayOfYear,
    kYear,
    kHour,
    kMinute,
    kSecond,
    kHalfDay
  };
  enum class Case : std::uint8_t { kAsItIs, kLower, kUpper };

  struct Step {
    Kind kind;
    std::size_t width = 1;  // least digits; most letters of a name; letters of AM or PM
    bool is_small = false;  // am and pm
    std::size_t begin = 0;  // of a literal, in literals_
    std::size_t count = 0;
  };

  struct Clock;

  void Parse(std::string_view format);
  void ReadNext(PatternReader& reader);
  bool ReadHalfDay(PatternReader& reader);
  void ReadLetters(PatternReader& reader);
  void ReadDay(std::size_t letters);
  void ReadMonth(std::size_t letters);
  void Add(Kind kind, std::size_t width);
  void AddLiteral(std::string_view literal);

  void AppendStep(const Step& step, const Clock& clock, std::string& text) const;
  static void AppendGeneral(const Clock& clock, std::string& text);
  static void AppendHalfDay(const Step& step, const Clock& clock, std::string& text);

  std::vector<Step> steps_;
  std::string literals_;
  Case case_ = Case::kAsItIs;
  bool has_half_days_ = false;
  bool behind_hour_ = false;  // while parsing: an hour is the last letter read
};

}  // namespace kel
