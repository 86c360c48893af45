#include "toolkit/amount_in_words.h"

#include <gtest/gtest.h>

#include <map>
#include <numeric>
#include <random>
#include <sstream>
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
      {"10512345",
       "One Crore(s) Five Lakh(s) Twelve Thousand Three Hundred And Fourty Five Rupee(s)"},
      {"1000000045", "One Arab(s) And Fourty Five Rupee(s)"},
      {"2147483647.50",
       "Two Arab(s) Fourteen Crore(s) Seventy Four Lakh(s) Eighty Three Thousand Six Hundred And "
       "Fourty Seven Rupee(s) Fifty Paise"},
      {"-100000000001", "Minus One Kharab(s) And One Rupee(s)"},
      {"10000000000000000000000", "One Kharab(s) Kharab(s) Rupee(s)"},
      // The exact text is rounded, half away from zero, with every carry.
      {"99.99499999999999999999999999", "Ninety Nine Rupee(s) Ninety Nine Paise"},
      {"99999999999.995", "One Kharab(s) Rupee(s)"},
      {std::string(kMaxRupeeDigits, '9') + ".995",
       "One Lakh(s) Kharab(s) Kharab(s) Kharab(s) Kharab(s) Kharab(s) Rupee(s)"},
  };
  for (const auto& [amount, words] : cases) EXPECT_EQ(Extended(amount), words) << amount;
}

// Reads words back as the number they name.
std::uint64_t NumberNamedBy(const std::string& words) {
  std::istringstream small(
      "Zero One Two Three Four Five Six Seven Eight Nine Ten Eleven Twelve Thirteen Fourteen "
      "Fifteen Sixteen Seventeen Eighteen Nineteen Twenty Thirty Fourty Fifty Sixty Seventy "
      "Eighty Ninety");
  std::map<std::string, std::uint64_t> values = {
      {"And", 0},           {"Hundred", 100},         {"Thousand", 1000},
      {"Lakh(s)", 100'000}, {"Crore(s)", 10'000'000}, {"Arab(s)", 1'000'000'000}};
  values["Kharab(s)"] = 100'000'000'000;
  std::string word;
  for (std::uint64_t value = 0; small >> word; value += value < 20 ? 1 : 10) values[word] = value;

  std::vector<std::uint64_t> terms;
  for (std::istringstream in(words); in >> word;) {
    const std::uint64_t value = values.at(word);
    std::uint64_t count = value < 100 ? 1 : 0;  // a scale counts the smaller terms before it
    for (; value >= 100 && !terms.empty() && terms.back() < value; terms.pop_back()) {
      count += terms.back();
    }
    terms.push_back(value * count);
  }
  return std::accumulate(terms.begin(), terms.end(), std::uint64_t{0});
}

TEST(AmountInWordsTest, ExtendedWordsReadBackAsTheSameAmount) {
  std::mt19937_64 random(7);
  for (std::size_t i = 0; i < 8000; ++i) {
    std::string amount(i % 17 + 1, '0');  // many of its digits stay 0, which leaves groups out
    for (char& digit : amount) digit = "00000000001234567899"[random() % 20];
    const std::string words = Extended(amount);
    ASSERT_EQ(NumberNamedBy(words.substr(0, words.find(" Rupee(s)"))), std::stoull(amount));
    ASSERT_EQ(Extended(amount + ".07"), words + " Seven Paise");
  }
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
