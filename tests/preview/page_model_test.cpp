#include "preview/page_model.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "common/error.h"
#include "common/file.h"
#include "engine/page_file_writer.h"
#include "support/errors.h"
#include "support/test_folder.h"

namespace kel {
namespace {

constexpr std::int32_t kPageLength = 4;

class PageModelTest : public ::testing::Test {
 protected:
  // Pages of a formatted line, a plain one, an empty one and the page end.
  void WritePages(int pages, const std::string& word = "page") {
    OutputFile file(report.page_file);
    PageFileWriter writer(file);
    for (int number = 1; number <= pages; ++number) {
      writer.BeginPage();
      writer.WriteLine("\x01\033E" + word + "\033F " + std::to_string(number));
      writer.WriteLine(std::string(static_cast<std::size_t>(number % 90), '.') + "row");
      writer.WriteLine("");
      writer.WriteLine("\x0c");
    }
    writer.Finish();
    file.Commit();
    report.job.page_count = pages;
    report.job.page_length = kPageLength;
    report.job.page_offsets =
        std::make_shared<const std::vector<std::uint64_t>>(writer.TakePageOffsets());
  }

  std::string FirstLine(PageModel& model) {
    model.LoadPage(true, page);
    if (page.lines.empty()) return "";
    std::string text;
    for (std::uint32_t i = 0; i < page.lines[0].runs; ++i) text += page.TextOf(page.runs[i]);
    return text;
  }

  testing::TestFolder folder;
  ReportSnapshot report{folder / "r.rpt", {}, {}, {}};
  PageText page;
};

TEST_F(PageModelTest, APageIsItsLinesWithPageEndsAsEmptyOnesBetweenTheFirstAndTheLast) {
  WritePages(2);
  PageModel model(report);
  EXPECT_FALSE(model.CanGoPrevious());
  model.GoPrevious();
  EXPECT_EQ(FirstLine(model), " page 1");
  ASSERT_EQ(page.lines.size(), 4U);
  EXPECT_TRUE(page.runs[1].bold);
  EXPECT_EQ(page.lines[1].runs, 1U);
  EXPECT_EQ(page.lines[2].runs + page.lines[3].runs, 0U);
  model.GoNext();
  model.GoNext();
  EXPECT_EQ(FirstLine(model), " page 2");
  EXPECT_EQ(model.PageBoxText(), "2/2");
  EXPECT_FALSE(model.CanGoNext());
  EXPECT_TRUE(model.CanGoPrevious());
  report.job.page_count = 0;
  EXPECT_FALSE(PageModel(report).CanGoNext());
}

TEST_F(PageModelTest, ATypedPageIsReadAsANumberAndOnlyAnotherPageTaken) {
  WritePages(12);
  const std::vector<std::pair<std::string, PageNumber>> cases = {
      {"7", 7},   {" 12/12", 12}, {"2.5", 2}, {"3.5", 4}, {"1e1", 10},
      {"0.6", 1}, {"1E999", 1},   {"5", 0},   {"0", 0},   {"-3", 0},
      {"13", 0},  {"abc", 0},     {"", 0},    {"0.4", 0}, {"12.1", 0}};
  for (const auto& [typed, page_number] : cases) {
    PageModel model(report);
    model.GoToTypedPage("5");
    EXPECT_EQ(model.GoToTypedPage(typed), page_number != 0) << typed;
    EXPECT_EQ(model.CurrentPage(), page_number == 0 ? 5 : page_number) << typed;
  }
}

TEST_F(PageModelTest, SearchesGoOnBehindTheMatchAndStartOverAfterTheLast) {
  WritePages(3);
  PageModel model(report);
  model.LoadPage(true, page);
  EXPECT_EQ(model.MatchLine(), 1);
  const auto match = [&](LineNumber line, Cells cells) {
    model.LoadPage(false, page);
    EXPECT_EQ(page.match.line, line);
    EXPECT_EQ(page.match.column, 1);
    EXPECT_EQ(page.match.cells, cells);
  };
  for (PageNumber expected = 1; expected <= 3; ++expected) {
    ASSERT_TRUE(model.LocatePage("PAGE"));
    EXPECT_EQ(model.CurrentPage(), expected);
    match(0, 4);
  }
  EXPECT_FALSE(model.LocatePage("page"));
  EXPECT_EQ(model.CurrentPage(), 3);
  EXPECT_EQ(model.MatchLine(), 0);
  EXPECT_EQ(model.MatchColumn(), 0);
  ASSERT_TRUE(model.LocatePage("..row"));
  EXPECT_EQ(model.CurrentPage(), 2);
  match(1, 5);  // a plain line
  EXPECT_FALSE(model.LocatePage(""));
}

TEST_F(PageModelTest, APageChangeForgetsTheMatchAndSearchesFromThePageOnShow) {
  WritePages(5);
  PageModel model(report);
  ASSERT_TRUE(model.LocatePage("row"));
  model.GoToTypedPage("4");
  model.LoadPage(true, page);
  EXPECT_EQ(page.match.cells, 0);
  EXPECT_EQ(model.MatchLine(), 13);
  EXPECT_EQ(model.MatchColumn(), 0);
  ASSERT_TRUE(model.LocatePage("row"));
  EXPECT_EQ(model.CurrentPage(), 4);
}

TEST_F(PageModelTest, WithoutAFileTheStateStaysAndThePageIsEmpty) {
  WritePages(3);
  PageModel model(report);
  model.LoadPage(true, page);
  ASSERT_TRUE(model.LocatePage("row"));
  std::filesystem::remove(report.page_file);
  EXPECT_EQ(testing::ErrorOf([&] { model.LocatePage("row"); }).Number(), 53);
  EXPECT_EQ(model.MatchLine(), 2);
  EXPECT_EQ(model.MatchColumn(), 2);
  EXPECT_EQ(testing::ErrorOf([&] { model.LoadPage(true, page); }).Number(), 53);
  EXPECT_TRUE(page.lines.empty());
  EXPECT_EQ(model.MatchLine(), 2);
}

TEST_F(PageModelTest, AJobWithoutAPageLengthIsAnError) {
  WritePages(1);
  report.job.page_length = 0;
  PageModel model(report);
  EXPECT_EQ(testing::ErrorOf([&] { model.LoadPage(true, page); }).Number(), 5);
  EXPECT_EQ(testing::ErrorOf([&] { model.LocatePage("x"); }).Number(), 5);
}

TEST_F(PageModelTest, EveryPageIsFoundWithAllSomeNoAndWrongOffsets) {
  WritePages(20'000);
  using Offsets = std::vector<std::uint64_t>;
  const Offsets all = *report.job.page_offsets;
  for (const Offsets& known :
       {all, Offsets(all.begin(), all.begin() + 700), Offsets{}, Offsets{7, 20},
        Offsets{0, 500, 20}, Offsets{0, 1'000'000'000}, Offsets{0, 0xffff'ffff'ffff'ffff}}) {
    report.job.page_offsets = std::make_shared<const Offsets>(known);
    PageModel model(report);
    for (const char* number : {"2", "20000", "19999", "700", "701", "12345"}) {
      ASSERT_TRUE(model.GoToTypedPage(number));
      EXPECT_EQ(FirstLine(model), std::string(" page ") + number);
    }
  }
}

TEST_F(PageModelTest, AFileThatChangesUnderThePreviewIsReadAsItIsNow) {
  WritePages(3000);
  PageModel model(report);
  model.GoToTypedPage("2900");
  EXPECT_EQ(FirstLine(model), " page 2900");

  WritePages(3000, "another page");
  EXPECT_EQ(FirstLine(model), " another page 2900");
  EXPECT_TRUE(model.LocatePage("another page 2950"));
  EXPECT_EQ(model.CurrentPage(), 2950);
  WritePages(3000, "longer than any page before");
  EXPECT_EQ(FirstLine(model), " longer than any page before 2950");

  std::filesystem::resize_file(report.page_file, 1000);  // cut inside of a page
  EXPECT_EQ(FirstLine(model), "");
  EXPECT_TRUE(page.lines.empty());
  EXPECT_FALSE(model.LocatePage("page"));
  EXPECT_TRUE(model.LocatePage("page"));
  EXPECT_EQ(model.CurrentPage(), 1);
}

TEST_F(PageModelTest, OfALineOfMegabytesOnlyTheBeginningIsHeld) {
  WritePages(1);
  testing::WriteFile(report.page_file,
                     std::string(5'000'000, 'x') + "END\r\nsecond\n" + std::string(5'000'000, 'y'));
  PageModel model(report);
  model.LoadPage(true, page);
  ASSERT_EQ(page.lines.size(), 3U);
  EXPECT_LE(page.text.size(), 2U * kMostLineCells + 10);
  EXPECT_EQ(page.TextOf(page.runs[page.lines[1].first_run]), " second");
  EXPECT_TRUE(model.LocatePage("end"));
  EXPECT_EQ(model.MatchColumn(), 5'000'001);
  model.LoadPage(false, page);
  EXPECT_EQ(page.match.cells, 0);  // too far right to be seen
}

}  // namespace
}  // namespace kel
