#include "command/command_fixture.h"
#include "data/csv.h"
#include "keldll/browse_options.h"
#include "keldll/browse_table.h"
#include "support/errors.h"
#include "support/sqlite_file.h"

namespace kel::testing {
namespace {

using command::BrowseOptions;
using command::BrowseTable;
using command::ReadBrowseOptions;

class BrowseTest : public CommandTest {
 protected:
  static BrowseTable Open(const Words& words) { return OpenTable(ReadBrowseOptions(words)); }

  // Names, then rows; Null is "-".
  static std::string Flat(Recordset& rows) {
    std::string text;
    for (int i = 0; i < rows.FieldCount(); ++i) {
      text += (i > 0 ? "|" : "") + rows.Field(i).name;
    }
    for (; !rows.EndOfFile(); rows.MoveNext()) {
      text += '\n';
      for (int i = 0; i < rows.FieldCount(); ++i) {
        text.append(i > 0 ? "|" : "");
        text.append(rows.FieldCell(i).IsNull() ? "-" : rows.FieldText(i));
      }
    }
    return text;
  }

  std::string csv_ = Write("sales.csv",
                           "Name,name,,Rate [Rs.],Name (2)\n"
                           "b,,x,\"1,250.00\",\n"
                           "a,,,950.00,\n"
                           "c,,,,7-\n");
  std::string grid_ = Write("grid.json", R"({"TextMatrix": [["Code", "", "Rs\n"], ["", "", "net"],
      ["1001", "Cash", "1,250.00"], ["1002", "Stock", "950"], ["1003"]],
      "ColAlignment": [1, 7], "FixedRows": 2, "Caption": "Stock"})");
};

TEST_F(BrowseTest, OptionsOfColumnsAreReadAsTheyAreWritten) {
  const BrowseOptions options =
      ReadBrowseOptions(Words{"t.csv", "--active=0,3", "--sums", "2, 4", "--align", "l,R,Centre,g",
                              "--formats", "1=#,##0.00,0=dd/mmmm/yyyy,12=,4=0,0,5=x=1,x2=3"});
  EXPECT_EQ(options.active, (std::vector{0, 3}));
  EXPECT_EQ(options.sums, (std::vector{2, 4}));
  EXPECT_EQ(options.alignments, (std::vector{gridLeft, gridRight, gridCenter, gridGeneral}));
  EXPECT_EQ(options.formats,
            (std::map<std::int32_t, std::string>{
                {0, "dd/mmmm/yyyy"}, {1, "#,##0.00"}, {4, "0,0"}, {5, "x=1,x2=3"}, {12, ""}}));
}

TEST_F(BrowseTest, WrongUsageIsToldWithTheUsageOfBrowse) {
  const std::vector<std::pair<Words, std::string>> cases = {
      {{}, "the source is missing"},
      {{"t.csv", "--db", "b.db", "--sql", "SELECT 1"}, "one source"},
      {{"t.csv", "--active", "0,x"}, "--active: \"x\" is not a whole number"},
      {{"t.csv", "--sums", "-1"}, "--sums \"-1\": columns are counted from 0"},
      {{"t.csv", "--align", "l,m"}, "\"m\" is none of l, r, c and g"},
      {{"t.csv", "--formats", ""}, "COLUMN=FORMAT"},
      {{"t.csv", "--formats", "#,1=0"}, "COLUMN=FORMAT"},
      {{"t.csv", "--formats", "99999999999=0"}, "COLUMN=FORMAT"},
      {{"t.csv", "--formats", "1=0,1=#"}, "--formats gives column 1 twice"},
      {{"t.csv", "--preview"}, "unknown option --preview"},
  };
  for (const auto& [words, part] : cases) {
    const RunResult result = Keldll(Words{"browse"} + words);
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(Contains(result.err, part)) << result.err;
    EXPECT_TRUE(Contains(result.err, "\nusage: keldll browse SOURCE")) << result.err;
  }
}

TEST_F(BrowseTest, WhatCannotBeShownIsOneLine) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  const std::string db =
      WriteDatabase(Path("b.db"), "CREATE TABLE T (A); INSERT INTO T VALUES (1)");
  const std::vector<std::pair<Words, Words>> cases = {
      {{Path("none.csv")}, {"none.csv", "No such file"}},
      {{Write("no.json", R"({"TextMatrix": [[], []]})")}, {"no.json", "no cells"}},
      {{csv_, "--active", "0"}, {"--active: " + csv_, "cannot be edited"}},
      {{csv_, "--sums", "4,5"}, {"--sums names column 5", csv_ + " has 5 columns"}},
      {{grid_, "--formats", "3=0"}, {"--formats names column 3", grid_ + " has 3 columns"}},
      {{"--db", db, "--sql", "SELECT A FROM T", "--align", "l,l"}, {"--align names 2 columns", db}},
      {{"--db", db, "--sql", "SELECT A FROM T", "--active", "1"}, {"--active names column 1"}},
      {{"--db", db, "--sql", "SELECT B FROM T"}, {"SELECT B FROM T", "no such column: B"}},
      {{"--db", db, "--sql", "DELETE FROM T"}, {"DELETE FROM T"}},
      {{"--db", Path("none.db"), "--sql", "SELECT 1"}, {"none.db"}},
  };
  for (const auto& [words, parts] : cases) ExpectFailure(Words{"browse"} + words, parts);
  setenv("KELDLL_HOME", (csv_ + "/home").c_str(), 1);
  ExpectFailure({"browse", csv_}, {"sales.csv/home", "Not a directory"});
  for (const char* const screen : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    unsetenv(screen);
  }
  ExpectFailure({"browse", Path("none.csv")}, {"browse needs a screen"});
}

TEST_F(BrowseTest, RowsOfFilesAreThoseOfATable) {
  const BrowseTable csv = Open({csv_});
  EXPECT_EQ(csv.caption, "sales");
  EXPECT_TRUE(csv.alignments.empty());
  csv.records->Sort("[Rate (Rs.)],[Name]");
  EXPECT_EQ(Flat(*csv.records),
            "Name|name (2)|Column 3|Rate (Rs.)|Name (2) (2)\n"
            "c|||-|-7\na|||950.00|-\nb||x|1250.00|-");
  csv.records->Filter("[Rate (Rs.)] > 1000");
  EXPECT_EQ(csv.records->RecordCount(), 1);

  const BrowseTable grid = Open({grid_, "--align", "c"});
  EXPECT_EQ(grid.caption, "Stock");
  EXPECT_EQ(grid.alignments, (std::vector{gridCenter, gridRight, gridLeft}));
  EXPECT_EQ(Flat(*grid.records), "Code|Column 2|Rs\n1001|Cash|1250.00\n1002|Stock|950\n1003||-");
  Write("grid.json", R"({"TextMatrix": [["Code"], ["1"]], "FixedRows": 0})");
  grid.records->Requery();
  EXPECT_EQ(Flat(*grid.records), "Code\n1");
}

TEST_F(BrowseTest, ADatabaseCanBeChangedWhenThereAreColumnsToEdit) {
  const std::string db = WriteDatabase(Path("b.db"),
                                       "CREATE TABLE Party (Id INTEGER PRIMARY KEY, Name TEXT);"
                                       "INSERT INTO Party VALUES (1, 'Asha')");
  const Words source = {"--db", db, "--sql", "SELECT * FROM Party"};
  const auto rename = [](const BrowseTable& table) {
    table.records->SetFieldValue("Name", "Usha");
    table.records->Update();
  };
  const BrowseTable read = Open(source);
  EXPECT_EQ(read.caption, "Party");
  EXPECT_TRUE(Contains(ErrorOf([&] { rename(read); }), "readonly database"));
  rename(Open(source + Words{"--active", "1"}));
  EXPECT_EQ(Flat(*Open(source).records), "Id|Name\n1|Usha");
}

}  // namespace
}  // namespace kel::testing
