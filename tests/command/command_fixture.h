// Runs the real command as a child process in a home of its own.
#pragma once

#include <gtest/gtest.h>
#include <sys/prctl.h>

#include <csignal>
#include <cstdlib>

#include "support/child_process.h"
#include "support/test_folder.h"

namespace kel::testing {

using Words = std::vector<std::string>;

inline Words operator+(Words words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

inline bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// One running command and where its standard output and error go.
struct Child {
  pid_t pid;
  std::string out;
  std::string err;
};

/// What a command left behind.
struct RunResult {
  int status;  // of exit; 128 + the signal when one ended it
  std::string out;
  std::string err;
};

class CommandTest : public ::testing::Test {
 protected:
  CommandTest() {
    setenv("KELDLL_HOME", Path("home").c_str(), 1);
    setenv("XDG_CONFIG_HOME", Path("config").c_str(), 1);
    signal(SIGPIPE, SIG_IGN);  // a child that ends early must not take the tests with it
  }

  std::string Path(std::string_view name) const { return (folder_ / name).string(); }
  std::string Read(std::string_view name) const { return ReadFile(Path(name)); }
  std::string Write(std::string_view name, std::string_view text) const {
    WriteFile(Path(name), text);
    return Path(name);
  }

  /// `out` and `err` are what a shell writes behind > and 2>; files of the run's own when empty.
  Child Start(const Words& words, const std::string& out = "", const std::string& err = "") {
    const std::string run = Path(std::to_string(++runs_));
    Child child{0, out.empty() ? run + ".out" : out, err.empty() ? run + ".err" : err};
    const std::string redirected = R"(exec "$0" "$@" >)" + child.out + " 2>" + child.err;
    Words all = Words{"/bin/sh", "-c", redirected, KELDLL_COMMAND} + words;
    std::vector<char*> pointers;
    for (std::string& word : all) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    child.pid = StartChild([&] {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      return execv(pointers[0], pointers.data()) == 0;
    });
    return child;
  }
  static RunResult Wait(const Child& child) {
    int status = 0;
    waitpid(child.pid, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), Contents(child.out),
            Contents(child.err)};
  }
  RunResult Keldll(const Words& words) { return Wait(Start(words)); }

  /// The text that `report` writes with a fixed stamp; it must succeed and say nothing else.
  std::string Report(const Words& words) {
    const RunResult result = Keldll(Words{"report", "--stamp", "01/04/2026 10:00:00"} + words);
    EXPECT_EQ(result.status, 0) << ::testing::PrintToString(words);
    EXPECT_EQ(result.err, "");
    return result.out;
  }
  /// Expects one line on standard error with all of `parts` and nothing on standard output.
  void ExpectFailure(const Words& words, const Words& parts) {
    const RunResult result = Keldll(words);
    SCOPED_TRACE(::testing::PrintToString(words) + result.err);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with("keldll: "));
    EXPECT_EQ(result.err.find('\n'), result.err.size() - 1);
    for (const std::string& part : parts) EXPECT_TRUE(Contains(result.err, part)) << part;
  }

 private:
  // Nothing for a device, which may never end.
  static std::string Contents(const std::string& path) {
    return std::filesystem::is_regular_file(path) ? ReadFile(path) : "";
  }

  TestFolder folder_;
  int runs_ = 0;
};

}  // namespace kel::testing
