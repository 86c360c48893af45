// A flex grid that writes down how it is used.
#pragma once

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/error.h"
#include "common/object.h"
#include "engine/grid_source.h"

namespace kel::testing {

/// The window that a grid stands on.
class CaptionedForm : public Object {
 public:
  std::string TypeName() const override { return "Form"; }
  MemberId Resolve(std::string_view name) override {
    if (name == "Caption") return 1;
    throw Error(error_number::kNoSuchMember, "no such member");
  }
  Value Get(MemberId /*member*/, std::span<const Value> /*indexes*/) override { return "Form"; }
  void Put(MemberId, const Value&, std::span<const Value>) override {}
  Value Call(MemberId, Arguments&) override { return {}; }
};

/// Row 0 is the fixed row; all columns are left-aligned.
class RecordingGrid : public Object {
 public:
  explicit RecordingGrid(std::vector<std::vector<std::string>> texts) : texts_(std::move(texts)) {}

  const std::vector<std::string>& Calls() const { return calls_; }
  int LongestResolveCount() const {
    int most = 0;
    for (const auto& [name, count] : resolves_) most = std::max(most, count);
    return most;
  }
  /// The call with this record fails with Error 5.
  void FailAt(std::string call) { fail_at_ = std::move(call); }

  std::string TypeName() const override { return "MSFlexGrid"; }

  MemberId Resolve(std::string_view name) override {
    const std::string lower = Lower(name);
    for (std::size_t i = 0; i < kNames.size(); ++i) {
      if (Lower(kNames[i]) != lower) continue;
      ++resolves_[lower];
      return static_cast<MemberId>(i);
    }
    throw Error(error_number::kNoSuchMember, "no such member");
  }

  Value Get(MemberId member, std::span<const Value> indexes) override {
    std::string record(Name(member));
    for (std::size_t i = 0; i < indexes.size(); ++i) {
      record += (i == 0 ? "(" : ",") + indexes[i].ToText();
    }
    Record(indexes.empty() ? record : record + ")");
    if (Name(member) == "Parent") return {form_};
    if (Name(member) == "TextMatrix") {
      return texts_.at(static_cast<std::size_t>(indexes[0].ToInt32()))
          .at(static_cast<std::size_t>(indexes[1].ToInt32()));
    }
    if (Name(member) == "CellBackColor") {
      return row_ == 0 ? static_cast<std::int32_t>(system_color::kButtonFace) : -2147483643;
    }
    if (Name(member) == "ColAlignment") return 1;
    return false;
  }

  void Put(MemberId member, const Value& value, std::span<const Value> /*indexes*/) override {
    Record(std::string(Name(member)) + "=" + value.ToText());
    if (Name(member) == "Row") row_ = value.ToInt32();
  }

  Value Call(MemberId /*member*/, Arguments& /*arguments*/) override {
    throw Error(error_number::kNoSuchMember, "no methods");
  }

 private:
  static constexpr std::array<std::string_view, 10> kNames = {
      "Parent",        "Visible",      "HighLight",         "Row",         "Col", "TextMatrix",
      "CellBackColor", "cellfontbold", "cellfontunderline", "ColAlignment"};

  static std::string_view Name(MemberId member) {
    return kNames.at(static_cast<std::size_t>(member));
  }
  static std::string Lower(std::string_view name) {
    std::string lower(name);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
  }

  void Record(std::string call) {
    calls_.push_back(std::move(call));
    if (calls_.back() == fail_at_) {
      throw Error(error_number::kInvalidProcedureCall, "Invalid procedure call or argument");
    }
  }

  std::vector<std::vector<std::string>> texts_;
  std::vector<std::string> calls_;
  std::map<std::string, int> resolves_;
  std::string fail_at_;
  std::shared_ptr<Object> form_ = std::make_shared<CaptionedForm>();
  int row_ = 0;
};

}  // namespace kel::testing
