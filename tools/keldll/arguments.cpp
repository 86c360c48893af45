#include "keldll/arguments.h"

#include <algorithm>
#include <charconv>

namespace kel::command {

Arguments::Arguments(std::span<const std::string> words, std::span<const OptionSpec> specs) {
  while (!words.empty()) {
    const std::string& word = words.front();
    words = words.subspan(1);
    if (word == "--") {
      positional_.insert(positional_.end(), words.begin(), words.end());
      return;
    }
    if (word.size() < 2 || word[0] != '-') {
      positional_.push_back(word);
      continue;
    }
    const OptionWord option = Split(word);
    const auto spec = std::find_if(specs.begin(), specs.end(), [&](const OptionSpec& candidate) {
      return candidate.name == option.name;
    });
    if (spec == specs.end()) throw UsageError("unknown option " + std::string(option.name));
    Keep(*spec, option, words);
  }
}

Arguments::OptionWord Arguments::Split(std::string_view word) {
  constexpr std::size_t kShortName = 2;  // -o
  if (!word.starts_with("--")) {
    if (word.size() == kShortName) return {word, std::nullopt};
    return {word.substr(0, kShortName), std::string(word.substr(kShortName))};
  }
  const std::size_t equals = word.find('=');
  if (equals == std::string_view::npos) return {word, std::nullopt};
  return {word.substr(0, equals), std::string(word.substr(equals + 1))};
}

void Arguments::Keep(const OptionSpec& spec, const OptionWord& option,
                     std::span<const std::string>& rest) {
  const std::string name(spec.name);
  const bool is_new = !values_.contains(spec.name);
  if (!is_new && spec.kind != OptionKind::kRepeatedValue) {
    throw UsageError("option " + name + " is given twice");
  }
  std::vector<std::string>& values = values_[spec.name];
  if (spec.kind == OptionKind::kFlag) {
    if (option.value) throw UsageError("option " + name + " takes no value");
  } else if (option.value) {
    values.push_back(*option.value);
  } else if (rest.empty()) {
    throw UsageError("option " + name + " needs a value");
  } else {
    values.push_back(rest.front());
    rest = rest.subspan(1);
  }
}

std::optional<std::string> Arguments::Value(std::string_view name) const {
  const auto found = values_.find(name);
  if (found == values_.end() || found->second.empty()) return std::nullopt;
  return found->second.back();
}

std::vector<std::string> Arguments::Values(std::string_view name) const {
  const auto found = values_.find(name);
  return found == values_.end() ? std::vector<std::string>() : found->second;
}

std::optional<std::int32_t> ReadInteger(std::string_view text) {
  std::int32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, failure] = std::from_chars(text.data(), end, number);
  if (failure != std::errc() || stop != end) return std::nullopt;
  return number;
}

Range ReadRange(std::string_view option, std::string_view text, std::int32_t least) {
  const std::size_t hyphen = text.find('-');
  if (hyphen != std::string_view::npos) {
    const std::optional<std::int32_t> first = ReadInteger(text.substr(0, hyphen));
    const std::optional<std::int32_t> last = ReadInteger(text.substr(hyphen + 1));
    if (first && last && *first >= least && *first <= *last) return {*first, *last};
  }
  throw UsageError(std::string(option) + " \"" + std::string(text) +
                   "\": a range is written A-B, " + std::to_string(least) +
                   " or more, A not above B");
}

std::vector<std::int32_t> ReadIntegers(std::string_view option, std::string_view text) {
  std::vector<std::int32_t> numbers;
  for (const std::string& item : SplitList(text)) {
    const std::optional<std::int32_t> number = ReadInteger(item);
    if (!number) throw UsageError(std::string(option) + ": \"" + item + "\" is not a whole number");
    numbers.push_back(*number);
  }
  return numbers;
}

std::vector<std::string> SplitList(std::string_view text) {
  std::vector<std::string> items;
  while (true) {
    const std::size_t comma = text.find(',');
    const std::string_view item = text.substr(0, comma);
    const std::size_t first = item.find_first_not_of(' ');
    const std::size_t last = item.find_last_not_of(' ');
    items.emplace_back(first == std::string_view::npos ? std::string_view()
                                                       : item.substr(first, last - first + 1));
    if (comma == std::string_view::npos) return items;
    text.remove_prefix(comma + 1);
  }
}

}  // namespace kel::command
