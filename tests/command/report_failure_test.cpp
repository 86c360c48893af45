#include <unistd.h>

#include "command/command_fixture.h"

namespace kel {
namespace {

// A job whose outputs must be as they were before it.
class ReportFailureTest : public CommandTest {
 protected:
  void SetUp() override { table_ = Write("table.csv", "No,Name\n1,one\n2,two\n"); }

  void ExpectReportFailure(const Words& words, const std::vector<std::string>& parts) const {
    Write("old.rpt", "earlier");
    Words all = {"report", "-o", Path("old.rpt"), "-o", Path("new.txt")};
    all.insert(all.end(), words.begin(), words.end());
    ExpectFailure(all, parts);
    EXPECT_EQ(Read("old.rpt"), "earlier") << testing::PrintToString(words);
    EXPECT_FALSE(std::filesystem::exists(Path("new.txt"))) << testing::PrintToString(words);
  }

  std::string table_;
};

TEST_F(ReportFailureTest, SourceThatCannotBeRead) {
  ExpectReportFailure({Path("none.csv")}, {"none.csv", "No such file"});
  ExpectReportFailure({Path("none.json")}, {"none.json", "No such file"});
  ExpectReportFailure({table_ + "/below.csv"}, {"table.csv/below.csv", "Not a directory"});
  std::filesystem::create_directory(Path("folder.csv"));
  ExpectReportFailure({Path("folder.csv")}, {"folder.csv"});
  std::filesystem::create_directory(Path("folder.json"));
  ExpectReportFailure({Path("folder.json")}, {"folder.json"});
}

TEST_F(ReportFailureTest, GridFileThatIsBroken) {
  ExpectReportFailure({Write("bad.json", R"({"TextMatrix": [["a",]]})")},
                      {"bad.json", "line 1, column 22", "Invalid value"});
  ExpectReportFailure({Write("bad.json", "{\"Rows\": 3}")},
                      {"bad.json", "unknown member \"Rows\""});
  ExpectReportFailure({Write("bad.json", "")}, {"bad.json", "empty"});
  ExpectReportFailure({Write("bad.json", R"({"TextMatrix": []})")}, {"bad.json", "no cells"});
  ExpectReportFailure({Write("bad.json", R"({"TextMatrix": [[], []]})")}, {"bad.json", "no cells"});
}

TEST_F(ReportFailureTest, CsvThatIsBroken) {
  ExpectReportFailure({Write("bad.csv", "A,B\n1,2\n1,2,3\n")}, {"bad.csv", "3"});
  ExpectReportFailure({Write("bad.csv", "A,B\n1,\"2\n")}, {"bad.csv"});
  ExpectReportFailure({Write("bad.csv", "")}, {"bad.csv"});
  // Far behind the records that are read for their widths.
  std::string csv = "A,B\n";
  for (int i = 0; i < 50'000; ++i) csv += "1,2\n";
  ExpectReportFailure({Write("bad.csv", csv + "1,\"2\n")}, {"bad.csv"});
}

TEST_F(ReportFailureTest, DatabaseOrStatementThatIsWrong) {
  const std::string database = MakeDatabase("b.db", "CREATE TABLE T (A); INSERT INTO T VALUES (1)");
  const auto sql = [&](const std::string& text) { return Words{"--db", database, "--sql", text}; };
  ExpectReportFailure({"--db", Path("none.db"), "--sql", "SELECT 1"}, {"none.db"});
  ExpectReportFailure({"--db", table_, "--sql", "SELECT * FROM T"},
                      {"table.csv", "not a database"});
  ExpectReportFailure(sql("SELECT\nB\nFROM T"), {"SELECT B FROM T", "no such column: B"});
  ExpectReportFailure(sql("SELEKT"), {"SELEKT", "syntax error"});
  ExpectReportFailure(sql(""), {});
  ExpectReportFailure(sql("INSERT INTO T VALUES (2)"), {"INSERT INTO T"});
  ExpectReportFailure(sql("DELETE FROM T RETURNING A"), {"DELETE FROM T"});
  EXPECT_NE(Keldll({"report", "--db", database, "--sql", "SELECT count(*) || ' left' FROM T"})
                .out.find("1 left"),
            std::string::npos);
}

TEST_F(ReportFailureTest, StatementThatFailsHalfWay) {
  const std::string database = MakeDatabase("b.db", "CREATE TABLE T (A)");
  const std::string sql =
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30000) "
      "SELECT CASE WHEN i < 20000 THEN i ELSE abs(-9223372036854775807 - 1) END FROM n";
  ExpectReportFailure({"--db", database, "--sql", sql}, {"integer overflow"});
}

TEST_F(ReportFailureTest, RangesThatTheGridDoesNotHave) {
  const std::string grid = Write("g.json", R"({"TextMatrix": [["A", "B"], ["1", "2"]]})");
  for (const std::string& source : {table_, grid}) {
    ExpectReportFailure({source, "--cols", "0-2"}, {"Subscript out of range", source});
    ExpectReportFailure({source, "--rows", "0-3"}, {"Subscript out of range", source});
    ExpectReportFailure({source, "--rows", "7-9"}, {"Subscript out of range", source});
    ExpectReportFailure({source, "--widths", "5"}, {"Subscript out of range", source});
    ExpectReportFailure({source, "--align", "l,l,r"}, {"--align names 3 columns", "has 2"});
    ExpectReportFailure({source, "--pages", "1-2"}, {"pages 1-2", source, "has 1 page"});
  }
}

TEST_F(ReportFailureTest, SettingsThatNoPageCanBeMadeWith) {
  ExpectReportFailure({table_, "--widths", "0,-3"}, {"table.csv"});
  ExpectReportFailure({table_, "--set", "Lines=6"}, {"table.csv", "Lines", "7"});
  ExpectReportFailure({table_, "--set", "Lines=8", "--set", "TopMargin=1", "--title", "a",
                       "--title", "b", "--title", "c"},
                      {"table.csv", "Lines", "9"});
  ExpectReportFailure({table_, "--start-page", "5", "--set", "EndPage=4"},
                      {"table.csv", "EndPage"});
}

TEST_F(ReportFailureTest, StoredSettingThatCannotBeRead) {
  // Only another program can have stored such a text.
  ASSERT_EQ(Keldll({"settings", "set", "Setup\\DOS/Lines", "66"}).status, 0);
  std::filesystem::path store;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(Path("config"))) {
    if (entry.is_regular_file()) store = std::filesystem::relative(entry.path(), folder_);
  }
  std::string text = Read(store.string());
  text.replace(text.find("=66"), 3, "=many");
  Write(store.string(), text);
  ExpectReportFailure({table_}, {"Lines", "many"});
}

TEST_F(ReportFailureTest, OutputThatCannotBeMade) {
  ExpectReportFailure({table_, "-o", Path("missing/x.rpt")},
                      {"missing/x.rpt", "the folder does not exist"});
  ExpectReportFailure({table_, "-o", table_ + "/x.txt"}, {"table.csv/x.txt"});
  std::filesystem::create_directory(Path("folder.rpt"));
  ExpectReportFailure({table_, "-o", Path("folder.rpt")}, {"folder.rpt"});
}

TEST_F(ReportFailureTest, FullDeviceIsToldAndNothingElseIsReplaced) {
  ASSERT_EQ(symlink("/dev/full", Path("x.rpt").c_str()), 0);
  ExpectReportFailure({table_, "-o", Path("x.rpt")}, {"No space left on device"});
  EXPECT_TRUE(std::filesystem::is_symlink(Path("x.rpt")));
  const RunResult result =
      Keldll({"report", table_, "-o", Path("y.rpt"), "-o", "-"}, {.out = "/dev/full", .err = ""});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "keldll: cannot write to standard output: No space left on device\n");
  EXPECT_FALSE(std::filesystem::exists(Path("y.rpt")));
}

TEST_F(ReportFailureTest, SourceIsNeverReplacedByItsReport) {
  const std::string database = MakeDatabase("books.txt", "CREATE TABLE T (A)");
  const std::string before = Read("books.txt");
  ASSERT_EQ(symlink("books.txt", Path("other.txt").c_str()), 0);
  for (const std::string& output : {database, Path("other.txt")}) {
    ExpectFailure({"report", "--db", database, "--sql", "SELECT * FROM T", "-o", output},
                  {"the report's own source"});
    EXPECT_EQ(Read("books.txt"), before);
  }
}

TEST_F(ReportFailureTest, CacheFolderThatCannotBeMade) {
  SetEnvironment("KELDLL_HOME", table_ + "/home");
  ExpectReportFailure({table_}, {"table.csv/home", "Not a directory"});
}

TEST_F(ReportFailureTest, WhatLaterVersionsDoIsRefusedBeforeAnyWork) {
  ExpectReportFailure({Path("none.csv"), "--print"}, {"--print is not available in this version"});
  ExpectReportFailure({Path("none.csv"), "--preview"},
                      {"--preview is not available in this version"});
  for (const std::string ending : {".pdf", ".doc", ".xls", ".xlsx", ".PDF"}) {
    ExpectReportFailure({Path("none.csv"), "-o", Path("x" + ending)},
                        {ending + " output is not available in this version"});
  }
  for (const std::string url : {"postgresql://me@localhost:5432/books", "odbc:DSN=Books"}) {
    ExpectReportFailure({"--db", url, "--sql", "SELECT 1"}, {"is not available in this version"});
  }
}

TEST_F(ReportFailureTest, WrongUsageIsToldBeforeAnyWork) {
  const std::vector<std::pair<Words, std::string>> cases = {
      {{}, "the source is missing"},
      {{"a.csv", "b.csv"}, "unexpected \"b.csv\""},
      {{"a.txt"}, ".json or .csv"},
      {{"--db", "b.db"}, "--db needs --sql"},
      {{"--sql", "SELECT 1"}, "--sql needs --db"},
      {{"a.csv", "--db", "b.db", "--sql", "SELECT 1"}, "one source"},
      {{"a.csv", "--colour"}, "unknown option --colour"},
      {{"a.csv", "-o"}, "-o needs a value"},
      {{"a.csv", "-o", "x.odt"}, ".rpt, .txt, .pdf, .doc, .xls or .xlsx"},
      {{"a.csv", "-o", "rpt"}, ".rpt, .txt, .pdf, .doc, .xls or .xlsx"},
      {{"a.csv", "--widths", "5,x"}, "\"x\" is not a whole number"},
      {{"a.csv", "--widths", "5,,6"}, "\"\" is not a whole number"},
      {{"a.csv", "--align", "l,c"}, "\"c\" is neither l nor r"},
      {{"a.csv", "--rows", "5-2"}, "--rows \"5-2\""},
      {{"a.csv", "--cols", "2"}, "--cols \"2\""},
      {{"a.csv", "--pages", "0-1"}, "--pages \"0-1\""},
      {{"a.csv", "--start-page", "one"}, "--start-page: \"one\""},
      {{"a.csv", "--set", "Lines"}, "NAME=VALUE"},
      {{"a.csv", "--set", "Line=60"}, "no print setting \"Line\""},
      {{"a.csv", "--set", "lines=6O"}, "--set Lines: \"6O\" is not a whole number"},
      {{"a.csv", "--set", "Lines=40000"}, "--set Lines: \"40000\" is not a whole number"},
      {{"a.csv", "--set", "Portrait=1"}, "--set Portrait: \"1\" is not True or False"},
      {{"a.csv", "--set", "PageHeight=tall"}, "--set PageHeight: \"tall\" is not a number"},
      {{"a.csv", "--print", "--pages", "x"}, "--pages \"x\""},
  };
  for (const auto& [words, message] : cases) {
    Words all = {"report"};
    all.insert(all.end(), words.begin(), words.end());
    ExpectWrongUsage(all, message);
  }
}

}  // namespace
}  // namespace kel
