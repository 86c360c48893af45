#include "keldll/arguments.h"

#include <gtest/gtest.h>

#include <array>

namespace kel::command {
namespace {

constexpr std::array kSpecs = {
    OptionSpec{"--caption", OptionKind::kValue}, OptionSpec{"--title", OptionKind::kRepeatedValue},
    OptionSpec{"-o", OptionKind::kRepeatedValue}, OptionSpec{"--print", OptionKind::kFlag}};

Arguments Read(const std::vector<std::string>& words) { return {words, kSpecs}; }

using Texts = std::vector<std::string>;

TEST(ArgumentsTest, OptionsStandAnywhereAmongTheOtherWords) {
  const Arguments arguments = Read({"a", "--print", "b", "--caption", "Day Book", "c"});
  EXPECT_EQ(arguments.Positional(), (Texts{"a", "b", "c"}));
  EXPECT_TRUE(arguments.Has("--print"));
  EXPECT_EQ(arguments.Value("--caption"), "Day Book");
  EXPECT_EQ(arguments.Value("--title"), std::nullopt);
}

TEST(ArgumentsTest, ValueStandsInTheSameWordOrInTheNext) {
  const Arguments arguments =
      Read({"--title=a=b", "--title", "--print", "--title=", "-ox.rpt", "-o", "-"});
  EXPECT_EQ(arguments.Values("--title"), (Texts{"a=b", "--print", ""}));
  EXPECT_EQ(arguments.Values("-o"), (Texts{"x.rpt", "-"}));
  EXPECT_FALSE(arguments.Has("--print"));
}

TEST(ArgumentsTest, TwoHyphensEndTheOptionsAndOneIsNone) {
  EXPECT_EQ(Read({"-", "--", "--print", "--"}).Positional(), (Texts{"-", "--print", "--"}));
}

TEST(ArgumentsTest, WrongOptionsAreNamed) {
  const std::vector<std::pair<Texts, std::string>> cases = {
      {{"--colour"}, "unknown option --colour"},
      {{"-x"}, "unknown option -x"},
      {{"--caption"}, "option --caption needs a value"},
      {{"--print=yes"}, "option --print takes no value"},
      {{"--caption=a", "--caption=b"}, "option --caption is given twice"},
      {{"--print", "--print"}, "option --print is given twice"},
  };
  for (const auto& [words, message] : cases) {
    try {
      Read(words);
      ADD_FAILURE() << message;
    } catch (const UsageError& error) {
      EXPECT_EQ(error.what(), message);
    }
  }
}

TEST(ArgumentsTest, RangeNeedsTwoWholeNumbersInOrder) {
  const Range range = ReadRange("--rows", "0-2147483647", 0);
  EXPECT_EQ(range.first, 0);
  EXPECT_EQ(range.last, 2147483647);
  for (const char* const text :
       {"", "3", "-", "3-", "-3", "4-3", "1--2", "1-2x", " 1-2", "1-2147483648", "+1-2"}) {
    EXPECT_THROW(ReadRange("--rows", text, 0), UsageError) << text;
  }
  EXPECT_THROW(ReadRange("--pages", "0-2", 1), UsageError);
}

TEST(ArgumentsTest, ListKeepsEmptyItems) {
  EXPECT_EQ(SplitList("10, 20 ,,-1"), (Texts{"10", "20", "", "-1"}));
  EXPECT_EQ(SplitList(""), (Texts{""}));
}

}  // namespace
}  // namespace kel::command
