#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "common/error.h"
#include "common/file.h"
#include "engine/page_file_reader.h"
#include "engine/page_file_writer.h"
#include "engine/page_range.h"
#include "support/errors.h"
#include "support/test_folder.h"

namespace kel {
namespace {

constexpr std::int32_t kPageLength = 3;

class PageFileTest : public ::testing::Test {
 protected:
  // Pages of three lines: "page n", a filler of growing length, the page end.
  std::vector<std::uint64_t> WritePages(int pages) {
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

  testing::TestFolder folder;
  std::filesystem::path path = folder / "r.rpt";
  std::string_view line;
};

TEST_F(PageFileTest, EveryPageIsFoundWithAllSomeAndNoOffsets) {
  const std::vector<std::uint64_t> all = WritePages(5000);  // several blocks
  ASSERT_EQ(all.size(), 5000U);
  for (const std::ptrdiff_t known : {5000, 10, 0}) {
    const std::vector<std::uint64_t> offsets(all.begin(), all.begin() + known);
    PageFileReader reader(path);
    for (const PageNumber page : {1, 5000, 2, 4999, 10, 11, 2500}) {
      ASSERT_TRUE(reader.GoToPage(page, kPageLength, offsets));
      EXPECT_EQ(reader.Offset(), all[static_cast<std::size_t>(page) - 1]);
      EXPECT_EQ(reader.NextLineNumber(), FirstLineOfPage(page, kPageLength));
      ASSERT_TRUE(reader.NextLine(line));
      EXPECT_EQ(line, "page " + std::to_string(page));
    }
    EXPECT_FALSE(reader.GoToPage(5001, kPageLength, offsets));
  }
}

TEST_F(PageFileTest, LinesOfOtherWritersAreReadWhateverTheirEndAndLength) {
  const std::string huge(3'000'000, 'h');
  testing::WriteFile(path, "one\ntwo\r\n\r\n" + huge + "\r\nlone\rreturn\r\nlast");
  PageFileReader reader(path);
  std::vector<std::string> lines;
  while (reader.NextLine(line)) lines.emplace_back(line);
  EXPECT_EQ(lines, (std::vector<std::string>{"one", "two", "", huge, "lone\rreturn", "last"}));

  testing::WriteFile(path, "");
  PageFileReader empty(path);
  EXPECT_FALSE(empty.NextLine(line));
  EXPECT_FALSE(empty.GoToPage(1, kPageLength));
}

TEST_F(PageFileTest, OfALongLineOnlyTheBeginningIsHandedOut) {
  const std::string huge(3'000'000, 'h');
  for (const std::size_t most : {0U, 1U, 2U, 3U, 4U, 100'000U}) {
    // Ends of the file with and without a line end, and ends of lines around the most.
    for (const std::string& end : {std::string("\n"), std::string()}) {
      std::string text = "a\nab\r\nabc\r\nabcd\n\r\n";
      text.append(huge).append("\r\nxyz\n").append(huge).append(end);
      testing::WriteFile(path, text);
      PageFileReader whole(path);
      PageFileReader starts(path);
      std::string_view start;
      while (whole.NextLine(line)) {
        ASSERT_TRUE(starts.NextLineStart(start, most));
        EXPECT_EQ(start, line.substr(0, most));
        EXPECT_EQ(starts.Offset(), whole.Offset());
        EXPECT_EQ(starts.NextLineNumber(), whole.NextLineNumber());
      }
      EXPECT_FALSE(starts.NextLineStart(start, most));
    }
  }
}

TEST_F(PageFileTest, AFileCutShortUnderTheReaderEndsEarly) {
  WritePages(5000);
  PageFileReader reader(path);
  ASSERT_TRUE(reader.NextLine(line));
  std::filesystem::resize_file(path, 10);
  int lines = 1;
  while (reader.NextLine(line)) ++lines;
  EXPECT_LT(lines, 15'000);
  EXPECT_FALSE(reader.GoToPage(4000, kPageLength));
}

TEST_F(PageFileTest, AMissingFileALinkAndAFolderAreErrors) {
  WritePages(1);
  std::filesystem::create_symlink(path, folder / "link.rpt");
  for (const auto& wrong : {folder / "none.rpt", folder / "link.rpt", folder.Path()}) {
    EXPECT_THROW(PageFileReader{wrong}, Error) << wrong;
  }
}

TEST_F(PageFileTest, APageRangeIsCopiedWhole) {
  const std::vector<std::uint64_t> offsets = WritePages(9);
  const std::string all = testing::ReadFile(path);
  std::vector<std::uint64_t> bounds = offsets;
  bounds.push_back(all.size());
  // The pages asked for; the bounds of what is copied.
  for (const auto& [from, to, begin, end] :
       {std::tuple(1, 9, 0U, 9U), std::tuple(1, 1, 0U, 1U), std::tuple(3, 5, 2U, 5U),
        std::tuple(9, 9, 8U, 9U), std::tuple(8, 100, 7U, 9U), std::tuple(-4, 2, 0U, 2U),
        std::tuple(5, 4, 0U, 0U), std::tuple(6, 2, 0U, 0U), std::tuple(10, 12, 0U, 0U),
        std::tuple(2, 2'147'483'647, 1U, 9U)}) {
    for (const auto& known : {offsets, std::vector<std::uint64_t>{}}) {
      CopyPages(path, folder / "r.kel", from, to, kPageLength, known);
      EXPECT_EQ(testing::ReadFile(folder / "r.kel"),
                all.substr(bounds[begin], bounds[end] - bounds[begin]))
          << from << '-' << to;
    }
  }
}

TEST_F(PageFileTest, AFullDiskIsToldWhenTheBlockIsWritten) {
  OutputFile file("/dev/full");
  PageFileWriter writer(file);
  writer.BeginPage();
  const Error error = testing::ErrorOf([&] {
    writer.WriteLine(std::string(1'000'000, 'x'));
    writer.Finish();
  });
  EXPECT_EQ(error.Number(), error_number::kDiskFull);
}

}  // namespace
}  // namespace kel
