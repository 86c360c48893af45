#include "command/command_fixture.h"

namespace kel {
namespace {

class WordsTest : public CommandTest {
 protected:
  void ExpectLines(const Words& words, const std::string& out) const {
    const RunResult result = Keldll(words);
    EXPECT_EQ(result.out, out);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
  }
};

TEST_F(WordsTest, EachAmountHasALine) {
  ExpectLines(
      {"words", "1234.5", "0", "12345678"},
      "One Thousand Two Hundred And Thirty Four Rupee(s) Fifty Paise\n"
      "Zero Rupee(s)\n"
      "One Crore(s) Twenty Three Lakh(s) Fourty Five Thousand Six Hundred And Seventy Eight "
      "Rupee(s)\n");
}

TEST_F(WordsTest, AmountsAreReadTolerantly) {
  ExpectLines({"words", "12abc", "abc", "  20", "1+2", ""},
              "Twelve Rupee(s)\nZero Rupee(s)\nTwenty Rupee(s)\nOne Rupee(s)\nZero Rupee(s)\n");
}

TEST_F(WordsTest, CurrencyWordsCanBeChosen) {
  ExpectLines({"words", "5.1", "--rupee", "Dollar", "--paise=Cent"}, "Five Dollar Ten Cent\n");
}

TEST_F(WordsTest, NegativeAmountsFollowTwoHyphens) {
  ExpectLines({"words", "--", "-5", "7"}, "Minus Five Rupee(s)\nSeven Rupee(s)\n");
  ExpectWrongUsage({"words", "-5"}, "write -- before negative amounts");
  ExpectWrongUsage({"words", "--extended", "-.5"}, "write -- before negative amounts");
}

TEST_F(WordsTest, ExtendedLosesNothing) {
  ExpectLines(
      {"words", "--extended", "10512345", "1234567890123.45"},
      "One Crore(s) Five Lakh(s) Twelve Thousand Three Hundred And Fourty Five Rupee(s)\n"
      "Twelve Kharab(s) Thirty Four Arab(s) Fifty Six Crore(s) Seventy Eight Lakh(s) Ninety "
      "Thousand One Hundred And Twenty Three Rupee(s) Fourty Five Paise\n");
}

TEST_F(WordsTest, ExtendedRefusesWhatIsNoAmount) {
  ExpectFailure({"words", "--extended", "5", "12abc"}, {"12abc"});
}

TEST_F(WordsTest, NoAmountIsWrongUsage) {
  ExpectWrongUsage({"words"}, "an amount is missing");
  ExpectWrongUsage({"words", "--rupee"}, "--rupee needs a value");
}

TEST_F(WordsTest, FullStandardOutputIsAFailure) {
  const RunResult result = Keldll({"words", "5"}, {.out = "/dev/full", .err = ""});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "keldll: cannot write to standard output: No space left on device\n");
}

}  // namespace
}  // namespace kel
