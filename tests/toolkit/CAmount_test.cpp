#include "toolkit/CAmount.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace kel {
namespace {

struct Case {
  double amount;
  std::string words;
  std::optional<double> rounded = {};  // the caller's amount afterwards, when it is another
};

void Check(const std::vector<Case>& cases) {
  for (auto [amount, words, rounded] : cases) {
    const double given = amount;
    EXPECT_EQ(CAmount().Words(amount), words) << given;
    EXPECT_EQ(amount, rounded.value_or(given)) << given;
  }
}

TEST(CAmountTest, WordsAmountsAsPublished) {
  Check({
      {0, "Zero Rupee(s)"},
      {0.5, "Zero Rupee(s) Fifty Paise"},
      {12.05, "Twelve Rupee(s) Five Paise"},
      {20, "Twenty Rupee(s)"},
      {305, "Three Hundred And Five Rupee(s)"},
      {1000, "One Thousand Rupee(s)"},
      {1045, "One Thousand And Fourty Five Rupee(s)"},
      {1234.5, "One Thousand Two Hundred And Thirty Four Rupee(s) Fifty Paise"},
      {100000, "One Lakh(s) Rupee(s)"},
      {12345678,
       "One Crore(s) Twenty Three Lakh(s) Fourty Five Thousand Six Hundred And Seventy Eight "
       "Rupee(s)"},
  });
  double amount = 5.1;
  EXPECT_EQ(CAmount().Words(amount, "Dollar", "Cent"), "Five Dollar Ten Cent");
  EXPECT_EQ(CAmount().Words(amount, std::string(500, 'x'), ""),
            "Five " + std::string(500, 'x') + " Ten ");
}

TEST(CAmountTest, KeepsTheGapsOfThePublishedDigitGroups) {
  Check({
      // A lakh group that begins with 0 inside a crore amount loses its lakhs.
      {10512345, "One Crore(s) Twelve Thousand Three Hundred And Fourty Five Rupee(s)"},
      {210900000, "Twenty One Crore(s) Rupee(s)"},
      {11000000, "One Crore(s) Ten Lakh(s) Rupee(s)"},
      // Ten digits and more have paise only, with the blank before them.
      {1000000000, ""},
      {1000000000.5, " Fifty Paise"},
      {2147483647.49, " Fourty Nine Paise"},
      // From here on the count of digits overflows.
      {2147483647.495, "", 2147483647.5},
      {std::numeric_limits<double>::infinity(), ""},
  });
}

TEST(CAmountTest, RoundsTheCallersAmountHalfAwayFromZero) {
  Check({
      {9.996, "Ten Rupee(s)", 10},
      {9.5, "Nine Rupee(s) Fifty Paise"},
      // The decimal text decides, not the binary number, which lies below the half.
      {1.005, "One Rupee(s) One Paise", 1.01},
      {0.125, "Zero Rupee(s) Thirteen Paise", 0.13},
      {0.00499, "Zero Rupee(s)", 0},
      {5e-324, "Zero Rupee(s)", 0},
      {-1.005, "Minus One Rupee(s) One Paise", -1.01},
      {1e15 + 0.125, "", 1e15 + 0.13},
  });
  double nearly_zero = -0.001;
  EXPECT_EQ(CAmount().Words(nearly_zero), "Zero Rupee(s)");
  EXPECT_FALSE(std::signbit(nearly_zero));
}

}  // namespace
}  // namespace kel
