#include "common/control_codes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kel {
namespace {

struct StripCase {
  const char* what;
  std::string line;
  std::string stripped;
};

TEST(StripCodes, DeletesEachCodeFromWhatTheOneBeforeItLeft) {
  const std::vector<StripCase> cases = {
      {"no codes", "Cash in hand", "Cash in hand"},
      {"empty", "", ""},
      {"bold and underline", "\033EA\033-1B\033-0C\033F", "ABC"},
      {"heading mark", "\033\033\033E\033-14ACME\033F", "\033\033ACME"},
      {"every size",
       "\033-26a\033-24b\033-22c\033-20d\033-18e\033-16f\033-14g\033-12h\033-10i\033-8j",
       "abcdefghij"},
      {"underlined 2,500 loses its 2", "\033-12,500\033-0", ",500"},
      {"underlined 05 loses its 0", "\033-105\033-0", "5"},
      {"underlined 8,000 loses its 8", "\033-18,000", ",000"},
      {"underlined 9 keeps it", "\033-19\033-0", "9"},
      {"size 9 is no code but begins with none", "\033-9", "\033-9"},
      {"a code joined by an earlier deletion goes with its turn", "\033\033E-1x", "x"},
      {"a code joined by its own deletion stays", "\033\033EEx", "\033Ex"},
      {"a code that a later deletion joins stays", "\033\033-8Ex", "\033Ex"},
      {"escape at the end", "abc\033", "abc\033"},
      {"UTF-8 around codes", "\u20b9\033E\u0915\033F", "\u20b9\u0915"},
  };
  for (const StripCase& c : cases) {
    EXPECT_EQ(StripCodes(c.line, TitleMark::kKeep), c.stripped) << c.what;
  }
}

TEST(StripCodes, TakesTheTitleMarkOnlyWhenAsked) {
  EXPECT_EQ(StripCodes("\x01\033ETitle\033F\x01", TitleMark::kKeep), "\x01Title\x01");
  EXPECT_EQ(StripCodes("\x01\033ETitle\033F\x01", TitleMark::kRemove), "Title");
  EXPECT_EQ(StripCodes("\x01Title", TitleMark::kRemove), "Title");
  // The mark goes last: codes that it splits are joined too late to be deleted.
  EXPECT_EQ(StripCodes("\033\x01"
                       "E",
                       TitleMark::kRemove),
            "\033E");
}

TEST(StripCodes, CostsLinearTimeOnALineOfNothingButCodes) {
  std::string line;
  for (int i = 0; i < 1'000'000; ++i) line += "\033-10\033E";
  StripCodesInPlace(line, TitleMark::kRemove);
  EXPECT_EQ(line, "");
}

}  // namespace
}  // namespace kel
