#include "keldll/grid_json.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "common/error.h"
#include "common/text_cells.h"

namespace kel::command {
namespace {

class GridJsonTest : public testing::Test {
 public:
  ~GridJsonTest() override { std::filesystem::remove_all(folder_); }

 protected:
  GridJsonTest() {
    std::string name = (std::filesystem::temp_directory_path() / "grid-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make " + name);
    folder_ = name;
  }

  JsonGrid Read(std::string_view json) const {
    std::ofstream(folder_ / "g.json", std::ios::binary) << json;
    return ReadGridJson(folder_ / "g.json");
  }

  // The message without the path in front.
  std::string Fault(std::string_view json) const {
    try {
      Read(json);
    } catch (const Error& error) {
      const std::string path = (folder_ / "g.json").string() + ": ";
      EXPECT_EQ(error.Number(), error_number::kInvalidFileFormat);
      EXPECT_TRUE(error.Description().starts_with(path)) << error.Description();
      return error.Description().substr(path.size());
    }
    return "no fault";
  }

  std::filesystem::path folder_;
};

CellFont FontAt(MemoryGrid& grid, std::int32_t row, std::int32_t col) {
  grid.SetRow(row);
  grid.SetCol(col);
  return grid.Font();
}

TEST_F(GridJsonTest, MembersComeInAnyOrder) {
  JsonGrid read = Read(R"({"CellFontUnderline": [[1, 2]], "CellFontBold": [[1, 1], [1, 2]],
      "ReportTitle": ["ACME Traders", "2026-27"], "FixedRows": 2, "ColAlignment": [1, 1, 7],
      "ColWidth": [6, 0, -12], "TextMatrix": [["Code", "Account", "Balance"],
      ["1001", "Cash in hand", "1,250.00"], ["a", "b", "c"]], "Caption": "Trial Balance"})");
  EXPECT_EQ(read.caption, "Trial Balance");
  EXPECT_EQ(read.widths, (std::vector<std::int32_t>{6, 0, -12}));
  EXPECT_EQ(read.titles, (std::vector<std::string>{"ACME Traders", "2026-27"}));
  MemoryGrid& grid = read.grid;
  ASSERT_EQ(grid.Rows(), 3);
  ASSERT_EQ(grid.Cols(), 3);
  EXPECT_EQ(grid.Text(1, 1), "Cash in hand");
  EXPECT_EQ(grid.ColAlignment(2), kAlignRight);
  EXPECT_TRUE(FontAt(grid, 1, 1).bold);
  EXPECT_FALSE(FontAt(grid, 1, 1).underline);
  EXPECT_TRUE(FontAt(grid, 1, 2).bold);
  EXPECT_TRUE(FontAt(grid, 1, 2).underline);
  grid.SetRow(1);
  EXPECT_EQ(grid.CellBackColor(), kButtonFace);
  grid.SetRow(2);
  EXPECT_NE(grid.CellBackColor(), kButtonFace);
}

TEST_F(GridJsonTest, OnlyTextMatrixIsRequired) {
  JsonGrid read = Read(R"({"TextMatrix": [["A"], ["1"]]})");
  EXPECT_EQ(read.caption, std::nullopt);
  EXPECT_EQ(read.widths, std::nullopt);
  EXPECT_TRUE(read.titles.empty());
  EXPECT_EQ(read.grid.ColAlignment(0), kAlignLeft);
  read.grid.SetRow(0);
  EXPECT_EQ(read.grid.CellBackColor(), kButtonFace);
  read.grid.SetRow(1);
  EXPECT_NE(read.grid.CellBackColor(), kButtonFace);
}

TEST_F(GridJsonTest, ScalarsInCellsStandForTheirText) {
  const JsonGrid read =
      Read(R"({"TextMatrix": [[1250.00, -0, 1E5, true, false, null, 12345678901234567890123]]})");
  const std::vector<std::string> expected = {
      "1250.00", "-0", "1E5", "true", "false", "", "12345678901234567890123"};
  for (std::int32_t col = 0; col < read.grid.Cols(); ++col) {
    EXPECT_EQ(read.grid.Text(0, col), expected[static_cast<std::size_t>(col)]);
  }
}

TEST_F(GridJsonTest, ShortRowReadsAsEmptyCellsThatMayBeMarked) {
  JsonGrid read = Read(R"({"CellFontBold": [[1, 2]], "FixedRows": 0,
                           "TextMatrix": [["a"], ["b"], ["c", "d", "e"], []]})");
  ASSERT_EQ(read.grid.Cols(), 3);
  EXPECT_EQ(read.grid.Text(1, 0), "b");
  EXPECT_EQ(read.grid.Text(1, 2), "");
  EXPECT_EQ(read.grid.Text(2, 2), "e");
  EXPECT_EQ(read.grid.Text(3, 0), "");
  EXPECT_TRUE(FontAt(read.grid, 1, 2).bold);
  EXPECT_FALSE(FontAt(read.grid, 2, 2).bold);
  read.grid.SetRow(0);
  EXPECT_NE(read.grid.CellBackColor(), kButtonFace);
}

TEST_F(GridJsonTest, BytesThatAreNotUtf8PassUnchanged) {
  EXPECT_EQ(Read("{\"TextMatrix\": [[\"\xE0\xA4\x95\xFF\x80 \"]]}").grid.Text(0, 0),
            "\xE0\xA4\x95\xFF\x80 ");
}

TEST_F(GridJsonTest, EscapesAreRead) {
  EXPECT_EQ(Read(R"({"TextMatrix": [["\u20b9 \ud83d\ude00 \t\"\\\/\u0000"]]})").grid.Text(0, 0),
            std::string_view("\xE2\x82\xB9 \xF0\x9F\x98\x80 \t\"\\/\0", 14));
}

TEST_F(GridJsonTest, ByteOrderMarkIsSkipped) {
  EXPECT_EQ(Read("\xEF\xBB\xBF{\"TextMatrix\": [[\"a\"]]}").grid.Text(0, 0), "a");
}

TEST_F(GridJsonTest, TextsLongerThanAReadBlockStayWhole) {
  const std::string text(300'000, 'x');
  EXPECT_EQ(Read("{\"TextMatrix\": [[\"" + text + "\", \"" + text + "y\"]]}").grid.Text(0, 1),
            text + "y");
}

TEST_F(GridJsonTest, FaultsNameTheirPlaceAndReason) {
  const std::vector<std::pair<std::string_view, std::string_view>> cases = {
      {"", "line 1, column 1: The document is empty."},
      {"[]", "line 1, column 1: a grid is an object with the member TextMatrix"},
      {"\"a\"", "a grid is an object with the member TextMatrix"},
      {"{}", "TextMatrix is missing"},
      {"{\n \"TextMatrix\": [[\"a\" \"b\"]]}", "line 2, column 22: Missing a comma or ']'"},
      {R"({"TextMatrix": [["a"]]} x)", "line 1, column 25: The document root must not be followed"},
      {std::string_view("{\"TextMatrix\": [[\"a\"]]}\0x", 25),
       "The document root must not be followed"},
      {R"({"TextMatrix": [["a"]])", "line 1, column 23: Missing a comma or '}'"},
      {"{\"TextMatrix\": [[\"a\nb\"]]}", "Invalid escape character in string."},
      {R"({"TextMatrix": [["\ud800"]]})", "surrogate"},
      {R"({"TextMatrix": [["\ud800\u0041"]]})", "surrogate"},
      {R"({"TextMatrix": [["\udc00"]]})", "surrogate"},
      {R"({"TextMatrix": [["a"], ]})", "Invalid value."},
      {R"({"TextMatrix": [["a"]], "Colour": 1})", "line 1, column 33: unknown member \"Colour\""},
      {R"({"TextMatrix": [["a"]], "TextMatrix": []})", "TextMatrix stands there twice"},
      {R"({"TextMatrix": ["a"]})", "TextMatrix must be an array of rows, each an array of texts"},
      {R"({"TextMatrix": {}})", "TextMatrix must be an array of rows"},
      {R"({"TextMatrix": [[["a"]]]})", "TextMatrix must be an array of rows"},
      {R"({"TextMatrix": [[{}]]})", "TextMatrix must be an array of rows"},
      {R"({"Caption": 5})", "Caption must be a text"},
      {R"({"Caption": ["a"]})", "Caption must be a text"},
      {R"({"ReportTitle": "a"})", "ReportTitle must be an array of texts"},
      {R"({"ColWidth": ["6"]})", "ColWidth must be an array of whole numbers"},
      {R"({"ColWidth": [6.5]})", "ColWidth must be an array of whole numbers"},
      {R"({"ColWidth": [4294967296]})", "ColWidth must be an array of whole numbers"},
      {R"({"ColAlignment": 1})", "ColAlignment must be an array of whole numbers"},
      {R"({"FixedRows": -1})", "FixedRows must be a whole number, 0 or more"},
      {R"({"CellFontBold": [[1]]})", "CellFontBold must be an array of [row, column] pairs"},
      {R"({"CellFontBold": [[1, 2, 3]]})", "CellFontBold must be an array of [row, column] pairs"},
      {R"({"CellFontBold": [1, 2]})", "CellFontBold must be an array of [row, column] pairs"},
      {R"({"TextMatrix": [["a"]], "CellFontBold": [[1, 0]]})",
       "CellFontBold marks the cell [1, 0], but the grid has 1 rows and 1 columns"},
      {R"({"TextMatrix": [["a"]], "CellFontUnderline": [[0, -1]]})",
       "CellFontUnderline marks the cell [0, -1]"},
      {R"({"TextMatrix": [], "CellFontBold": [[0, 0]]})", "the grid has 0 rows and 0 columns"},
  };
  for (const auto& [json, message] : cases) {
    EXPECT_NE(Fault(json).find(message), std::string::npos) << json << "\n" << Fault(json);
  }
}

TEST_F(GridJsonTest, DeepNestingIsRefusedWithoutRunningOutOfStack) {
  const std::string deep = "{\"TextMatrix\": " + std::string(5'000'000, '[');
  EXPECT_NE(Fault(deep).find("TextMatrix must be"), std::string::npos);
}

}  // namespace
}  // namespace kel::command
