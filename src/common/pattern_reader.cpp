#include "common/pattern_reader.h"

#include <algorithm>

namespace kel {

char LowerLetter(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

char PatternReader::Take() noexcept {
  const char c = rest_[0];
  rest_.remove_prefix(1);
  return c;
}

bool PatternReader::SkipWord(std::string_view word) noexcept {
  const bool stands_next = rest_.size() >= word.size() &&
                           std::equal(word.begin(), word.end(), rest_.begin(),
                                      [](char small, char c) { return small == LowerLetter(c); });
  if (stands_next) rest_.remove_prefix(word.size());
  return stands_next;
}

std::size_t PatternReader::TakeRun(std::size_t most) noexcept {
  const char letter = LowerLetter(Peek());
  std::size_t count = 0;
  while (count < most && count < rest_.size() && LowerLetter(rest_[count]) == letter) ++count;
  rest_.remove_prefix(count);
  return count;
}

bool PatternReader::TakeQuoted(std::string& literal) {
  if (rest_.size() >= 2 && rest_[0] == '\\') {
    literal += rest_[1];
    rest_.remove_prefix(2);
    return true;
  }
  if (rest_.empty() || rest_[0] != '"') return false;
  const std::size_t end = std::min(rest_.find('"', 1), rest_.size());
  literal += rest_.substr(1, end - 1);
  rest_.remove_prefix(std::min(end + 1, rest_.size()));
  return true;
}

std::string_view TakeSection(std::string_view& format) {
  PatternReader reader(format);
  std::string literal;
  while (!reader.AtEnd() && reader.Peek() != ';') {
    if (!reader.TakeQuoted(literal)) reader.Take();
  }
  const std::string_view section = format.substr(0, format.size() - reader.Rest().size());
  format.remove_prefix(std::min(section.size() + 1, format.size()));
  return section;
}

}  // namespace kel
