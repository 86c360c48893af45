#include "data/sort_keys.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <utility>

#include "data/folded_text.h"
#include "data/threads.h"

namespace kel {
namespace {

constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;
constexpr std::uint64_t kNullKey = 0;
constexpr std::uint64_t kNotANumberKey = 1;
// Above the key of infinity.
constexpr std::uint64_t kTextKey = 0xFFFE000000000000U;
constexpr std::uint64_t kBinaryKey = 0xFFFF000000000000U;

constexpr std::int64_t kExactInteger = std::int64_t{1} << 53;
constexpr std::int64_t kMostMagnitude = 290;  // decimal; below the ends of the doubles

constexpr std::size_t kKeyBytes = 7;
constexpr unsigned kRankShift = 62;
constexpr unsigned kFirstBytesShift = 6;
constexpr unsigned kTailBytesShift = 8;

/// Doubles in the order of their numbers, as unsigned integers.
std::uint64_t OrderedBits(double number) noexcept {
  if (std::isnan(number)) return kNotANumberKey;
  const auto bits = std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number);
  return (bits & kSignBit) != 0 ? ~bits : bits | kSignBit;
}

/// Up to seven bytes, and how many there are (8: more than seven), above `shift` bits less than 64.
std::uint64_t BytesKey(std::string_view bytes, unsigned shift) noexcept {
  std::uint64_t key = 0;
  const std::size_t count = std::min(bytes.size(), kKeyBytes);
  for (std::size_t i = 0; i < kKeyBytes; ++i) {
    key = key << 8U | (i < count ? static_cast<unsigned char>(bytes[i]) : 0U);
  }
  return key << shift | std::min(bytes.size(), kKeyBytes + 1);
}

/// The number's nearest double; `is_exact` turns false when others have the same.
double AsDouble(const ExactNumber& number, bool& is_exact) {
  switch (number.kind) {
    case ExactNumber::Kind::kInteger:
      is_exact &= number.integer <= kExactInteger && number.integer >= -kExactInteger;
      return static_cast<double>(number.integer);
    case ExactNumber::Kind::kDouble:
      return number.number;
    case ExactNumber::Kind::kDecimal:
      is_exact &= number.decimal.Digits() <= kSureDigits &&
                  std::abs(number.decimal.magnitude) <= kMostMagnitude;
      return NearestDouble(number.decimal);
  }
  return 0;
}

void Prefetch([[maybe_unused]] const void* address) noexcept {
#ifdef __GNUC__
  __builtin_prefetch(address);
#endif
}

/// The keys of some numbers and dates, and what is known of them all.
struct NumberKeys {
  std::uint64_t KeyOf(const CellView& cell) {
    if (cell.IsNull()) return kNullKey;
    if (cell.kind == CellView::Kind::kBinary) return kBinaryKey;
    const std::optional<ExactNumber> number = NumberOf(cell, domain);
    all_are_integers &= number && number->kind == ExactNumber::Kind::kInteger;
    return number ? OrderedBits(AsDouble(*number, all_are_exact)) : kTextKey;
  }

  CellDomain domain;
  bool all_are_exact = true;
  bool all_are_integers = true;
};

/// Calls `work(part, begin, end)` for parts of a list, in order and one for each thread.
template <typename Work>
void ForParts(std::size_t count, Work work) {
  constexpr std::size_t kLeastPart = 16384;
  const std::size_t parts = std::clamp<std::size_t>(count / kLeastPart, 1, MostThreads());
  RunOnThreads(parts, [&](std::size_t /*thread*/, std::size_t part) {
    work(part, count * part / parts, count * (part + 1) / parts);
  });
}

}  // namespace

SortKeys::SortKeys(const RowStore& store, const SortField& field, CellDomain domain,
                   std::span<const RowId> rows)
    : domain_(domain), flip_(field.descending ? ~std::uint64_t{0} : 0), keys_(rows.size()) {
  if (domain == CellDomain::kText) {
    MakeTextKeys(store, field.column, rows);
  } else {
    MakeNumberKeys(store, field.column, rows);
  }
  for (std::uint64_t& key : keys_) key ^= flip_;
}

void SortKeys::MakeNumberKeys(const RowStore& store, std::size_t column,
                              std::span<const RowId> rows) {
  std::atomic<bool> all_are_exact = true;
  std::atomic<bool> all_are_integers = true;
  ForParts(rows.size(), [&](std::size_t /*part*/, std::size_t begin, std::size_t end) {
    NumberKeys numbers{domain_};
    for (std::size_t i = begin; i < end; ++i) keys_[i] = numbers.KeyOf(store.Cell(rows[i], column));
    if (!numbers.all_are_exact) all_are_exact = false;
    if (!numbers.all_are_integers) all_are_integers = false;
  });
  numbers_are_exact_ = all_are_exact;
  if (!numbers_are_exact_ && all_are_integers) MakeIntegerKeys(store, column, rows);
}

/// All integers have keys of their own but the two least, of which that of Null is one.
void SortKeys::MakeIntegerKeys(const RowStore& store, std::size_t column,
                               std::span<const RowId> rows) {
  std::atomic<bool> all_are_exact = true;
  ForParts(rows.size(), [&](std::size_t /*part*/, std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) {
      const CellView cell = store.Cell(rows[i], column);
      if (cell.IsNull()) {
        keys_[i] = kNullKey;
        continue;
      }
      const std::int64_t integer = NumberOf(cell, domain_)->integer;
      if (integer == std::numeric_limits<std::int64_t>::min()) all_are_exact = false;
      keys_[i] = std::max<std::uint64_t>(static_cast<std::uint64_t>(integer) ^ kSignBit, 1);
    }
  });
  numbers_are_exact_ = all_are_exact;
}

void SortKeys::MakeTextKeys(const RowStore& store, std::size_t column,
                            std::span<const RowId> rows) {
  tail_ends_.resize(rows.size());
  std::vector<std::string> tails(MostThreads());
  std::vector<std::size_t> part_ends(tails.size());
  ForParts(rows.size(), [&](std::size_t part, std::size_t begin, std::size_t end) {
    std::string folded;
    for (std::size_t i = begin; i < end; ++i) {
      keys_[i] = TextKey(store.Cell(rows[i], column), folded, tails[part]);
      tail_ends_[i] = tails[part].size();
    }
    part_ends[part] = end;
  });
  tails_ = std::move(tails[0]);
  for (std::size_t part = 1; part < tails.size(); ++part) {
    for (std::size_t i = part_ends[part - 1]; i < part_ends[part]; ++i) {
      tail_ends_[i] += tails_.size();
    }
    tails_ += tails[part];
    tails[part] = {};
  }
}

std::uint64_t SortKeys::TextKey(const CellView& cell, std::string& folded,
                                std::string& tails) const {
  const CellRank rank = RankOf(cell, domain_);
  const std::uint64_t ranked = static_cast<std::uint64_t>(rank) << kRankShift;
  if (rank == CellRank::kNull) return kNullKey;
  if (rank == CellRank::kNumber) {
    bool is_exact = false;
    return ranked | OrderedBits(AsDouble(*NumberOf(cell, domain_), is_exact)) >> (64 - kRankShift);
  }
  folded.clear();
  if (rank == CellRank::kText) {
    AppendFolded(cell.bytes, folded);
  } else {
    folded = cell.bytes;
  }
  if (folded.size() > kKeyBytes) tails.append(folded, kKeyBytes);
  return ranked | BytesKey(folded, kFirstBytesShift);
}

std::uint64_t SortKeys::KeyAt(std::size_t place, std::size_t level) const noexcept {
  if (level == 0) return keys_[place];
  return BytesKey(TailBehind(place, level - 1), kTailBytesShift) ^ flip_;
}

bool SortKeys::Decides(std::uint64_t key, std::size_t level) const noexcept {
  if (HasTail(key, level)) {
    const unsigned bits = level == 0 ? kFirstBytesShift : kTailBytesShift;
    const std::uint64_t length = (key ^ flip_) & ((std::uint64_t{1} << bits) - 1);
    return length <= kKeyBytes;
  }
  if (domain_ == CellDomain::kText) return (key ^ flip_) == kNullKey;
  return numbers_are_exact_ && (key ^ flip_) < kTextKey;
}

bool SortKeys::HasTail(std::uint64_t key, std::size_t level) const noexcept {
  const auto rank = static_cast<CellRank>((key ^ flip_) >> kRankShift);
  return level > 0 || (domain_ == CellDomain::kText && rank >= CellRank::kText);
}

void SortKeys::FetchTailPlace(std::size_t place) const noexcept {
  if (!tail_ends_.empty()) Prefetch(&tail_ends_[place]);
}

void SortKeys::FetchTail(std::size_t place) const noexcept {
  if (tail_ends_.empty()) return;
  Prefetch(tails_.data() + (place == 0 ? 0 : tail_ends_[place - 1]));
}

std::string_view SortKeys::TailBehind(std::size_t place, std::size_t level) const noexcept {
  const std::size_t begin = place == 0 ? 0 : tail_ends_[place - 1];
  const std::string_view tail = std::string_view(tails_).substr(begin, tail_ends_[place] - begin);
  return tail.substr(std::min(level * kKeyBytes, tail.size()));
}

}  // namespace kel
