#include "keldll/command.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <new>
#include <string_view>

#include "common/error.h"
#include "keldll/arguments.h"
#include "keldll/browse_command.h"
#include "keldll/report_command.h"
#include "keldll/settings_command.h"
#include "keldll/setup_command.h"
#include "keldll/standard_streams.h"
#include "keldll/usage.h"
#include "keldll/words_command.h"

namespace kel::command {
namespace {

struct Verb {
  std::string_view name;
  void (*run)(std::span<const std::string> words);
};

constexpr std::array kVerbs = {Verb{"report", RunReport}, Verb{"browse", RunBrowse},
                               Verb{"words", RunWords}, Verb{"setup", RunSetup},
                               Verb{"settings", RunSettings}};

bool IsHelp(std::string_view word) { return word == "--help"; }

void RequireNothingAfter(std::span<const std::string> words, std::size_t count) {
  if (words.size() > count) throw UsageError("unexpected \"" + words[count] + "\"");
}

void ShowHelp(std::span<const std::string> words) {
  RequireNothingAfter(words, 2);
  if (words.size() < 2) return WriteStandardOutput(UsageOf(""));
  const std::string_view usage = UsageOf(words[1]);
  if (usage.empty()) throw UsageError("there is no verb \"" + words[1] + "\"");
  WriteStandardOutput(usage);
}

// What to do besides the verbs.
void RunGeneral(std::span<const std::string> words) {
  if (words.empty()) throw UsageError("a verb is missing");
  if (IsHelp(words[0]) || words[0] == "help") return ShowHelp(words);
  if (words[0] == "--version") {
    RequireNothingAfter(words, 1);
    return WriteStandardOutput("keldll " KELDLL_VERSION "\n");
  }
  throw UsageError("there is no verb \"" + words[0] + "\"");
}

// Further on the word may be an option's value.
void RunVerb(const Verb& verb, std::span<const std::string> words) {
  if (!words.empty() && IsHelp(words.front())) return WriteStandardOutput(UsageOf(verb.name));
  verb.run(words);
}

// A message stays one line whatever SQL text, file name or cell it quotes.
std::string OneLine(std::string_view text) {
  std::string line(text);
  for (char& byte : line) {
    const auto code = static_cast<unsigned char>(byte);
    if (code < ' ' || code == '\x7f') byte = ' ';
  }
  return line;
}

ExitStatus Report(ExitStatus status, std::string_view message, std::string_view usage = {}) {
  std::string text = "keldll: " + OneLine(message) + '\n';
  text += usage;
  std::fwrite(text.data(), 1, text.size(), stderr);
  return status;
}

ExitStatus RunAndReport(const Verb* verb, std::span<const std::string> words) {
  try {
    if (verb == nullptr) {
      RunGeneral(words);
    } else {
      RunVerb(*verb, words.subspan(1));
    }
    return kDone;
  } catch (const UsageError& error) {
    return Report(kWrongUsage, error.what(), UsageOf(verb == nullptr ? "" : verb->name));
  } catch (const std::bad_alloc&) {
    return Report(kFailed, "not enough memory");
  } catch (const std::exception& error) {
    return Report(kFailed, error.what());
  }
}

}  // namespace

ExitStatus Run(std::span<const std::string> words) noexcept {
  const auto* const verb = std::find_if(kVerbs.begin(), kVerbs.end(), [&](const Verb& candidate) {
    return !words.empty() && candidate.name == words[0];
  });
  return RunAndReport(verb == kVerbs.end() ? nullptr : verb, words);
}

}  // namespace kel::command
