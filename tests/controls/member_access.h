// Members of objects by their names, as a test writes them.
#pragma once

#include <QWidget>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "controls/widget_object.h"
#include "support/errors.h"

namespace kel::testing {

using Values = std::vector<Value>;

inline Value Get(Object& object, std::string_view member, const Values& indexes = {}) {
  return object.Get(object.Resolve(member), indexes);
}
inline Value Get(QWidget& widget, std::string_view member, const Values& indexes = {}) {
  return Get(*WidgetObject(widget), member, indexes);
}
inline Value Get(const Value& object, std::string_view member, const Values& indexes = {}) {
  return Get(object.ToObject(), member, indexes);
}

inline void Put(Object& object, std::string_view member, const Value& value,
                const Values& indexes = {}) {
  object.Put(object.Resolve(member), value, indexes);
}
inline void Put(QWidget& widget, std::string_view member, const Value& value,
                const Values& indexes = {}) {
  Put(*WidgetObject(widget), member, value, indexes);
}
inline void Put(const Value& object, std::string_view member, const Value& value,
                const Values& indexes = {}) {
  Put(object.ToObject(), member, value, indexes);
}

inline Value Call(Object& object, std::string_view member, Values positional = {}) {
  Arguments arguments{std::move(positional), {}};
  return object.Call(object.Resolve(member), arguments);
}
inline Value Call(QWidget& widget, std::string_view member, Values positional = {}) {
  return Call(*WidgetObject(widget), member, std::move(positional));
}
inline Value Call(const Value& object, std::string_view member, Values positional = {}) {
  return Call(object.ToObject(), member, std::move(positional));
}

/// The numbers of the errors of writing and of reading.
template <typename Subject>
int PutError(Subject& subject, std::string_view member, const Value& value,
             const Values& indexes = {}) {
  return ErrorOf([&] { Put(subject, member, value, indexes); }).Number();
}
template <typename Subject>
int GetError(Subject& subject, std::string_view member, const Values& indexes = {}) {
  return ErrorOf([&] { Get(subject, member, indexes); }).Number();
}
template <typename Subject>
int CallError(Subject& subject, std::string_view member, Values positional = {}) {
  return ErrorOf([&] { Call(subject, member, std::move(positional)); }).Number();
}

}  // namespace kel::testing
