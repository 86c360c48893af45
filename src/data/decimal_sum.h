// Exact sums of amounts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/value.h"
#include "data/driver.h"

namespace kel {

/// A sum that loses nothing: 0.10 added ten million times is 1000000. A double counts as the
/// shortest decimal text that reads back as it, so amounts kept in binary add up to what people
/// see.
class DecimalSum {
 public:
  /// Nulls, dates, binary and what is no number add nothing, nor do decimal texts that no double
  /// is as large or as fine as.
  void Add(const CellView& cell);
  void Add(const Value& value);

  /// The sum as a plain decimal text without trailing zeros: "-1250.5", "0".
  std::string Text() const;
  /// The sum as Currency where that holds it exactly, else as the decimal text.
  Value Total() const;

 private:
  void AddDouble(double number);
  void AddDecimal(std::string_view text);
  /// Adds so many ten-thousandths.
  void AddSmall(std::int64_t ten_thousandths);
  /// Adds a number below 10^9 that stands in the limb's place.
  void AddToLimb(std::size_t limb, std::int64_t number);
  void AddSmallTo(std::vector<std::int64_t>& limbs) const;

  std::int64_t small_ = 0;  // ten-thousandths, as most amounts are
  // The rest in base 10^9, the lowest first, with signs of their own; empty while all is small.
  std::vector<std::int64_t> limbs_;
  std::uint32_t additions_ = 0;  // to the limbs since their carries were moved
};

}  // namespace kel
