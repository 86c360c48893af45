#include "toolkit/amount_in_words.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <utility>

#include "toolkit/rounded_amount.h"

namespace kel {
namespace {

// One or two words with the blank before them, of a fixed size, so that adding them to a line is a
// copy without a loop.
class Word {
 public:
  constexpr Word() = default;
  constexpr explicit Word(std::string_view first, std::string_view second = {}) {
    for (const char c : first) text_.at(size_++) = c;
    for (const char c : second) text_.at(size_++) = c;
  }

  // " Seventy Seven" has 14 characters.
  static constexpr std::size_t kCapacity = 15;

  const char* Data() const { return text_.data(); }
  std::size_t Size() const { return size_; }

 private:
  std::array<char, kCapacity> text_{};
  unsigned char size_ = 0;
};

// The published words; the spelling is theirs.
constexpr std::array<std::string_view, 20> kBelowTwenty = {
    " Zero",     " One",     " Two",     " Three",     " Four",     " Five",    " Six",
    " Seven",    " Eight",   " Nine",    " Ten",       " Eleven",   " Twelve",  " Thirteen",
    " Fourteen", " Fifteen", " Sixteen", " Seventeen", " Eighteen", " Nineteen"};
constexpr std::array<std::string_view, 10> kTens = {
    "", "", " Twenty", " Thirty", " Fourty", " Fifty", " Sixty", " Seventy", " Eighty", " Ninety"};
constexpr Word kZero(kBelowTwenty.front());
constexpr Word kHundred(" Hundred");
constexpr Word kAnd(" And");
constexpr Word kThousand(" Thousand");
constexpr Word kLakh(" Lakh(s)");
constexpr Word kCrore(" Crore(s)");
constexpr Word kArab(" Arab(s)");
constexpr Word kKharab(" Kharab(s)");
constexpr std::string_view kMinus = "Minus ";

constexpr std::uint64_t kGroup = 100;  // a lakh, crore or arab is so many of the group below
constexpr std::uint64_t kOneThousand = 1'000;
constexpr std::uint64_t kOneLakh = 100'000;
constexpr std::uint64_t kOneCrore = 10'000'000;
constexpr std::uint64_t kOneArab = 1'000'000'000;

// The published routine counts digits through a 32-bit integer, which overflows here.
constexpr std::uint64_t kPublishedOverflow = 214'748'364'750;  // paise
constexpr double kPublishedTooLarge = 2147483648.0;            // above it
constexpr std::uint64_t kPublishedRupees = kOneArab;           // ten digits: no rupee words
constexpr std::uint64_t kPublishedLeastLakhs = 10;             // beside crores

// The words of 1 to 99; nothing for 0.
constexpr std::array<Word, kGroup> MakeGroupWords() {
  std::array<Word, kGroup> words;
  for (std::size_t i = 1; i < kGroup; ++i) {
    const bool one_word = i < kBelowTwenty.size();
    words.at(i) = one_word      ? Word(kBelowTwenty.at(i))
                  : i % 10 == 0 ? Word(kTens.at(i / 10))
                                : Word(kTens.at(i / 10), kBelowTwenty.at(i % 10));
  }
  return words;
}
constexpr std::array<Word, kGroup> kGroupWords = MakeGroupWords();

// The words of an amount, written one behind the other straight into the result.
class WordLine {
 public:
  WordLine(bool negative, std::size_t digit_count, std::string_view formal_rupee,
           std::string_view formal_paise)
      : formal_rupee_(formal_rupee), formal_paise_(formal_paise) {
    const std::size_t chunks = digit_count / kDigitsBelowKharab + 1;
    text_.resize(kMinus.size() + (chunks * kWordsOfChunk + 1) * Word::kCapacity +
                 formal_rupee.size() + formal_paise.size() + 2);
    if (negative) Put(kMinus);
    start_ = size_;
  }

  void AddZero() { AddWord(kZero); }

  // REQUIRES rupees < kOneKharab.
  void AddGroups(std::uint64_t rupees) {
    AddGroup(rupees / kOneArab, kArab);
    AddGroup(rupees / kOneCrore % kGroup, kCrore);
    AddGroup(rupees / kOneLakh % kGroup, kLakh);
    AddGroup(rupees / kOneThousand % kGroup, kThousand);
    AddGroup(rupees / kGroup % 10, kHundred);
    if (rupees % kGroup == 0) return;
    if (HasWords()) AddWord(kAnd);
    AddWord(kGroupWords.at(rupees % kGroup));
  }

  // What stands before the last eleven digits is worded by itself, as so many kharabs.
  void AddLongGroups(std::string_view digits) {
    if (digits.size() > kDigitsBelowKharab) {
      AddLongGroups(digits.substr(0, digits.size() - kDigitsBelowKharab));
      AddWord(kKharab);
      digits.remove_prefix(digits.size() - kDigitsBelowKharab);
    }
    AddGroups(DigitsValue(digits));
  }

  std::string End(std::uint64_t paise) {
    if (HasWords()) PutFormal(formal_rupee_);
    if (paise > 0) {
      // Not trimmed as rupees are: without any before them the paise keep their leading blank.
      PutWord(kGroupWords.at(paise), 0);
      PutFormal(formal_paise_);
    }
    text_.resize(HasWords() ? size_ : 0);
    return std::move(text_);
  }

 private:
  // Nine words and scale words at the most, " And", and the kharabs they are.
  static constexpr std::size_t kWordsOfChunk = 12;

  bool HasWords() const { return size_ > start_; }

  void AddGroup(std::uint64_t count, const Word& scale) {
    if (count == 0) return;
    AddWord(kGroupWords.at(count));
    AddWord(scale);
  }

  // The first word loses its blank.
  void AddWord(const Word& word) { PutWord(word, HasWords() ? 0 : 1); }

  void PutWord(const Word& word, std::size_t skipped) {
    std::memcpy(text_.data() + size_, word.Data() + skipped, Word::kCapacity - 1);
    size_ += word.Size() - skipped;
  }

  void PutFormal(std::string_view formal) {
    Put(" ");
    Put(formal);
  }

  void Put(std::string_view text) { size_ += text.copy(text_.data() + size_, text.size()); }

  std::string_view formal_rupee_;
  std::string_view formal_paise_;
  std::string text_;
  std::size_t size_ = 0;
  std::size_t start_ = 0;
};

// The rupees that the published digit groups word.
std::uint64_t PublishedRupees(std::uint64_t rupees) {
  if (rupees >= kPublishedRupees) return 0;
  const std::uint64_t lakhs = rupees / kOneLakh % kGroup;
  const bool lost = rupees >= kOneCrore && lakhs < kPublishedLeastLakhs;
  return lost ? rupees - lakhs * kOneLakh : rupees;
}

// The words of an amount below a kharab.
std::string ShortWords(bool negative, std::uint64_t all_paise, Style style,
                       std::string_view formal_rupee, std::string_view formal_paise) {
  if (style == Style::Published && all_paise >= kPublishedOverflow) return {};
  const std::uint64_t rupees = all_paise / kPaisePerRupee;
  WordLine words(negative && all_paise != 0, kDigitsBelowKharab, formal_rupee, formal_paise);
  if (rupees == 0) {
    words.AddZero();
  } else {
    words.AddGroups(style == Style::Published ? PublishedRupees(rupees) : rupees);
  }
  return words.End(all_paise % kPaisePerRupee);
}

}  // namespace

std::string AmountInWords(std::string_view amount, Style style, std::string_view formal_rupee,
                          std::string_view formal_paise) {
  const RoundedAmount rounded = ReadAmount(amount);
  if (rounded.digit_count <= kDigitsBelowKharab) {
    const std::uint64_t paise = DigitsValue(rounded.Rupees()) * kPaisePerRupee + rounded.paise;
    return ShortWords(rounded.negative, paise, style, formal_rupee, formal_paise);
  }
  if (style == Style::Published) return {};
  WordLine words(rounded.negative, rounded.digit_count, formal_rupee, formal_paise);
  words.AddLongGroups(rounded.Rupees());
  return words.End(rounded.paise);
}

std::string AmountInWords(double amount, Style style, std::string_view formal_rupee,
                          std::string_view formal_paise) {
  if (const auto paise = CountPaise(amount)) {
    return ShortWords(amount < 0, *paise, style, formal_rupee, formal_paise);
  }
  const bool too_large = !(std::abs(amount) < kPublishedTooLarge);
  if (style == Style::Published && too_large) return {};
  return AmountInWords(PlainText(amount), style, formal_rupee, formal_paise);
}

double RoundToPaise(double amount) {
  // From 2^52 on a double has no fraction.
  constexpr double kAllWhole = 4503599627370496.0;
  if (!(std::abs(amount) < kAllWhole)) return amount;
  if (const auto paise = CountPaise(amount)) {
    const double rounded = static_cast<double>(*paise) / static_cast<double>(kPaisePerRupee);
    return amount < 0 && *paise != 0 ? -rounded : rounded;
  }
  return ReadAmount(PlainText(amount)).ToDouble();
}

}  // namespace kel
