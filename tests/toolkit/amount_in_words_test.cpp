#include "toolkit/amount_in_words.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "common/error.h"

namespace kel {
namespace {

std::string Extended(std::string_view amount) { return AmountInWords(amount, Style::Extended); }

int ErrorOf(std::string_view amount, Style style = Style::Extended) {
  try {
    AmountInWords(amount, style);
  } catch (const Error& failure) {
    return failure.Number();
  }
  return 0;
}

struct TextCase {
  std::string amount;
  std::string words;
};

TEST(AmountInWordsTest, ExtendedWordsLoseNothing) {
  const std::vector<TextCase> cases = {
      {"0", "Zero Rupee(s)"},
      {"0.07", "Zero Rupee(s) Seven Paise"},
      {"1234.5", "One Thousand Two Hundred And Thirty Four Rupee(s) Fifty Paise"},
      {"10512345",
       "One Crore(s) Five Lakh(s) Twelve Thousand Three Hundred And Fourty Five Rupee(s)"},
      {"1000000045", "One Arab(s) And Fourty Five Rupee(s)"},
      {"2147483647.50",
       "Two Arab(s) Fourteen Crore(s) Seventy Four Lakh(s) Eighty Three Thousand Six Hundred And "
       "Fourty Seven Rupee(s) Fifty Paise"},
      {"100000000000", "One Kharab(s) Rupee(s)"},
      {"100000000001", "One Kharab(s) And One Rupee(s)"},
      {"12345678901234567.89",
       "One Lakh(s) Twenty Three Thousand Four Hundred And Fifty Six Kharab(s) Seventy Eight "
       "Arab(s) Ninety Crore(s) Twelve Lakh(s) Thirty Four Thousand Five Hundred And Sixty Seven "
       "Rupee(s) Eighty Nine Paise"},
      {"10000000000000000000000", "One Kharab(s) Kharab(s) Rupee(s)"},
      {"-42.10", "Minus Fourty Two Rupee(s) Ten Paise"},
  };
  for (const TextCase& one : cases) EXPECT_EQ(Extended(one.amount), one.words) << one.amount;
}

TEST(AmountInWordsTest, RoundsExactTextHalfAwayFromZeroAndCarries) {
  const std::vector<TextCase> cases = {
      {"99.995", "One Hundred Rupee(s)"},
      {"99.99499999999999999999999999", "Ninety Nine Rupee(s) Ninety Nine Paise"},
      {"0.005", "Zero Rupee(s) One Paise"},
      {"-0.004", "Zero Rupee(s)"},
      {"-0.005", "Minus Zero Rupee(s) One Paise"},
      {"99999999999.995", "One Kharab(s) Rupee(s)"},
      {std::string(kMaxRupeeDigits, '9') + ".995",
       "One Lakh(s) Kharab(s) Kharab(s) Kharab(s) Kharab(s) Kharab(s) Rupee(s)"},
  };
  for (const TextCase& one : cases) EXPECT_EQ(Extended(one.amount), one.words) << one.amount;
}

TEST(AmountInWordsTest, ReadsDecimalTextInEveryWayItIsWritten) {
  const std::string expected = "One Lakh(s) Five Thousand Rupee(s) Ten Paise";
  for (const char* amount :
       {"105000.1", "1,05,000.10", "105,000.100", "+105000.1", "  105000.1  ", "00105000.10"}) {
    EXPECT_EQ(Extended(amount), expected) << amount;
  }
  EXPECT_EQ(Extended("5."), "Five Rupee(s)");
  EXPECT_EQ(Extended(".5"), "Zero Rupee(s) Fifty Paise");
  EXPECT_EQ(Extended(std::string(1'000'000, '0') + "7"), "Seven Rupee(s)");
  EXPECT_EQ(Extended("7." + std::string(1'000'000, '0')), "Seven Rupee(s)");
}

TEST(AmountInWordsTest, RefusesTextThatIsNoDecimalNumber) {
  for (const char* amount : {"",     " ",     ".",    "-",   "+.",    "abc", "12abc",       "1 2",
                             "1e5",  "1E5",   "--1",  "1-",  "1.2.3", ",1",  "1,",          "1,,2",
                             "1,.5", "1.2,3", "0x10", "nan", "inf",   "1\n", "\xE0\xA5\xA7"}) {
    EXPECT_EQ(ErrorOf(amount), error_number::kTypeMismatch) << '[' << amount << ']';
  }
  EXPECT_EQ(ErrorOf(std::string_view("1\0", 2)), error_number::kTypeMismatch);
}

TEST(AmountInWordsTest, RefusesMoreDigitsThanAnAmountHas) {
  EXPECT_EQ(ErrorOf(std::string(kMaxRupeeDigits, '9')), 0);
  EXPECT_EQ(ErrorOf(std::string(kMaxRupeeDigits + 1, '9')), error_number::kOverflow);
  EXPECT_EQ(ErrorOf(std::string(1'000'000, '9')), error_number::kOverflow);
}

TEST(AmountInWordsTest, ADoubleIsTakenByItsShortestDecimalText) {
  EXPECT_EQ(AmountInWords(1.005, Style::Extended), "One Rupee(s) One Paise");
  EXPECT_EQ(AmountInWords(1e23, Style::Extended), "Ten Kharab(s) Kharab(s) Rupee(s)");
  EXPECT_EQ(AmountInWords(123456789012.345, Style::Extended), Extended("123456789012.35"));
  EXPECT_EQ(AmountInWords(-4503599627370495.5, Style::Extended), Extended("-4503599627370495.5"));
  EXPECT_THROW(AmountInWords(1e61, Style::Extended), Error);
  EXPECT_THROW(AmountInWords(-std::numeric_limits<double>::infinity(), Style::Extended), Error);
  EXPECT_THROW(AmountInWords(std::numeric_limits<double>::quiet_NaN(), Style::Extended), Error);
}

TEST(AmountInWordsTest, PublishedStyleOfTextKeepsThePublishedGaps) {
  EXPECT_EQ(AmountInWords("10512345", Style::Published),
            "One Crore(s) Twelve Thousand Three Hundred And Fourty Five Rupee(s)");
  EXPECT_EQ(AmountInWords("1000000000.50", Style::Published), " Fifty Paise");
  EXPECT_EQ(AmountInWords("2147483647.50", Style::Published), "");
  EXPECT_EQ(AmountInWords("123456789012345", Style::Published), "");
  EXPECT_EQ(AmountInWords("5.1", Style::Published, "Dollar", "Cent"), "Five Dollar Ten Cent");
}

// Reads words back as the number of paise they name.
std::uint64_t PaiseNamedBy(const std::string& words) {
  static const std::vector<std::string> small = {
      "Zero",     "One",     "Two",     "Three",     "Four",     "Five",    "Six",
      "Seven",    "Eight",   "Nine",    "Ten",       "Eleven",   "Twelve",  "Thirteen",
      "Fourteen", "Fifteen", "Sixteen", "Seventeen", "Eighteen", "Nineteen"};
  static const std::vector<std::string> tens = {"Twenty", "Thirty",  "Fourty", "Fifty",
                                                "Sixty",  "Seventy", "Eighty", "Ninety"};
  std::uint64_t rupees = 0;
  std::uint64_t below_scale = 0;
  std::uint64_t group = 0;
  std::istringstream in(words);
  for (std::string word; in >> word;) {
    for (std::size_t i = 0; i < small.size(); ++i) group += word == small[i] ? i : 0;
    for (std::size_t i = 0; i < tens.size(); ++i) group += word == tens[i] ? (i + 2) * 10 : 0;
    if (word == "Hundred") group *= 100;
    for (const auto& [scale, size] : {std::pair<const char*, std::uint64_t>{"Thousand", 1000},
                                      {"Lakh(s)", 100'000},
                                      {"Crore(s)", 10'000'000},
                                      {"Arab(s)", 1'000'000'000}}) {
      if (word != scale) continue;
      below_scale += group * size;
      group = 0;
    }
    if (word == "Kharab(s)") {
      rupees = (rupees + below_scale + group) * 100'000'000'000;
      below_scale = group = 0;
    }
    if (word == "Rupee(s)") {
      rupees += below_scale + group;
      below_scale = group = 0;
    }
  }
  return rupees * 100 + group;
}

TEST(AmountInWordsTest, ExtendedWordsReadBackAsTheSameAmount) {
  std::mt19937_64 random(7);
  for (int digits = 1; digits <= 17; ++digits) {
    for (int i = 0; i < 1000; ++i) {
      std::uint64_t paise = 0;
      std::string text;
      for (int d = 0; d < digits + 2; ++d) {
        const auto digit = static_cast<unsigned>(random() % 4 == 0 ? random() % 10 : 0);
        paise = paise * 10 + digit;
        if (d == digits) text += '.';
        text += static_cast<char>('0' + digit);
      }
      ASSERT_TRUE(PaiseNamedBy(Extended(text)) == paise) << text << " " << Extended(text);
    }
  }
}

}  // namespace
}  // namespace kel
