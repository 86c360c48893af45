// CZURDLL: checks of what was typed, before it is saved.
#include <algorithm>
#include <array>
#include <limits>
#include <unordered_map>

#include "common/numeric_value.h"
#include "common/object.h"
#include "common/text_cells.h"
#include "data/folded_text.h"
#include "toolkit/CZURDLL_p.h"
#include "toolkit/control_members.h"
#include "toolkit/rounded_amount.h"

namespace kel {
namespace {

// How long messages stay, in milliseconds.
constexpr std::int32_t kStandardClose = 1000;
constexpr std::int32_t kConditionClose = 2000;
constexpr std::int32_t kTagClose = 2000;
constexpr std::int32_t kDuplicateClose = 2500;

// Tells what is wrong with a control, in its own words (Tag) when it has any, and focuses it.
void TellInvalid(CZURDLL& toolkit, Object& control, const std::string& text,
                 std::int32_t unload_time) {
  const Value parent = Member(control, "Parent").Get();
  const std::string title = MemberText(parent.ToObject(), "Caption");
  const std::string tag = MemberText(control, "Tag");
  const bool own_text = !TrimBlanks(tag).empty();
  toolkit.MsgBox(own_text ? tag : text, msgOK, title, msgInformation, false,
                 own_text ? kTagClose : unload_time, &control, true);
}

// The first control whose Text is wrong is told; true when there is one.
template <typename IsWrong>
bool TellFirst(CZURDLL& toolkit, const Value::Array& controls, IsWrong is_wrong,
               const std::string& text, std::int32_t unload_time) {
  const auto wrong = std::find_if(controls.begin(), controls.end(), [&](const Value& control) {
    return is_wrong(MemberText(control.ToObject(), "Text"));
  });
  if (wrong == controls.end()) return false;
  TellInvalid(toolkit, wrong->ToObject(), text, unload_time);
  return true;
}

bool Meets(Validation condition, double number, double limit) {
  switch (condition) {
    case mEqualto:
      return number == limit;
    case mLessthan:
      return number < limit;
    case mGreaterthan:
      return number > limit;
    case mLessthanOrEqualto:
      return number <= limit;
    case mGreaterthanOrEqualto:
      return number >= limit;
    case mNotEqualto:
      return number != limit;
  }
  return true;
}

// The conditions in words, by their published numbers.
constexpr std::array<const char*, mNotEqualto + 1> kConditionTexts = {
    "equal to ",
    "less than ",
    "greater than ",
    "less than or equal to ",
    "greater than or equal to ",
    "not be equal to ",
};

std::string ConditionText(Validation condition, double limit) {
  const char* const must = condition == mNotEqualto ? "must " : "must be ";
  return std::string("Value of this field ") + must +
         kConditionTexts.at(static_cast<std::size_t>(condition)) + PlainText(limit) + ".";
}

std::string RowKey(Member& text_matrix, std::int32_t row, const Value::Array& columns) {
  std::string key;
  for (const Value& column : columns) {
    const std::array<Value, 2> indexes = {row, column};
    key += Folded(text_matrix.Get(indexes).ToText());
  }
  return key;
}

constexpr std::int32_t kNoRow = -1;

// The later row of the first pair: of all rows that are met again the one that stands first counts,
// with the next row like it.
std::int32_t FindDuplicate(Object& grid, const Value::Array& columns) {
  struct Seen {
    std::int32_t row;
    bool again;
  };
  std::unordered_map<std::string, Seen> seen;
  std::int32_t first = std::numeric_limits<std::int32_t>::max();
  std::int32_t duplicate = kNoRow;
  Member text_matrix(grid, "TextMatrix");
  const std::int32_t rows = Member(grid, "Rows").Get().ToInt32();
  for (std::int32_t row = Member(grid, "FixedRows").Get().ToInt32(); row < rows; ++row) {
    const auto [like, is_new] =
        seen.try_emplace(RowKey(text_matrix, row, columns), Seen{row, false});
    if (is_new || like->second.again) continue;
    like->second.again = true;
    if (like->second.row > first) continue;
    first = like->second.row;
    duplicate = row;
  }
  return duplicate;
}

}  // namespace

bool CZURDLL::CheckEmpty(const Value::Array& Ctrl) {
  return Guarded("DLL.CheckEmpty", false, [&] {
    const auto is_empty = [](const std::string& text) { return TrimBlanks(text).empty(); };
    return TellFirst(*this, Ctrl, is_empty, "This field cannot be empty.", kStandardClose);
  });
}

bool CZURDLL::CheckZero(const Value::Array& Ctrl) {
  return Guarded("DLL.CheckZero", false, [&] {
    const auto is_zero = [](const std::string& text) { return kel::ExVal(text) == 0; };
    return TellFirst(*this, Ctrl, is_zero, "This field cannot be zero.", kStandardClose);
  });
}

bool CZURDLL::CheckValue(Validation Condition, const kel::Value& Value,
                         const kel::Value::Array& Ctrl) {
  return Guarded("DLL.CheckValue", false, [&] {
    if (Condition < mEqualto || Condition > mNotEqualto) return false;
    const double limit = kel::ExVal(Value.ToText());
    const auto breaks = [&](const std::string& text) {
      return !Meets(Condition, kel::ExVal(text), limit);
    };
    return TellFirst(*this, Ctrl, breaks, ConditionText(Condition, limit), kConditionClose);
  });
}

bool CZURDLL::EQUAL(const Value& String1, const Value& String2) {
  return Guarded("", false, [&] { return Folded(String1.ToText()) == Folded(String2.ToText()); });
}

bool CZURDLL::CheckDuplicateRows(Object& MSFG, const Value::Array& Cols) {
  return Guarded("", false, [&] {
    const std::int32_t duplicate = FindDuplicate(MSFG, Cols);
    if (duplicate == kNoRow) return false;
    MsgBox("Duplicate Row found.", msgOK, std::nullopt, msgCritical, false, kDuplicateClose,
           nullptr, true);
    Member(MSFG, "Row").Put(duplicate);
    if (Cols.empty()) throw Error(error_number::kSubscriptOutOfRange, "Subscript out of range");
    Member(MSFG, "Col").Put(Cols.front());
    Member(MSFG, "SetFocus").Call();
    return true;
  });
}

}  // namespace kel
