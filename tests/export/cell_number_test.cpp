#include "export/cell_number.h"

#include <gtest/gtest.h>

#include <vector>

namespace kel {
namespace {

TEST(CellNumberTest, AWholeNumberTextIsANumberShownAsItStands) {
  struct Case {
    const char* text;
    double value;
    const char* format;
  };
  const std::vector<Case> cases = {
      {"0", 0, "0"},
      {"   2500", 2500, "0"},
      {"-12.50", -12.5, "0.00"},
      {".50", 0.5, "#.00"},
      {"007", 7, "000"},
      {"1,234,567.00", 1234567, "#,##0.00"},
      {"-1,234", -1234, "#,##0"},
      {"99,999.9|", 99999.9, "#,##0.0\"|\""},
      {"5 |", 5, "0\" |\""},
      {"1.00-", -1, "0.00;0.00\"-\""},
      {"1.00+", 1, R"(0.00"+";0.00"-")"},
      {"+0.00", 0, R"("+"0.00;"-"0.00)"},
      {"1,23,456.70", 123456.7,
       R"([>=10000000]##\,##\,##\,##0.00;[>=100000]##\,##\,##0.00;##,##0.00)"},
      {"1,00,00,00,000", 1e9,
       R"([>=1000000000]##\,##\,##\,##\,##0;[>=10000000]##\,##\,##\,##0;##\,##\,##0)"},
      {"-12,34,567|", -1234567, R"(##\,##\,##0"|")"},
      {"123456789012345", 123456789012345, "0"},
  };
  for (const Case& each : cases) {
    const std::optional<CellNumber> number = ReadCellNumber(each.text);
    ASSERT_TRUE(number) << each.text;
    EXPECT_EQ(number->value, each.value) << each.text;
    EXPECT_EQ(number->format, each.format) << each.text;
  }
}

TEST(CellNumberTest, AnyOtherTextAndWhatCannotBeShownAsItStandsIsNone) {
  for (const char* const text : {"",
                                 " ",
                                 "|",
                                 "-",
                                 ".",
                                 ",",
                                 "5.",
                                 "- 5",
                                 "1-2",
                                 "+5-",
                                 "1 234",
                                 "1e5",
                                 "0x10",
                                 "inf",
                                 "nan",
                                 "01/04/2026",
                                 "10.5.2",
                                 "5||",
                                 "|5",
                                 "=5",
                                 "@5",
                                 "(5.00)",
                                 "5%",
                                 "5 Dr",
                                 "१२",
                                 "1,2,3",
                                 "12,34",
                                 "1,2345",
                                 ",123",
                                 "0,123",
                                 "123,45,678",
                                 "-0.00",
                                 "1234567890123456",
                                 "0.1234567890123456",
                                 "0.0000000000000001"}) {
    EXPECT_FALSE(ReadCellNumber(text)) << text;
  }
}

}  // namespace
}  // namespace kel
