#include "command/command_fixture.h"
#include "platform/qt/qt_settings_store.h"
#include "support/sqlite_file.h"

namespace kel::testing {
namespace {

class ReportFailureTest : public CommandTest {
 protected:
  // A job whose outputs must be as they were before it.
  void ExpectReportFailure(const Words& words, const Words& parts) {
    Write("old.rpt", "earlier");
    ExpectFailure(Words{"report", "-o", Path("old.rpt"), "-o", Path("new.txt")} + words, parts);
    EXPECT_EQ(Read("old.rpt"), "earlier") << ::testing::PrintToString(words);
    EXPECT_FALSE(std::filesystem::exists(Path("new.txt"))) << ::testing::PrintToString(words);
  }

  std::string table_ = Write("table.csv", "No,Name\n1,one\n2,two\n");
};

TEST_F(ReportFailureTest, FailureLeavesEveryFileAsItWas) {
  std::filesystem::create_symlink("/dev/full", Path("full.rpt"));
  std::filesystem::create_symlink("b.db", Path("link.txt"));
  const std::string db =
      WriteDatabase(Path("b.db"), "CREATE TABLE T (A); INSERT INTO T VALUES (1)");
  const auto select = [&](const std::string& sql) { return Words{"--db", db, "--sql", sql}; };
  const std::vector<std::pair<Words, Words>> cases = {
      {{Path("none.csv")}, {"none.csv", "No such file"}},
      {{table_ + "/below.json"}, {"table.csv/below.json", "Not a directory"}},
      {{Write("bad.json", R"({"TextMatrix": [["a",]]})")}, {"bad.json: line 1, column 22: "}},
      {{Write("no.json", R"({"TextMatrix": [[], []]})")}, {"no.json", "no cells"}},
      {{Write("bad.csv", "A,B\n1,2\n1,\"2\n")}, {"bad.csv"}},
      {{"--db", table_, "--sql", "SELECT 1"}, {"table.csv", "not a database"}},
      {select("SELECT\nB\nFROM T"), {"SELECT B FROM T", "no such column: B"}},
      {select("DELETE FROM T RETURNING A"), {"DELETE FROM T"}},
      {select("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30000) "
              "SELECT CASE WHEN i < 20000 THEN i ELSE abs(-9223372036854775807 - 1) END FROM n"),
       {"integer overflow"}},
      {{table_, "-o", Path("no/x.rpt")}, {"no/x.rpt", "the folder does not exist"}},
      {{table_, "-o", Path("full.rpt")}, {"No space left on device"}},
      {select("SELECT * FROM T") + Words{"-o", Path("link.txt")}, {"the report's own source"}},
      {{table_, "--cols", "0-2"}, {"Subscript out of range", table_}},
      {{table_, "--rows", "0-3"}, {"Subscript out of range", table_}},
      {{table_, "--widths", "5"}, {"Subscript out of range", table_}},
      {{table_, "--align", "l,l,r"}, {"--align names 3 columns", table_ + " has 2"}},
      {{table_, "--pages", "1-2"}, {"pages 1-2", table_, "has 1 page"}},
      {{table_, "--set", "Lines=6"}, {table_, "Lines", "7"}},
      {{table_, "--start-page", "5", "--set", "EndPage=4"}, {table_, "EndPage"}},
  };
  for (const auto& [words, parts] : cases) ExpectReportFailure(words, parts);
  EXPECT_TRUE(std::filesystem::is_symlink(Path("full.rpt")));
  EXPECT_TRUE(Contains(Report(select("SELECT count(*) || ' left' FROM T")), "1 left"));

  QtSettingsStore store(Path("config/KELDLL/KELDLL.ini"));
  store.Write("Setup\\DOS", "Lines", "many");
  ExpectReportFailure({table_}, {"Lines", "many"});
  store.Delete("Setup\\DOS", "Lines");
  setenv("KELDLL_HOME", (table_ + "/home").c_str(), 1);
  ExpectReportFailure({table_}, {"table.csv/home", "Not a directory"});
}

TEST_F(ReportFailureTest, StandardOutputThatTakesNothingLeavesTheOtherOutputs) {
  for (const auto& [out, reason] : std::vector<std::pair<std::string, std::string>>{
           {"/dev/full", "No space left on device"}, {"&-", "Bad file descriptor"}}) {
    const RunResult result = Wait(Start({"report", table_, "-o", Path("y.rpt"), "-o", "-"}, out));
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "keldll: cannot write to standard output: " + reason + '\n');
    EXPECT_FALSE(std::filesystem::exists(Path("y.rpt")));
    EXPECT_EQ(Wait(Start({"words", "5"}, out)).err, result.err);
  }
}

}  // namespace
}  // namespace kel::testing
