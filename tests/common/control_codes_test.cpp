#include "common/control_codes.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace kel {
namespace {

TEST(StripCodes, DeletesEachCodeFromWhatTheOneBeforeItLeft) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"\033EA\033-1B\033-0C\033F", "ABC"},
      {"\033\033\033E\033-14ACME\033F", "\033\033ACME"},  // the heading mark stays
      {"\033-26a\033-24b\033-22c\033-20d\033-18e\033-16f\033-14g\033-12h\033-10i\033-8j",
       "abcdefghij"},
      // Digits behind "underline on" that make a size of it are lost.
      {"\033-12,500\033-0", ",500"},
      {"\033-18,000", ",000"},
      {"\033-19\033-0", "9"},
      // What a deletion joins is deleted only by a code whose turn is still to come.
      {"\033\033E-1x", "x"},
      {"\033\033EEx", "\033Ex"},
      {"\033\033-8Ex", "\033Ex"},
      {"\u20b9\033E\u0915\033F", "\u20b9\u0915"}};
  for (const auto& [line, stripped] : cases) {
    EXPECT_EQ(StripCodes(line, TitleMark::kKeep), stripped) << line;
  }
}

TEST(StripCodes, TakesTheTitleMarkOnlyWhenAskedAndLast) {
  EXPECT_EQ(StripCodes("\x01\033ETitle\033F\x01", TitleMark::kKeep), "\x01Title\x01");
  EXPECT_EQ(StripCodes("\x01\033ETitle\033F\x01", TitleMark::kRemove), "Title");
  EXPECT_EQ(StripCodes("\033\001E", TitleMark::kRemove), "\033E");
}

TEST(StripCodes, CostsLinearTimeOnALineOfNothingButCodes) {
  std::string line;
  for (int i = 0; i < 1'000'000; ++i) line += "\033-10\033E";
  StripCodesInPlace(line, TitleMark::kRemove);
  EXPECT_EQ(line, "");
}

}  // namespace
}  // namespace kel
