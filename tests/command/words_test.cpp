#include "command/command_fixture.h"

namespace kel::testing {
namespace {

using WordsTest = CommandTest;

TEST_F(WordsTest, EachAmountHasALine) {
  const std::vector<std::pair<Words, std::string>> cases = {
      {{"12abc", "abc", "  20", "4.5"},
       "Twelve Rupee(s)\nZero Rupee(s)\nTwenty Rupee(s)\nFour Rupee(s) Fifty Paise\n"},
      // A value stands in the same word or in the next, whatever that looks like.
      {{"5.1", "--rupee", "--extended", "--paise=a=b", "1"},
       "Five --extended Ten a=b\nOne --extended\n"},
      {{"--rupee", "R", "--", "-5", "--", "7"}, "Minus Five R\nZero R\nSeven R\n"},
      {{"--extended", "1234567890123.45"},
       "Twelve Kharab(s) Thirty Four Arab(s) Fifty Six Crore(s) Seventy Eight Lakh(s) Ninety "
       "Thousand One Hundred And Twenty Three Rupee(s) Fourty Five Paise\n"},
  };
  for (const auto& [words, out] : cases) {
    const RunResult result = Keldll(Words{"words"} + words);
    EXPECT_EQ(result.out, out);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
  }
}

}  // namespace
}  // namespace kel::testing
