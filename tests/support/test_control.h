// A form or control of a caller's, as late binding sees it.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/error.h"
#include "common/object.h"

namespace kel::testing {

/// Has the members that it is made with, and no others. Methods are members too: a call counts.
class TestControl : public Object {
 public:
  using Members = std::map<std::string, Value>;

  TestControl(std::string type, Members members)
      : type_(std::move(type)), members_(std::move(members)) {
    for (const auto& [name, value] : members_) names_.push_back(name);
  }

  Value& operator[](const std::string& name) { return members_.at(name); }
  int Calls() const { return calls_; }

  std::string TypeName() const override { return type_; }
  MemberId Resolve(std::string_view name) override {
    for (std::size_t i = 0; i < names_.size(); ++i) {
      if (names_[i] == name) return static_cast<MemberId>(i) + 1;
    }
    throw Error(error_number::kNoSuchMember, type_ + " has no " + std::string(name));
  }
  Value Get(MemberId member, std::span<const Value> /*indexes*/) override { return At(member); }
  void Put(MemberId member, const Value& value, std::span<const Value> /*indexes*/) override {
    At(member) = value;
  }
  Value Call(MemberId member, Arguments& /*arguments*/) override {
    ++calls_;
    return At(member);
  }

 private:
  Value& At(MemberId member) {
    return members_.at(names_.at(static_cast<std::size_t>(member) - 1));
  }

  std::string type_;
  Members members_;
  std::vector<std::string> names_;
  int calls_ = 0;
};

}  // namespace kel::testing
