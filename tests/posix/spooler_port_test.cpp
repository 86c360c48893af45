// Text-mode jobs through the real helper program.
#include "platform/posix/spooler_port.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "common/error.h"
#include "common/temp_folder.h"
#include "platform/posix/port_target.h"
#include "support/errors.h"
#include "support/file_size_limit.h"
#include "support/test_folder.h"

namespace kel {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ErrorOf;
using testing::ReadFile;
using testing::WriteFile;

class SpoolerPortTest : public ::testing::Test {
 protected:
  SpoolerPortTest() {
    ::setenv("KELDLL_SPOOL", KELDLL_SPOOL_PROGRAM, 1);
    WriteFile(folder_ / "set-up", std::string("\033C\0\x0c\033\x82", 6));
    WriteFile(folder_ / "pages", pages_);
    WriteFile(folder_ / "reset", "\033@");
  }

  PortJob Job(const std::string& port) const {
    return {port,
            "Day Book",
            "",
            {{folder_ / "set-up"}, {folder_ / "pages", true}, {folder_ / "reset"}}};
  }
  std::string SentBytes(const std::string& pages) const {
    return ReadFile(folder_ / "set-up") + pages + "\033@";
  }

  testing::TestFolder folder_;
  std::string pages_ = "Caf\xc3\xa9\r\n\x0c\r\n";
  SpoolerPort waiting_{SpoolerPort::Waiting::kUntilSent};
  SpoolerPort detached_;
};

TEST_F(SpoolerPortTest, AFileGetsThePartsByteForByteAndEachJobReplacesIt) {
  const fs::path port = folder_ / "port.prn";
  pages_.assign(3'000'000, 'x');
  WriteFile(folder_ / "pages", pages_);
  waiting_.Send(Job(port.string()));
  EXPECT_EQ(ReadFile(port), SentBytes(pages_));
  WriteFile(folder_ / "pages", "short");
  waiting_.Send(Job(port.string()));
  EXPECT_EQ(ReadFile(port), SentBytes("short"));
}

TEST_F(SpoolerPortTest, OnlyTextIsPutIntoTheCodePage) {
  // Longer than the blocks it is read in, in one line, with characters over their edges.
  std::string letters;
  std::string bytes;
  for (int i = 0; i < 200'000; ++i) {
    letters += i % 3 == 0 ? "\xc3\xa9" : "a";
    bytes += i % 3 == 0 ? "\x82" : "a";
  }
  WriteFile(folder_ / "pages", pages_ + letters);
  PortJob job = Job((folder_ / "port").string());
  job.code_page = "CP850";
  waiting_.Send(job);
  EXPECT_EQ(ReadFile(folder_ / "port"), SentBytes("Caf\x82\r\n\x0c\r\n" + bytes));
}

std::string ReadToEnd(int fifo) {
  std::string got;
  std::array<char, 70'000> block{};
  for (;;) {
    const ssize_t count = ::read(fifo, block.data(), block.size());
    if (count <= 0) return got;
    got.append(block.data(), static_cast<std::size_t>(count));
  }
}

TEST_F(SpoolerPortTest, ASlowPrinterIsWaitedForInTheBackgroundAndJobsDoNotMix) {
  const fs::path fifo = folder_ / "fifo";
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  std::array<std::string, 2> jobs;
  for (char letter = 'a'; letter < 'c'; ++letter) {
    const std::string pages(500'000, letter);  // more than a pipe holds
    WriteFile(folder_ / "new", pages);
    fs::rename(folder_ / "new", folder_ / "pages");
    detached_.Send(Job(fifo.string()));  // nobody reads yet
    jobs.at(static_cast<std::size_t>(letter - 'a')) = SentBytes(pages);
  }
  fs::remove(folder_ / "pages");
  // Opening waits for the first writer; one that comes after the last has gone is read next.
  std::string got;
  while (got.size() < jobs[0].size() + jobs[1].size()) {
    const int reader = ::open(fifo.c_str(), O_RDONLY | O_CLOEXEC);
    got += ReadToEnd(reader);
    ::close(reader);
  }
  EXPECT_TRUE(got == jobs[0] + jobs[1] || got == jobs[1] + jobs[0]) << got.size();
}

TEST_F(SpoolerPortTest, WhatFailsIsTold) {
  const std::string touched = (folder_ / "touched").string();
  WriteFile(folder_ / "file", "");
  const std::vector<std::pair<std::string, int>> cases = {
      {"/dev/full", error_number::kDiskFull},
      {(folder_ / "absent" / "port").string(), error_number::kPathNotFound},
      {(folder_ / "file" / "port").string(), error_number::kPathNotFound},
      {folder_.Path().string(), error_number::kPermissionDenied},
      {"USB001", error_number::kPrinterError},
      {"LPT9:", error_number::kPrinterError},
      {"/dev/keldll-none", error_number::kPrinterError},
      {"queue:", error_number::kPrinterError},
      {"/tmp/a b", error_number::kPrinterError},
      {"/tmp/a\nb", error_number::kPrinterError},
      {"\"; touch " + touched + " #", error_number::kPrinterError},
      {"$(touch${IFS}" + touched + ")", error_number::kPathNotFound},
      {"/tmp/%PATH%", error_number::kPrinterError},
      {"/tmp/a&touch", error_number::kPrinterError},
  };
  for (const auto& [port, number] : cases) {
    const PortJob job = Job(port);
    EXPECT_EQ(ErrorOf([&] { waiting_.Send(job); }).Number(), number) << port;
    EXPECT_FALSE(fs::exists(touched));
  }
  fs::current_path(folder_.Path());
  EXPECT_TRUE(Contains(ErrorOf([&] { waiting_.Send(Job("pages")); }), "no device path"))
      << "a file of that name is not replaced";
  fs::current_path("/");
  PortJob job = Job((folder_ / "port").string());
  job.code_page = "EBCDIC";
  EXPECT_TRUE(Contains(ErrorOf([&] { detached_.Send(job); }), "EBCDIC"));
  job = Job((folder_ / "port").string());
  job.parts[1].file = folder_ / "none";
  EXPECT_EQ(ErrorOf([&] { detached_.Send(job); }).Number(), error_number::kFileNotFound);
  ::setenv("KELDLL_SPOOL", "/nowhere/keldll-spool", 1);
  EXPECT_TRUE(Contains(ErrorOf([&] { detached_.Send(job); }), "not installed"));
  EXPECT_FALSE(fs::exists(folder_ / "port"));
}

TEST_F(SpoolerPortTest, AFullDiskLeavesTheFileFromBefore) {
  WriteFile(folder_ / "port", "before");
  WriteFile(folder_ / "pages", std::string(100'000, 'x'));
  const testing::FileSizeLimit limit(50'000);
  const PortJob job = Job((folder_ / "port").string());
  EXPECT_EQ(ErrorOf([&] { waiting_.Send(job); }).Number(), error_number::kDiskFull);
  EXPECT_EQ(ReadFile(folder_ / "port"), "before");
}

TEST_F(SpoolerPortTest, WhatFailsInTheBackgroundIsInTheErrorLog) {
  std::signal(SIGCHLD, SIG_IGN);  // as some hosts do
  const fs::path log = TempFolder() / "Error.log";
  fs::remove(log);
  detached_.Send(Job("/dev/full"));
  const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  std::string text;
  while (text.find("\r\n") == std::string::npos && std::chrono::steady_clock::now() < give_up) {
    std::this_thread::yield();
    if (fs::exists(log)) text = ReadFile(log);
  }
  std::signal(SIGCHLD, SIG_DFL);
  EXPECT_NE(text.find(",[DLL.PrintReport],61 : cannot write /dev/full"), std::string::npos) << text;
}

TEST(PortTarget, PublishedPortsAreDevices) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"LPT1:", "/dev/lp0"}, {"lpt3", "/dev/lp2"}, {"PRN", "/dev/lp0"}, {"COM9:", "/dev/ttyS8"}};
  for (const auto& [port, device] : cases) {
    if (fs::exists(device)) {
      EXPECT_EQ(TargetOf(port).file, device);
    } else {
      EXPECT_TRUE(Contains(ErrorOf([&, name = port] { TargetOf(name); }), device)) << port;
    }
  }
  EXPECT_EQ(TargetOf(" ./LPT1").file.filename(), "LPT1");
  EXPECT_EQ(TargetOf("queue:office").queue, "office");
  EXPECT_TRUE(Contains(ErrorOf([] { TargetOf("LPT0:"); }), "no device path"));
}

}  // namespace
}  // namespace kel
