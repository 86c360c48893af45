#include "common/file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "common/child_process.h"
#include "common/error.h"
#include "common/scratch_folder.h"

namespace kel {
namespace {

namespace fs = std::filesystem;

class FileTest : public testing::Test {
 protected:
  static void Replace(const fs::path& path, const std::string& text, Links links = Links::kFollow) {
    OutputFile file(path, links);
    file.Write(text);
    file.Commit();
  }
  static int ErrorOf(const std::function<void()>& action) { return ErrorNumberOf<Error>(action); }
  static fs::perms Permissions(const fs::path& path) { return fs::status(path).permissions(); }

  std::string AllOf(const fs::path& path) {
    InputFile file(path);
    std::string text;
    std::vector<char> block(1000);
    while (const std::size_t count = file.Read(block)) text.append(block.data(), count);
    return text;
  }

  ScratchFolder folder_;
};

TEST_F(FileTest, ReadsInOrderAndAtAnyPlace) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += std::to_string(i) + "\n";
  PutFile(folder_ / "in", text);
  EXPECT_EQ(AllOf(folder_ / "in"), text);

  const InputFile file(folder_ / "in");
  EXPECT_EQ(file.Size(), text.size());
  std::vector<char> block(100);
  EXPECT_EQ(file.ReadAt(5000, block), 100u);
  EXPECT_EQ(std::string(block.data(), 100), text.substr(5000, 100));
  EXPECT_EQ(file.ReadAt(text.size() - 3, block), 3u);
  EXPECT_EQ(file.ReadAt(text.size() + 3, block), 0u);
}

TEST_F(FileTest, WhatCannotBeReadIsRefusedWithItsReason) {
  PutFile(folder_ / "file", "x");
  EXPECT_EQ(ErrorOf([&] { InputFile(folder_ / "absent"); }), 53);
  EXPECT_EQ(ErrorOf([&] { InputFile(folder_.Path()); }), 70);
  EXPECT_EQ(ErrorOf([&] { InputFile(folder_ / "file/below"); }), 76);
  try {
    InputFile(folder_ / "absent");
  } catch (const Error& error) {
    EXPECT_EQ(error.Description(),
              "cannot open " + (folder_ / "absent").string() + ": No such file or directory");
  }
}

TEST_F(FileTest, ALinkIsReadOnlyWhenLinksAreFollowed) {
  PutFile(folder_ / "file", "text");
  fs::create_symlink("file", folder_ / "link");
  EXPECT_EQ(AllOf(folder_ / "link"), "text");
  EXPECT_EQ(ErrorOf([&] { InputFile(folder_ / "link", Links::kRefuse); }), 70);
}

TEST_F(FileTest, NothingStandsAtThePathBeforeCommit) {
  OutputFile file(folder_ / "new", Links::kRefuse);
  file.Write("half");
  EXPECT_FALSE(fs::exists(folder_ / "new"));
  file.Write(" and half");
  file.Commit();
  EXPECT_EQ(FileText(folder_ / "new"), "half and half");
  EXPECT_EQ(folder_.Names(), std::vector<std::string>{"new"});
}

TEST_F(FileTest, AnAbandonedFileLeavesWhatWasThere) {
  PutFile(folder_ / "report", "old");
  {
    OutputFile file(folder_ / "report");
    file.Write("new");
  }
  EXPECT_EQ(FileText(folder_ / "report"), "old");
  EXPECT_EQ(folder_.Names(), std::vector<std::string>{"report"});
}

TEST_F(FileTest, AReaderGoesOnWithTheFileItOpened) {
  PutFile(folder_ / "report", "old");
  InputFile open_before(folder_ / "report");
  Replace(folder_ / "report", "new");
  std::vector<char> block(10);
  EXPECT_EQ(open_before.Read(block), 3u);
  EXPECT_EQ(std::string(block.data(), 3), "old");
  EXPECT_EQ(FileText(folder_ / "report"), "new");
}

TEST_F(FileTest, AKilledProcessLeavesTheOldFileAndNoLitter) {
  PutFile(folder_ / "report", "old");
  const pid_t child = StartChild([&] {
    OutputFile file(folder_ / "report");
    file.Write(std::string(1'000'000, 'n'));
    ::_exit(0);
    return false;
  });
  EXPECT_TRUE(Succeeded(child));
  EXPECT_EQ(FileText(folder_ / "report"), "old");
  EXPECT_EQ(folder_.Names(), std::vector<std::string>{"report"});
}

TEST_F(FileTest, AReplacedFileKeepsItsPermissionsAndAWorkFileIsPrivate) {
  const mode_t before = ::umask(022);
  PutFile(folder_ / "old", "old");
  fs::permissions(folder_ / "old", fs::perms(0660));
  Replace(folder_ / "old", "new");
  Replace(folder_ / "new", "new");
  Replace(folder_ / "work", "new", Links::kRefuse);
  ::umask(before);
  EXPECT_EQ(Permissions(folder_ / "old"), fs::perms(0660));
  EXPECT_EQ(Permissions(folder_ / "new"), fs::perms(0644));
  EXPECT_EQ(Permissions(folder_ / "work"), fs::perms(0600));
}

TEST_F(FileTest, ThroughLinksTheFileTheyLeadToIsReplaced) {
  fs::create_directory(folder_ / "far");
  PutFile(folder_ / "far/file", "old");
  fs::create_symlink("file", folder_ / "far/second");
  fs::create_symlink("far/second", folder_ / "first");
  Replace(folder_ / "first", "new");
  EXPECT_TRUE(fs::is_symlink(folder_ / "first"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "far/second"));
  EXPECT_EQ(FileText(folder_ / "far/file"), "new");
}

TEST_F(FileTest, ALinkThatLeadsNowhereYetGetsItsFile) {
  fs::create_symlink("target", folder_ / "link");
  Replace(folder_ / "link", "new");
  EXPECT_TRUE(fs::is_symlink(folder_ / "link"));
  EXPECT_EQ(FileText(folder_ / "target"), "new");
}

TEST_F(FileTest, APlantedLinkIsReplacedAndItsTargetStays) {
  PutFile(folder_ / "precious", "mine");
  fs::create_symlink(folder_ / "precious", folder_ / "work");
  Replace(folder_ / "work", "new", Links::kRefuse);
  EXPECT_FALSE(fs::is_symlink(folder_ / "work"));
  EXPECT_EQ(FileText(folder_ / "work"), "new");
  EXPECT_EQ(FileText(folder_ / "precious"), "mine");
}

TEST_F(FileTest, AFullDeviceIsReportedAndStaysADevice) {
  fs::create_symlink("/dev/full", folder_ / "link");
  for (const fs::path& path : {fs::path("/dev/full"), folder_ / "link"}) {
    OutputFile file(path);
    EXPECT_EQ(ErrorOf([&] { file.Write("text"); }), 61);
  }
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST_F(FileTest, ALinkToADeviceIsWrittenDirectly) {
  fs::create_symlink("/dev/null", folder_ / "link");
  Replace(folder_ / "link", "text");
  EXPECT_TRUE(fs::is_symlink(folder_ / "link"));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(FileTest, APipeTakesTheBytesAsTheyAreWritten) {
  const fs::path pipe = folder_ / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  PutFile(folder_ / "in", std::string(300'000, 'x'));
  std::string received;
  std::thread reader([&] { received = FileText(pipe); });
  {
    OutputFile file(pipe);
    file.Write("first ");
    InputFile source(folder_ / "in");
    file.WriteAll(source);
    file.Commit();
  }
  reader.join();
  EXPECT_EQ(received, "first " + std::string(300'000, 'x'));
  EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST_F(FileTest, APipeWhoseReaderHasGoneIsAnErrorAndNotTheEndOfTheProgram) {
  const fs::path pipe = folder_ / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  std::thread reader([&] { InputFile gone(pipe); });
  OutputFile file(pipe);
  reader.join();
  EXPECT_EQ(ErrorOf([&] { file.Write("text"); }), 57);
}

TEST_F(FileTest, WhatCannotBeWrittenIsRefusedAtOnce) {
  PutFile(folder_ / "file", "x");
  fs::create_symlink("loop", folder_ / "loop");
  fs::create_symlink(folder_.Path(), folder_ / "to_folder");
  EXPECT_EQ(ErrorOf([&] { OutputFile(folder_.Path()); }), 70);
  EXPECT_EQ(ErrorOf([&] { OutputFile(folder_ / "to_folder"); }), 70);
  EXPECT_EQ(ErrorOf([&] { OutputFile(folder_ / "loop"); }), 70);
  EXPECT_EQ(ErrorOf([&] { OutputFile(folder_ / "absent/new"); }), 76);
  EXPECT_EQ(ErrorOf([&] { OutputFile(folder_ / "file/new"); }), 76);
  EXPECT_EQ(ErrorOf([&] { OutputFile(""); }), 70);
}

TEST_F(FileTest, AFolderThatAppearsAtThePathIsReportedAtCommitAndLeavesNoLitter) {
  {
    OutputFile file(folder_ / "report");
    file.Write("text");
    fs::create_directory(folder_ / "report");
    EXPECT_EQ(ErrorOf([&] { file.Commit(); }), 70);
  }
  EXPECT_EQ(folder_.Names(), std::vector<std::string>{"report"});
}

TEST_F(FileTest, ARelativePathStandsInTheCurrentFolder) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_.Path());
  Replace("plain", "text");
  fs::current_path(before);
  EXPECT_EQ(FileText(folder_ / "plain"), "text");
}

TEST_F(FileTest, TheRestOfAnotherFileIsAppended) {
  std::string text;
  for (int i = 0; i < 200'000; ++i) text += std::to_string(i) + ",";
  PutFile(folder_ / "in", text);
  InputFile source(folder_ / "in");
  std::vector<char> head(10);
  ASSERT_EQ(source.Read(head), 10u);
  OutputFile file(folder_ / "out");
  file.Write("head:");
  file.WriteAll(source);
  file.Write(":tail");
  file.Commit();
  EXPECT_EQ(FileText(folder_ / "out"), "head:" + text.substr(10) + ":tail");
}

TEST_F(FileTest, AFileOfUnknownSizeAndAnEmptyFileAreAppendedWhole) {
  PutFile(folder_ / "empty", "");
  OutputFile file(folder_ / "out");
  InputFile unknown_size("/proc/version");
  file.WriteAll(unknown_size);
  InputFile empty(folder_ / "empty");
  file.WriteAll(empty);
  file.Commit();
  EXPECT_EQ(FileText(folder_ / "out"), FileText("/proc/version"));
  EXPECT_NE(FileText(folder_ / "out"), "");
}

TEST_F(FileTest, AFullDeviceIsReportedWhenAFileIsAppended) {
  PutFile(folder_ / "in", "text");
  InputFile source(folder_ / "in");
  OutputFile file("/dev/full");
  EXPECT_EQ(ErrorOf([&] { file.WriteAll(source); }), 61);
}

}  // namespace
}  // namespace kel
