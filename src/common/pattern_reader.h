// What all kinds of format texts have in common: literals and marks.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kel {

/// Reads a format text from its beginning. Letters are ASCII letters of any case.
///
/// REQUIRES of all operations but AtEnd, SkipWord and TakeQuoted: !AtEnd().
class PatternReader {
 public:
  explicit PatternReader(std::string_view text) : rest_(text) {}

  bool AtEnd() const noexcept { return rest_.empty(); }
  char Peek() const noexcept { return rest_[0]; }
  /// What is still to be read.
  std::string_view Rest() const noexcept { return rest_; }

  char Take() noexcept;
  /// Takes `word`, given in small letters, when it stands next.
  bool SkipWord(std::string_view word) noexcept;
  /// Takes the run of the next letter, `most` of them at most; how many they are.
  std::size_t TakeRun(std::size_t most) noexcept;
  /// Takes the text between quotation marks, or the character behind a backslash, that stands
  /// next, and appends it to `literal`. A missing second quotation mark is taken as standing at
  /// the end; a backslash at the end is no mark.
  bool TakeQuoted(std::string& literal);

 private:
  std::string_view rest_;
};

/// The section that a format text begins with, up to a semicolon that is no literal. Its text and
/// the semicolon are taken off `format`.
std::string_view TakeSection(std::string_view& format);

char LowerLetter(char c) noexcept;

}  // namespace kel
