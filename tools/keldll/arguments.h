// The words of a command line, sorted into options and the rest.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "common/error.h"

namespace kel::command {

/// The command was called wrongly; its usage is shown after the message.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class OptionKind { kFlag, kValue, kRepeatedValue };

struct OptionSpec {
  std::string_view name;  // with its hyphens
  OptionKind kind;
};

/// Options stand anywhere among the other words until a `--` ends them. A value is the next word,
/// also one that begins with a hyphen, or stands in the same word: --name=value, -ovalue. A lone
/// `-` is no option.
class Arguments {
 public:
  /// Throws UsageError for an unknown option, a missing or needless value, and an option that is
  /// given again without being a repeated one.
  Arguments(std::span<const std::string> words, std::span<const OptionSpec> specs);

  const std::vector<std::string>& Positional() const { return positional_; }
  bool Has(std::string_view name) const { return values_.contains(name); }
  std::optional<std::string> Value(std::string_view name) const;
  /// Every value of a repeated option, in order.
  std::vector<std::string> Values(std::string_view name) const;

 private:
  struct OptionWord {
    std::string_view name;
    std::optional<std::string> value;
  };

  static OptionWord Split(std::string_view word);
  void Keep(const OptionSpec& spec, const OptionWord& option, std::span<const std::string>& rest);

  std::vector<std::string> positional_;
  std::map<std::string_view, std::vector<std::string>> values_;
};

/// First and last of something that is counted.
struct Range {
  std::int32_t first = 0;
  std::int32_t last = 0;
};

/// The whole text as a number of 32 bits; nothing for any other text.
std::optional<std::int32_t> ReadInteger(std::string_view text);

/// `A-B` with `least` <= A <= B. Throws UsageError naming `option`.
Range ReadRange(std::string_view option, std::string_view text, std::int32_t least);

/// `A,B,...`. Throws UsageError naming `option` for an item that is no whole number.
std::vector<std::int32_t> ReadIntegers(std::string_view option, std::string_view text);

/// The items of a list that is separated by commas, without blanks around them.
std::vector<std::string> SplitList(std::string_view text);

}  // namespace kel::command
