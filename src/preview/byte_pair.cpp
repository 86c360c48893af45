#include "preview/byte_pair.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <utility>

#include "common/control_codes.h"

namespace kel {

namespace {

constexpr unsigned char kFirst = 1;
constexpr unsigned char kSecond = 2;
constexpr std::size_t kStride = 64;  // bytes tested at once

using Stride = std::array<unsigned char, kStride>;
using StrideWords = std::array<std::uint64_t, kStride / sizeof(std::uint64_t)>;

// Plain loops of a fixed length: the compiler turns them into vector instructions of whatever CPU
// it compiles for. Marks the first bytes of the stride that have their second; returns 0 when none
// has.
template <std::size_t kBytes>
std::uint64_t TestStride(const unsigned char* first_at, const unsigned char* second_at,
                         const std::array<unsigned char, kBytes>& first,
                         const std::array<unsigned char, kBytes>& second, Stride& marked) {
  for (std::size_t i = 0; i < kStride; ++i) {
    unsigned char is_first = 0;
    unsigned char is_second = 0;
    for (std::size_t n = 0; n < kBytes; ++n) {
      is_first = static_cast<unsigned char>(is_first | (first_at[i] == first[n] ? 0xff : 0));
      is_second = static_cast<unsigned char>(is_second | (second_at[i] == second[n] ? 0xff : 0));
    }
    marked[i] = is_first & is_second;
  }
  std::uint64_t any = 0;
  for (const std::uint64_t word : std::bit_cast<StrideWords>(marked)) any |= word;
  return any;
}

std::size_t FirstMarked(const Stride& marked) {
  const auto words = std::bit_cast<StrideWords>(marked);
  std::size_t at = 0;
  while (words[at / sizeof(std::uint64_t)] == 0) at += sizeof(std::uint64_t);
  while (marked[at] == 0) ++at;
  return at;
}

// The bytes, the last one repeated.
template <std::size_t kBytes>
std::array<unsigned char, kBytes> Padded(const std::vector<unsigned char>& bytes) {
  std::array<unsigned char, kBytes> padded{};
  for (std::size_t n = 0; n < kBytes; ++n) padded[n] = bytes[std::min(n, bytes.size() - 1)];
  return padded;
}

}  // namespace

BytePair::BytePair(std::vector<unsigned char> first, std::vector<unsigned char> second,
                   std::size_t distance)
    : first_(std::move(first)), second_(std::move(second)), distance_(distance) {
  for (const unsigned char byte : first_) kinds_[byte] |= kFirst;
  for (const unsigned char byte : second_) kinds_[byte] |= kSecond;
}

BytePair BytePair::AcrossCodes() const {
  if (distance_ == 0) return *this;
  std::vector<unsigned char> second = second_;
  second.push_back(static_cast<unsigned char>(kEsc));
  second.push_back(static_cast<unsigned char>(kTitleMark));
  return {first_, std::move(second), distance_};
}

std::size_t BytePair::FindIn(std::string_view text, std::size_t from) const {
  if (distance_ == 0 && first_.size() == 1) return text.find(static_cast<char>(first_[0]), from);
  switch (std::max(first_.size(), second_.size())) {
    case 1:
      return Find<1>(text, from);
    case 2:
      return Find<2>(text, from);
    case 3:
      return Find<3>(text, from);
    case 4:
      return Find<4>(text, from);
    case 5:
    case 6:
      return Find<6>(text, from);
    default:
      return FindSingly(text, from);
  }
}

template <std::size_t kBytes>
std::size_t BytePair::Find(std::string_view text, std::size_t from) const {
  const auto first = Padded<kBytes>(first_);
  const auto second = Padded<kBytes>(second_);
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  Stride marked;  // NOLINT(*-member-init): written before it is read
  std::size_t at = from;
  for (; at + kStride + distance_ <= text.size(); at += kStride) {
    if (TestStride(bytes + at, bytes + at + distance_, first, second, marked) != 0) {
      return at + FirstMarked(marked);
    }
  }
  return FindSingly(text, at);
}

std::size_t BytePair::FindSingly(std::string_view text, std::size_t from) const {
  for (std::size_t at = from; at + distance_ < text.size(); ++at) {
    const unsigned char first = kinds_[static_cast<unsigned char>(text[at])];
    const unsigned char second = kinds_[static_cast<unsigned char>(text[at + distance_])];
    if ((first & kFirst) != 0 && (second & kSecond) != 0) return at;
  }
  return std::string_view::npos;
}

std::size_t BytePair::CountIn(std::string_view text, std::size_t most) const {
  std::size_t count = 0;
  for (std::size_t at = FindIn(text, 0); at != std::string_view::npos && count < most;
       at = FindIn(text, at + 1)) {
    ++count;
  }
  return count;
}

}  // namespace kel
