#include "export/workbook_report.h"

#include <gtest/gtest.h>

#include <clocale>
#include <filesystem>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include "common/error.h"
#include "export/pdf_tools.h"
#include "export/report_fixture.h"
#include "support/errors.h"
#include "support/file_size_limit.h"

namespace kel {
namespace {

using testing::Contains;
using testing::ErrorOf;
using testing::Lines;
using testing::OutputOf;

class WorkbookReportTest : public testing::ReportTest {
 protected:
  WorkbookReportTest() {
    report_.settings.page_height = 11;
    report_.job.columns = {{8, TextSide::kLeft}, {12, TextSide::kRight}};
  }

  void WritePage(const Lines& page, std::size_t count = 1) {
    WritePages(std::vector<Lines>(count, page));
  }

  bool Write(const SheetLimits& limits = {}) {
    return WriteWorkbook(report_, workbook_, limits, {});
  }

  std::string Part(const std::string& name) {
    return OutputOf(
        "python3 -c \"import sys, zipfile; sys.stdout.buffer.write("
        "zipfile.ZipFile(sys.argv[1]).read(sys.argv[2]))\" " +
        workbook_.string() + " " + name);
  }

  // The cells of a sheet: place, "n" or "s", number or text, and "b" and "u" for its looks.
  Lines Cells(int sheet = 1) {
    const Lines looks = Looks();
    const std::string xml = Part("xl/worksheets/sheet" + std::to_string(sheet) + ".xml");
    const std::regex cell(
        R"re(<c r="(\w+)" s="(\d+)"(?: t="inlineStr")?><(v|is)>(?:<t[^>]*>)?(.*?)</)re");
    Lines cells;
    for (std::sregex_iterator i(xml.begin(), xml.end(), cell), end; i != end; ++i) {
      cells.push_back((*i)[1].str() + ((*i)[3] == "v" ? " n " : " s ") + (*i)[4].str() +
                      looks.at(std::stoul((*i)[2])));
    }
    return cells;
  }

  // Of every style.
  Lines Looks() {
    const std::string xml = Part("xl/styles.xml");
    Lines fonts;
    const std::regex font("<font>(.*?)</font>");
    for (std::sregex_iterator i(xml.begin(), xml.end(), font), end; i != end; ++i) {
      const std::string text = (*i)[1];
      const bool bold = text.find("<b/>") != std::string::npos;
      const bool underline = text.find("<u/>") != std::string::npos;
      fonts.push_back(std::string(bold ? " b" : "") + (underline ? " u" : ""));
    }
    Lines looks;
    const std::regex style(R"re(<xf numFmtId="\d+" fontId="(\d+)"[^>]* xfId)re");
    for (std::sregex_iterator i(xml.begin(), xml.end(), style), end; i != end; ++i) {
      looks.push_back(fonts.at(std::stoul((*i)[1])));
    }
    return looks;
  }

  bool LeavesNothing() const {
    const std::filesystem::directory_iterator files(folder_.Path());
    return std::distance(begin(files), end(files)) == 1;  // the page file
  }

  std::filesystem::path workbook_ = folder_ / "a b.xlsx";
};

TEST_F(WorkbookReportTest, CodesAreReadInOrderAndEveryTextStaysWhatItIs) {
  workbook_ = folder_ / "r.xlsx";
  WritePage({"Cash        2,500.00", "\x01" + std::string("\033ECash\033F        \x1b-12,500.00"),
             "\x01\x1b-1under ", "\x01still\x1b-0  on", "007     |         007|",
             "=1+1 _x0041_ a<b", "bad \xff\xef\xbf\xbf\x07 |   name",
             "Title over all of the columns and more"});
  ASSERT_TRUE(Write());
  EXPECT_EQ(Cells(),
            (Lines{"A1 s Cash", "B1 n 2500", "A2 s Cash b", "B2 n 2500 u", "A3 s under u",
                   "A4 s still  on u", "A5 s 007     |", "B5 n 7", "A6 s =1+1 _x00",
                   "B6 s 41_ a&lt;b", "A7 s bad \xef\xbf\xbd\xef\xbf\xbd  |", "B7 s    name",
                   "A8 s Title ove", "B8 s r all of the columns and more"}));
}

TEST_F(WorkbookReportTest, EscapesOfTheFormatStayTheTextTheyAre) {
  workbook_ = folder_ / "r.xlsx";
  report_.job.columns = {{40, TextSide::kLeft}};
  WritePage({"_x0041_ _x_x00e9__x1_ _xyz"});
  ASSERT_TRUE(Write());
  EXPECT_EQ(Cells(), Lines{"A1 s _x005F_x0041_ _x_x005F_x00e9__x1_ _xyz"});
}

TEST_F(WorkbookReportTest, RowsBeyondASheetGoOnOnTheNext) {
  workbook_ = folder_ / "r.xlsx";
  WritePage(
      {"It's a/b: [Cash] of \xe0\xa4\xb6\xe0\xa4\xb0\xe0\xa5\x8d\xe0\xa4\xae\xe0\xa4\xbe Page 1",
       "one", "two", "three"},
      2);
  ASSERT_TRUE(Write({.rows = 4}));
  EXPECT_EQ(Cells(3), (Lines{"A1 s three"}));
  const std::string book = Part("xl/workbook.xml");
  for (const char* const name : {"\"It's a_b_ _Cash_ of शर्मा\"", "शर्मा (2)\"", "शर्मा (3)\""}) {
    EXPECT_NE(book.find(name), std::string::npos) << name << book;
  }
  EXPECT_EQ(book.find("(4)"), std::string::npos);
  EXPECT_NE(Part("docProps/core.xml").find("<dc:title>It's a/b: [Cash] of शर्मा<"),
            std::string::npos);
}

TEST_F(WorkbookReportTest, ASheetIsSetUpForOnePageInTheFontOfTheReport) {
  workbook_ = folder_ / "r.xlsx";
  WritePage({"Cash       123456.00"});
  ASSERT_TRUE(Write());
  EXPECT_NE(
      Part("xl/styles.xml").find("<sz val=\"10\"/><color theme=\"1\"/><name val=\"Courier New\"/>"),
      std::string::npos);
  std::string sheet = Part("xl/worksheets/sheet1.xml");
  for (const char* const part :
       {R"(<pageSetUpPr fitToPage="1"/>)", R"(<pageSetup paperSize="1" orientation="portrait"/>)",
        R"(<pageMargins left="0.25" right="0" top="0" bottom="0" header="0" footer="0"/>)"}) {
    EXPECT_NE(sheet.find(part), std::string::npos) << part << sheet;
  }
  report_.settings.mode = "WINDOWS";
  report_.settings.font = "Liberation Serif";
  report_.settings.font_size = 13;
  report_.settings.font_flags.italic = true;
  report_.settings.portrait = false;
  struct Paper {
    float width;
    float height;
    const char* code;
  };
  const std::vector<Paper> papers = {
      {8.27F, 11.69F, "9"}, {11.69F, 16.54F, "8"}, {8.5F, 14, "5"}, {14.875F, 11, "39"}};
  for (const Paper& paper : papers) {
    report_.settings.page_width = paper.width;
    report_.settings.page_height = paper.height;
    ASSERT_TRUE(Write());
    sheet = Part("xl/worksheets/sheet1.xml");
    const std::string setup =
        std::string(R"(<pageSetup paperSize=")") + paper.code + R"(" orientation="landscape"/>)";
    EXPECT_NE(sheet.find(setup), std::string::npos) << setup << sheet;
  }
  EXPECT_NE(Part("xl/styles.xml").find("<i/><sz val=\"13\"/>"), std::string::npos);
}

TEST_F(WorkbookReportTest, NumbersAreWrittenAsXmlHasThemInAnyLocale) {
  workbook_ = folder_ / "r.xlsx";
  const std::string locales = folder_ / "locales";
  std::filesystem::create_directory(locales);
  OutputOf("localedef -i de_DE -f UTF-8 " + locales + "/de_DE.UTF-8 2>/dev/null || true");
  ::setenv("LOCPATH", locales.c_str(), 1);
  const char* const set = std::setlocale(LC_ALL, "de_DE.UTF-8");
  WritePage({"Cash            1.25"});
  const bool done = Write();
  std::setlocale(LC_ALL, "C");
  ::unsetenv("LOCPATH");
  EXPECT_NE(set, nullptr);
  ASSERT_TRUE(done);
  EXPECT_EQ(Cells(), (Lines{"A1 s Cash", "B1 n 1.25"}));
}

TEST_F(WorkbookReportTest, WhatASheetCannotHoldIsRefused) {
  WritePage({"Cash"});
  const Error columns = ErrorOf([&] { Write({.columns = 1}); });
  EXPECT_EQ(columns.Number(), error_number::kOverflow);
  EXPECT_TRUE(Contains(columns, "2 columns"));
  WritePage({"Cash " + std::string(40000, 'x')});
  const Error text = ErrorOf([&] { Write(); });
  EXPECT_EQ(text.Number(), error_number::kOverflow);
  EXPECT_TRUE(Contains(text, "32767"));
  WritePage({"\x01" + std::string(40000, 'x')});
  EXPECT_EQ(ErrorOf([&] { Write(); }).Number(), error_number::kOverflow);
  WritePage({std::string(std::size_t{3} << 20, 'x')});
  EXPECT_EQ(ErrorOf([&] { Write(); }).Number(), error_number::kOverflow);
  WritePage({"Cash"});
  ++report_.job.page_count;
  EXPECT_EQ(ErrorOf([&] { Write(); }).Number(), error_number::kInvalidFileFormat);
  EXPECT_TRUE(LeavesNothing());
}

TEST_F(WorkbookReportTest, AFileThatCannotBeWrittenOrIsStoppedIsNotThere) {
  WritePage(Lines(60, "Cash        2,500.00"), 100);
  const auto files_open = [] {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
  };
  const auto before = files_open();
  for (const rlim_t bytes : {1000U, 100000U, 400000U}) {
    const testing::FileSizeLimit full(bytes);
    EXPECT_EQ(ErrorOf([&] { Write(); }).Number(), error_number::kDiskFull) << bytes;
  }
  int lines = 0;
  EXPECT_FALSE(WriteWorkbook(report_, workbook_, {}, [&] { return ++lines < 100; }));
  EXPECT_EQ(lines, 100);
  EXPECT_TRUE(LeavesNothing());
  EXPECT_EQ(files_open(), before);

  workbook_ = folder_ / "none" / "r.xlsx";
  EXPECT_EQ(ErrorOf([&] { Write(); }).Number(), error_number::kFileNotFound);
  workbook_ = report_.page_file / "r.xlsx";
  EXPECT_EQ(ErrorOf([&] { Write(); }).Number(), error_number::kPathNotFound);
  workbook_ = folder_.Path();
  EXPECT_EQ(ErrorOf([&] { Write(); }).Number(), error_number::kPermissionDenied);
}

}  // namespace
}  // namespace kel
