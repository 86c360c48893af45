#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/error.h"
#include "common/file.h"
#include "engine/page_file_reader.h"
#include "engine/page_file_writer.h"
#include "engine/page_range.h"
#include "support/test_folder.h"

namespace kel {
namespace {

constexpr std::int32_t kPageLength = 3;

// Pages of three lines: "page n", a filler of growing length, the page end.
std::vector<std::uint64_t> WritePages(const std::filesystem::path& path, int pages) {
  OutputFile file(path);
  PageFileWriter writer(file);
  for (int page = 1; page <= pages; ++page) {
    writer.BeginPage();
    writer.WriteLine("page " + std::to_string(page));
    writer.WriteLine("\x01" + std::string(static_cast<std::size_t>(page % 500), 'x'));
    writer.WriteLine("\x0c");
  }
  writer.Finish();
  file.Commit();
  return writer.TakePageOffsets();
}

TEST(PageFileTest, EveryPageIsFoundWithAllSomeAndNoOffsets) {
  constexpr int kPages = 5000;  // several blocks
  const testing::TestFolder folder;
  const std::vector<std::uint64_t> all = WritePages(folder / "r.rpt", kPages);
  ASSERT_EQ(all.size(), kPages);
  for (const std::size_t known : {all.size(), std::size_t{10}, std::size_t{0}}) {
    const std::vector<std::uint64_t> offsets(all.begin(),
                                             all.begin() + static_cast<std::ptrdiff_t>(known));
    PageFileReader reader(folder / "r.rpt");
    for (const PageNumber page : {1, 5000, 2, 4999, 10, 11, 2500}) {
      ASSERT_TRUE(reader.GoToPage(page, kPageLength, offsets));
      EXPECT_EQ(reader.Offset(), all[static_cast<std::size_t>(page) - 1]);
      EXPECT_EQ(reader.NextLineNumber(), FirstLineOfPage(page, kPageLength));
      std::string_view line;
      ASSERT_TRUE(reader.NextLine(line));
      EXPECT_EQ(line, "page " + std::to_string(page));
    }
    EXPECT_FALSE(reader.GoToPage(5001, kPageLength, offsets));
  }
}

TEST(PageFileTest, LinesOfOtherWritersAreReadWhateverTheirEndAndLength) {
  const testing::TestFolder folder;
  const std::string huge(3'000'000, 'h');
  testing::WriteFile(folder / "r.rpt", "one\ntwo\r\n\r\n" + huge + "\r\nlone\rreturn\r\nlast");
  PageFileReader reader(folder / "r.rpt");
  std::vector<std::string> lines;
  std::string_view line;
  while (reader.NextLine(line)) lines.emplace_back(line);
  EXPECT_EQ(lines, (std::vector<std::string>{"one", "two", "", huge, "lone\rreturn", "last"}));

  // An empty file has no lines and no page.
  testing::WriteFile(folder / "r.rpt", "");
  PageFileReader empty(folder / "r.rpt");
  EXPECT_FALSE(empty.NextLine(line));
  EXPECT_FALSE(empty.GoToPage(1, kPageLength));
}

TEST(PageFileTest, AFileCutShortUnderTheReaderEndsEarly) {
  const testing::TestFolder folder;
  WritePages(folder / "r.rpt", 5000);
  PageFileReader reader(folder / "r.rpt");
  std::string_view line;
  ASSERT_TRUE(reader.NextLine(line));
  std::filesystem::resize_file(folder / "r.rpt", 10);
  int lines = 1;
  while (reader.NextLine(line)) ++lines;
  EXPECT_LT(lines, 15'000);
  EXPECT_FALSE(reader.GoToPage(4000, kPageLength));
}

TEST(PageFileTest, AMissingFileALinkAndAFolderAreErrors) {
  const testing::TestFolder folder;
  WritePages(folder / "r.rpt", 1);
  std::filesystem::create_symlink(folder / "r.rpt", folder / "link.rpt");
  EXPECT_THROW(PageFileReader(folder / "none.rpt"), Error);
  EXPECT_THROW(PageFileReader(folder / "link.rpt"), Error);
  EXPECT_THROW(PageFileReader(folder.Path()), Error);
}

TEST(PageFileTest, APageRangeIsCopiedWhole) {
  const testing::TestFolder folder;
  const auto offsets = WritePages(folder / "r.rpt", 9);
  const auto copied = [&](PageNumber from, PageNumber to, bool known) {
    CopyPages(folder / "r.rpt", folder / "r.kel", from, to, kPageLength,
              known ? offsets : std::vector<std::uint64_t>{});
    const std::string text = testing::ReadFile(folder / "r.kel");
    std::string numbers;
    for (std::size_t at = text.find("page "); at != std::string::npos;
         at = text.find("page ", at + 1)) {
      numbers += text[at + 5];
    }
    if (!text.empty()) {
      EXPECT_TRUE(text.starts_with("page ") && text.ends_with("\x0c\r\n"));
    }
    return numbers;
  };
  for (const bool known : {true, false}) {
    EXPECT_EQ(copied(1, 9, known), "123456789");
    EXPECT_EQ(copied(1, 1, known), "1");
    EXPECT_EQ(copied(3, 5, known), "345");
    EXPECT_EQ(copied(9, 9, known), "9");
    EXPECT_EQ(copied(8, 100, known), "89");
    EXPECT_EQ(copied(-4, 2, known), "12");
    EXPECT_EQ(copied(5, 4, known), "");
    EXPECT_EQ(copied(6, 2, known), "");
    EXPECT_EQ(copied(10, 12, known), "");
    EXPECT_EQ(copied(2, 2'147'483'647, known), "23456789");
  }
}

TEST(PageFileTest, AFullDiskIsToldWhenTheBlockIsWritten) {
  OutputFile file("/dev/full");
  PageFileWriter writer(file);
  writer.BeginPage();
  try {
    writer.WriteLine(std::string(1'000'000, 'x'));
    writer.Finish();
    FAIL() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), error_number::kDiskFull);
  }
}

}  // namespace
}  // namespace kel
