#include "toolkit/error_log.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "common/error.h"
#include "common/host.h"
#include "support/test_folder.h"
#include "toolkit/file_size_limit.h"
#include "toolkit/fixed_clock.h"

namespace kel {
namespace {

using testing::FileSizeLimit;
using testing::FixedClock;
using testing::ReadFile;
using testing::TestFolder;
using testing::WriteFile;

constexpr const char* kLine = "15/11/2026 02:05:09 PM,[DLL.Save],5 : Invalid procedure call\r\n";

class ErrorLogTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ::setenv("LC_ALL", "C", 1);
    CurrentHost().clock = std::make_shared<FixedClock>(15, 11, 2026, 14, 5, 9);
  }
  void TearDown() override {
    ::unsetenv("LC_ALL");
    CurrentHost().clock = std::make_shared<SystemClock>();
  }

  void Append() const {
    AppendToErrorLog(folder_.Path(), "[DLL.Save]", "5 : Invalid procedure call");
  }
  int ErrorOfAppend() const {
    try {
      Append();
    } catch (const Error& failure) {
      EXPECT_NE(failure.Description().find("Error.log"), std::string::npos);
      return failure.Number();
    }
    return 0;
  }

  TestFolder folder_;
  const std::filesystem::path log_ = folder_ / "Error.log";
};

TEST_F(ErrorLogTest, EveryEntryIsALineBehindTheOnesBefore) {
  Append();
  Append();
  EXPECT_EQ(ReadFile(log_), std::string(kLine) + kLine);
}

TEST_F(ErrorLogTest, TheHourCountsToTwelveInEachHalfOfTheDay) {
  struct Case {
    int hour;
    const char* time;
  };
  for (const Case& one : {Case{0, "12:05:09 AM"}, Case{1, "01:05:09 AM"}, Case{11, "11:05:09 AM"},
                          Case{12, "12:05:09 PM"}, Case{23, "11:05:09 PM"}}) {
    CurrentHost().clock = std::make_shared<FixedClock>(1, 2, 2003, one.hour, 5, 9);
    std::filesystem::remove(log_);
    AppendToErrorLog(folder_.Path(), "[x]", "y");
    EXPECT_EQ(ReadFile(log_), std::string("01/02/2003 ") + one.time + ",[x],y\r\n");
  }
}

TEST_F(ErrorLogTest, ALocaleThatIsNotInstalledFallsBackToAmAndPm) {
  ::setenv("LC_ALL", "xx_NOWHERE.UTF-8", 1);
  Append();
  EXPECT_EQ(ReadFile(log_), kLine);
}

TEST_F(ErrorLogTest, ADescriptionOfSeveralLinesStaysOneEntry) {
  AppendToErrorLog(folder_.Path(), "[x]", "no such table:\r\nLedger, near\n\"Select\"");
  EXPECT_EQ(ReadFile(log_),
            "15/11/2026 02:05:09 PM,[x],no such table: Ledger, near \"Select\"\r\n");
}

TEST_F(ErrorLogTest, AFullDiskKeepsTheLinesBeforeWhole) {
  Append();
  {
    const FileSizeLimit full(std::string(kLine).size() + 10);
    EXPECT_EQ(ErrorOfAppend(), error_number::kDeviceIoError);
  }
  EXPECT_EQ(ReadFile(log_), kLine);
  Append();
  EXPECT_EQ(ReadFile(log_), std::string(kLine) + kLine);
}

TEST_F(ErrorLogTest, APlantedLinkLeadsNowhere) {
  const auto treasure = folder_ / "treasure";
  WriteFile(treasure, "keep");
  std::filesystem::create_symlink(treasure, log_);
  EXPECT_EQ(ErrorOfAppend(), error_number::kPermissionDenied);
  EXPECT_EQ(ReadFile(treasure), "keep");
}

TEST_F(ErrorLogTest, WhatIsNoPlainFileIsRefusedWithoutWaitingForIt) {
  std::filesystem::create_directory(log_);
  EXPECT_EQ(ErrorOfAppend(), error_number::kPermissionDenied);
  std::filesystem::remove(log_);
  ASSERT_EQ(::mkfifo(log_.c_str(), 0600), 0);
  EXPECT_EQ(ErrorOfAppend(), error_number::kPermissionDenied);
}

TEST_F(ErrorLogTest, AMissingFolderIsAnError) {
  std::filesystem::remove_all(folder_.Path());
  EXPECT_EQ(ErrorOfAppend(), error_number::kFileNotFound);
}

}  // namespace
}  // namespace kel
