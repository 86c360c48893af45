#include "common/format_pattern.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <system_error>

#include "common/calendar.h"
#include "common/date_pattern.h"
#include "common/date_text.h"
#include "common/error.h"
#include "common/number_pattern.h"
#include "common/number_text.h"
#include "common/numeric_value.h"
#include "common/pattern_reader.h"
#include "common/text_pattern.h"

namespace kel {
namespace {

struct NamedFormat {
  std::string_view name;  // in small letters
  std::string_view format;
};

constexpr std::array kNamedFormats = {NamedFormat{"general number", ";"},
                                      NamedFormat{"currency", "#,##0.00;(#,##0.00)"},
                                      NamedFormat{"fixed", "0.00"},
                                      NamedFormat{"standard", "#,##0.00"},
                                      NamedFormat{"percent", "0.00%"},
                                      NamedFormat{"scientific", "0.00E+00"},
                                      NamedFormat{"yes/no", R"("Yes";"Yes";"No")"},
                                      NamedFormat{"true/false", R"("True";"True";"False")"},
                                      NamedFormat{"on/off", R"("On";"On";"Off")"},
                                      NamedFormat{"general date", "c"},
                                      NamedFormat{"long date", "dddddd"},
                                      NamedFormat{"medium date", "dd-mmm-yy"},
                                      NamedFormat{"short date", "ddddd"},
                                      NamedFormat{"long time", "ttttt"},
                                      NamedFormat{"medium time", "hh:mm AM/PM"},
                                      NamedFormat{"short time", "hh:mm"}};

std::string_view WithoutName(std::string_view format) noexcept {
  for (const NamedFormat& named : kNamedFormats) {
    PatternReader reader(format);
    if (reader.SkipWord(named.name) && reader.AtEnd()) return named.format;
  }
  return format;
}

enum class Mark { kNone, kDigit, kDateLetter, kCharacter };

// What the first mark of a format text is of.
Mark FirstMark(std::string_view format) {
  PatternReader reader(format);
  std::string literal;
  bool has_text_mark = false;
  while (!reader.AtEnd()) {
    if (reader.TakeQuoted(literal)) continue;
    if (BeginsWithDateLetter(reader.Rest())) return Mark::kDateLetter;
    const char c = reader.Take();
    if (c == '0' || c == '#') return Mark::kDigit;
    if (c == '@' || c == '&') return Mark::kCharacter;
    // Alone these make a text format, but a date's names have letters, too.
    has_text_mark = has_text_mark || c == '<' || c == '>' || c == '!';
  }
  return has_text_mark ? Mark::kCharacter : Mark::kNone;
}

// A number as IsNumeric takes it, in the form that DecimalDigits reads.
std::string PlainNumber(std::string_view text) {
  std::string plain(text);
  std::erase_if(plain,
                [](char c) { return c == ',' || c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
  const bool sign_behind = !plain.empty() && (plain.back() == '-' || plain.back() == '+');
  if (sign_behind) std::rotate(plain.begin(), plain.end() - 1, plain.end());
  return plain;
}

// A date as ToText shows it. False, and nothing appended, when there is none.
bool AppendPlainDate(Date date, std::string& text) {
  static const DatePattern day("ddddd");
  static const DatePattern day_and_time("ddddd ttttt");
  constexpr std::int64_t kSecondsPerDay = 86400;
  const std::optional<Moment> moment = MomentOf(date, kSecondsPerDay);
  return moment && (moment->time == 0 ? day : day_and_time).Append(date, text);
}

}  // namespace

// At least one of them. Both a number and a date format is one that begins as a date format and
// has digit placeholders later: "Rs 0.00", "yyyy-mm-dd 00:00:00".
struct FormatPattern::Parsed {
  explicit Parsed(std::string_view format) {
    const Mark mark = FirstMark(format);
    if (mark == Mark::kCharacter) {
      text.emplace(format);
      return;
    }
    if (mark == Mark::kDateLetter) date.emplace(format);
    if (!date || HasDigitPlaceholders(format)) number.emplace(format);
  }

  std::optional<NumberPattern> number;
  std::optional<DatePattern> date;
  std::optional<TextPattern> text;
};

FormatPattern::FormatPattern() = default;
FormatPattern::FormatPattern(std::string_view format)
    : parsed_(format.empty() ? nullptr : std::make_unique<const Parsed>(WithoutName(format))) {}
FormatPattern::~FormatPattern() = default;
FormatPattern::FormatPattern(FormatPattern&&) noexcept = default;
FormatPattern& FormatPattern::operator=(FormatPattern&&) noexcept = default;

bool FormatPattern::IsEmpty() const noexcept { return parsed_ == nullptr; }

std::string FormatPattern::Format(const Value& value) const {
  std::string text;
  switch (value.Kind()) {
    case ValueKind::kEmpty:
    case ValueKind::kNull:
    case ValueKind::kMissing:
      AppendNull(text);
      break;
    case ValueKind::kBoolean:
      if (!parsed_ || parsed_->text) {
        AppendText(value.ToText(), text);
      } else {
        AppendNumber(value.ToBoolean() ? "-1" : "0", text);
      }
      break;
    case ValueKind::kDate:
      AppendDate(Date{value.ToDouble()}, text);
      break;
    case ValueKind::kString:
      AppendText(value.String(), text);
      break;
    case ValueKind::kObject:
    case ValueKind::kArray:
      throw Error(error_number::kTypeMismatch, "Type mismatch");
    default:
      AppendNumber(value.ToText(), text);
  }
  return text;
}

void FormatPattern::AppendNumber(std::string_view decimal, std::string& text) const {
  if (parsed_ && parsed_->text) return parsed_->text->Append(decimal, text);
  if (parsed_ && parsed_->number) {
    if (parsed_->number->Append(decimal, text)) return;
  } else if (parsed_) {
    double days = 0;
    const char* const end = decimal.data() + decimal.size();
    const auto read = std::from_chars(decimal.data(), end, days);
    const bool is_number = read.ec == std::errc() && read.ptr == end;
    if (is_number && parsed_->date->Append(Date{days}, text)) return;
  }
  text += decimal;
}

void FormatPattern::AppendDate(Date date, std::string& text) const {
  NumberBuffer buffer;
  const std::string_view serial_number = NumberText(date.days, buffer);
  if (parsed_ && parsed_->text) {
    std::string plain;
    if (!AppendPlainDate(date, plain)) plain = serial_number;
    return parsed_->text->Append(plain, text);
  }
  if (parsed_ && !parsed_->date) return AppendNumber(serial_number, text);
  const bool appended = parsed_ ? parsed_->date->Append(date, text) : AppendPlainDate(date, text);
  if (!appended) text += serial_number;
}

void FormatPattern::AppendText(std::string_view value, std::string& text) const {
  if (parsed_ && parsed_->text) return parsed_->text->Append(value, text);
  const bool is_number = parsed_ && parsed_->number && IsNumeric(value);
  if (is_number && parsed_->number->Append(PlainNumber(value), text)) return;
  if (parsed_ && parsed_->date) {
    const std::optional<Date> date = ReadDate(value, DateOrder::kDayFirst);
    if (date && parsed_->date->Append(*date, text)) return;
  }
  text += value;
}

void FormatPattern::AppendNull(std::string& text) const {
  if (parsed_ && parsed_->text) return parsed_->text->AppendNull(text);
  if (parsed_ && parsed_->number) parsed_->number->AppendNull(text);
}

}  // namespace kel
