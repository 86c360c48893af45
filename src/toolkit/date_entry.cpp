// CZURDLL: dates as people type them.
#include <algorithm>
#include <cmath>
#include <vector>

#include "common/date_text.h"
#include "common/host.h"
#include "common/object.h"
#include "common/text_cells.h"
#include "toolkit/CZURDLL_p.h"
#include "toolkit/control_members.h"

namespace kel {
namespace {

constexpr std::string_view kSeparators = "/-. ";
constexpr int kFirstTmYear = 1900;

bool IsDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string Slashed(const std::string& day, const std::string& month, const std::string& year) {
  return day + '/' + month + '/' + year;
}

// dd/mm/yyyy, without the time of day.
std::string DayText(Date date) {
  const std::string iso = IsoDateText({std::trunc(date.days)});  // yyyy-mm-dd
  return Slashed(iso.substr(8, 2), iso.substr(5, 2), iso.substr(0, 4));
}

std::vector<std::string> Parts(std::string_view typed) {
  std::vector<std::string> parts;
  for (;;) {
    const std::size_t end = typed.find_first_of(kSeparators);
    parts.emplace_back(typed.substr(0, end));
    if (end == std::string_view::npos) return parts;
    typed.remove_prefix(end + 1);
  }
}

// The whole date that digits without separators stand for: d, dd, ddmm, ddmmyy or ddmmyyyy.
std::string FromDigits(const std::string& digits, const std::tm& today) {
  const std::string month = std::to_string(today.tm_mon + 1);
  const std::string year = std::to_string(today.tm_year + kFirstTmYear);
  switch (digits.size()) {
    case 1:
    case 2:
      return Slashed(digits, month, year);
    case 4:
      return Slashed(digits.substr(0, 2), digits.substr(2), year);
    case 6:
    case 8:
      return Slashed(digits.substr(0, 2), digits.substr(2, 2), digits.substr(4));
    default:
      return digits;
  }
}

// The typed text with month and year put in where they were left out.
std::string Completed(std::string_view typed, const std::tm& today) {
  std::vector<std::string> parts = Parts(typed);
  if (parts.size() == 1 && IsDigits(parts[0])) return FromDigits(parts[0], today);
  const bool day_and_month = parts.size() == 2 && !parts[0].empty() && !parts[1].empty();
  if (!day_and_month) return std::string(typed);
  if (!IsDigits(parts[0])) std::swap(parts[0], parts[1]);  // mar 5
  return Slashed(parts[0], parts[1], std::to_string(today.tm_year + kFirstTmYear));
}

}  // namespace

Value CZURDLL::FDate(const Value& dt) {
  return Guarded("DLL.FDate", Value(), [&]() -> Value {
    if (dt.Kind() == ValueKind::kDate) return DayText(Date{dt.ToDouble()});
    if (dt.Kind() != ValueKind::kString) return {};
    const std::optional<Date> date = ReadDate(dt.String(), DateOrder::kDayFirst);
    return date ? Value(DayText(*date)) : Value();
  });
}

void CZURDLL::SimulateDate(Object& Ctrl) {
  Guarded("DLL.SimulateDate", [&] {
    const std::string typed = MemberText(Ctrl, "Text");
    const std::string whole = Completed(TrimBlanks(typed), CurrentHost().clock->Now());
    const std::optional<Date> date = ReadDate(whole, DateOrder::kDayFirst);
    // A time of day would be lost.
    if (!date || date->days != std::trunc(date->days)) return;
    if (std::string text = DayText(*date); text != typed) Member(Ctrl, "Text").Put(std::move(text));
  });
}

}  // namespace kel
