// The objects of other programs, written as short as automation clients write them.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "common/object.h"

namespace kel {

/// An object used by the names of its members. Copies are the same object.
///
///     LateBound word(programs.CreateObject("Word.Application"));
///     word.Get("Documents").Call("Open", {"C:\\ledger.doc"});
class LateBound {
 public:
  using Values = std::initializer_list<Value>;

  /// Throws Error 13 for what is no object, and 91 for none.
  explicit LateBound(const Value& object);

  /// A property that is an object.
  LateBound Get(std::string_view member, Values indexes = {}) const;
  void Put(std::string_view member, const Value& value) const;
  Value Call(std::string_view member, Values arguments = {}) const;
  /// Calls the method that the object itself stands for: an item of a collection.
  LateBound Item(const Value& index) const;

  const std::shared_ptr<Object>& Pointer() const { return object_; }

 private:
  Value CallMember(Object::MemberId member, Values arguments) const;

  std::shared_ptr<Object> object_;
};

/// A path as other programs are told it.
std::string PathText(const std::filesystem::path& path);

}  // namespace kel
