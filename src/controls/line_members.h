// The members that a field of one line and the line of a combo box have in common.
#pragma once

#include <algorithm>
#include <array>

#include "controls/line_text.h"
#include "controls/member_arguments.h"
#include "controls/widget_members.h"

namespace kel {

/// `LineOf` gives the control's line, or throws where it has none.
template <QLineEdit& (*LineOf)(Control&)>
inline constexpr std::array kLineMembers = {
    ControlMember{"SelStart", [](Control& c, Indexes) -> Value { return SelStart(LineOf(c)); },
                  [](Control& c, const Value& v, Indexes) { SelStart(LineOf(c), v); }},
    ControlMember{"SelLength",
                  [](Control& c, Indexes) -> Value { return LineOf(c).selectionLength(); },
                  [](Control& c, const Value& v, Indexes) { SelLength(LineOf(c), v); }},
    ControlMember{"SelText", [](Control& c, Indexes) { return ValueOf(LineOf(c).selectedText()); },
                  [](Control& c, const Value& v, Indexes) { LineOf(c).insert(QTextOf(v)); }},
    ControlMember{"MaxLength", [](Control& c, Indexes) -> Value { return MaxLength(LineOf(c)); },
                  [](Control& c, const Value& v, Indexes) { MaxLength(LineOf(c), v); }},
    ControlMember{
        "Locked", [](Control& c, Indexes) -> Value { return LineOf(c).isReadOnly(); },
        [](Control& c, const Value& v, Indexes) { LineOf(c).setReadOnly(v.ToBoolean()); }},
};

/// Two tables as one.
template <std::size_t kFirst, std::size_t kSecond>
constexpr std::array<ControlMember, kFirst + kSecond> Joined(
    const std::array<ControlMember, kFirst>& first,
    const std::array<ControlMember, kSecond>& second) {
  std::array<ControlMember, kFirst + kSecond> all{};
  std::copy(second.begin(), second.end(), std::copy(first.begin(), first.end(), all.begin()));
  return all;
}

}  // namespace kel
