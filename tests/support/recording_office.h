// Office programs that write down what is asked of them.
#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/error.h"
#include "export/automation_office.h"

namespace kel::testing {

/// Every call of every program and of what belongs to it stands in `calls`, in order.
class RecordingOffice : public OfficePrograms {
 public:
  std::vector<std::string> calls;
  std::size_t fail_at = 0;  // the number of the call that fails, counted from 1
  /// Does what the real program does to files, even in a call that fails.
  std::function<void(const std::string& call)> on_call;

  std::shared_ptr<Object> CreateObject(std::string_view program) override {
    Record("CreateObject " + std::string(program));
    return Named(std::string(program.substr(0, program.find('.'))));
  }
  void Shell(const std::string& command, int window_style) override {
    Record("Shell " + command + " " + std::to_string(window_style));
  }
  void Open(const std::filesystem::path& file) override { Record("Open " + file.string()); }

 private:
  class Recorded : public Object {
   public:
    Recorded(RecordingOffice& office, std::string name) : office_(office), name_(std::move(name)) {}

    std::string TypeName() const override { return name_; }
    MemberId Resolve(std::string_view name) override {
      members_.push_back("." + std::string(name));
      return static_cast<MemberId>(members_.size());
    }
    Value Get(MemberId member, std::span<const Value> indexes) override {
      return Result(NameOf(member) + (indexes.empty() ? "" : Listed(indexes)));
    }
    void Put(MemberId member, const Value& value, std::span<const Value> /*indexes*/) override {
      office_.Record(NameOf(member) + " = " + Text(value));
    }
    Value Call(MemberId member, Arguments& arguments) override {
      const std::string call = NameOf(member) + Listed(arguments.positional);
      if (!NameOf(member).ends_with(".InchesToPoints")) return Result(call);
      office_.Record(call);
      return arguments.positional.at(0).ToDouble() * 72;
    }

   private:
    Value Result(const std::string& call) {
      office_.Record(call);
      return office_.Named(call);
    }
    std::string NameOf(MemberId member) const {
      return member == kDefaultMember ? name_
                                      : name_ + members_.at(static_cast<std::size_t>(member) - 1);
    }
    static std::string Listed(std::span<const Value> values) {
      std::string list;
      for (const Value& value : values) list += (list.empty() ? "(" : ",") + Text(value);
      return list.empty() ? "()" : list + ")";
    }
    static std::string Text(const Value& value) {
      if (value.IsMissing()) return "-";
      return value.IsObject() ? value.ToObject().TypeName() : value.ToText();
    }

    RecordingOffice& office_;
    std::string name_;
    std::vector<std::string> members_;
  };

  std::shared_ptr<Object> Named(std::string name) {
    return std::make_shared<Recorded>(*this, std::move(name));
  }
  void Record(std::string call) {
    calls.push_back(std::move(call));
    if (on_call) on_call(calls.back());
    if (calls.size() == fail_at) throw Error(error_number::kDeviceIoError, "refused");
  }
};

}  // namespace kel::testing
