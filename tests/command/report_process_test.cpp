#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>

#include "command/command_fixture.h"

namespace kel {
namespace {

constexpr int kManyRows = 100'000;

std::string Rows(const std::string& name, int count) {
  std::string rows;
  for (int i = 0; i < count; ++i) rows += name + ',' + std::to_string(i) + '\n';
  return rows;
}

// A command that reads a FIFO stands in the middle of its work for as long as the test likes: what
// has been written beyond the pipe's own 64 KB has been taken.
class ReportProcessTest : public CommandTest {
 protected:
  Child StartOn(const std::string& fifo, const std::string& output) const {
    return Start({"report", fifo, "--widths", "8,8", "--stamp", "now", "-o", output});
  }
  std::size_t EntriesIn(const std::string& folder) const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(Path(folder)),
                                                  std::filesystem::directory_iterator()));
  }
};

// Whether this system has files without a name, which leave nothing behind.
bool HasUnnamedFiles(const std::string& folder) {
  const int descriptor = open(folder.c_str(), O_TMPFILE | O_RDWR, 0600);
  if (descriptor < 0) return false;
  close(descriptor);
  return true;
}

TEST_F(ReportProcessTest, KilledCommandLeavesTheEarlierOutput) {
  std::filesystem::create_directory(Path("out"));
  Write("out/a.txt", "earlier");
  Child child = StartOn(MakeFifo("a.csv"), Path("out/a.txt"));
  Feed feed(Path("a.csv"));
  feed.Write("Name,No\n" + Rows("a", kManyRows));
  child.Kill();
  EXPECT_EQ(child.Wait().status, 128 + SIGKILL);
  EXPECT_EQ(Read("out/a.txt"), "earlier");
  EXPECT_EQ(EntriesIn("out"), HasUnnamedFiles(Path("out")) ? 1U : 2U);
  // The folder of the killed process is free again.
  EXPECT_EQ(Keldll({"report", Write("b.csv", "A\n1\n"), "-o", Path("out/a.txt")}).status, 0);
  EXPECT_NE(Read("out/a.txt"), "earlier");
  EXPECT_FALSE(std::filesystem::exists(Path("home/DLLTemp2")));
}

TEST_F(ReportProcessTest, TwoCommandsAtOnceDoNotMixTheirWork) {
  Child first = StartOn(MakeFifo("a.csv"), Path("a.txt"));
  Child second = StartOn(MakeFifo("b.csv"), Path("b.txt"));
  {
    Feed a(Path("a.csv"));
    Feed b(Path("b.csv"));
    a.Write("Name,No\n" + Rows("a", kManyRows));
    b.Write("Name,No\n" + Rows("b", kManyRows));
    a.Write(Rows("a", kManyRows));
  }
  EXPECT_EQ(first.Wait().status, 0);
  EXPECT_EQ(second.Wait().status, 0);
  const auto count = [this](std::string_view file, char letter) {
    const std::string text = Read(file);
    return std::count(text.begin(), text.end(), letter);
  };
  // A "b" stands in every row of the second file and, as its caption, on every page.
  EXPECT_EQ(count("a.txt", 'b'), 0);
  EXPECT_EQ(count("b.txt", 'b'), kManyRows + count("b.txt", '\x0c'));
}

TEST_F(ReportProcessTest, MemoryStaysFlatHoweverManyRowsThereAre) {
  Child child = StartOn(MakeFifo("a.csv"), Path("a.txt"));
  Feed feed(Path("a.csv"));
  feed.Write("Name,No\n" + Rows("a", kManyRows));
  const long early = child.PeakKilobytes();
  for (int i = 0; i < 10; ++i) feed.Write(Rows("a", kManyRows));
  const long late = child.PeakKilobytes();
  feed.Close();
  EXPECT_EQ(child.Wait().status, 0);
  EXPECT_LT(late - early, 8 * 1024);
#if !defined(__SANITIZE_ADDRESS__)
  EXPECT_LT(late, 64 * 1024);
#endif
}

TEST_F(ReportProcessTest, ClosedPipeEndsTheCommandQuietly) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
  const std::string out = "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(ends[1]);
  Child child = Start({"report", MakeFifo("a.csv")}, {.out = out, .err = ""});
  Feed feed(Path("a.csv"));
  feed.Write("A\n");
  close(ends[0]);
  close(ends[1]);
  feed.Close();
  const RunResult result = child.Wait();
  EXPECT_EQ(result.status, 128 + SIGPIPE);
  EXPECT_EQ(result.err, "");
}

TEST_F(ReportProcessTest, MissingStandardOutputIsAFailureAndNoOtherFileTakesItsPlace) {
  const std::string script = std::string(KELDLL_COMMAND) + " report " + Write("a.csv", "A\n1\n") +
                             " -o " + Path("a.rpt") + " -o - >&- 2>" + Path("err");
  const int status = system(("KELDLL_HOME=" + Path("home") + ' ' + script).c_str());
  EXPECT_EQ(WEXITSTATUS(status), 1);
  EXPECT_EQ(Read("err"), "keldll: cannot write to standard output: Bad file descriptor\n");
  EXPECT_FALSE(std::filesystem::exists(Path("a.rpt")));
}

// A terminal whose text the test reads.
class Terminal {
 public:
  Terminal() : master_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    if (grantpt(master_) != 0 || unlockpt(master_) != 0) throw std::runtime_error("no terminal");
  }
  ~Terminal() { close(master_); }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  std::string Name() const { return ptsname(master_); }

  // Everything shown so far; looks again for as long as `wait` when there is nothing new.
  const std::string& Shown(std::chrono::milliseconds wait) {
    pollfd look{master_, POLLIN, 0};
    std::array<char, 4096> block{};
    if (poll(&look, 1, static_cast<int>(wait.count())) > 0) {
      const ssize_t size = read(master_, block.data(), block.size());
      if (size > 0) shown_.append(block.data(), static_cast<std::size_t>(size));
    }
    return shown_;
  }

 private:
  int master_;
  std::string shown_;
};

TEST_F(ReportProcessTest, TerminalShowsTheProgressOfLongWorkAndIsLeftClean) {
  using std::chrono::milliseconds;
  Terminal terminal;
  // Keeps the terminal's text readable after the child has closed its end.
  const int kept_open = open(terminal.Name().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  Child child = Start({"report", MakeFifo("a.csv"), "--widths", "8,8", "-o", Path("a.txt")},
                      {.out = "", .err = terminal.Name()});
  Feed feed(Path("a.csv"));
  feed.Write("Name,No\n");
  constexpr int kPatience = 2'000;
  for (int i = 0; i < kPatience; ++i) {
    feed.Write(Rows("a", 20'000));
    if (terminal.Shown(milliseconds(20)).find(" pages/s") != std::string::npos) break;
  }
  feed.Close();
  EXPECT_EQ(child.Wait().status, 0);
  std::string shown = terminal.Shown(milliseconds(0));
  while (shown.size() != terminal.Shown(milliseconds(50)).size())
    shown = terminal.Shown(milliseconds(0));
  close(kept_open);
  EXPECT_NE(shown.find(" rows/s, "), std::string::npos) << shown;
  EXPECT_TRUE(shown.ends_with(" \r")) << shown;
}

TEST_F(ReportProcessTest, ShortWorkShowsNothing) {
  Terminal terminal;
  const RunResult result = Keldll({"report", Write("a.csv", "A\n1\n"), "-o", Path("a.txt")},
                                  {.out = "", .err = terminal.Name()});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(terminal.Shown(std::chrono::milliseconds(0)), "");
}

}  // namespace
}  // namespace kel
