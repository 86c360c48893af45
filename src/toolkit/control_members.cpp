#include "toolkit/control_members.h"

#include "common/error.h"
#include "common/names.h"
#include "toolkit/CZURDLL_p.h"

namespace kel {
namespace {

constexpr std::string_view kValueBearer = "{84656221-02A8-4F9B-9BD9-A5E50AE5D44B}";
constexpr int kDropDownList = 2;  // a combo box's Style

// A property that other kinds of controls lack, or have with another meaning.
bool HasCheckBoxProperty(Object& control) {
  return HasMember(control, "CheckBox") &&
         Member(control, "CheckBox").Get().Kind() == ValueKind::kBoolean;
}

}  // namespace

std::string MemberText(Object& object, std::string_view name) {
  return Member(object, name).Get().ToText();
}

bool HasMember(Object& object, std::string_view name) {
  try {
    object.Resolve(name);
    return true;
  } catch (const Error& error) {
    if (error.Number() != error_number::kNoSuchMember) throw;
    return false;
  }
}

bool IsKind(const Object& object, std::string_view kind) {
  return SameName(object.TypeName(), kind);
}

bool BearsValue(const Object& control) { return control.Implements(kValueBearer); }

void PutOrBlank(Object& control, Object::MemberId member, const Value& value, const Value& blank) {
  try {
    control.Put(member, value);
  } catch (const Error& error) {
    if (!value.IsNull() || error.Number() != error_number::kInvalidUseOfNull) throw;
    control.Put(member, blank);
  }
}

Value ElementOf(Member& list, std::int32_t index) {
  const std::array<Value, 1> indexes = {index};
  return list.Get(indexes);
}

void KeptText::Restore() const noexcept {
  Quietly([this] { control_.Put(Object::kDefaultMember, text_); });
}

void EmptyControl(Object& control) {
  if (IsKind(control, "ComboBox")) {
    const bool fixed = Member(control, "Style").Get().ToInt32() == kDropDownList;
    if (fixed) return Member(control, "ListIndex").Put(-1);
  } else if (IsKind(control, "CheckBox")) {
    return Member(control, "Value").Put(0);
  } else if (HasCheckBoxProperty(control)) {
    if (Member(control, "CheckBox").Get().ToBoolean()) Member(control, "Value").Put(Value::Null());
    return;
  }
  Member(control, "Text").Put("");
}

}  // namespace kel
