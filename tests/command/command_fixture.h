// Runs the real command as a child process in a home of its own.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kel {

/// What a run of the command left behind.
struct RunResult {
  int status = -1;  // of exit; 128 + the signal when one ended it
  std::string out;
  std::string err;
};

/// Where the child's standard streams go; empty for a file that RunResult is read from.
struct Streams {
  std::string out;
  std::string err;
};

/// One running command.
class Child {
 public:
  Child(pid_t pid, std::filesystem::path out, std::filesystem::path err)
      : pid_(pid), out_(std::move(out)), err_(std::move(err)) {}
  Child(Child&& other) noexcept
      : pid_(std::exchange(other.pid_, 0)),
        out_(std::move(other.out_)),
        err_(std::move(other.err_)) {}
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  RunResult Wait();
  void Kill() const;
  /// The most memory it has had so far.
  long PeakKilobytes() const;

 private:
  pid_t pid_;
  std::filesystem::path out_;
  std::filesystem::path err_;
};

/// The writing end of a FIFO that a child reads from.
class Feed {
 public:
  /// Waits until the reader has opened the FIFO.
  explicit Feed(const std::filesystem::path& fifo);
  ~Feed() { Close(); }
  Feed(const Feed&) = delete;
  Feed& operator=(const Feed&) = delete;

  /// Waits until the reader has taken all but what the pipe itself holds.
  void Write(std::string_view bytes) const;
  void Close();

 private:
  int descriptor_;
};

class CommandTest : public testing::Test {
 public:
  ~CommandTest() override;

 protected:
  using Words = std::vector<std::string>;

  CommandTest();

  /// A path in the test's own folder.
  std::string Path(std::string_view name) const { return (folder_ / name).string(); }
  std::string Write(std::string_view name, std::string_view text) const;
  std::string Read(std::string_view name) const;
  std::string MakeFifo(std::string_view name) const;
  /// A database made by the statements.
  std::string MakeDatabase(std::string_view name, const std::string& sql) const;

  RunResult Keldll(const Words& words, const Streams& streams = {}) const;
  Child Start(const Words& words, const Streams& streams = {}) const;
  /// `report` with a fixed stamp.
  RunResult Report(const Words& words) const;

  /// Runs `words` and expects one line on standard error with all of `parts`.
  void ExpectFailure(const Words& words, const std::vector<std::string>& parts) const;
  /// Runs `words` and expects a line with `part`, then the verb's usage.
  void ExpectWrongUsage(const Words& words, const std::string& part) const;

  void SetEnvironment(const std::string& name, const std::string& value);

  std::filesystem::path folder_;

 private:
  Words environment_;
  mutable int runs_ = 0;
};

/// Lines as the page file has them: each ended by CR LF.
std::string Lines(const std::vector<std::string>& lines);

}  // namespace kel
