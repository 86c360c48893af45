#include "toolkit/CAmount.h"

#include "toolkit/amount_in_words.h"

namespace kel {

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): a method of the published class
std::string CAmount::Words(double& Amount, const std::string& FormalRupee,
                           const std::string& FormalPaise) const {
  Amount = RoundToPaise(Amount);
  return AmountInWords(Amount, Style::Published, FormalRupee, FormalPaise);
}

}  // namespace kel
