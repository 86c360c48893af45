// Text-mode print files, printers' code pages, and pages on their way through a system printer.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "common/settings_store.h"
#include "engine/code_page.h"
#include "engine/file_to_printer.h"
#include "engine/print_files.h"
#include "support/errors.h"
#include "support/paper.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using testing::Contains;
using testing::ErrorOf;
using testing::ReadFile;
using testing::WriteFile;
using namespace std::string_literals;

TEST(PrintFiles, HoldFormLengthAndPitchOfTheSettings) {
  MemorySettingsStore store;
  store.Write("Characters", "12 cpi", "77");
  store.Write("Characters", "mine", "256");
  const std::vector<std::tuple<std::string, float, std::string>> cases = {
      {"10 cpi", 12, "\033C\0\x0c\033P"s},  // a set that is not stored
      {"12 cpi", 12, "\033C\0\x0c\033M"s},
      {"12 cpi", 8.5, "\033C\0\x08\033M"s},  // whole inches, halves to the even one
      {"12 cpi", 9.5, "\033C\0\x0a\033M"s},
      {"12 cpi", 10, "\033C\0\x0a\033M"s},  // a byte, not the end of a line
  };
  for (const auto& [font, height, set_up] : cases) {
    PrintSettings settings;
    settings.font = font;
    settings.page_height = height;
    const PrinterCodes codes = CodesFor(settings, store);
    EXPECT_EQ(codes.set_up, set_up) << font << height;
    EXPECT_EQ(codes.reset, "\033C\0\0\033@"s);
  }
  for (const auto& [font, height] :
       {std::pair("mine", 12.F), std::pair("10 cpi", 255.6F), std::pair("10 cpi", -1.F),
        std::pair("10 cpi", std::nanf(""))}) {
    PrintSettings settings;
    settings.font = font;
    settings.page_height = height;
    EXPECT_EQ(ErrorOf([&] { CodesFor(settings, store); }).Number(), 5) << font << height;
  }
}

TEST(PrintFiles, AreWrittenByteForByteAndKnownToBeStale) {
  const testing::TestFolder folder;
  const PrinterCodes codes{"set"s, "reset"s};
  std::string port = "  ";
  EXPECT_FALSE(PrintFilesAreCurrent(folder.Path(), codes, port));
  WriteFile(folder / "_kelPRT.kel", "template");
  BuildPrintFiles(folder.Path(), codes, port);
  EXPECT_EQ(port, "LPT1:");
  EXPECT_EQ(ReadFile(folder / "_kelSet1.rpt"), "set");
  EXPECT_EQ(ReadFile(folder / "_kelSet2.rpt"), "reset");
  const std::string path = folder.Path().string() + "/";
  for (const auto& [batch, pages] :
       {std::pair("_kelPRT1.bat", "_kelFile.rpt"), std::pair("_kelPRT2.bat", "_kelFile.kel")}) {
    std::string expected = "CD\\\r\n";
    for (const std::string name : {"_kelSet1.rpt", pages, "_kelSet2.rpt"}) {
      expected.append("Type \"").append(path).append(name).append("\" > \"LPT1:\"\r\n");
    }
    EXPECT_EQ(ReadFile(folder / batch), expected);
  }
  EXPECT_EQ(ReadFile(folder / "_kelPRT2.pif"), "template");

  EXPECT_TRUE(PrintFilesAreCurrent(folder.Path(), codes, ""));
  EXPECT_FALSE(PrintFilesAreCurrent(folder.Path(), codes, "LPT2:"));
  EXPECT_FALSE(PrintFilesAreCurrent(folder.Path(), {"sat", "reset"}, port));
  WriteFile(folder / "_kelPRT2.bat", "");
  EXPECT_FALSE(PrintFilesAreCurrent(folder.Path(), codes, port));
  EXPECT_EQ(ErrorOf([&] { BuildPrintFiles(folder / "absent", codes, port); }).Number(), 76);
  const std::string before = ReadFile(folder / "_kelPRT1.bat");
  port = "x\"\r\ndel q";
  EXPECT_EQ(ErrorOf([&] { BuildPrintFiles(folder.Path(), codes, port); }).Number(), 482);
  EXPECT_EQ(ReadFile(folder / "_kelPRT1.bat"), before);
}

TEST(CodePage, TurnsCharactersIntoThePrintersBytes) {
  const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
      {"none", "Café ₹\xff", "Café ₹\xff"},
      {"", "é", "é"},
      {"CP437", "Café│─┼½£", "Caf\x82\xb3\xc4\xc5\xab\x9c"},
      {"cp437", "Cafe\u0301 n\u0303o", "Caf\x82 \xa4o"},  // a letter and its mark apart
      {"CP850", "ÀÁ€", "\xb7\xb5?"},
      {"CP858", "€", "\xd5"},
      {"CP1252", "€ “ÿ”", "\x80 \x93\xff\x94"},
      {"CP437", "₹5 राम 中", "?5 ?? ??"},  // a sign for every cell, so that columns stand
      {"CP437",
       "\xff\x82|\x1b"
       "E\r\n",
       "\xff\x82|\x1b"
       "E\r\n"},  // no UTF-8; codes
      {"CP437", "e\xcc", "e\xcc"},
      {"CP437",
       "\x1b"
       "E\u0301x\x1b"
       "F\x1b-1\u093f\x1b-0",
       "\x1b"
       "Ex\x1b"
       "F\x1b-1\x1b-0"},
  };
  for (const auto& [page, text, bytes] : cases) {
    std::string out;
    CodePage(page).AppendEncoded(out, text);
    EXPECT_EQ(out, bytes) << page << " " << text;
  }
  EXPECT_TRUE(Contains(ErrorOf([] { CodePage("CP999"); }), "CP999"));
}

class SystemPrinting : public ::testing::Test {
 protected:
  SystemPrinting() {
    settings_.printer_device = "LX";
    settings_.font_size = 11;
  }

  bool Print(const std::string& text) {
    WriteFile(folder_ / "file.txt", text);
    return PrintThroughSystem(folder_ / "file.txt", Links::kRefuse, "Day Book", settings_, printer_,
                              [&] { return ++asked_ != stop_at_; });
  }
  static std::string Described(const PrintedLine& line) {
    return std::to_string(static_cast<int>(line.points)) + (line.bold ? "b " : "n ") + line.text;
  }

  testing::TestFolder folder_;
  testing::RecordingPrinter printer_;
  PrintSettings settings_;
  int asked_ = 0;
  int stop_at_ = 0;
};

TEST_F(SystemPrinting, SizeAndBoldHoldForAWholeLine) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"plain", "11n plain"},
      {"a \x1b"
       "Ebold\x1b"
       "F cell",
       "11b a bold cell"},
      {"\x01title", "11n title"},
      {"\x1b-8small \x1b-26", "8n small "},
      {"\x1b-26\x1b-24", "24n "},  // in the order of the sizes, not of the line
      {"\x1b-12"
       "0\x1b-0",
       "12n 0"},  // an underlined 20: read as size 12
      {"\x1b-1"
       "0.50\x1b-0",
       "10n .50"},  // an underlined 0.50: size 10, and a digit is lost
      {"\x1b\x1b\x1b"
       "Ehead",
       "11b \x1b\x1bhead"},  // a mark of line 1 only
      {"\x1bX", "11n \x1bX"},
  };
  std::string text =
      "\x1b\x1b\x1b"
      "E\x1b-8"
      "Heading\r\n";
  for (const auto& [line, printed] : cases) text += line + "\r\n" + "\x0c\r\n";
  ASSERT_TRUE(Print(text));
  EXPECT_EQ(Described(printer_.sheets[0][0]), "14b \x1b\x1bHeading");
  for (std::size_t i = 0; i < cases.size(); ++i) {
    EXPECT_EQ(Described(printer_.sheets[i].back()), cases[i].second) << i;
  }
}

TEST_F(SystemPrinting, FormFeedsEndPagesAndOtherFilesFlow) {
  // Nothing of a form feed's line is printed; none at the end makes an empty sheet.
  const std::vector<std::pair<std::string, std::vector<std::size_t>>> cases = {
      {"a\r\n\r\nb\r\n\x0c\r\nc\r\n\x0c\r\n", {3, 1}},
      {"\x0c\r\nlost \x0c text\r\n\x0c", {0, 0, 0}},
      {"a\n\x0c\nb", {1, 1}},
      {std::string(30, '\n') + "\x0c\n" + std::string(11, '\n'), {20, 10, 11}},
      {std::string(18, '\n'), {10, 8}},
      {"", {}},
  };
  settings_.font_size = 0;  // as in text mode: 10 points
  for (const auto& [text, sheets] : cases) {
    ASSERT_TRUE(Print(text)) << text;
    std::vector<std::size_t> lines;
    for (const auto& sheet : printer_.sheets) lines.push_back(sheet.size());
    EXPECT_EQ(lines, sheets) << text;
    EXPECT_TRUE(printer_.ended);
  }
}

TEST_F(SystemPrinting, TheNamedPrinterElseTheDefaultOneGetsTheWholeFileOrNothing) {
  ASSERT_TRUE(Print("x"));
  EXPECT_EQ(printer_.begun.back().device, "LX");
  EXPECT_EQ(printer_.begun.back().title, "Day Book");
  settings_.printer_device = "lx";
  ASSERT_TRUE(Print("x"));
  EXPECT_EQ(printer_.begun.back().device, "");

  stop_at_ = asked_ + 2;
  EXPECT_FALSE(Print("a\n\x0c\nb\n\x0c\n"));
  EXPECT_FALSE(printer_.ended);
  settings_.font_size = 1e6;
  EXPECT_TRUE(Contains(ErrorOf([&] { Print("x"); }), "1638 points"));
  settings_.font_size = 10;
  printer_.gives_file = false;
  EXPECT_FALSE(Print("x"));
  printer_.gives_file = true;
  printer_.on_sheet = [] { throw Error(error_number::kPrinterError, "out of paper"); };
  EXPECT_TRUE(Contains(ErrorOf([&] { Print("x"); }), "out of paper"));
  EXPECT_FALSE(printer_.ended);
}

}  // namespace
}  // namespace kel
