#include "common/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <future>

#include "support/child_process.h"
#include "support/errors.h"
#include "support/test_folder.h"

namespace kel {
namespace {

namespace fs = std::filesystem;
using testing::StartChild;
using testing::Succeeded;
using testing::WriteFile;

// Each test has a home of its own and works on fresh threads, so that no folder is held before.
class TempFolderTest : public ::testing::Test {
 protected:
  void SetUp() override { ::setenv("KELDLL_HOME", home_.Path().c_str(), 1); }

  // Errors pass through to the caller.
  static void OnFreshThread(const std::function<void()>& action) {
    std::async(std::launch::async, action).get();
  }
  static fs::path FreshThreadsFolder() {
    fs::path folder;
    OnFreshThread([&] { folder = TempFolder(); });
    return folder;
  }
  static int FreshThreadsError() { return testing::ErrorOf(FreshThreadsFolder).Number(); }

  testing::TestFolder home_;
};

TEST_F(TempFolderTest, IsMadeWithItsParentsForTheUserAlone) {
  ::setenv("KELDLL_HOME", (home_ / "a/b").c_str(), 1);
  for (const char* meanwhile : {"made", "opened to others"}) {
    EXPECT_EQ(FreshThreadsFolder(), home_ / "a/b/DLLTemp");
    for (const char* made : {"a", "a/b", "a/b/DLLTemp"}) {
      EXPECT_EQ(fs::status(home_ / made).permissions(), fs::perms(0700)) << made << meanwhile;
    }
    fs::permissions(home_ / "a/b/DLLTemp", fs::perms(0777));
  }
}

TEST_F(TempFolderTest, FollowsTheVariablesInTheirOrderAndIsAbsolute) {
  ::setenv("XDG_CACHE_HOME", (home_ / "cache").c_str(), 1);
  ::setenv("HOME", (home_ / "user").c_str(), 1);
  ::setenv("KELDLL_HOME", "here", 1);
  const fs::path before = fs::current_path();
  fs::current_path(home_.Path());
  EXPECT_EQ(FreshThreadsFolder(), fs::current_path() / "here/DLLTemp");
  fs::current_path(before);
  ::unsetenv("KELDLL_HOME");
  EXPECT_EQ(FreshThreadsFolder(), home_ / "cache/keldll/DLLTemp");
  ::setenv("XDG_CACHE_HOME", "relative", 1);
  EXPECT_EQ(FreshThreadsFolder(), home_ / "user/.cache/keldll/DLLTemp");
  ::unsetenv("XDG_CACHE_HOME");
  ::unsetenv("HOME");
  EXPECT_EQ(FreshThreadsError(), 76);
}

TEST_F(TempFolderTest, EachThreadAndEachForkedProcessHoldsItsOwnUntilItEnds) {
  OnFreshThread([&] {
    EXPECT_EQ(TempFolder(), home_ / "DLLTemp");
    EXPECT_EQ(FreshThreadsFolder(), home_ / "DLLTemp2");
    EXPECT_TRUE(Succeeded(StartChild([&] { return TempFolder() == home_ / "DLLTemp2"; })));
    EXPECT_EQ(FreshThreadsFolder(), home_ / "DLLTemp2");
    EXPECT_EQ(TempFolder(), home_ / "DLLTemp");
  });
  EXPECT_EQ(FreshThreadsFolder(), home_ / "DLLTemp");
}

TEST_F(TempFolderTest, WhatIsPlantedInItsPlaceOrItsLocksPlaceIsRefused) {
  fs::create_directory(home_ / "elsewhere");
  fs::create_symlink("elsewhere", home_ / "DLLTemp");
  EXPECT_EQ(FreshThreadsError(), 70);
  EXPECT_TRUE(fs::is_empty(home_ / "elsewhere"));
  fs::remove(home_ / "DLLTemp");

  fs::create_directory(home_ / "DLLTemp");
  WriteFile(home_ / "precious", "mine");
  fs::create_symlink("../precious", home_ / "DLLTemp/.lock");
  EXPECT_EQ(FreshThreadsError(), 70);
  fs::remove_all(home_ / "DLLTemp");

  WriteFile(home_ / "DLLTemp", "");
  EXPECT_EQ(FreshThreadsError(), 76);
  ::setenv("KELDLL_HOME", (home_ / "DLLTemp/below").c_str(), 1);
  EXPECT_EQ(FreshThreadsError(), 76);
}

TEST_F(TempFolderTest, PreparingDeletesTheWorkFilesOfEarlierRunsOnly) {
  const fs::path folder = home_ / "DLLTemp";
  fs::create_directories(folder / "folder.tmp");
  fs::create_directory(folder / "empty.tmp");
  WriteFile(home_ / "precious", "mine");
  fs::create_symlink("../precious", folder / "link.txt");
  const auto gone = {"a.tmp", "B.TXT", "c.Doc", "d.xls", ".tmp"};
  const auto kept = {"e.xlsx", "Error.log", "_kelFile.rpt", "tmp", "folder.tmp/inner.tmp"};
  for (const auto& names : {gone, kept}) {
    for (const char* name : names) WriteFile(folder / name, "x");
  }
  const auto week = std::chrono::hours(7 * 24);
  fs::create_directories(folder / "handover/old");
  WriteFile(folder / "handover/old/Sales.xls", "x");
  WriteFile(folder / "handover/new.txt", "x");
  const auto touch = [&](const char* name, std::chrono::hours age) {
    fs::last_write_time(folder / name, fs::file_time_type::clock::now() - age);
  };
  touch("handover/old", week + std::chrono::hours(1));
  touch("handover/new.txt", week - std::chrono::hours(1));
  OnFreshThread([] { PrepareTempFolder(); });
  EXPECT_FALSE(fs::exists(folder / "handover/old"));
  EXPECT_TRUE(fs::exists(folder / "handover/new.txt"));
  for (const char* name : gone) EXPECT_FALSE(fs::exists(folder / name)) << name;
  for (const char* name : kept) EXPECT_TRUE(fs::exists(folder / name)) << name;
  EXPECT_TRUE(fs::exists(folder / "empty.tmp"));
  EXPECT_FALSE(fs::is_symlink(folder / "link.txt"));
  EXPECT_EQ(testing::ReadFile(home_ / "precious"), "mine");
}

TEST_F(TempFolderTest, PreparingMakesAFolderAgainThatWasRemovedMeanwhile) {
  OnFreshThread([&] {
    PrepareTempFolder();
    fs::remove_all(home_ / "DLLTemp");
    PrepareTempFolder();
    EXPECT_TRUE(fs::is_directory(TempFolder()));
    EXPECT_EQ(TempFolder(), home_ / "DLLTemp");
    EXPECT_EQ(FreshThreadsFolder(), home_ / "DLLTemp2");
  });
}

}  // namespace
}  // namespace kel
