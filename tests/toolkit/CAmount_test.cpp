#include "toolkit/CAmount.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace kel {
namespace {

std::string WordsOf(double amount) { return CAmount().Words(amount); }

struct WordsCase {
  double amount;
  std::string words;
};

TEST(CAmountTest, WordsAmountsAsPublished) {
  const std::vector<WordsCase> cases = {
      {0, "Zero Rupee(s)"},
      {0.5, "Zero Rupee(s) Fifty Paise"},
      {5, "Five Rupee(s)"},
      {12.05, "Twelve Rupee(s) Five Paise"},
      {19.19, "Nineteen Rupee(s) Nineteen Paise"},
      {20, "Twenty Rupee(s)"},
      {100, "One Hundred Rupee(s)"},
      {305, "Three Hundred And Five Rupee(s)"},
      {1000, "One Thousand Rupee(s)"},
      {1045, "One Thousand And Fourty Five Rupee(s)"},
      {1234.5, "One Thousand Two Hundred And Thirty Four Rupee(s) Fifty Paise"},
      {10045, "Ten Thousand And Fourty Five Rupee(s)"},
      {100000, "One Lakh(s) Rupee(s)"},
      {1000045, "Ten Lakh(s) And Fourty Five Rupee(s)"},
      {12345678,
       "One Crore(s) Twenty Three Lakh(s) Fourty Five Thousand Six Hundred And Seventy Eight "
       "Rupee(s)"},
      {10000000, "One Crore(s) Rupee(s)"},
      {999999999.99,
       "Ninety Nine Crore(s) Ninety Nine Lakh(s) Ninety Nine Thousand Nine Hundred And Ninety "
       "Nine Rupee(s) Ninety Nine Paise"},
  };
  for (const WordsCase& one : cases) EXPECT_EQ(WordsOf(one.amount), one.words) << one.amount;
}

TEST(CAmountTest, KeepsTheGapsOfThePublishedDigitGroups) {
  const std::vector<WordsCase> cases = {
      // A lakh group that begins with 0 inside a crore amount loses its lakhs.
      {10512345, "One Crore(s) Twelve Thousand Three Hundred And Fourty Five Rupee(s)"},
      {210900000, "Twenty One Crore(s) Rupee(s)"},
      {11012345, "One Crore(s) Ten Lakh(s) Twelve Thousand Three Hundred And Fourty Five Rupee(s)"},
      // Ten digits and more have paise only, with the blank before them.
      {1000000000, ""},
      {1000000000.5, " Fifty Paise"},
      {2147483647.49, " Fourty Nine Paise"},
      // From here on the count of digits overflows.
      {2147483647.5, ""},
      {2147483647.495, ""},
      {1e15 + 0.5, ""},
      {1e300, ""},
      {std::numeric_limits<double>::infinity(), ""},
      {std::numeric_limits<double>::quiet_NaN(), ""},
  };
  for (const WordsCase& one : cases) EXPECT_EQ(WordsOf(one.amount), one.words) << one.amount;
}

TEST(CAmountTest, RoundsTheCallersAmountInPlace) {
  struct Case {
    double amount;
    double rounded;
    std::string words;
  };
  const std::vector<Case> cases = {
      {9.996, 10, "Ten Rupee(s)"},
      {9.5, 9.5, "Nine Rupee(s) Fifty Paise"},
      {99.995, 100, "One Hundred Rupee(s)"},
      // The decimal text decides, not the binary number, which lies below the half.
      {1.005, 1.01, "One Rupee(s) One Paise"},
      {2.675, 2.68, "Two Rupee(s) Sixty Eight Paise"},
      {0.005, 0.01, "Zero Rupee(s) One Paise"},
      {0.00499, 0, "Zero Rupee(s)"},
      {1e-9, 0, "Zero Rupee(s)"},
      {5e-324, 0, "Zero Rupee(s)"},
      {-1.005, -1.01, "Minus One Rupee(s) One Paise"},
      {1234567.125, 1234567.13,
       "Twelve Lakh(s) Thirty Four Thousand Five Hundred And Sixty Seven Rupee(s) Thirteen Paise"},
      {1e15 + 0.125, 1e15 + 0.13, ""},
      {1e300, 1e300, ""},
  };
  for (const Case& one : cases) {
    double amount = one.amount;
    EXPECT_EQ(CAmount().Words(amount), one.words) << one.amount;
    EXPECT_EQ(amount, one.rounded) << one.amount;
  }
}

TEST(CAmountTest, PutsMinusBeforeTheWordsOfTheAbsoluteAmount) {
  EXPECT_EQ(WordsOf(-305.1), "Minus Three Hundred And Five Rupee(s) Ten Paise");
  EXPECT_EQ(WordsOf(-0.5), "Minus Zero Rupee(s) Fifty Paise");
  EXPECT_EQ(WordsOf(-3e9), "");
  double nearly_zero = -0.001;
  EXPECT_EQ(CAmount().Words(nearly_zero), "Zero Rupee(s)");
  EXPECT_FALSE(std::signbit(nearly_zero));
}

TEST(CAmountTest, TakesTheCurrencyWordsVerbatim) {
  double amount = 5.1;
  EXPECT_EQ(CAmount().Words(amount, "Dollar", "Cent"), "Five Dollar Ten Cent");
  EXPECT_EQ(CAmount().Words(amount, "", ""), "Five  Ten ");
  const std::string long_name(500, 'x');
  EXPECT_EQ(CAmount().Words(amount, long_name, long_name),
            "Five " + long_name + " Ten " + long_name);
}

// The published routines as they are told, on strings of digits.
class DigitRoutines {
 public:
  static std::string Words(const std::string& text) {
    const std::size_t point = text.find('.');
    const std::string rupees = text.substr(0, point);
    std::string words = rupees.size() == 1 ? Units(rupees) : Group(rupees);
    if (!words.empty()) words = words.substr(1) + " Rupee(s)";
    if (point == std::string::npos) return words;
    std::string paise = text.substr(point + 1);
    if (paise.size() == 1) paise += "0";
    return words + Tens(paise) + " Paise";
  }

 private:
  static std::string Units(const std::string& s) {
    static const std::vector<std::string> words = {" Zero", " One", " Two",   " Three", " Four",
                                                   " Five", " Six", " Seven", " Eight", " Nine"};
    return words.at(std::stoul(s));
  }

  static std::string Tens(const std::string& s) {
    static const std::vector<std::string> teens = {
        " Ten",     " Eleven",  " Twelve",    " Thirteen", " Fourteen",
        " Fifteen", " Sixteen", " Seventeen", " Eighteen", " Nineteen"};
    static const std::vector<std::string> tens = {" Twenty", " Thirty",  " Fourty", " Fifty",
                                                  " Sixty",  " Seventy", " Eighty", " Ninety"};
    const unsigned long v = std::stoul(s);
    if (v == 0) return "";
    if (v < 10) return Units(s.substr(1));
    if (v < 20) return teens.at(v - 10);
    return tens.at(v / 10 - 2) + (v % 10 != 0 ? Units(s.substr(1)) : "");
  }

  static std::string Hundreds(const std::string& s) {
    const std::string rest = s.substr(1) == "00" ? "" : " And" + Tens(s.substr(1));
    return s[0] != '0' ? Units(s.substr(0, 1)) + " Hundred" + rest : rest;
  }

  // The routines from four digits on differ in their scale word and in what they hand on to.
  static std::string Group(const std::string& s) {
    const auto scaled = [&s](std::size_t head, const char* scale, std::size_t next,
                             std::size_t otherwise) {
      if (s[0] == '0') return Group(s.substr(s.size() - otherwise));
      const std::string count = s.substr(0, head);
      return (head == 1 ? Units(count) : Tens(count)) + scale + Group(s.substr(s.size() - next));
    };
    switch (s.size()) {
      case 2:
        return Tens(s);
      case 3:
        return Hundreds(s);
      case 4:
        return scaled(1, " Thousand", 3, 3);
      case 5:
        return scaled(2, " Thousand", 3, 4);
      case 6:
        return scaled(1, " Lakh(s)", 5, 5);
      case 7:
        return scaled(2, " Lakh(s)", 5, 5);
      case 8:
        return scaled(1, " Crore(s)", 7, 7);
      case 9:
        return scaled(2, " Crore(s)", 7, 7);
      default:
        return "";
    }
  }
};

TEST(CAmountTest, AgreesWithTheDigitRoutinesOnAmountsOfEveryLength) {
  std::mt19937_64 random(20261115);
  for (int digits = 1; digits <= 10; ++digits) {
    const auto limit = static_cast<std::uint64_t>(std::pow(10, digits));
    for (int i = 0; i < 5000; ++i) {
      const std::uint64_t paise = random() % std::min<std::uint64_t>(limit * 100, 214748364749);
      double amount = static_cast<double>(paise) / 100;
      std::array<char, 32> text{};
      const auto end = std::to_chars(text.begin(), text.end(), amount, std::chars_format::fixed);
      const std::string expected = DigitRoutines::Words({text.data(), end.ptr});
      ASSERT_EQ(CAmount().Words(amount), expected) << paise;
    }
  }
}

}  // namespace
}  // namespace kel
