// Text-mode pages on the paper of a dot-matrix printer.

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/host.h"
#include "common/settings_store.h"
#include "engine/CPrint.h"
#include "engine/memory_grid.h"
#include "engine/print_files.h"
#include "support/escp_reader.h"
#include "support/fixed_clock.h"
#include "support/recording_desktop.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using testing::EscpCharacter;
using testing::ReadFile;

constexpr double kCarriage = 8;  // inches
constexpr double kLine = 1.0 / 6;
constexpr int kRows = 200;
constexpr Cells kFirstAmount = 7 + 24 + 1;

std::string Amount(int row) { return std::to_string(row % 9) + ",250.00"; }
bool IsBold(int row) { return row % 3 == 0; }
bool IsUnderlined(int row) { return row % 4 == 0; }

class TextModePageTest : public ::testing::Test {
 protected:
  void SetUp() override {
    CurrentHost() = {store, std::make_shared<testing::FixedClock>(),
                     std::make_shared<testing::RecordingDesktop>()};
    CurrentReportHost() = {};
    grid.AddRow({"Code", "Account", "Balance"});
    grid.ColAlignment(2, kAlignRight);
    for (int row = 1; row <= kRows; ++row) {
      grid.AddRow({std::to_string(1000 + row), "Account", Amount(row)});
      grid.Font(row, 1, {IsBold(row), false});
      grid.Font(row, 2, {IsBold(row), IsUnderlined(row)});
    }
  }

  // The whole job: what the printer is sent before the pages, the pages, what it is sent after.
  std::string Prepare(CPrint& print) {
    print.ColWidth(Value::Array{6, 24, 12});
    print.PrepareReport(grid, 0, 0, kRows, 2, 0);
    EXPECT_FALSE(print.LastError());
    const PrinterCodes codes = CodesFor(print.Snapshot().settings, *store);
    const std::filesystem::path folder = std::filesystem::path(print.GetKelFile()).parent_path();
    std::string port = "LPT1:";
    BuildPrintFiles(folder, codes, port);
    return ReadFile(folder / kSetUpFileName) + ReadFile(print.GetKelFile()) +
           ReadFile(folder / kResetFileName);
  }

  std::shared_ptr<MemorySettingsStore> store = std::make_shared<MemorySettingsStore>();
  MemoryGrid grid{"Trial Balance"};
};

// Printed lines by sheet and line of the form.
using Paper = std::map<std::pair<int, int>, std::vector<EscpCharacter>>;

Paper Lines(const testing::EscpPaper& paper, double form) {
  Paper lines;
  for (const EscpCharacter& character : paper.characters) {
    if (character.byte == ' ') continue;
    EXPECT_LE(character.x + character.width, kCarriage + 1e-9);
    EXPECT_LE(character.y + kLine, form + 1e-9);
    lines[{character.sheet, static_cast<int>(std::lround(character.y / kLine))}].push_back(
        character);
  }
  return lines;
}

std::string TextFrom(const std::vector<EscpCharacter>& line, Cells first, Cells end) {
  std::string text;
  for (const EscpCharacter& character : line) {
    const auto cell = static_cast<Cells>(std::lround(character.x / character.width));
    EXPECT_NEAR(character.x, cell * character.width, 1e-9);
    if (cell >= first && cell < end) text += character.byte;
  }
  return text;
}

struct Form {
  int lines;
  int height;       // inches
  const char* set;  // characters per inch
  const char* code;
  double cell;  // inches
};

TEST_F(TextModePageTest, EveryPageHasItsSheetAndEveryCellItsColumn) {
  // The defaults; pages as long as the setup dialog allows on 12 and 11 inches; condensed.
  for (const Form& form :
       {Form{60, 12, "10 cpi", "80", 1.0 / 10}, Form{65, 12, "12 cpi", "77", 1.0 / 12},
        Form{59, 11, "15 cpi", "103", 1.0 / 15}, Form{60, 12, "17 cpi", "15", 7.0 / 120}}) {
    SCOPED_TRACE(form.set);
    store->Write("Characters", form.set, form.code);
    CPrint print;
    print.Lines(form.lines);
    print.PageHeight(static_cast<float>(form.height));
    print.Font(form.set);
    const testing::EscpPaper paper = testing::ReadEscp(Prepare(print));
    EXPECT_EQ(paper.not_understood, std::vector<std::string>());
    ASSERT_GE(print.Pages(), 3);
    EXPECT_EQ(paper.sheet, print.Pages()) << "the paper stands at the sheet behind the last page";

    int row = 0;
    int page = -1;
    for (const auto& [place, line] : Lines(paper, form.height)) {
      EXPECT_DOUBLE_EQ(line.front().width, form.cell);
      if (place.first != page) {
        ++page;
        EXPECT_EQ(place.first, page) << "no sheet is left out";
        // The page end of the page before is a line of its own: CR LF follow its form feed.
        EXPECT_EQ(place.second, print.TopMargin() + (page == 0 ? 0 : 1));
        EXPECT_EQ(TextFrom(line, 0, 13), "TrialBalance");
      }
      if (TextFrom(line, 0, 6) != std::to_string(1000 + row + 1)) continue;
      ++row;
      EXPECT_EQ(TextFrom(line, 7, kFirstAmount - 1), "Account");
      EXPECT_EQ(TextFrom(line, kFirstAmount + 12 - 8, kFirstAmount + 12), Amount(row));
      EXPECT_NEAR(line.back().x, (kFirstAmount + 11) * form.cell, 1e-9);
      for (const EscpCharacter& character : line) {
        const bool is_code = character.x < 6.5 * form.cell;
        const bool is_amount = character.x > (kFirstAmount - 0.5) * form.cell;
        EXPECT_EQ(character.bold, IsBold(row) && !is_code) << row;
        EXPECT_EQ(character.underline, IsUnderlined(row) && is_amount) << row;
      }
    }
    EXPECT_EQ(row, kRows);
    EXPECT_EQ(page + 1, print.Pages());
  }
}

}  // namespace
}  // namespace kel
