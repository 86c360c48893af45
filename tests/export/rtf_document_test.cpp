#include "export/rtf_document.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "common/error.h"
#include "export/report_fixture.h"
#include "export/rtf_text.h"
#include "support/errors.h"
#include "support/file_size_limit.h"

namespace kel {
namespace {

using testing::Contains;
using testing::ErrorOf;
using testing::Lines;

class RtfDocumentTest : public testing::ReportTest {
 protected:
  std::string Document() {
    OutputFile file(document_);
    EXPECT_TRUE(WriteRtfDocument(report_, file, {}));
    file.Commit();
    return testing::ReadFile(document_);
  }

  std::filesystem::path document_ = folder_ / "r.doc";
};

std::size_t CountOf(const std::string& text, const std::string& word) {
  std::size_t count = 0;
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
    ++count;
  }
  return count;
}

// The number of a control word; -1 when it is not there.
long NumberOf(const std::string& rtf, const std::string& word) {
  std::smatch found;
  const std::regex control(R"(\\)" + word + R"((-?\d+))");
  return std::regex_search(rtf, found, control) ? std::stol(found[1]) : -1;
}

TEST(RtfTextTest, EveryCharacterIsWrittenAsAscii) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"a\\b{c}", R"(a\\b\{c\})"},
      {"é₹", R"(\u233?\u8377?)"},
      {"日\xef\xa4\x80", R"(\u26085?\u-1792?)"},
      {"😀", R"(\u-10179?\u-8704?)"},
      {"\xff-\xed\xa0\x80", R"(\u-3?-\u-3?\u-3?\u-3?)"},
      {"\x1b\x01\x07\n\xc2\x85\xe2\x80\xa8\xef\xbf\xbf", R"(\u-3?\u-3?\u-3?\u-3?\u-3?\u-3?\u-3?)"},
      {"a    b", "a    b"},
  };
  for (const auto& [text, expected] : cases) {
    std::string rtf;
    AppendRtfText(rtf, text, BlankRuns::kAsTheyAre);
    EXPECT_EQ(rtf, expected);
  }
  std::string apart;
  AppendRtfText(apart, "a b    c ", BlankRuns::kApart);
  AppendRtfText(apart, " \u0301", BlankRuns::kApart);
  EXPECT_EQ(apart, "a b \\u32? \\u32?c \\u32?\\u769?");
}

TEST_F(RtfDocumentTest, EveryLineIsAParagraphAndEveryPageBeginsOne) {
  const Lines page = {"{Title}                          Page 1",
                      "",
                      "\x01\033EBold\033F it",
                      "\x01\033-12,500.00\033-0 \033-1\033Eboth\033F\033-0",
                      "  a  b  ",
                      ""};
  WritePages({page, page, page});
  const std::string rtf = Document();
  EXPECT_EQ(CountOf(rtf, "\\par\n"), 3 * page.size() - 1);
  EXPECT_EQ(CountOf(rtf, "\\pagebb"), 2U);
  EXPECT_NE(rtf.find("{\\title \\{Title\\}}"), std::string::npos);
  EXPECT_NE(rtf.find("Courier New;"), std::string::npos);
  EXPECT_NE(rtf.find("{\\rtlch\\ab\\ltrch\\b Bold} it\\par\n{\\ul 2,500.00} "
                     "{\\rtlch\\ab\\ltrch\\b\\ul both}\\par\n  a  b  \\par\n"),
            std::string::npos)
      << rtf;
  EXPECT_TRUE(rtf.ends_with("\\par\n}\n"));
  EXPECT_EQ(rtf.find_first_not_of("\n !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                  "[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~"),
            std::string::npos);
}

TEST_F(RtfDocumentTest, WhatFollowsTextOfOtherFontsBeginsAtItsCell) {
  WritePages(
      {{"नकद खाता   |  1,250.00", "1008 שלום 5.00", "日本語日本語|x", "plain      |  7.00"}});
  const std::string rtf = Document();
  EXPECT_NE(rtf.find("\\tx1080\\plain"), std::string::npos) << rtf;
  EXPECT_NE(rtf.find("?\\tab |  1,250.00\\par"), std::string::npos);
  EXPECT_NE(rtf.find("\\tx1200 1008 \\u1513?\\u1500?\\u1493?\\u1501?\\u8206?\\tab \\u8206?5.00"),
            std::string::npos);
  EXPECT_NE(rtf.find("plain      |  7.00"), std::string::npos);
}

TEST_F(RtfDocumentTest, LettersAndLinesFitThePaper) {
  struct Case {
    const char* mode;
    float width, height, size;
    bool portrait;
    int columns, lines;
    long paper_width, paper_height, half_points, line_twips;
  };
  const std::vector<Case> cases = {
      {"DOS", 8.5, 12, 8, true, 80, 60, 12240, 17280, 20, 240},
      {"DOS", 8.5, 12, 10, true, 135, 60, 12240, 17280, 14, 168},
      {"DOS", 8.5, 12, 10, true, 80, 90, 12240, 17280, 16, 192},
      {"DOS", 22, 12, 10, true, 132, 60, 31680, 17280, 20, 240},
      {"DOS", 30, 12, 10, true, 132, 60, -1, 17280, 14, 168},
      {"DOS", 12, 8.5, 10, false, 80, 40, 17280, 12240, 20, 240},
      {"WINDOWS", 8.5, 12, 12.5, true, 60, 50, 12240, 17280, 25, 300},
      {"WINDOWS", 8.5, 12, 10, false, 120, 40, 17280, 12240, 20, 240},
      {"WINDOWS", 1, 1, 10, true, 1000, 400, 1440, 1440, 2, 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.mode << " " << c.width << " " << c.columns);
    report_.settings.mode = c.mode;
    report_.settings.font = "Courier New";
    report_.settings.font_size = c.size;
    report_.settings.page_width = c.width;
    report_.settings.page_height = c.height;
    report_.settings.portrait = c.portrait;
    report_.job.page_width = c.columns;
    WritePages({Lines(static_cast<std::size_t>(c.lines), "x")});
    const std::string rtf = Document();
    EXPECT_EQ(NumberOf(rtf, "paperw"), c.paper_width);
    EXPECT_EQ(NumberOf(rtf, "paperh"), c.paper_height);
    EXPECT_EQ(NumberOf(rtf, "fs"), c.half_points);
    EXPECT_EQ(NumberOf(rtf, "sl-"), c.line_twips);
    EXPECT_EQ(CountOf(rtf, "\\landscape"),
              c.mode == std::string("WINDOWS") && !c.portrait ? 1U : 0U);
  }
  const Lines narrow(3, "x");
  WritePages({narrow, Lines(3, std::string(160, 'x')), narrow});
  report_.job.page_width = 80;
  report_.settings.page_width = 8.5;
  EXPECT_EQ(CountOf(Document(), "\\fs20\\"), 2U) << "only the wide page is set smaller";
}

TEST_F(RtfDocumentTest, AFaultOrAStopLeavesTheOldFile) {
  WritePages(std::vector<Lines>(400, Lines(60, std::string(70, 'x') + " नकद")));
  testing::WriteFile(document_, "old");
  {
    const testing::FileSizeLimit full_disk(4096);
    EXPECT_EQ(ErrorOf([this] { Document(); }).Number(), 61);
  }
  {
    OutputFile file(document_);
    int pages = 0;
    EXPECT_FALSE(WriteRtfDocument(report_, file, [&] { return ++pages < 200; }));
    EXPECT_EQ(pages, 200);
  }
  std::filesystem::resize_file(report_.page_file, 200'000);
  const Error cut = ErrorOf([this] { Document(); });
  EXPECT_EQ(cut.Number(), 321);
  EXPECT_TRUE(Contains(cut, "r.rpt does not hold page 4"));
  WritePages({{std::string(40000, 'x')}});
  EXPECT_EQ(ErrorOf([this] { Document(); }).Number(), error_number::kOverflow);
  report_.job.page_count = 0;
  EXPECT_EQ(ErrorOf([this] { Document(); }).Number(), 5);
  EXPECT_EQ(testing::ReadFile(document_), "old");
}

}  // namespace
}  // namespace kel
