// The controls of a form, and what passes between them and the fields of a table.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/object.h"
#include "data/driver.h"

namespace kel {

/// The Controls collection of a form. The form outlives it.
class FormControls {
 public:
  explicit FormControls(Object& form);

  std::int32_t Count();
  /// By place from 0. Throws Error of the collection when there is no such control.
  Value::ObjectPtr At(std::int32_t index) { return Find(index); }
  Value::ObjectPtr Named(std::string_view name) { return Find(name); }

 private:
  Value::ObjectPtr Find(const Value& index);

  Value controls_;
};

/// Fields that an operation leaves alone: names and places from 0 between semicolons
/// (";0;Remarks;"), in any case of letters.
class AvoidList {
 public:
  explicit AvoidList(std::string_view fields);
  bool Names(int place, std::string_view name) const;

 private:
  std::string folded_;
};

/// The value of a control for a field of `type`.
Value ValueForField(Object& control, FieldType type);

/// Shows a field's value in a control.
void ShowFieldValue(Object& control, const Value& value);

}  // namespace kel
