#include "common/format_pattern.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/errors.h"

namespace kel {
namespace {

using testing::ErrorOf;

constexpr double kFifthOfMarch = 39877.586909722222;  // 2009-03-05 14:05:09, a Thursday

struct NumberCase {
  const char* format;
  const char* number;
  const char* text;
};

std::string Number(std::string_view format, std::string_view number) {
  std::string text;
  FormatPattern(format).AppendNumber(number, text);
  return text;
}

std::string Shown(std::string_view format, const Value& value) {
  return FormatPattern(format).Format(value);
}

TEST(FormatPatternTest, DigitPlaceholdersShowDigitsZerosOrNothing) {
  for (const NumberCase& c : {
           NumberCase{"0", "12", "12"},
           {"0", "-0.5", "-1"},
           {"###0.00", "1250.5", "1250.50"},
           {"###0.00", "0", "0.00"},
           {"#", "0", ""},
           {"#.##", "1", "1."},
           {"#.##", "0", "."},
           {"#.##", "-0.505", "-.51"},
           {".00", "12.5", "12.50"},
           {"0.#0#", "5", "5.00"},
           {"0.0##", "1.5", "1.5"},
           {"0##", "5", "005"},
           {"000", "19", "019"},
           {"#,##0.00", "-1250.5", "-1,250.50"},
           {"#,##0", "999999.5", "1,000,000"},
           {"0,000", "5", "0,005"},
           {"#,###", "123", "123"},
           {"#,#", "1234567", "1,234,567"},
           {",0", "1234", "1,234"},
           {"##0,,", "100000000", "100"},
           {"0,.00", "1250", "1.25"},
           {"#,##0,", "1234567890", "1,234,568"},
           {"0.00%", "0.12345", "12.35%"},
           {"(000) 000-0000", "5551234567", "(555) 123-4567"},
           {"00-00", "123456", "1234-56"},
           {"$#,##0.00+", "1e+3", "$1,000.00+"},
           {R"(\#"0;"0 \d\a\y\s)", "7", "#0;7 days"},
           {"0 Cr", "7", "7 Cr"},
           {"0.0.0", "1.5", "1.5.0"},
           {"0, a", "1500", "2 a"},
           {"0 , a", "1500", "1500 , a"},
           {"0\"a", "1", "1a"},
           {"0\\", "1", "1\\"},
           {"0 \xe2\x82\xb9", "1", "1 \xe2\x82\xb9"},
       }) {
    EXPECT_EQ(Number(c.format, c.number), c.text) << c.format << " of " << c.number;
  }
}

TEST(FormatPatternTest, RoundingIsHalfAwayFromZeroOnTheDigitsGiven) {
  for (const NumberCase& c : {
           NumberCase{"0.00", "1.005", "1.01"},
           {"0.00", "1.0049999999999999999999999999", "1.00"},
           {"0.00", "-2.675", "-2.68"},
           {"0.00", "99999999999999999999999999999.995", "100000000000000000000000000000.00"},
           {"0", "0.5", "1"},
           {"0", "0.4999", "0"},
           {"0", "0.04", "0"},
           {"0.0", "9.95", "10.0"},
           {"0.00", "-0.001", "0.00"},
           {"0.00", "-0.005", "-0.01"},
           {"0.000", "1e-300", "0.000"},
           {"0.0", "0012.3400", "12.3"},
           {"0.0", "-inf", "-inf"},
           {"0.0", "1e+99999", "1e+99999"},
       }) {
    EXPECT_EQ(Number(c.format, c.number), c.text) << c.format << " of " << c.number;
  }
  EXPECT_EQ(Number("#,##0", "1E+300").size(), 401u);
  EXPECT_EQ(Number(std::string(20000, '0') + "." + std::string(20000, '0'), "-1.5"),
            "-" + std::string(19999, '0') + "1.5" + std::string(19999, '0'));
}

TEST(FormatPatternTest, ScientificFormatsHaveAsManyWholeDigitsAsPlaceholders) {
  for (const NumberCase& c : {
           NumberCase{"0.00E+00", "1234.5", "1.23E+03"},
           {"0.00e-00", "1234.5", "1.23e03"},
           {"0.00E-0", "0.00012", "1.20E-4"},
           {"0.##E+##", "1000", "1.E+3"},
           {"##0.0E+0", "1234567", "123.5E+4"},
           {"0.00E+00", "9.996", "1.00E+01"},
           {"0.00E+00", "0", "0.00E+00"},
           {"0E+0", "-1e-300", "-1E-300"},
           {".0E+0", "12", ".1E+2"},
           {"0.0E+0 kg", "5", "5.0E+0 kg"},
           {"0 E+", "5", "5 E+"},
           {"E+0", "5", "E+5"},
       }) {
    EXPECT_EQ(Number(c.format, c.number), c.text) << c.format << " of " << c.number;
  }
}

TEST(FormatPatternTest, SectionsAreForPositiveNegativeZeroAndNull) {
  const std::string four = R"(0.0 Dr;0.0 Cr;\n\i\l;"none;")";
  EXPECT_EQ(Shown(four, 1.25) + Shown(four, -1.25), "1.3 Dr1.3 Cr");
  EXPECT_EQ(Shown(four, 0) + Shown(four, -0.04) + Shown(four, 0.04), "nilnilnil");
  EXPECT_EQ(Shown(four, Value::Null()) + Shown(four, Value()), "none;none;");
  const std::string gap = R"($#,##0;;\Z\e\r\o)";
  EXPECT_EQ(Shown(gap, 1234) + Shown(gap, -1234) + Shown(gap, 0.0), "$1,234-$1,234Zero");
  EXPECT_EQ(Shown(gap, Value::Null()) + Shown("0", Value::Missing()), "");
  EXPECT_EQ(Shown("0;(0)", -0.2) + Shown("0;(0)", -7), "0(7)");
  EXPECT_EQ(Shown(";(0)", 1.5) + Shown("\\x", -5), "1.5-x");
  EXPECT_EQ(Shown("0;a;b;c;d", Value::Null()), "c");
}

TEST(FormatPatternTest, DatesAreWrittenByTheirLetters) {
  struct Case {
    const char* format;
    double days;
    const char* text;
  };
  for (const Case& c : {
           Case{"dd/mmmm/yyyy", kFifthOfMarch, "05/March/2009"},
           {"d-mmm-yy", kFifthOfMarch, "5-Mar-09"},
           {"DDD dddd w ww q y", kFifthOfMarch, "Thu Thursday 5 10 1 64"},
           {"ddddd|dddddd|ttttt", kFifthOfMarch, "05/03/2009|Thursday, 05 March 2009|14:05:09"},
           {"h:m:s hh:mm mm n nn", kFifthOfMarch, "14:5:9 14:05 03 5 05"},
           {"h:nn:ss AM/PM", kFifthOfMarch, "2:05:09 PM"},
           {"hh am/pm a/p A/P AMPM", 0.01, "12 am a A AM"},
           {"yyy", kFifthOfMarch, "0964"},
           {R"(d\d"day" m. x)", kFifthOfMarch, "5dday 3. x"},
           {">dd mmm", kFifthOfMarch, "05 MAR"},
           {"yyyy-mm-dd 00:00:00", kFifthOfMarch, "2009-03-05 00:00:00"},
           {"ww", 46022.0, "53"},  // 2025-12-31; 2026 begins on a Thursday
           {"w ww", 46026.0, "1 2"},
           {"c", kFifthOfMarch, "05/03/2009 14:05:09"},
           {"c", 39877.0, "05/03/2009"},
           {"c", 0.75, "18:00:00"},
           {"yyyy-mm-dd hh:nn", -1.25, "1899-12-29 06:00"},
           {"dd/mm/yyyy hh:nn:ss", 39877.999999, "06/03/2009 00:00:00"},
           {"yyyy", -657434, "0100"},
           {"yyyy", -657436.0, "-657436"},
           {"yyyy", 2958465.999999, "2958465.999999"},
           {"0.0", 39877.25, "39877.3"},
           {"@@@@@@@@@@@", 39877.0, " 05/03/2009"},
       }) {
    EXPECT_EQ(Shown(c.format, Date{c.days}), c.text) << c.format << " of " << c.days;
  }
}

TEST(FormatPatternTest, TextPlaceholdersAreFilledFromTheRightOrTheLeft) {
  struct Case {
    const char* format;
    const char* value;
    const char* text;
  };
  for (const Case& c : {
           Case{"(@@@) @@@-@@@@", "5551234567", "(555) 123-4567"},
           {"(@@@) @@@", "15551234", "15(551) 234"},
           {"!(@@@) @@@", "15551234", "(155) 51234"},
           {"@@@@", "ab", "  ab"},
           {"!@@@@|", "ab", "ab  |"},
           {"&&&&|", "ab", "ab|"},
           {"<", "HELLO \xc3\x84", "hello \xc3\xa4"},
           {">@-@", "a\xc3\xa4\xff", "A\xc3\x84-\xff"},
           {"@-@", "e\xcc\x81x", "e\xcc\x81-x"},
           {R"(@;\n\o\n\e)", "", "none"},
           {"@@", "", "  "},
       }) {
    EXPECT_EQ(Shown(c.format, c.value), c.text) << c.format << " of " << c.value;
  }
  EXPECT_EQ(Shown("@@;-", Value::Null()) + Shown("@@", Value::Null()), "-");
  EXPECT_EQ(Shown("@@@@@@", true) + Shown("@@@@@", -12), "  True  -12");
}

TEST(FormatPatternTest, NamedFormatsAreKnownInAnyCase) {
  const std::vector<const char*> names = {"General Number", "currency",   "Fixed",
                                          "STANDARD",       "Percent",    "Scientific",
                                          "Yes/No",         "True/False", "On/Off"};
  std::string numbers;
  for (const char* name : names) {
    for (const Value& value : {Value(-1250.456), Value(0), Value(true)}) {
      numbers += Shown(name, value) + "|";
    }
  }
  EXPECT_EQ(numbers,
            "-1250.456|0|-1|(1,250.46)|0.00|(1.00)|-1250.46|0.00|-1.00|-1,250.46|0.00|-1.00|"
            "-125045.60%|0.00%|-100.00%|-1.25E+03|0.00E+00|-1.00E+00|"
            "Yes|No|Yes|True|False|True|On|Off|On|");
  std::string dates;
  for (const char* name : {"General Date", "Long Date", "Medium Date", "short date", "Long Time",
                           "Medium Time", "Short Time"}) {
    dates += Shown(name, Date{kFifthOfMarch}) + "|";
  }
  EXPECT_EQ(dates,
            "05/03/2009 14:05:09|Thursday, 05 March 2009|05-Mar-09|05/03/2009|14:05:09|02:05 PM|"
            "14:05|");
}

TEST(FormatPatternTest, AValueOfAnotherKindIsConvertedWhenItCanBe) {
  EXPECT_EQ(Shown("#,##0.00", " 1,00,000.005- "), "-100,000.01");
  EXPECT_EQ(Shown("0.0", "1.25E2") + Shown("0.0", "12abc") + Shown("0.0", ""), "125.012abc");
  EXPECT_EQ(Shown("dd/mmm", "5/3/2009") + Shown("dd/mmm", "39877"), "05/Mar39877");
  EXPECT_EQ(Shown("dd/mmm", 39877) + Shown("dd/mmm", 1e9), "05/Mar1000000000");
  EXPECT_EQ(Shown("0.00", Currency{12'500'050}) + Shown("dd/mm/yyyy", true), "1250.0129/12/1899");
  EXPECT_EQ(Shown("Rs. 0.00", 12.5) + Shown("Rs 0.00", "7"), "Rs. 12.50Rs 7.00");
  EXPECT_EQ(Shown("", -1.5) + Shown("", "x") + Shown("", true) + Shown("", Value::Null()),
            "-1.5xTrue");
  for (const double days : {0.0, 0.75, kFifthOfMarch, -1.25}) {
    EXPECT_EQ(Shown("", Date{days}), Value(Date{days}).ToText());
  }
  EXPECT_EQ(ErrorOf([] { Shown("0", Value::Array{1}); }).Number(), 13);
  EXPECT_EQ(ErrorOf([] { Shown("", Value(Value::ObjectPtr())); }).Number(), 13);
}

}  // namespace
}  // namespace kel
