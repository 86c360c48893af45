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
      // Digits behind "underline on" that make a size of it are lost.
      {"\033-12,500\033-0", ",500"},
      {"\033-18,000", ",000"},
      // What a deletion joins is deleted only by a code whose turn is still to come.
      {"\033\033EEx", "\033Ex"},
      {"\033\033-8Ex", "\033Ex"}};
  for (const auto& [line, stripped] : cases) {
    EXPECT_EQ(StripCodes(line, TitleMark::kKeep), stripped) << line;
  }
}

TEST(StripCodes, TheOrderOfTheCodesIsThePublishedOne) {
  const std::vector<std::string> order = {"E",   "F",   "-26", "-24", "-22", "-20", "-18",
                                          "-16", "-14", "-12", "-10", "-8",  "-1",  "-0"};
  // Each code stands inside the next one, which is whole when its own turn comes.
  for (std::size_t i = 1; i < order.size(); ++i) {
    const std::string line = "\033\033" + order[i - 1] + order[i] + "x";
    EXPECT_EQ(StripCodes(line, TitleMark::kKeep), "x") << order[i];
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
