#include "keldll/grid_json.h"

#include <gtest/gtest.h>

#include "support/errors.h"
#include "support/test_folder.h"

namespace kel::testing {
namespace {

class GridJsonTest : public ::testing::Test {
 protected:
  MemoryGrid Read(std::string_view json) const {
    WriteFile(folder_ / "g.json", json);
    return command::ReadGridJson(folder_ / "g.json").grid;
  }

  TestFolder folder_;
};

TEST_F(GridJsonTest, CellsAreTheTextsAsTheyAreWritten) {
  const std::vector<std::pair<std::string_view, std::string_view>> cases = {
      {"\"\xE0\xA4\x95\xFF \"", "\xE0\xA4\x95\xFF "},
      {R"("\u20b9 \ud83d\ude00 \t\"\\\/\u0000")", {"\xE2\x82\xB9 \xF0\x9F\x98\x80 \t\"\\/\0", 14}},
      {"1250.00", "1250.00"},
      {"true", "true"},
      {"null", ""},
      {"12345678901234567890123", "12345678901234567890123"}};
  const std::string before = "\xEF\xBB\xBF{\"TextMatrix\": [[\"a\"], [\"b\", ";
  for (const auto& [json, text] : cases) {
    EXPECT_EQ(Read(before + std::string(json) + "]]}").Text(1, 1), text);
  }
}

TEST_F(GridJsonTest, TextsLongerThanAReadBlockStayWhole) {
  const std::string text(300'000, 'x');
  const std::string json = "{\"TextMatrix\": [[\"a\"],\n[\"" + text + "\", \"" + text + "y\"]]";
  EXPECT_EQ(Read(json + '}').Text(1, 1), text + "y");
  EXPECT_TRUE(Contains(ErrorOf([&] { Read(json); }), "line 2, column 600011: "));
}

TEST_F(GridJsonTest, FaultsNameTheirPlaceAndReason) {
  const std::vector<std::pair<std::string_view, std::string_view>> cases = {
      {"", "line 1, column 1: The document is empty."},
      {"[]", "line 1, column 1: a grid is an object with the member TextMatrix"},
      {"{}", "TextMatrix is missing"},
      {{"{\"TextMatrix\": [[\"a\"]]}\0x", 25}, "The document root must not be followed"},
      {R"({"TextMatrix": [["\ud800\u0041"]]})", "surrogate"},
      {R"({"TextMatrix": [["\udc00"]]})", "surrogate"},
      {R"({"TextMatrix": [["a"]], "Colour": 1})", "line 1, column 33: unknown member \"Colour\""},
      {R"({"TextMatrix": [["a"]], "TextMatrix": []})", "TextMatrix stands there twice"},
      {R"({"TextMatrix": ["a"]})", "TextMatrix must be an array of rows, each an array of texts"},
      {R"({"Caption": 5})", "Caption must be a text"},
      {R"({"ColWidth": [4294967296]})", "ColWidth must be an array of whole numbers"},
      {R"({"FixedRows": -1})", "FixedRows must be a whole number, 0 or more"},
      {R"({"CellFontBold": [[1, 2, 3]]})", "CellFontBold must be an array of [row, column] pairs"},
      {R"({"TextMatrix": [["a"]], "CellFontUnderline": [[1, 0]]})",
       "CellFontUnderline marks the cell [1, 0], but the grid has 1 rows and 1 columns"},
  };
  for (const auto& [json, message] : cases) {
    const Error error = ErrorOf([&, text = json] { Read(text); });
    EXPECT_EQ(error.Number(), error_number::kInvalidFileFormat) << json;
    EXPECT_TRUE(Contains(error, message)) << json;
    EXPECT_TRUE(error.Description().starts_with((folder_ / "g.json: ").string())) << json;
  }
}

}  // namespace
}  // namespace kel::testing
