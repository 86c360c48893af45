// Forms and controls of a caller's, as late binding sees them.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/error.h"
#include "common/names.h"
#include "common/object.h"

namespace kel::testing {

/// Has the members that it is made with, and no others. A member that holds an array takes indexes,
/// one per level. Methods are members too; one without a function of its own only counts its calls.
class TestControl : public Object {
 public:
  using Members = std::map<std::string, Value>;
  using Method = std::function<Value(Value::Array& arguments)>;

  TestControl(std::string type, Members members)
      : type_(std::move(type)), members_(std::move(members)) {
    for (const auto& [name, value] : members_) names_.push_back(name);
  }

  Value& operator[](const std::string& name) { return members_.at(name); }
  int Calls() const { return calls_; }
  void On(const std::string& method, Method body) {
    if (members_.emplace(method, Value()).second) names_.push_back(method);
    methods_[method] = std::move(body);
  }
  std::string default_member = "Text";
  std::string interface_name;
  std::function<void(const std::string& member, const Value& value)> on_put;  // may throw

  std::string TypeName() const override { return type_; }
  bool Implements(std::string_view name) const override { return name == interface_name; }
  MemberId Resolve(std::string_view name) override {
    for (std::size_t i = 0; i < names_.size(); ++i) {
      if (SameName(names_[i], name)) return static_cast<MemberId>(i) + 1;
    }
    throw Error(error_number::kNoSuchMember, type_ + " has no " + std::string(name));
  }
  Value Get(MemberId member, std::span<const Value> indexes) override {
    return At(member, indexes);
  }
  void Put(MemberId member, const Value& value, std::span<const Value> indexes) override {
    if (on_put) on_put(NameOf(member), value);
    At(member, indexes) = value;
  }
  Value Call(MemberId member, Arguments& arguments) override {
    ++calls_;
    const auto method = methods_.find(NameOf(member));
    return method == methods_.end() ? At(member, {}) : method->second(arguments.positional);
  }

 private:
  std::string NameOf(MemberId member) {
    if (member == kDefaultMember) return default_member;
    return names_.at(static_cast<std::size_t>(member) - 1);
  }
  Value& At(MemberId member, std::span<const Value> indexes) {
    Value* value = &members_.at(NameOf(member));
    for (const Value& index : indexes) {
      auto& elements = const_cast<Value::Array&>(value->ToArray());
      const auto at = static_cast<std::size_t>(index.ToInt32());
      if (at >= elements.size()) {
        throw Error(error_number::kSubscriptOutOfRange, "Subscript out of range");
      }
      value = &elements[at];
    }
    return *value;
  }

  std::string type_;
  Members members_;
  std::vector<std::string> names_;
  std::map<std::string, Method> methods_;
  int calls_ = 0;
};

using ControlPtr = std::shared_ptr<TestControl>;

inline ControlPtr MakeControl(const char* type, TestControl::Members members) {
  return std::make_shared<TestControl>(type, std::move(members));
}

/// A list or combo box; AddItem takes no Null, as with real ones.
inline ControlPtr MakeList(const char* type = "ComboBox", Value::Array items = {}) {
  const Value::Array numbers(items.size());
  const auto count = static_cast<int>(items.size());
  ControlPtr list = MakeControl(type, {{"Text", ""},
                                       {"List", std::move(items)},
                                       {"ItemData", numbers},
                                       {"NewIndex", -1},
                                       {"ListIndex", -1},
                                       {"ListCount", count}});
  TestControl& self = *list;
  const auto array = [&self](const char* name) -> Value::Array& {
    return const_cast<Value::Array&>(self[name].ToArray());
  };
  list->On("Clear", [&self, array](Value::Array&) {
    array("List").clear();
    array("ItemData").clear();
    self["Text"] = "";
    return self["ListCount"] = 0;
  });
  list->On("AddItem", [&self, array](Value::Array& arguments) {
    array("List").emplace_back(arguments.at(0).ToText());
    array("ItemData").emplace_back();
    self["NewIndex"] = static_cast<int>(array("List").size()) - 1;
    return self["ListCount"] = static_cast<int>(array("List").size());
  });
  return list;
}

/// A form whose controls are found by name, in any case, and by place.
inline ControlPtr MakeForm(const std::vector<std::pair<std::string, ControlPtr>>& controls) {
  class Collection : public TestControl {
   public:
    explicit Collection(std::vector<std::pair<std::string, ControlPtr>> held)
        : TestControl("Controls", {{"Count", static_cast<int>(held.size())}}),
          held_(std::move(held)) {}
    Value Get(MemberId member, std::span<const Value> indexes) override {
      if (member != kDefaultMember) return TestControl::Get(member, indexes);
      const Value& index = indexes[0];
      for (std::size_t i = 0; i < held_.size(); ++i) {
        const bool found = index.Kind() == ValueKind::kString
                               ? SameName(held_[i].first, index.String())
                               : index == Value(static_cast<int>(i));
        if (found) return Value::ObjectPtr(held_[i].second);
      }
      throw Error(730, "Control '" + index.ToText() + "' not found");
    }

   private:
    std::vector<std::pair<std::string, ControlPtr>> held_;
  };
  return MakeControl("Form",
                     {{"Controls", Value::ObjectPtr(std::make_shared<Collection>(controls))},
                      {"Caption", "Party"}});
}

}  // namespace kel::testing
