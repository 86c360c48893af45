#include "common/temp_folder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>

#include "common/child_process.h"
#include "common/error.h"
#include "common/scratch_folder.h"

namespace kel {
namespace {

namespace fs = std::filesystem;

// Each test has a home of its own and works on fresh threads, so that no folder is held before.
class TempFolderTest : public testing::Test {
 protected:
  void SetUp() override { ::setenv("KELDLL_HOME", home_.Path().c_str(), 1); }
  void TearDown() override {
    for (const char* variable : {"KELDLL_HOME", "XDG_CACHE_HOME"}) ::unsetenv(variable);
    if (!user_home_.empty()) ::setenv("HOME", user_home_.c_str(), 1);
  }

  static void OnFreshThread(const std::function<void()>& action) { std::thread(action).join(); }

  static fs::path FreshThreadsFolder() {
    fs::path folder;
    OnFreshThread([&] { folder = TempFolder(); });
    return folder;
  }
  static int FreshThreadsError() {
    int number = 0;
    OnFreshThread([&] { number = ErrorNumberOf<Error>([] { TempFolder(); }); });
    return number;
  }

  ScratchFolder home_;
  std::string user_home_ = ::getenv("HOME") == nullptr ? "" : ::getenv("HOME");
};

TEST_F(TempFolderTest, IsMadeWithItsParentsForTheUserAlone) {
  ::setenv("KELDLL_HOME", (home_ / "a/b").c_str(), 1);
  EXPECT_EQ(FreshThreadsFolder(), home_ / "a/b/DLLTemp");
  for (const char* made : {"a", "a/b", "a/b/DLLTemp"}) {
    EXPECT_EQ(fs::status(home_ / made).permissions(), fs::perms(0700)) << made;
  }
}

TEST_F(TempFolderTest, FollowsTheVariablesInTheirOrder) {
  ::setenv("XDG_CACHE_HOME", (home_ / "cache").c_str(), 1);
  ::setenv("HOME", (home_ / "user").c_str(), 1);
  EXPECT_EQ(FreshThreadsFolder(), home_ / "DLLTemp");
  ::unsetenv("KELDLL_HOME");
  EXPECT_EQ(FreshThreadsFolder(), home_ / "cache/keldll/DLLTemp");
  ::setenv("XDG_CACHE_HOME", "relative", 1);
  EXPECT_EQ(FreshThreadsFolder(), home_ / "user/.cache/keldll/DLLTemp");
  ::unsetenv("XDG_CACHE_HOME");
  ::unsetenv("HOME");
  EXPECT_EQ(FreshThreadsError(), 76);
}

TEST_F(TempFolderTest, ARelativeHomeIsMadeAbsolute) {
  const fs::path before = fs::current_path();
  fs::current_path(home_.Path());
  ::setenv("KELDLL_HOME", "here", 1);
  const fs::path folder = FreshThreadsFolder();
  fs::current_path(before);
  EXPECT_TRUE(folder.is_absolute());
  EXPECT_TRUE(fs::equivalent(folder, home_ / "here/DLLTemp"));
}

TEST_F(TempFolderTest, EachThreadHoldsAFolderAndAnEndedThreadsIsTakenAgain) {
  OnFreshThread([&] {
    EXPECT_EQ(TempFolder(), home_ / "DLLTemp");
    EXPECT_EQ(FreshThreadsFolder(), home_ / "DLLTemp2");
    EXPECT_EQ(FreshThreadsFolder(), home_ / "DLLTemp2");
    EXPECT_EQ(TempFolder(), home_ / "DLLTemp");
  });
  EXPECT_EQ(FreshThreadsFolder(), home_ / "DLLTemp");
}

TEST_F(TempFolderTest, ASecondProcessTakesTheNextFolderUntilTheFirstIsGone) {
  const Signal held;
  const Signal seen;
  const pid_t child = StartChild([&] {
    const bool first = TempFolder() == home_ / "DLLTemp";
    held.Give();
    seen.Await();
    return first;
  });
  held.Await();
  EXPECT_EQ(FreshThreadsFolder(), home_ / "DLLTemp2");
  seen.Give();
  EXPECT_TRUE(Succeeded(child));
  EXPECT_EQ(FreshThreadsFolder(), home_ / "DLLTemp");
}

TEST_F(TempFolderTest, AForkedProcessDoesNotGoOnInItsParentsFolder) {
  OnFreshThread([&] {
    EXPECT_EQ(TempFolder(), home_ / "DLLTemp");
    EXPECT_TRUE(Succeeded(StartChild([&] { return TempFolder() == home_ / "DLLTemp2"; })));
    EXPECT_EQ(FreshThreadsFolder(), home_ / "DLLTemp2");
  });
}

TEST_F(TempFolderTest, APlantedLinkOrFileIsRefused) {
  fs::create_directory(home_ / "elsewhere");
  fs::create_symlink("elsewhere", home_ / "DLLTemp");
  EXPECT_EQ(FreshThreadsError(), 70);
  EXPECT_TRUE(fs::is_empty(home_ / "elsewhere"));
  fs::remove(home_ / "DLLTemp");
  PutFile(home_ / "DLLTemp", "");
  EXPECT_EQ(FreshThreadsError(), 76);
  ::setenv("KELDLL_HOME", (home_ / "DLLTemp/below").c_str(), 1);
  EXPECT_EQ(FreshThreadsError(), 76);
}

TEST_F(TempFolderTest, APlantedLockFileIsRefused) {
  PutFile(home_ / "precious", "mine");
  fs::create_directory(home_ / "DLLTemp");
  fs::create_symlink("../precious", home_ / "DLLTemp/.lock");
  EXPECT_EQ(FreshThreadsError(), 70);
}

TEST_F(TempFolderTest, AFolderThatOthersMayEnterIsClosedToThem) {
  fs::create_directory(home_ / "DLLTemp");
  fs::permissions(home_ / "DLLTemp", fs::perms(0777));
  EXPECT_EQ(FreshThreadsFolder(), home_ / "DLLTemp");
  EXPECT_EQ(fs::status(home_ / "DLLTemp").permissions(), fs::perms(0700));
}

TEST_F(TempFolderTest, PreparingDeletesTheWorkFilesOfEarlierRunsOnly) {
  PutFile(home_ / "precious", "mine");
  fs::create_directories(home_ / "DLLTemp/folder.tmp");
  for (const char* name : {"a.tmp", "B.TXT", "c.Doc", "d.xls", ".tmp", "e.xlsx", "Error.log",
                           "_kelFile.rpt", "tmp", "folder.tmp/inner.tmp"}) {
    PutFile(home_ / ("DLLTemp/" + std::string(name)), "x");
  }
  fs::create_symlink("../precious", home_ / "DLLTemp/link.txt");
  OnFreshThread([] { PrepareTempFolder(); });

  for (const char* gone : {"a.tmp", "B.TXT", "c.Doc", "d.xls", ".tmp", "link.txt"}) {
    EXPECT_FALSE(fs::exists(fs::symlink_status(home_.Path() / "DLLTemp" / gone))) << gone;
  }
  for (const char* kept : {"e.xlsx", "Error.log", "_kelFile.rpt", "tmp", "folder.tmp/inner.tmp"}) {
    EXPECT_TRUE(fs::exists(home_.Path() / "DLLTemp" / kept)) << kept;
  }
  EXPECT_EQ(FileText(home_ / "precious"), "mine");
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
