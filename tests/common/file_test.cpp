#include "common/file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "support/child_process.h"
#include "support/errors.h"
#include "support/test_folder.h"

namespace kel {
namespace {

namespace fs = std::filesystem;
using testing::ErrorOf;
using testing::ReadFile;
using testing::WriteFile;

// Runs in a folder of its own, whose files it knows by their names alone.
class FileTest : public ::testing::Test {
 protected:
  void SetUp() override { fs::current_path(folder_.Path()); }
  void TearDown() override { fs::current_path(before_); }

  static void Replace(const fs::path& path, const std::string& text, Links links = Links::kFollow) {
    OutputFile file(path, links);
    file.Write(text);
    file.Commit();
  }
  static int ReadError(const fs::path& path, Links links = Links::kFollow) {
    return ErrorOf([&] { const InputFile file(path, links); }).Number();
  }
  static int WriteError(const fs::path& path) {
    return ErrorOf([&] { const OutputFile file(path); }).Number();
  }
  /// Whether there is nothing else in the folder, hidden files included.
  bool HoldsOnly(const std::string& name) const {
    fs::directory_iterator entry(folder_.Path());
    return entry->path().filename() == name && ++entry == fs::directory_iterator();
  }

  testing::TestFolder folder_;
  fs::path before_ = fs::current_path();
};

TEST_F(FileTest, WhatCannotBeReadIsRefusedWithItsReason) {
  WriteFile("file", "x");
  fs::create_symlink("file", "link");
  EXPECT_EQ(InputFile("link").Size(), 1u);
  EXPECT_EQ(ReadError("link", Links::kRefuse), 70);
  EXPECT_EQ(ReadError("."), 70);
  EXPECT_EQ(ReadError("file/below"), 76);
  EXPECT_EQ(ReadError("absent"), 53);
  EXPECT_EQ(ErrorOf([] { const InputFile file("absent"); }).Description(),
            "cannot open absent: No such file or directory");
}

TEST_F(FileTest, TheOldFileStandsUntilCommitAndStaysWhenThereIsNoneOrTheProcessIsKilled) {
  WriteFile("report", "old");
  OutputFile("report").Write("abandoned");
  OutputFile file("report");
  file.Write("half");
  EXPECT_EQ(ReadFile("report"), "old");
  file.Write(" and half");
  file.Commit();
  EXPECT_EQ(ReadFile("report"), "half and half");
  EXPECT_TRUE(testing::Succeeded(testing::StartChild([] {
    OutputFile killed("report");
    killed.Write(std::string(1'000'000, 'n'));
    ::_exit(0);
    return false;
  })));
  EXPECT_EQ(ReadFile("report"), "half and half");
  EXPECT_TRUE(HoldsOnly("report"));
}

TEST_F(FileTest, AReplacedFileKeepsItsPermissionsAndAWorkFileIsPrivate) {
  const mode_t before = ::umask(022);
  WriteFile("old", "old");
  fs::permissions("old", fs::perms(0660));
  Replace("old", "new");
  Replace("new", "new");
  Replace("work", "new", Links::kRefuse);
  ::umask(before);
  EXPECT_EQ(fs::status("old").permissions(), fs::perms(0660));
  EXPECT_EQ(fs::status("new").permissions(), fs::perms(0644));
  EXPECT_EQ(fs::status("work").permissions(), fs::perms(0600));
}

TEST_F(FileTest, AFollowedLinksFileIsMadeOrReplacedAndARefusedLinkGivesWay) {
  fs::create_directory("far");
  fs::create_symlink("file", "far/second");
  fs::create_symlink("far/second", "first");
  for (const char* text : {"made", "replaced"}) {
    Replace("first", text);
    EXPECT_TRUE(fs::is_symlink("first") && fs::is_symlink("far/second"));
    EXPECT_EQ(ReadFile("far/file"), text);
  }
  Replace("first", "new", Links::kRefuse);
  EXPECT_FALSE(fs::is_symlink("first"));
  EXPECT_EQ(ReadFile("first"), "new");
  EXPECT_EQ(ReadFile("far/file"), "replaced");
}

TEST_F(FileTest, AFullDeviceIsReportedAndStaysADevice) {
  WriteFile("in", "text");
  fs::create_symlink("/dev/full", "link");
  for (const char* path : {"/dev/full", "link"}) {
    OutputFile file(path);
    EXPECT_EQ(ErrorOf([&] { file.Write("text"); }).Number(), 61);
    InputFile source("in");
    EXPECT_EQ(ErrorOf([&] { file.WriteAll(source); }).Number(), 61);
  }
  EXPECT_TRUE(fs::is_symlink("link") && fs::is_character_file("/dev/full"));
}

TEST_F(FileTest, APipeTakesTheBytesAsTheyAreWrittenAndItsLostReaderIsAnError) {
  ASSERT_EQ(::mkfifo("pipe", 0600), 0);
  const std::string much(300'000, 'x');
  WriteFile("in", much);
  std::string received(much.size() + 6, ' ');
  std::thread reader([&] { std::ifstream("pipe").read(received.data(), 300'006); });
  OutputFile file("pipe");
  file.Write("first ");
  InputFile source("in");
  file.WriteAll(source);
  reader.join();
  EXPECT_EQ(received, "first " + much);
  EXPECT_EQ(ErrorOf([&] { file.Write("text"); }).Number(), 57);
  file.Commit();
  EXPECT_TRUE(fs::is_fifo("pipe"));
}

TEST_F(FileTest, WhatCannotBeWrittenIsRefusedAtOnce) {
  WriteFile("file", "x");
  fs::create_symlink("loop", "loop");
  fs::create_symlink(".", "to_folder");
  for (const char* path : {".", "to_folder", "loop", ""}) EXPECT_EQ(WriteError(path), 70) << path;
  for (const char* path : {"absent/new", "file/new"}) EXPECT_EQ(WriteError(path), 76) << path;
}

TEST_F(FileTest, AFolderThatAppearsAtThePathIsReportedAtCommitAndLeavesNoLitter) {
  {
    OutputFile file("report");
    file.Write("text");
    fs::create_directory("report");
    EXPECT_EQ(ErrorOf([&] { file.Commit(); }).Number(), 70);
  }
  EXPECT_TRUE(HoldsOnly("report"));
}

TEST_F(FileTest, TheRestOfAnotherFileIsAppendedAlsoOfOneOfUnknownSize) {
  const std::string much(1'000'000, 'x');
  WriteFile("in", "0123456789" + much);
  InputFile source("in");
  std::vector<char> head(10);
  ASSERT_EQ(source.Read(head), 10u);
  OutputFile file("out");
  file.WriteAll(source);
  InputFile unknown_size("/proc/version");
  file.WriteAll(unknown_size);
  file.Write(":tail");
  file.Commit();
  EXPECT_EQ(ReadFile("out"), much + ReadFile("/proc/version") + ":tail");
}

}  // namespace
}  // namespace kel
