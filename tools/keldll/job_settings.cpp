#include "keldll/job_settings.h"

#include <algorithm>
#include <array>

#include "common/names.h"
#include "common/numeric_value.h"
#include "keldll/arguments.h"

namespace kel::command {
namespace {

bool Flag(std::string_view text) { return SameName(text, "True"); }
std::int32_t Integer(std::string_view text) { return ReadInteger(text).value_or(0); }
float Number(std::string_view text) { return static_cast<float>(ExVal(text)); }

// Flags may be written in any case; everything else is read as the store's texts are.
bool Fits(std::string_view text, SettingType type) {
  switch (type) {
    case SettingType::kFlag:
      return Flag(text) || SameName(text, "False");
    case SettingType::kInteger:
    case SettingType::kLong:
      return ReadInteger(text) && FitsType(text, type);
    default:
      return FitsType(text, type);
  }
}

}  // namespace

std::string_view ExpectedText(SettingType type) {
  switch (type) {
    case SettingType::kFlag:
      return "True or False";
    case SettingType::kInteger:
      return "a whole number from -32768 to 32767";
    case SettingType::kLong:
      return "a whole number from -2147483648 to 2147483647";
    case SettingType::kNumber:
      return "a number";
    case SettingType::kText:
      break;
  }
  return "a text";
}

struct JobSettings::Property {
  std::string_view name;
  SettingType type;
  Setter set;
};

const JobSettings::Property* JobSettings::Find(std::string_view name) {
  using enum SettingType;
  using Text = std::string_view;
  // In the published order.
  static constexpr std::array kProperties = {
      Property{"Portrait", kFlag, [](CPrint& print, Text text) { print.Portrait(Flag(text)); }},
      Property{"PageHeight", kNumber,
               [](CPrint& print, Text text) { print.PageHeight(Number(text)); }},
      Property{"PageWidth", kNumber,
               [](CPrint& print, Text text) { print.PageWidth(Number(text)); }},
      Property{"LeftMargin", kInteger,
               [](CPrint& print, Text text) { print.LeftMargin(Integer(text)); }},
      Property{"RightMargin", kInteger,
               [](CPrint& print, Text text) { print.RightMargin(Integer(text)); }},
      Property{"BottomMargin", kInteger,
               [](CPrint& print, Text text) { print.BottomMargin(Integer(text)); }},
      Property{"TopMargin", kInteger,
               [](CPrint& print, Text text) { print.TopMargin(Integer(text)); }},
      Property{"PrintDateTime", kFlag,
               [](CPrint& print, Text text) { print.PrintDateTime(Flag(text)); }},
      Property{"PrintColumnDivider", kFlag,
               [](CPrint& print, Text text) { print.PrintColumnDivider(Flag(text)); }},
      Property{"Lines", kInteger, [](CPrint& print, Text text) { print.Lines(Integer(text)); }},
      Property{"Cols", kInteger, [](CPrint& print, Text text) { print.Cols(Integer(text)); }},
      Property{"StartPage", kLong,
               [](CPrint& print, Text text) { print.StartPage(Integer(text)); }},
      Property{"EndPage", kLong, [](CPrint& print, Text text) { print.EndPage(Integer(text)); }},
      Property{"UnderLineChar", kText,
               [](CPrint& print, Text text) { print.UnderLineChar(std::string(text)); }},
      Property{"Font", kText, [](CPrint& print, Text text) { print.Font(std::string(text)); }},
      Property{"FontSize", kNumber, [](CPrint& print, Text text) { print.FontSize(Number(text)); }},
      Property{"PrinterDevice", kText,
               [](CPrint& print, Text text) { print.PrinterDevice(std::string(text)); }},
      Property{"Port", kText, [](CPrint& print, Text text) { print.Port(std::string(text)); }},
      Property{"Mode", kText, [](CPrint& print, Text text) { print.Mode(std::string(text)); }},
  };
  const auto* const found =
      std::find_if(kProperties.begin(), kProperties.end(),
                   [&](const Property& property) { return SameName(property.name, name); });
  return found == kProperties.end() ? nullptr : found;
}

void JobSettings::Add(std::string_view assignment) {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string_view::npos) {
    throw UsageError("--set \"" + std::string(assignment) + "\": a setting is written NAME=VALUE");
  }
  const std::string_view name = assignment.substr(0, equals);
  const std::string_view text = assignment.substr(equals + 1);
  const Property* const property = Find(name);
  if (property == nullptr) {
    throw UsageError("--set: there is no print setting \"" + std::string(name) + "\"");
  }
  if (!Fits(text, property->type)) {
    throw UsageError("--set " + std::string(property->name) + ": \"" + std::string(text) +
                     "\" is not " + std::string(ExpectedText(property->type)));
  }
  assignments_.push_back({property->set, std::string(text)});
  if (property->name == "Mode") mode_ = std::string(text);
}

std::optional<std::string> JobSettings::Mode() const { return mode_; }

void JobSettings::ApplyTo(CPrint& print) const {
  for (const Assignment& assignment : assignments_) assignment.set(print, assignment.text);
}

}  // namespace kel::command
