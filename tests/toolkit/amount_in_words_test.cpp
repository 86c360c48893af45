#include "toolkit/amount_in_words.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/errors.h"

namespace kel {
namespace {

using testing::ErrorOf;

std::string Extended(std::string_view amount) { return AmountInWords(amount, Style::Extended); }

TEST(AmountInWordsTest, ExtendedWordsLoseNothing) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"1000000045", "One Arab(s) And Fourty Five Rupee(s)"},
      {"2147483647.50",
       "Two Arab(s) Fourteen Crore(s) Seventy Four Lakh(s) Eighty Three Thousand Six Hundred And "
       "Fourty Seven Rupee(s) Fifty Paise"},
      {"-100000000001", "Minus One Kharab(s) And One Rupee(s)"},
      {"10000000000000000000000", "One Kharab(s) Kharab(s) Rupee(s)"},
      // Every word, and every group left out once.
      {"110", "One Hundred And Ten Rupee(s)"},
      {"3012000456",
       "Three Arab(s) One Crore(s) Twenty Lakh(s) Four Hundred And Fifty Six Rupee(s)"},
      {"1112131415.16",
       "One Arab(s) Eleven Crore(s) Twenty One Lakh(s) Thirty One Thousand Four Hundred And "
       "Fifteen "
       "Rupee(s) Sixteen Paise"},
      {"1213141500718.17",
       "Twelve Kharab(s) Thirteen Arab(s) Fourteen Crore(s) Fifteen Lakh(s) Seven Hundred And "
       "Eighteen Rupee(s) Seventeen Paise"},
      {"1902037080090.06",
       "Nineteen Kharab(s) Two Arab(s) Three Crore(s) Seventy Lakh(s) Eighty Thousand And Ninety "
       "Rupee(s) Six Paise"},
      {"60005.08", "Sixty Thousand And Five Rupee(s) Eight Paise"},
      // The exact text is rounded, half away from zero, with every carry.
      {"99.99499999999999999999999999", "Ninety Nine Rupee(s) Ninety Nine Paise"},
      {std::string(kMaxRupeeDigits, '9') + ".995",
       "One Lakh(s) Kharab(s) Kharab(s) Kharab(s) Kharab(s) Kharab(s) Rupee(s)"},
  };
  for (const auto& [amount, words] : cases) EXPECT_EQ(Extended(amount), words) << amount;
}

TEST(AmountInWordsTest, ReadsDecimalTextInEveryWayItIsWrittenAndNothingElse) {
  for (const char* amount : {"105000.1", "1,05,000.10", "105,000.100", "+105000.1", " 105000.1 ",
                             "000000000000000000000000000000000000000000000000000000000105000.1"}) {
    EXPECT_EQ(Extended(amount), "One Lakh(s) Five Thousand Rupee(s) Ten Paise") << amount;
  }
  EXPECT_EQ(Extended("5."), "Five Rupee(s)");
  EXPECT_EQ(Extended(".5"), "Zero Rupee(s) Fifty Paise");
  for (const char* amount : {"", " ", ".", "-", "+.", "abc", "12abc", "1 2", "1e5", "--1", "1-",
                             "1.2.3", ",1", "1,", "1,,2", "1,.5", "1.2,3", "nan", "1\n"}) {
    EXPECT_EQ(ErrorOf([&] { Extended(amount); }).Number(), error_number::kTypeMismatch) << amount;
  }
  const std::string too_long(kMaxRupeeDigits + 1, '9');
  EXPECT_EQ(ErrorOf([&] { Extended(too_long); }).Number(), error_number::kOverflow);
  // A double is taken by its shortest decimal text.
  EXPECT_EQ(AmountInWords(1e23, Style::Extended), "Ten Kharab(s) Kharab(s) Rupee(s)");
  EXPECT_EQ(AmountInWords(-123456789012.345, Style::Extended), Extended("-123456789012.35"));
  EXPECT_EQ(ErrorOf([] { AmountInWords(1e61, Style::Extended); }).Number(), 6);
}

}  // namespace
}  // namespace kel
