// Late binding: a caller's grid, form, control or office program, used by member names.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/value.h"

namespace kel {

/// The arguments of a late-bound call. Positional ones stand in order (Value::Missing() for one
/// left out); the object may write by-reference results back into them.
struct Arguments {
  std::vector<Value> positional;
  std::vector<std::pair<std::string, Value>> named;
};

/// A thing of the caller's that is reached by the names of its members.
///
/// A name is resolved to an id once per instance; get, put and call then take the id, so a loop
/// over a million cells pays for a name once. Names are compared without regard to case.
/// Every operation throws Error (438 for an unknown member) when the object refuses it.
/// An Object is used on one thread at a time.
class Object {
 public:
  using MemberId = std::int32_t;
  /// The id of the member that stands for the object itself (a text box's Text).
  static constexpr MemberId kDefaultMember = 0;

  virtual ~Object() = default;

  /// The kind of thing this is: "Label", "ComboBox", "CheckBox", "OptionButton", "DTPicker", ...
  virtual std::string TypeName() const = 0;

  /// The id of a member. Throws Error 438 when there is none of that name.
  virtual MemberId Resolve(std::string_view name) = 0;

  /// Reads a property; `indexes` are its arguments, as in TextMatrix(row, col).
  virtual Value Get(MemberId member, std::span<const Value> indexes = {}) = 0;
  /// Writes a property.
  virtual void Put(MemberId member, const Value& value, std::span<const Value> indexes = {}) = 0;
  /// Makes a property refer to another object. Objects that know no difference treat it as Put.
  virtual void PutReference(MemberId member, const Value& object,
                            std::span<const Value> indexes = {}) {
    Put(member, object, indexes);
  }
  /// Calls a method. The result is Empty where the method has none.
  virtual Value Call(MemberId member, Arguments& arguments) = 0;

  /// True when both are the same thing, which two adapters of one widget are.
  virtual bool IsSame(const Object& other) const { return this == &other; }
  /// True when the object offers the interface of that name.
  virtual bool Implements(std::string_view /*interface_name*/) const { return false; }
};

/// One member of one object, resolved at its first use. The object must outlive it.
///
///     Member row(grid, "Row");
///     for (int r = 0; r < n; ++r) row.Put(r);
class Member {
 public:
  Member(Object& object, std::string_view name) : object_(&object), name_(name) {}

  Value Get(std::span<const Value> indexes = {}) { return object_->Get(Id(), indexes); }
  void Put(const Value& value, std::span<const Value> indexes = {}) {
    object_->Put(Id(), value, indexes);
  }
  Value Call(Arguments arguments = {}) { return object_->Call(Id(), arguments); }

 private:
  Object::MemberId Id() {
    if (!resolved_) {
      id_ = object_->Resolve(name_);
      resolved_ = true;
    }
    return id_;
  }

  Object* object_;
  std::string name_;
  Object::MemberId id_ = 0;
  bool resolved_ = false;
};

}  // namespace kel
