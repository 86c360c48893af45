#include "export/pdf_printer.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "common/error.h"
#include "export/paper_geometry.h"
#include "export/pdf_tools.h"
#include "support/errors.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using testing::ErrorOf;
using testing::InfoOf;
using testing::PdfPicture;
using testing::PdfWord;
using testing::WordsOf;

DocumentSettings A5() {
  DocumentSettings settings;
  settings.title = "Cash \xff book";
  settings.font = "Courier New";
  settings.page_width = 5.8F;
  settings.page_height = 8.3F;
  return settings;
}

TEST(PaperGeometryTest, CharacterSetsTellTheirPitch) {
  for (const auto& [name, size, width] :
       std::vector<std::tuple<const char*, double, double>>{{"10 cpi", 12, 7.2},
                                                            {"12 cpi", 10, 6},
                                                            {"17.1cpi", 120 / 17.1, 72 / 17.1},
                                                            {"5 cpi NLQ", 12, 14.4},
                                                            {"0 cpi", 12, 7.2},
                                                            {"-3 cpi", 12, 7.2},
                                                            {"nan cpi", 12, 7.2},
                                                            {"1e9 cpi", 12, 7.2},
                                                            {"17", 12, 7.2},
                                                            {"Draft", 12, 7.2},
                                                            {"", 12, 7.2}}) {
    const TextPitch pitch = PitchOf(name);
    EXPECT_DOUBLE_EQ(pitch.size, size) << name;
    EXPECT_DOUBLE_EQ(pitch.cell_width, width) << name;
    EXPECT_DOUBLE_EQ(pitch.cell_height, 12) << name;
  }
}

TEST(PdfPrinterTest, LinesHaveTheirSizesAndASheetThatIsTooFullIsDrawnSmaller) {
  const testing::TestFolder folder;
  const auto document = BeginPdfDocument(folder / "p.pdf", A5());
  EXPECT_NEAR(document->SheetHeight(), 8.15 * 72, 1e-3);
  const double line = document->LineHeight(10);
  EXPECT_DOUBLE_EQ(document->LineHeight(20), 2 * line);
  document->PrintSheet(std::vector<PrintedLine>{
      {"Heading", 14, true}, {"", 10, false}, {"नकद 1,250.00", 10, false}});
  document->PrintSheet({});
  const std::vector<PrintedLine> many(200, {std::string(100, 'M'), 10, false});
  document->PrintSheet(many);
  EXPECT_FALSE(std::filesystem::exists(folder / "p.pdf"));
  document->End();

  const std::string info = InfoOf(folder / "p.pdf");
  EXPECT_NE(info.find("Title:           Cash \xef\xbf\xbd book\n"), std::string::npos) << info;
  EXPECT_NE(info.find("Pages:           3\n"), std::string::npos);
  EXPECT_NE(info.find("LiberationMono-Bold"), std::string::npos);
  const std::vector<PdfWord> words = WordsOf(folder / "p.pdf");
  ASSERT_EQ(words.size(), 3U);
  EXPECT_NEAR(words[0].right - words[0].left, 7 * 8.4, 0.1);
  EXPECT_EQ(words[1].text, "नकद");
  EXPECT_NEAR(words[2].left - words[1].left, 4 * 6, 0.1);
  EXPECT_NEAR(words[2].bottom - words[0].top, 2.4 * line + 10, 8);
  EXPECT_TRUE(WordsOf(folder / "p.pdf", 2).empty());
  const std::vector<PdfWord> small = WordsOf(folder / "p.pdf", 3);
  ASSERT_EQ(small.size(), many.size());
  EXPECT_LE(small.back().bottom, 8.3 * 72);
}

TEST(PdfPrinterTest, FlagsAndColourHoldForEveryLine) {
  const testing::TestFolder folder;
  DocumentSettings settings = A5();
  settings.font_flags = {false, true, true, true};
  settings.fore_color = 0x00FF0000;  // blue
  const auto document = BeginPdfDocument(folder / "p.pdf", settings);
  document->PrintSheet(
      std::vector<PrintedLine>{{"          ", 40, false}, {"x         .", 40, false}});
  document->End();
  EXPECT_NE(InfoOf(folder / "p.pdf").find("LiberationMono-Italic"), std::string::npos);
  const PdfPicture picture(folder / "p.pdf");
  int strokes = 0;
  for (int y = 1; y < picture.height; ++y) {  // through the blanks between the letters
    strokes += picture.IsInked(200, y) && !picture.IsInked(200, y - 1) ? 1 : 0;
  }
  EXPECT_EQ(strokes, 2);
  EXPECT_TRUE(picture.HasColor(2));
}

TEST(PdfPrinterTest, ACancelledOrRefusedDocumentLeavesNothing) {
  const testing::TestFolder folder;
  BeginPdfDocument(folder / "p.pdf", A5())->PrintSheet(std::vector<PrintedLine>{{"x", 10, false}});
  DocumentSettings settings = A5();
  settings.page_width = 0;
  EXPECT_EQ(ErrorOf([&] { BeginPdfDocument(folder / "p.pdf", settings); }).Number(), 5);
  const auto document = BeginPdfDocument(folder / "p.pdf", A5());
  for (const float points : {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN(), 1e9F}) {
    const std::vector<PrintedLine> lines = {{"x", points, false}};
    EXPECT_EQ(ErrorOf([&] { document->PrintSheet(lines); }).Number(), 5);
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
  EXPECT_EQ(ErrorOf([&] { BeginPdfDocument(folder / "none" / "p.pdf", A5()); }).Number(), 76);
}

}  // namespace
}  // namespace kel
