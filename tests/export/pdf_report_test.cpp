#include "export/pdf_report.h"

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "common/error.h"
#include "export/pdf_tools.h"
#include "export/report_fixture.h"
#include "support/child_process.h"
#include "support/errors.h"
#include "support/file_size_limit.h"

namespace kel {
namespace {

using testing::Contains;
using testing::ErrorOf;
using testing::InfoOf;
using testing::LaidOutText;
using testing::Lines;
using testing::PdfPicture;
using testing::PdfWord;
using testing::RawText;
using testing::WordsOf;

constexpr double kLeft = 18;  // of the printed area, in points
constexpr double kTop = 5.4;

class PdfReportTest : public testing::ReportTest {
 protected:
  std::filesystem::path Pdf() {
    OutputFile file(pdf_);
    EXPECT_TRUE(WritePdfReport(report_, file, {}));
    file.Commit();
    return pdf_;
  }

  std::filesystem::path pdf_ = folder_ / "r.pdf";
};

// The words of a line and their columns, codes left out.
std::vector<std::pair<std::string, Cells>> WordsOfLine(const std::string& line) {
  std::string text = std::regex_replace(line, std::regex("\x01|\x1b(E|F|-0|-1)"), "");
  text = std::regex_replace(text, std::regex("\xff"), "\xef\xbf\xbd");
  std::vector<std::pair<std::string, Cells>> words;
  const std::regex word("[^ ]+");
  for (std::sregex_iterator i(text.begin(), text.end(), word), end; i != end; ++i) {
    words.emplace_back(i->str(),
                       CellWidth(text.substr(0, static_cast<std::size_t>(i->position()))));
  }
  return words;
}

TEST_F(PdfReportTest, MoreShapedLettersThanAFontOfAPdfHoldsAreReadAsTheyAreWritten) {
  Lines lines;
  std::string expected;
  for (char32_t first = 0x0915; first <= 0x0939; ++first) {  // Devanagari ka to ha, in pairs
    std::string line;
    for (char32_t second = 0x0915; second <= 0x091f; ++second) {
      for (const char32_t letter : {first, char32_t{0x094d}, second}) {
        line.push_back(static_cast<char>(0xe0U | letter >> 12U));
        line.push_back(static_cast<char>(0x80U | (letter >> 6U & 0x3fU)));
        line.push_back(static_cast<char>(0x80U | (letter & 0x3fU)));
      }
      line += ' ';
    }
    line.pop_back();
    lines.push_back(line);
    expected += line + "\n";
  }
  WritePages({lines});
  EXPECT_EQ(LaidOutText(Pdf()), expected);
}

TEST_F(PdfReportTest, WordsOfAProportionalFontAreRead) {
  report_.settings.mode = "WINDOWS";
  report_.settings.font = "DejaVu Sans";
  WritePages({{"Cash in hand (Main), 31%    1,250.00 | @W", "\x01\033EWilliam\033F    2,500.00"}});
  EXPECT_EQ(LaidOutText(Pdf()), "Cash in hand (Main), 31% 1,250.00 | @W\nWilliam 2,500.00\n");
}

TEST_F(PdfReportTest, EveryWordStandsInItsCellsAndReadsAsItIsWritten) {
  const Lines lines = {
      "  ACME Traders                                   Page 1",
      "----------------------------------------------------------------------------+---",
      "\x01\033EBold\033F plain \033-12,500.00\033-0 \033-1\033Eboth 17\033F\033-0 end",
      "",
      "नकद खाता हिन्दी शर्मा | क्षत्रिय विद्यार्थी की स्त्री कृष्ण ट्रेडर्स |    1,250.00",
      "નકદ ખાતું શ્રી કૃષ્ણ ગુજરાતી ક્ષેત્ર પ્રકાશ |      7.00",
      "Café Zürich ñandú Łódź ẹ̀ Привет ελληνικά ₹ 1,200 €5 │─┼ |",
      "日本語 会社 | 😀 | 漢字",
      "bad \xff\xff end \xef\xbf\xbf.",
  };
  WritePages({lines, lines});
  const std::string info = InfoOf(Pdf());
  EXPECT_NE(info.find("Title:           ACME Traders\n"), std::string::npos) << info;
  EXPECT_NE(info.find("Pages:           2\n"), std::string::npos);
  EXPECT_NE(info.find("Page size:       612 x 864 pts"), std::string::npos);
  EXPECT_NE(info.find("LiberationMono-Bold"), std::string::npos);
  EXPECT_FALSE(std::regex_search(info, std::regex(" no +(yes|no) +(yes|no) +[0-9]+ +0\n")));

  std::vector<PdfWord> words = WordsOf(pdf_, 2);
  std::size_t at = 0;
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
    for (const auto& [text, column] : WordsOfLine(lines[i])) {
      ASSERT_LT(at, words.size());
      EXPECT_EQ(words[at].text, text);
      EXPECT_NEAR(words[at].left, kLeft + 7.2 * column, 0.5) << text;
      EXPECT_NEAR((words[at].top + words[at].bottom) / 2,
                  kTop + 12 * (static_cast<double>(i) + 0.5), 3)
          << text;
      ++at;
    }
  }
  std::string laid_out = " ";  // the first line begins further right
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
    for (const auto& [text, column] : WordsOfLine(lines[i])) laid_out += text + ' ';
    if (!lines[i].empty()) laid_out.back() = '\n';
  }
  EXPECT_EQ(LaidOutText(pdf_).substr(0, laid_out.size()), laid_out);
  EXPECT_NE(RawText(pdf_).find("bad \xef\xbf\xbd\xef\xbf\xbd end \xef\xbf\xbd."),
            std::string::npos);

  const PdfPicture picture(pdf_);
  const auto inked_cells = [&](std::size_t line) {
    std::string cells;
    for (int cell = 0; cell < 33; ++cell) {
      bool inked = false;  // across the whole cell, in a row below the letters
      for (int y = static_cast<int>(kTop + 12 * static_cast<double>(line)) + 9;
           y < static_cast<int>(kTop + 12 * (static_cast<double>(line) + 1)) + 1; ++y) {
        bool row = true;
        for (int x = 1; x < 7; ++x) {
          row = row && picture.IsInked(static_cast<int>(kLeft + 7.2 * cell) + x, y);
        }
        inked = inked || row;
      }
      cells += inked ? '_' : ' ';
    }
    return cells;
  };
  EXPECT_EQ(inked_cells(2), "           ________ _______      ");
}

TEST_F(PdfReportTest, WordsFromRightToLeftStayInTheirColumns) {
  WritePages({{"1008 חברה שלום בע\"מ 5.00", "1009 مرحبا السلام بَيت 6.00", "שלום  ארוך|עולם  z"}});
  const std::string text = RawText(Pdf());
  EXPECT_NE(text.find("1008 חברה שלום בע\"מ 5.00"), std::string::npos) << text;
  EXPECT_NE(text.find("1009 مرحبا السلام بَيت 6.00"), std::string::npos) << text;
  const auto left = [this](std::string_view word) {
    for (const PdfWord& found : WordsOf(pdf_)) {
      if (found.text.find(word) != std::string::npos) return found.left;
    }
    return -1.0;
  };
  EXPECT_NEAR(left("5.00"), kLeft + 7.2 * 20, 0.5);
  const PdfPicture picture(pdf_);
  for (const int blank_cell : {4, 5}) {  // between two columns of the third line
    for (int y = 32; y < 40; ++y) {
      EXPECT_FALSE(picture.IsInked(static_cast<int>(kLeft + 7.2 * blank_cell) + 3, y));
    }
  }
}

TEST_F(PdfReportTest, NothingFallsOffThePaperAndAllPagesAreAlike) {
  struct Case {
    const char* mode;
    const char* font;
    float width, height;
    bool portrait;
    int columns;
    double cell;  // points
  };
  const std::vector<Case> cases = {
      {"DOS", "17 cpi", 8.5, 12, true, 135, 72 / 17.0},
      {"DOS", "5 cpi", 8.5, 12, true, 40, 14.4},
      {"DOS", "Draft", 8.5, 12, false, 100, 7.2},
      {"DOS", "10 cpi", 8.5, 12, true, 300, 1.92},
      {"WINDOWS", "Courier New", 4, 3, true, 50, 5.04},
      {"WINDOWS", "No Such Font", 11, 8, true, 80, 6.02},
      {"DOS", "10 cpi", 200, 0.5, true, 80, 1.512},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.mode << " " << c.font << " " << c.width);
    report_.settings.mode = c.mode;
    report_.settings.font = c.font;
    report_.settings.page_width = c.width;
    report_.settings.page_height = c.height;
    report_.settings.portrait = c.portrait;
    report_.settings.fore_color = 0x0000FF;
    report_.job.page_width = c.columns;
    std::string full(static_cast<std::size_t>(c.columns), '_');
    full.front() = 'M';
    full.back() = 'W';
    const Lines page(10, full);
    Lines wide = page;
    wide[5].append(full).append(full).append(" last");
    WritePages({page, wide, page});
    Pdf();
    const PdfPicture picture(pdf_, 2);
    EXPECT_EQ(picture.width, static_cast<int>(72 * (c.portrait ? c.width : c.height)));
    int inked = 0;
    for (int y = 0; y < picture.height; ++y) {
      for (int x = 0; x < picture.width; ++x) {
        const bool inside = x >= 17 && x <= picture.width - 18 && y >= 4 && y <= picture.height - 5;
        if (!picture.IsInked(x, y, 250)) continue;
        EXPECT_TRUE(inside) << x << " " << y;
        ++inked;
      }
    }
    EXPECT_GT(inked, 100);
    const std::vector<PdfWord> words = WordsOf(pdf_, 2);
    EXPECT_EQ(std::count_if(words.begin(), words.end(),
                            [&](const PdfWord& word) { return word.text == full; }),
              9);
    const std::vector<PdfWord> first = WordsOf(pdf_, 1);
    const std::vector<PdfWord> third = WordsOf(pdf_, 3);
    EXPECT_EQ(first.front().right, third.front().right);
    EXPECT_NEAR((first.front().right - first.front().left) / c.columns, c.cell, c.cell / 100);
    EXPECT_EQ(PdfPicture(pdf_).HasColor(0), c.mode == std::string("WINDOWS"));
  }
}

TEST_F(PdfReportTest, BadSettingsAreRefusedBeforeAnythingIsWritten) {
  WritePages({{"x"}});
  const ReportSnapshot good = report_;
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  const std::vector<std::function<void(ReportSnapshot&)>> faults = {
      [](ReportSnapshot& r) { r.settings.page_width = 0; },
      [](ReportSnapshot& r) { r.settings.page_width = 0.5; },
      [](ReportSnapshot& r) { r.settings.page_height = -12; },
      [](ReportSnapshot& r) { r.settings.page_height = kNan; },
      [](ReportSnapshot& r) { r.settings.page_height = 200.5; },
      [](ReportSnapshot& r) { r.settings.page_width = std::numeric_limits<float>::infinity(); },
      [](ReportSnapshot& r) { r.settings.mode = "WINDOWS", r.settings.font_size = 0; },
      [](ReportSnapshot& r) { r.settings.mode = "WINDOWS", r.settings.font_size = kNan; },
      [](ReportSnapshot& r) { r.job.page_length = 0; },
      [](ReportSnapshot& r) { r.job.page_count = 0; },
  };
  for (const auto& fault : faults) {
    report_ = good;
    fault(report_);
    EXPECT_EQ(ErrorOf([this] { Pdf(); }).Number(), 5);
    EXPECT_FALSE(std::filesystem::exists(pdf_));
  }
}

TEST_F(PdfReportTest, AFaultOrAStopLeavesTheOldFile) {
  const Lines page(60, std::string(70, 'x') + " नकद");
  WritePages(std::vector<Lines>(400, page));
  testing::WriteFile(pdf_, "old");
  {
    const testing::FileSizeLimit full_disk(4096);
    EXPECT_EQ(ErrorOf([this] { Pdf(); }).Number(), 61);
  }
  {
    OutputFile full("/dev/full");
    EXPECT_EQ(ErrorOf([&] { WritePdfReport(report_, full, {}); }).Number(), 61);
  }
  {
    OutputFile file(pdf_);
    int pages = 0;
    EXPECT_FALSE(WritePdfReport(report_, file, [&] { return ++pages < 200; }));
  }
  std::filesystem::resize_file(report_.page_file, 200'000);
  const Error cut = ErrorOf([this] { Pdf(); });
  EXPECT_EQ(cut.Number(), 321);
  EXPECT_TRUE(Contains(cut, "r.rpt does not hold page 4"));
  std::filesystem::remove(report_.page_file);
  EXPECT_EQ(ErrorOf([this] { Pdf(); }).Number(), 53);
  EXPECT_EQ(testing::ReadFile(pdf_), "old");
}

TEST_F(PdfReportTest, WithoutAnyFontThereIsAnError) {
  WritePages({{"x"}});
  EXPECT_TRUE(testing::Succeeded(testing::StartChild([this] {
    FcConfigSetCurrent(FcConfigCreate());
    return ErrorOf([this] { Pdf(); }).Number() == 5;
  })));
}

}  // namespace
}  // namespace kel
