#include <algorithm>

#include "command/command_fixture.h"

namespace kel {
namespace {

// A page of 12 lines between margins of one line each.
const std::vector<std::string> kSmallPage = {"--set", "Lines=12", "--set", "TopMargin=1"};

std::vector<std::string> operator+(std::vector<std::string> words,
                                   const std::vector<std::string>& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

constexpr std::string_view kTrialBalance = R"({
  "Caption": "Trial Balance",
  "TextMatrix": [["Code", "Account", "Balance"],
                 ["1001", "Cash in hand and at the bank", "1,250.00"],
                 ["1002", "Stock", "2,500.00"]],
  "ColWidth": [6, 18, 12],
  "ColAlignment": [1, 1, 7],
  "CellFontBold": [[1, 1]],
  "CellFontUnderline": [[2, 2]],
  "ReportTitle": ["ACME Traders", "2026-27"]
})";

// The text with ^A for Chr(1) and ^[ for ESC.
std::string Coded(std::string text) {
  for (const auto& [name, code] : {std::pair("^A", "\x01"), std::pair("^[", "\x1b")}) {
    for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at)) {
      text.replace(at, 2, code);
    }
  }
  return text;
}

class ReportTest : public CommandTest {
 protected:
  // The lines of a run that must succeed, on standard output.
  std::string Text(const Words& words) const {
    const RunResult result = Report(words);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    return result.out;
  }

  // `count` records after the headings No,Name.
  std::string Csv(int count) const {
    std::string csv = "No,Name\n";
    for (int i = 1; i <= count; ++i) csv += std::to_string(i) + ",item " + std::to_string(i) + '\n';
    return Write("items.csv", csv);
  }
};

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_F(ReportTest, GridFileBecomesPagesWithTitlesWrapsAndCodes) {
  const std::string source = Write("trial.json", kTrialBalance);
  const RunResult result = Report({source, "--set", "Lines=12", "--set", "TopMargin=3", "-o",
                                   Path("t.rpt"), "-o", Path("t.txt")});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out + result.err, "");
  EXPECT_EQ(Read("t.rpt"), Coded(Lines({
                               "^AACME Traders",
                               "^A2026-27",
                               "",
                               "Trial Balance                   Page 1",
                               "--------------------------------------",
                               "Code   Account                 Balance",
                               "--------------------------------------",
                               "^A1001   ^[ECash in hand and  ^[F     1,250.00",
                               "^A       ^[Eat the bank       ^[F",
                               "^A1002   Stock                  ^[-12,500.00^[-0",
                               "--------------------------------------",
                               "",
                               "",
                               "--------------------------------------",
                               "01/04/2026 10:00:00     End Of Report.",
                               "\x0c",
                           })));
  // The published code remover takes the 2 of 2,500 for a part of the underline code.
  EXPECT_EQ(Read("t.txt"), Lines({
                               "ACME Traders",
                               "2026-27",
                               "",
                               "Trial Balance                   Page 1",
                               "--------------------------------------",
                               "Code   Account                 Balance",
                               "--------------------------------------",
                               "1001   Cash in hand and       1,250.00",
                               "       at the bank       ",
                               "1002   Stock                  ,500.00",
                               "--------------------------------------",
                               "",
                               "",
                               "--------------------------------------",
                               "01/04/2026 10:00:00     End Of Report.",
                               "\x0c",
                           }));
}

TEST_F(ReportTest, CsvStreamsToStandardOutputWithMeasuredWidths) {
  const std::string source = Write("day book.csv",
                                   "\xEF\xBB\xBF"
                                   "Date,Particulars,Amount\r\n"
                                   "2026-04-01,\"Rent, \"\"advance\"\"\",-1250.50\r\n"
                                   "2026-04-02,,7\r\n");
  EXPECT_EQ(Text(Words{source} + kSmallPage), Lines({
                                                  "",
                                                  "day book                     Page 1",
                                                  "-----------------------------------",
                                                  "Date       Particulars       Amount",
                                                  "-----------------------------------",
                                                  "2026-04-01 Rent, \"advance\" -1250.50",
                                                  "2026-04-02                        7",
                                                  "-----------------------------------",
                                                  "",
                                                  "",
                                                  "",
                                                  "-----------------------------------",
                                                  "01/04/2026 10:00:00   End Of Report",
                                                  "\x0c",
                                              }));
}

TEST_F(ReportTest, StatementStreamsUnderItsFirstTablesName) {
  const std::string database =
      MakeDatabase("books.db",
                   "CREATE TABLE Ledger (Code TEXT, Amount DOUBLE, Note TEXT);"
                   "INSERT INTO Ledger VALUES ('A', 0.1, NULL), ('B', 1250, 'due');");
  const std::string text =
      Text(Words{"--db", database, "--sql", "SELECT * FROM Ledger ORDER BY Code", "--widths",
                 "8,10,12", "--set", "PrintColumnDivider=True"} +
           kSmallPage);
  EXPECT_EQ(text, Lines({
                      "",
                      "Ledger                    Page 1",
                      "--------------------------------",
                      "Code    |    Amount|Note",
                      "--------------------------------",
                      "A       |       0.1|",
                      "B       |      1250|due",
                      "--------------------------------",
                      "",
                      "",
                      "",
                      "--------------------------------",
                      "01/04/2026 10:00:00   End Of Rep",
                      "\x0c",
                  }));
  EXPECT_TRUE(Contains(Text({"--db", database, "--sql", "SELECT 1", "--widths", "40"}), "books "));
}

TEST_F(ReportTest, OptionsWinOverTheGridFile) {
  const std::string source = Write("trial.json", kTrialBalance);
  const std::string text =
      Text(Words{source, "--caption", "Balances", "--title", "First", "--title", "Second",
                 "--title", "Third", "--widths", "4,30,9", "--align", "right,l,l"} +
           kSmallPage);
  EXPECT_TRUE(text.starts_with(Lines({"First", "Second", "Third"}))) << text;
  EXPECT_TRUE(Contains(text, "\r\nBalances                               Page 1\r\n")) << text;
  EXPECT_TRUE(Contains(text, "\r\n1001 Cash in hand and at the bank   1,250.00\r\n")) << text;
  EXPECT_FALSE(Contains(text, "ACME")) << text;
}

TEST_F(ReportTest, AlignmentsOfAStreamCanBeChosen) {
  const std::string text = Text({Csv(1), "--widths", "4,8", "--align=R,left"});
  EXPECT_TRUE(Contains(text, "\r\n  No Name\r\n-------------\r\n   1 item 1\r\n")) << text;
  const std::string other = Text({Csv(1), "--widths", "4,8", "--align=l,r"});
  EXPECT_TRUE(Contains(other, "\r\n1      item 1\r\n")) << other;
}

TEST_F(ReportTest, WidthsOfAGridFileAreMeasured) {
  const std::string source =
      Write("wide.json", R"({"TextMatrix": [["A", "", "C"], ["12345", "", ")" +
                             std::string(60, 'x') + R"("]]})");
  const std::string text = Text({source});
  EXPECT_TRUE(Contains(text, "\r\nA       C\r\n")) << text;
  EXPECT_TRUE(Contains(text, "\r\n12345   " + std::string(40, 'x') + "\r\n")) << text;
  EXPECT_TRUE(Contains(text, "\r\n" + std::string(48, '-') + "\r\n")) << text;
}

TEST_F(ReportTest, HiddenColumnsTakeNoPlace) {
  const std::string text = Text({Csv(1), "--widths", "0,8"});
  EXPECT_TRUE(Contains(text, "\r\nName\r\n")) << text;
  EXPECT_TRUE(Contains(text, "\r\nitem 1\r\n")) << text;
  EXPECT_EQ(Text({Csv(1), "--widths", "-5,8"}), text);
}

TEST_F(ReportTest, RowsAndColsPickARangeOfTheGrid) {
  const std::string text = Text({Csv(9), "--rows", "3-4", "--cols", "1-1"});
  EXPECT_TRUE(Contains(text, "\r\nitem 3\r\nitem 4\r\n---")) << text;
  EXPECT_FALSE(Contains(text, "Name")) << text;
  EXPECT_FALSE(Contains(text, "item 5")) << text;
}

TEST_F(ReportTest, PagesArePickedForEveryOutput) {
  // Nine body lines on the first page, then the headings take two of them.
  const Words job = Words{Csv(20)} + kSmallPage;
  const std::string all = Text(job);
  EXPECT_EQ(std::count(all.begin(), all.end(), '\x0c'), 4);
  const std::size_t first_end = all.find('\x0c') + 3;
  const std::size_t second_end = all.find('\x0c', first_end) + 3;
  const std::string second = all.substr(first_end, second_end - first_end);
  EXPECT_TRUE(Contains(second, " Page 2\r\n")) << second;
  const RunResult result = Report(job + Words{"--pages", "2-2", "-o", Path("2.rpt"), "-o", "-"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, second);
  EXPECT_EQ(Read("2.rpt"), second);
  EXPECT_EQ(Text(job + Words{"--pages", "1-4"}), all);
}

TEST_F(ReportTest, StartPageNumbersTheFirstPageAndDropsTheTitles) {
  const std::string text = Text(Words{Csv(1), "--start-page", "7", "--title", "ACME"} + kSmallPage);
  EXPECT_TRUE(Contains(text, " Page 7\r\n")) << text;
  EXPECT_FALSE(Contains(text, "ACME")) << text;
}

TEST_F(ReportTest, EndPageIsUnlimitedUnlessSet) {
  const Words job =
      Words{Csv(60'000), "--widths", "6,40", "--set", "Lines=9", "--set", "TopMargin=0"};
  const std::string all = Text(job);
  EXPECT_GT(std::count(all.begin(), all.end(), '\x0c'), 10'000);
  EXPECT_TRUE(Contains(all, "item 60000"));
  const std::string three = Text(job + Words{"--set", "EndPage=3"});
  EXPECT_EQ(std::count(three.begin(), three.end(), '\x0c'), 3);
  EXPECT_TRUE(three.ends_with("Contd...\r\n\x0c\r\n")) << three;
}

TEST_F(ReportTest, SettingsHoldForTheJobOnly) {
  const Words job = {Csv(1),         "--set", "printdatetime=FALSE", "--set",
                     "LeftMargin=3", "--set", "UnderLineChar=="};
  const std::string text = Text(job);
  EXPECT_TRUE(Contains(text, "\r\n   =========")) << text;
  EXPECT_FALSE(Contains(text, "2026")) << text;
  EXPECT_FALSE(Contains(Text({Csv(1)}), "="));
}

TEST_F(ReportTest, StoredSettingsAreUsed) {
  ASSERT_EQ(Keldll({"settings", "set", "Setup\\DOS/LeftMargin", "4"}).status, 0);
  EXPECT_TRUE(Contains(Text({Csv(1)}), "\r\n     1 item 1\r\n"));
  EXPECT_TRUE(Contains(Text({Csv(1), "--set", "LeftMargin=1"}), "\r\n  1 item 1\r\n"));
}

TEST_F(ReportTest, ModeActsBeforeTheOtherSettings) {
  const auto page_length = [this](const Words& more) {
    const std::string text = Text(Words{Csv(1)} + more);
    return std::count(text.begin(), text.end(), '\n');
  };
  EXPECT_EQ(page_length({}), 5 + 60 + 1);
  EXPECT_EQ(page_length({"--set", "Mode=WINDOWS"}), 5 + 65 + 1);
  EXPECT_EQ(page_length({"--set", "Lines=20", "--set", "mode=WINDOWS"}), 5 + 20 + 1);
  EXPECT_EQ(Keldll({"settings", "get", "Setup/Mode"}).out, "DOS\n");
}

TEST_F(ReportTest, EndingsOfFilesAreReadInAnyCase) {
  const std::string source = Write("T.JSON", kTrialBalance);
  EXPECT_EQ(Report({source, "-o", Path("T.RPT"), "-o" + Path("T.Txt")}).status, 0);
  EXPECT_TRUE(Contains(Read("T.RPT"),
                       "\x1b"
                       "E"));
  EXPECT_FALSE(Contains(Read("T.Txt"), "\x1b"));
}

TEST_F(ReportTest, CsvWithoutRecordsIsAReportOfItsHeadings) {
  const std::string text = Text({Write("empty.csv", "A,B\n")});
  EXPECT_TRUE(Contains(text, "\r\nA B\r\n---\r\n")) << text;
  EXPECT_EQ(std::count(text.begin(), text.end(), '\x0c'), 1);
}

TEST_F(ReportTest, CellOfFiftyMegabytesIsPrintedWhole) {
  constexpr std::ptrdiff_t kCellBytes = 50'000'000;
  std::string cell;
  cell.resize(kCellBytes, 'x');
  const std::string source = Write("big.json", R"({"TextMatrix": [["A"], [")" + cell + R"("]]})");
  const RunResult result = Report({source, "--widths", "1000", "-o", Path("big.txt")});
  EXPECT_EQ(result.status, 0) << result.err;
  const std::string text = Read("big.txt");
  EXPECT_EQ(std::count(text.begin(), text.end(), 'x'), kCellBytes);
}

}  // namespace
}  // namespace kel
