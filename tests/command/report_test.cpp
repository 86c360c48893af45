#include <algorithm>

#include "command/command_fixture.h"
#include "export/code_free_copy.h"
#include "support/sqlite_file.h"

namespace kel::testing {
namespace {

constexpr std::string_view kTrialBalance = R"({
  "CellFontUnderline": [[3, 2]], "CellFontBold": [[2, 1], [4, 2]], "FixedRows": 2,
  "ReportTitle": ["ACME Traders", "2026-27"], "ColAlignment": [1, 1, 7], "ColWidth": [6, 18, 12],
  "TextMatrix": [["Code", "Account", "Balance"], ["", "", "Rs."],
                 ["1001", "Cash in hand and at the bank", "1,250.00"],
                 ["1002", "Stock", "2,500.00"], ["1003"]],
  "Caption": "Trial Balance"})";

// The bytes of lines, in which @ stands for Chr(1), ^ for ESC and ~ for the form feed.
std::string Bytes(std::string_view lines) {
  std::string bytes;
  for (const char sign : lines) {
    if (sign == '\n') bytes += '\r';
    bytes += sign == '@' ? '\x01' : sign == '^' ? '\x1b' : sign == '~' ? '\x0c' : sign;
  }
  return bytes;
}

std::ptrdiff_t Count(const std::string& text, char letter) {
  return std::count(text.begin(), text.end(), letter);
}

using ReportTest = CommandTest;

TEST_F(ReportTest, GridFileBecomesPagesForEveryOutput) {
  const std::string out =
      Report({Write("T.JSON", kTrialBalance), "--set", "Lines=15", "--set", "TopMargin=3", "-o",
              Path("T.RPT"), "-o" + Path("t.txt"), "-o", "-", "-o", "-"});
  EXPECT_EQ(Read("T.RPT"), Bytes(R"(@ACME Traders
@2026-27

Trial Balance                   Page 1
--------------------------------------
Code   Account                 Balance
--------------------------------------
--------------------------------------
                                   Rs.
--------------------------------------
@1001   ^ECash in hand and  ^F     1,250.00
@       ^Eat the bank       ^F
@1002   Stock                  ^-12,500.00^-0
@1003                      ^E            ^F
--------------------------------------

--------------------------------------
01/04/2026 10:00:00     End Of Report.
~
)"));
  std::string stripped;
  CopyWithoutCodes(Path("T.RPT"), [&](std::string_view text) { stripped += text; });
  EXPECT_EQ(Read("t.txt"), stripped);
  EXPECT_EQ(out, stripped);
}

TEST_F(ReportTest, CsvAndStatementsStreamUnderTheirNames) {
  const std::string csv = Write("day book.csv", "Day,Text,Amount\n01/04,\"Rent, due\",-1250.50\n");
  EXPECT_TRUE(Contains(Report({csv}), Bytes(R"(
day book          Page 1
------------------------
Day   Text        Amount
------------------------
01/04 Rent, due -1250.50
---)")));
  const std::string db = WriteDatabase(Path("books.db"),
                                       "CREATE TABLE Ledger (Code TEXT, Amount DOUBLE, Note TEXT);"
                                       "INSERT INTO Ledger VALUES ('A', 0.1, NULL);");
  EXPECT_TRUE(Contains(Report({"--db", db, "--sql", "SELECT * FROM Ledger", "--widths", "8,10,12",
                               "--align=R,left", "--set", "PrintColumnDivider=True"}),
                       Bytes(R"(
Ledger                    Page 1
--------------------------------
    Code|Amount    |Note
--------------------------------
       A|0.1       |
---)")));
  EXPECT_TRUE(Contains(Report({"--db", db, "--sql", "SELECT 1", "--widths", "40"}), "\nbooks  "));
}

TEST_F(ReportTest, OptionsWinOverTheFileForThisJobOnly) {
  const std::vector<std::pair<Words, std::pair<std::string, std::string>>> cases = {
      {{"--caption", "Balances"}, {"Balances                        Page 1", "Trial"}},
      {{"--title", "First", "--title=Second"}, {"First\nSecond\n", "ACME"}},
      {{"--widths", "0,-5,9"}, {"\n 1,250.00\n", "Cash"}},
      {{"--align", "right,l"}, {"  1001 Cash in hand and       1,250.00", "^"}},
      {{"--align", "l,R,l"}, {"1001    Cash in hand and  1,250.00", "^"}},
      {{"--rows", "3-3", "--cols", "1-2"}, {"Page 1\nStock                  ,500.00\n---", "1003"}},
      {{"--start-page", "7"}, {"Trial Balance                   Page 7", "ACME"}},
      {{"--set", "printdatetime=FALSE"}, {"\n                        End Of Report.", "10:00"}},
      {{"--set", "UnderLineChar==", "--set", "LeftMargin=3"}, {"\n   ======", "---"}},
  };
  const std::string source = Write("trial.json", kTrialBalance);
  const std::string plain = Report({source});
  for (const auto& [options, texts] : cases) {
    const std::string text = Report(Words{source} + options);
    EXPECT_TRUE(Contains(text, Bytes(texts.first))) << texts.first << "\n" << text;
    EXPECT_FALSE(Contains(text, texts.second)) << texts.second << "\n" << text;
  }
  EXPECT_EQ(Report({source}), plain);
}

TEST_F(ReportTest, WidthsAreMeasuredOnAThousandRowsAndEndAtForty) {
  std::string csv = "Code,Name\n";
  std::string json = R"({"TextMatrix": [["Code", "Name"])";
  for (int row = 1; row <= 1001; ++row) {
    const std::string code = row == 1000 ? "fives" : row == 1001 ? "sixsix" : "a";
    const std::string name(row == 7 ? 60 : 1, 'x');
    csv.append(code).append(",").append(name).append("\n");
    json.append(",[\"").append(code).append("\",\"").append(name).append("\"]");
  }
  const std::string rule = "\n" + std::string(5 + 1 + 40, '-') + "\n";
  const std::string top = Bytes(rule + "Code  Name" + rule + "a     x\n");
  EXPECT_TRUE(Contains(Report({Write("t.csv", csv)}), top));
  EXPECT_TRUE(Contains(Report({Write("t.json", json + "]}")}), top));
}

TEST_F(ReportTest, PagesAreUnlimitedUnlessPickedOrEnded) {
  std::string csv = "No,Name\n";
  for (int i = 1; i <= 60'000; ++i) csv.append(std::to_string(i)).append(",item\n");
  const Words job = {
      Write("t.csv", csv), "--widths", "6,40", "--caption", "Sums", "--set", "Lines=9"};
  const std::string all = Report(job);
  EXPECT_GT(Count(all, '\x0c'), 10'000);
  EXPECT_TRUE(Contains(all, "\r\n 60000 item\r\n"));
  const std::size_t first_end = all.find('\x0c') + 3;
  const std::string second = all.substr(first_end, all.find('\x0c', first_end) + 3 - first_end);
  EXPECT_TRUE(Contains(second, "\r\nSums                                     Page 2\r\n"))
      << second;
  EXPECT_EQ(Report(job + Words{"--pages", "2-2", "-o", Path("2.rpt"), "-o", "-"}), second);
  EXPECT_EQ(Read("2.rpt"), second);
  const std::string three = Report(job + Words{"--set", "EndPage=3"});
  EXPECT_EQ(Count(three, '\x0c'), 3);
  EXPECT_TRUE(three.ends_with("Contd...\r\n\x0c\r\n")) << three;
}

TEST_F(ReportTest, ModeActsBeforeTheOtherSettingsAndTheJobsWinOverTheStored) {
  const std::string source = Write("t.csv", "No,Name\n1,item 1\n");
  EXPECT_EQ(Keldll({"settings", "set", "Setup\\Windows/LeftMargin", "4"}).status, 0);
  EXPECT_EQ(Count(Report({source}), '\n'), 5 + 60 + 1);
  const std::string windows = Report({source, "--set", "Mode=WINDOWS"});
  EXPECT_EQ(Count(windows, '\n'), 5 + 65 + 1);
  EXPECT_TRUE(Contains(windows, "\r\n     1 item 1\r\n")) << windows;
  const std::string set = Report({source, "--set", "LeftMargin=1", "--set", "mode=WINDOWS"});
  EXPECT_TRUE(Contains(set, "\r\n  1 item 1\r\n")) << set;
  EXPECT_EQ(Keldll({"settings", "get", "Setup/Mode"}).out, "DOS\n");
}

TEST_F(ReportTest, HugeCellIsPrintedWhole) {
  const std::string json = R"({"TextMatrix": [["A"], [")" + std::string(5'000'000, 'x') + R"("]]})";
  Report({Write("big.json", json), "--widths", "1000", "-o", Path("big.txt")});
  EXPECT_EQ(Count(Read("big.txt"), 'x'), 5'000'000);
}

}  // namespace
}  // namespace kel::testing
