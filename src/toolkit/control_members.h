// What operations do with callers' controls, by member names.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "common/object.h"

namespace kel {

std::string MemberText(Object& object, std::string_view name);

bool HasMember(Object& object, std::string_view name);

/// Whether TypeName is that of `kind`.
bool IsKind(const Object& object, std::string_view kind);

/// Whether a control bears its value like a date picker.
bool BearsValue(const Object& control);

/// Writes a value; where the member cannot hold Null it becomes `blank` instead.
void PutOrBlank(Object& control, Object::MemberId member, const Value& value,
                const Value& blank = "");

/// An element of a list member, such as List(index).
Value ElementOf(Member& list, std::int32_t index);

/// The text of a control (its default member) before an operation fills it.
class KeptText {
 public:
  explicit KeptText(Object& control)
      : control_(control), text_(control.Get(Object::kDefaultMember).ToText()) {}

  /// Puts it back; a control that does not take it any more stays as it is.
  void Restore() const noexcept;

 private:
  Object& control_;
  std::string text_;
};

/// Empties a control by its kind: ListIndex -1, Value 0, Value Null or Text "". Throws Error of the
/// control.
void EmptyControl(Object& control);

}  // namespace kel
