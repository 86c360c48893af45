#include "keldll/words_command.h"

#include <algorithm>
#include <array>

#include "common/error.h"
#include "common/numeric_value.h"
#include "keldll/arguments.h"
#include "keldll/standard_streams.h"
#include "toolkit/CAmount.h"
#include "toolkit/amount_in_words.h"

namespace kel::command {
namespace {

constexpr std::array kOptions = {
    OptionSpec{"--rupee", OptionKind::kValue},
    OptionSpec{"--paise", OptionKind::kValue},
    OptionSpec{"--extended", OptionKind::kFlag},
};

// A negative amount looks like an option; say what to do instead of calling it unknown.
void RefuseLoneNegative(std::span<const std::string> words) {
  for (std::size_t i = 0; i < words.size() && words[i] != "--"; ++i) {
    const std::string& word = words[i];
    if (word == "--rupee" || word == "--paise") {
      ++i;
    } else if (word.size() > 1 && word[0] == '-' &&
               std::string_view("0123456789.").find(word[1]) != std::string_view::npos) {
      throw UsageError("\"" + word + "\" looks like an option; write -- before negative amounts");
    }
  }
}

std::string ExactInWords(const std::string& text, const std::string& rupee,
                         const std::string& paise) {
  try {
    return AmountInWords(text, Style::Extended, rupee, paise);
  } catch (const Error& error) {
    constexpr std::size_t kQuoted = 60;  // bytes
    const std::string quoted = text.size() > kQuoted ? text.substr(0, kQuoted) + "..." : text;
    throw Error(error.Number(), "\"" + quoted + "\": " + error.Description());
  }
}

std::string InWords(const std::string& text, bool extended, const std::string& rupee,
                    const std::string& paise) {
  if (extended) return ExactInWords(text, rupee, paise);
  double amount = ExVal(text);
  return CAmount().Words(amount, rupee, paise);
}

}  // namespace

void RunWords(std::span<const std::string> words) {
  RefuseLoneNegative(words);
  const Arguments arguments(words, kOptions);
  if (arguments.Positional().empty()) throw UsageError("an amount is missing");
  const std::string rupee = arguments.Value("--rupee").value_or(std::string(kFormalRupee));
  const std::string paise = arguments.Value("--paise").value_or(std::string(kFormalPaise));
  std::string lines;
  for (const std::string& amount : arguments.Positional()) {
    lines += InWords(amount, arguments.Has("--extended"), rupee, paise) + '\n';
  }
  WriteStandardOutput(lines);
}

}  // namespace kel::command
