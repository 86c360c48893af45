#include "export/replaced_file.h"

#include <gtest/gtest.h>

#include "support/errors.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using testing::ErrorOf;
using testing::ReadFile;
using testing::WriteFile;

std::size_t FilesIn(const std::filesystem::path& folder) {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

void Replace(const std::filesystem::path& target, bool commit) {
  ReplacedFile file(target);
  file.SetAside();
  EXPECT_FALSE(std::filesystem::exists(target));
  WriteFile(file.Path(), "new");
  if (commit) file.Commit();
}

TEST(ReplacedFileTest, TheOldFileComesBackUnlessTheNewOneIsCommitted) {
  const testing::TestFolder folder;
  // The longest name there can be; the name of what a killed process left behind is not taken.
  for (const std::string& name : {std::string("a b.xls"), std::string(255, 'n')}) {
    const std::filesystem::path target = folder / name;
    WriteFile(target, "old");
    WriteFile(folder / ("." + name.substr(0, 200) + ".before"), "kept");
    Replace(target, false);
    EXPECT_EQ(ReadFile(target), "old");
    Replace(target, true);
    EXPECT_EQ(ReadFile(target), "new");
    EXPECT_EQ(ReadFile(folder / ("." + name.substr(0, 200) + ".before")), "kept");
  }
  EXPECT_EQ(FilesIn(folder.Path()), 4U);
  { const ReplacedFile untouched(folder / "a b.xls"); }
  EXPECT_EQ(ReadFile(folder / "a b.xls"), "new");
  Replace(folder / "fresh", false);
  EXPECT_EQ(FilesIn(folder.Path()), 4U);
}

TEST(ReplacedFileTest, ALinkGoesOnLeadingToTheFile) {
  const testing::TestFolder folder;
  std::filesystem::create_directory(folder / "books");
  const std::filesystem::path link = folder / "link";
  std::filesystem::create_symlink("books/a.doc", link);
  for (const bool commit : {false, true, false}) {
    Replace(link, commit);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(FilesIn(folder / "books"), commit || std::filesystem::exists(link) ? 1U : 0U);
  }
  EXPECT_EQ(ReadFile(folder / "books/a.doc"), "new");
}

TEST(ReplacedFileTest, WhereNoFileCanBeMadeNothingIsTouched) {
  const testing::TestFolder folder;
  WriteFile(folder / "file", "old");
  std::filesystem::create_directory(folder / "folder");
  std::filesystem::create_symlink("loop", folder / "loop");
  const std::vector<std::pair<std::filesystem::path, int>> refused = {{folder / "file/below", 76},
                                                                      {folder / "none/x", 76},
                                                                      {folder / "folder", 70},
                                                                      {folder / "loop", 70},
                                                                      {"/dev/full", 52}};
  for (const auto& [path, number] : refused) {
    EXPECT_EQ(ErrorOf([&path = path] { const ReplacedFile file(path); }).Number(), number) << path;
  }
  EXPECT_EQ(ReadFile(folder / "file"), "old");
  EXPECT_EQ(FilesIn(folder.Path()), 3U);
}

}  // namespace
}  // namespace kel
