// Print settings that a command line changes for one job: --set NAME=VALUE.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/CPrint.h"
#include "engine/print_settings.h"

namespace kel::command {

/// What a text must be to be read as a setting of that type, for messages.
std::string_view ExpectedText(SettingType type);

/// The settings of one command line.
class JobSettings {
 public:
  /// Takes `NAME=VALUE`, where NAME is the published name of a print setting in any case. Throws
  /// UsageError for a name that there is not and a value that does not fit the setting.
  void Add(std::string_view assignment);

  /// The value of Mode, which decides what the other settings are loaded from.
  std::optional<std::string> Mode() const;
  /// Sets the properties, in the order in which they were added.
  void ApplyTo(CPrint& print) const;

 private:
  using Setter = void (*)(CPrint& print, std::string_view text);
  struct Assignment {
    Setter set;
    std::string text;
  };
  struct Property;

  static const Property* Find(std::string_view name);

  std::vector<Assignment> assignments_;
  std::optional<std::string> mode_;
};

}  // namespace kel::command
