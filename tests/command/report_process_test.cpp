#include <poll.h>
#include <pty.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <fstream>

#include "command/command_fixture.h"

namespace kel::testing {
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
  Child StartOnFifo(const std::string& name, const std::string& out, const std::string& err = "") {
    EXPECT_EQ(mkfifo(Path(name).c_str(), 0600), 0);
    return Start({"report", Path(name), "--widths", "8,8", "-o", Path(out)}, "", err);
  }
};

TEST_F(ReportProcessTest, KilledCommandLeavesTheEarlierOutputAndItsFolder) {
  Write("a.txt", "earlier");
  const Child child = StartOnFifo("a.csv", "a.txt");
  std::ofstream feed(Path("a.csv"));
  feed << "Name,No\n" << Rows("a", kManyRows) << std::flush;
  kill(child.pid, SIGKILL);
  EXPECT_EQ(Wait(child).status, 128 + SIGKILL);
  EXPECT_EQ(Read("a.txt"), "earlier");
  EXPECT_EQ(Report({Write("b.csv", "A\n1\n"), "-o", Path("a.txt")}), "");
  EXPECT_TRUE(Contains(Read("a.txt"), "\r\n1\r\n"));
  EXPECT_FALSE(std::filesystem::exists(Path("home/DLLTemp2")));
}

TEST_F(ReportProcessTest, TwoCommandsAtOnceDoNotMixTheirWork) {
  const std::vector<Child> children = {StartOnFifo("a.csv", "a.txt"),
                                       StartOnFifo("b.csv", "b.txt")};
  {
    std::ofstream a(Path("a.csv"));
    std::ofstream b(Path("b.csv"));
    a << "Name,No\n" << Rows("a", kManyRows) << std::flush;
    b << "Name,No\n" << Rows("b", kManyRows) << std::flush;
    a << Rows("a", kManyRows);
  }
  for (const Child& child : children) EXPECT_EQ(Wait(child).status, 0);
  const std::string b = Read("b.txt");
  EXPECT_FALSE(Contains(Read("a.txt"), "b"));
  // A "b" stands in every row and, as the caption, on every page.
  EXPECT_EQ(std::count(b.begin(), b.end(), 'b') - std::count(b.begin(), b.end(), '\f'), kManyRows);
}

// The most memory that a running process has had.
long PeakKilobytes(pid_t pid) {
  const std::string status = ReadFile("/proc/" + std::to_string(pid) + "/status");
  return std::stol(status.substr(status.find("VmHWM:") + 6));
}

// What a terminal shows within 20 ms.
std::string Shown(int terminal) {
  pollfd look{terminal, POLLIN, 0};
  std::array<char, 4096> block{};
  if (poll(&look, 1, 20) < 1) return "";
  return {block.data(), static_cast<std::size_t>(read(terminal, block.data(), block.size()))};
}

TEST_F(ReportProcessTest, LongWorkTakesNoMoreMemoryAndShowsItsProgressOnATerminal) {
  int terminal = -1;
  int other_end = -1;  // kept open, it keeps the text readable after the child has ended
  std::array<char, 64> name{};
  ASSERT_EQ(openpty(&terminal, &other_end, name.data(), nullptr, nullptr), 0);
  EXPECT_EQ(Wait(Start({"report", Write("b.csv", Rows("b", 600))}, "", name.data())).status, 0);
  EXPECT_EQ(Shown(terminal), "");  // of short work

  const Child child = StartOnFifo("a.csv", "a.txt", name.data());
  std::ofstream feed(Path("a.csv"));
  feed << "Name,No\n" << Rows("a", kManyRows) << std::flush;
  const long early = PeakKilobytes(child.pid);
  std::string shown;
  constexpr int kPatience = 1'000;
  for (int i = 0; i < kPatience && (i < 10 || !Contains(shown, " pages/s")); ++i) {
    feed << Rows("a", kManyRows) << std::flush;
    shown += Shown(terminal);
  }
  const long late = PeakKilobytes(child.pid);
  feed.close();
  EXPECT_EQ(Wait(child).status, 0);
  for (std::string more = Shown(terminal); !more.empty(); more = Shown(terminal)) shown += more;
  EXPECT_TRUE(Contains(shown, " rows/s, ")) << shown;
  EXPECT_TRUE(shown.ends_with(" \r")) << shown;
  EXPECT_LT(late, early + early / 4) << early;
}

}  // namespace
}  // namespace kel::testing
