#include "command/command_fixture.h"

#include <fcntl.h>
#include <spawn.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace kel {
namespace {

// Nothing for a device, which may never end.
std::string Contents(const std::filesystem::path& path) {
  if (!std::filesystem::is_regular_file(path)) return {};
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

std::vector<char*> Pointers(const std::vector<std::string>& words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

Child::~Child() {
  if (pid_ == 0) return;
  Kill();
  waitpid(pid_, nullptr, 0);
}

void Child::Kill() const { kill(pid_, SIGKILL); }

RunResult Child::Wait() {
  int status = 0;
  waitpid(std::exchange(pid_, 0), &status, 0);
  const int exit_status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return {exit_status, Contents(out_), Contents(err_)};
}

long Child::PeakKilobytes() const {
  std::istringstream status(Contents("/proc/" + std::to_string(pid_) + "/status"));
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) return std::stol(line.substr(6));
  }
  throw std::runtime_error("the child has ended");
}

Feed::Feed(const std::filesystem::path& fifo)
    : descriptor_(open(fifo.c_str(), O_WRONLY | O_CLOEXEC)) {
  if (descriptor_ < 0) throw std::runtime_error("cannot open " + fifo.string());
}

void Feed::Write(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
    if (written < 0) throw std::runtime_error("the reader has gone");
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void Feed::Close() {
  if (descriptor_ >= 0) close(std::exchange(descriptor_, -1));
}

CommandTest::CommandTest() {
  signal(SIGPIPE, SIG_IGN);  // a child that ends early must not take the tests with it
  std::string name = (std::filesystem::temp_directory_path() / "keldll-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make " + name);
  folder_ = name;
  environment_ = {"PATH=/usr/bin:/bin", "LC_ALL=C", "HOME=" + name, "KELDLL_HOME=" + name + "/home",
                  "XDG_CONFIG_HOME=" + name + "/config"};
}

CommandTest::~CommandTest() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

std::string CommandTest::Write(std::string_view name, std::string_view text) const {
  std::ofstream file(folder_ / name, std::ios::binary);
  file.write(text.data(), static_cast<std::streamsize>(text.size()));
  if (!file.flush()) throw std::runtime_error("cannot write " + Path(name));
  return Path(name);
}

std::string CommandTest::Read(std::string_view name) const { return Contents(folder_ / name); }

std::string CommandTest::MakeFifo(std::string_view name) const {
  if (mkfifo(Path(name).c_str(), 0600) != 0) throw std::runtime_error("cannot make " + Path(name));
  return Path(name);
}

std::string CommandTest::MakeDatabase(std::string_view name, const std::string& sql) const {
  sqlite3* database = nullptr;
  sqlite3_open(Path(name).c_str(), &database);
  const int result = sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr);
  const std::string reason = sqlite3_errmsg(database);
  sqlite3_close(database);
  if (result != SQLITE_OK) throw std::runtime_error(reason);
  return Path(name);
}

Child CommandTest::Start(const Words& words, const Streams& streams) const {
  const std::string run = std::to_string(++runs_);
  const std::string out = streams.out.empty() ? Path("stdout." + run) : streams.out;
  const std::string err = streams.err.empty() ? Path("stderr." + run) : streams.err;
  constexpr int kCreate = O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, out.c_str(), kCreate, 0600);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, err.c_str(), kCreate, 0600);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t defaults;
  sigemptyset(&defaults);
  sigaddset(&defaults, SIGPIPE);
  posix_spawnattr_setsigdefault(&attributes, &defaults);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  Words all = {KELDLL_COMMAND};
  all.insert(all.end(), words.begin(), words.end());
  pid_t pid = 0;
  const int failure = posix_spawn(&pid, KELDLL_COMMAND, &actions, &attributes, Pointers(all).data(),
                                  Pointers(environment_).data());
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) throw std::runtime_error("cannot start " KELDLL_COMMAND);
  return {pid, out, err};
}

RunResult CommandTest::Keldll(const Words& words, const Streams& streams) const {
  return Start(words, streams).Wait();
}

RunResult CommandTest::Report(const Words& words) const {
  Words all = {"report", "--stamp", "01/04/2026 10:00:00"};
  all.insert(all.end(), words.begin(), words.end());
  return Keldll(all);
}

void CommandTest::ExpectFailure(const Words& words, const std::vector<std::string>& parts) const {
  const RunResult result = Keldll(words);
  EXPECT_EQ(result.status, 1) << testing::PrintToString(words);
  EXPECT_EQ(result.out, "") << testing::PrintToString(words);
  EXPECT_TRUE(result.err.starts_with("keldll: ")) << result.err;
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
  EXPECT_TRUE(result.err.ends_with("\n")) << result.err;
  for (const std::string& part : parts) {
    EXPECT_NE(result.err.find(part), std::string::npos) << part << " in " << result.err;
  }
}

void CommandTest::ExpectWrongUsage(const Words& words, const std::string& part) const {
  const RunResult result = Keldll(words);
  EXPECT_EQ(result.status, 2) << testing::PrintToString(words);
  EXPECT_EQ(result.out, "") << testing::PrintToString(words);
  const std::size_t line_end = result.err.find('\n');
  const std::string line = result.err.substr(0, line_end);
  EXPECT_TRUE(line.starts_with("keldll: ")) << result.err;
  EXPECT_NE(line.find(part), std::string::npos) << part << " in " << line;
  EXPECT_TRUE(result.err.substr(line_end + 1).starts_with("usage: keldll")) << result.err;
}

void CommandTest::SetEnvironment(const std::string& name, const std::string& value) {
  std::erase_if(environment_,
                [&](const std::string& entry) { return entry.starts_with(name + '='); });
  environment_.push_back(name + '=' + value);
}

std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

}  // namespace kel
