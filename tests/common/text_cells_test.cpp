#include "common/text_cells.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace kel {
namespace {

constexpr int kAlignCenter = 4;

const std::string kAcute = "\u0301";  // combining acute accent
const std::string kRupee = "\u20b9";  // one cell
const std::string kWide = "\u6f22";   // a Han character, two cells
const std::string kFamily = "\U0001F468\u200d\U0001F469\u200d\U0001F467";  // joined emoji

TEST(TextCells, PlainTextIsPrintableAsciiAndEscapeAtEveryPosition) {
  for (int code = 0; code < 256; ++code) {
    const bool plain = (code >= 0x20 && code < 0x7f) || code == 0x1b;
    // Every place in a word read at once, and in the bytes behind the last whole word; among
    // escapes too, for which a word is looked at byte by byte.
    for (std::size_t place = 0; place < 21; ++place) {
      for (const char other : {'a', '\033'}) {
        std::string text(21, other);
        text[place] = static_cast<char>(code);
        EXPECT_EQ(IsPlain(text), plain) << "code " << code << " at " << place;
      }
    }
  }
}

TEST(TextCells, CleanTextTurnsEachLineEndAndControlCodeIntoOneBlank) {
  using namespace std::string_literals;
  EXPECT_EQ(CleanText("a\r\nb\rc\nd\te\ff\x01g\0h\n\r"s), "a b c d e f g h  ");
  EXPECT_EQ(CleanText("\033E" + kRupee + "\xff"), "\033E" + kRupee + "\xff");
}

TEST(TextCells, GraphemesAreMeasuredWhole) {
  // The text, bytes and cells of its first grapheme, and cells of the whole.
  const std::vector<std::tuple<std::string, std::size_t, Cells, Cells>> cases = {
      {"\r\n", 1, 1, 2},
      {"e" + kAcute + kAcute + "x", 5, 1, 2},
      {"\n" + kAcute, 1, 1, 1},
      {kAcute + "x", 2, 0, 1},
      {kWide + kWide, 3, 2, 4},
      {kFamily + "x", kFamily.size(), 2, 3},
      {"\U0001F1EE\U0001F1F3\U0001F1EC\U0001F1E7", 8, 1, 2},  // two flags
      {"\u1112\u1161\u11ab.", 9, 2, 3},                       // Hangul syllable of three letters
      {"\u0915\u093f\u0938", 6, 1, 2},                        // Hindi syllable with a vowel sign
      {"a\U0001F3FB", 5, 2, 2},                               // letter with a skin tone
      {"\u200b\u200b", 3, 0, 0},                              // zero width spaces
      {"\u0600\u0031", 2, 0, 1},  // a number sign that Unicode joins to a digit
  };
  for (const auto& [text, bytes, cells, whole] : cases) {
    const TextPiece first = FirstGrapheme(text);
    EXPECT_EQ(first.bytes, bytes) << text;
    EXPECT_EQ(first.cells, cells) << text;
    EXPECT_EQ(CellWidth(text), whole) << text;
  }
}

TEST(TextCells, EveryByteThatIsNoUtf8IsOneCellOfItsOwn) {
  // A continuation byte, overlong forms, a surrogate, a code above U+10FFFF, the beginnings of a
  // rupee sign and an emoji, bytes that never occur.
  const std::vector<std::string> broken = {"\x80",         "\xc0\xaf",         "\xe0\x80\x80",
                                           "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xe2\x82",
                                           "\xf0\x9f\x91", "\xfe\xff"};
  for (const std::string& bytes : broken) {
    EXPECT_EQ(CellWidth("a" + bytes + "b"), static_cast<Cells>(bytes.size()) + 2) << bytes;
    EXPECT_EQ(FirstGrapheme("a" + bytes).bytes, 1u) << bytes;
    EXPECT_EQ(FirstGrapheme(bytes + kAcute).bytes, 1u) << bytes;
  }
}

TEST(TextCells, AlignedTextIsExactlyAsWideAsAskedAndNeverCutInsideAGrapheme) {
  const std::vector<std::tuple<std::string, Cells, int, std::string>> cases = {
      {"abc", 5, kAlignLeft, "abc  "},
      {"abc", 5, kAlignRight, "  abc"},
      {"abc", 5, kAlignCenter, "  abc"},
      {"abcdef", 5, kAlignRight, "abcde"},
      {"abc", -3, kAlignRight, ""},
      {"abc" + kAcute + "d", 3, kAlignLeft, "abc" + kAcute},
      {"abcd" + kAcute, 3, kAlignLeft, "abc"},
      {kAcute + "a", 0, kAlignLeft, kAcute},
      {"a\u200b\u200bb", 1, kAlignLeft, "a\u200b\u200b"},
      {kRupee + "5", 4, kAlignRight, "  " + kRupee + "5"},
      {"a" + kWide + "b", 3, kAlignLeft, "a" + kWide},
      {kWide + kWide, 3, kAlignLeft, kWide + " "},
      {kWide + kWide, 3, kAlignRight, kWide + " "},
      {"\xff", 2, kAlignRight, " \xff"}};
  for (const auto& [text, width, alignment, expected] : cases) {
    std::string line = "|";
    AppendAligned(line, text, width, alignment);
    EXPECT_EQ(line, "|" + expected) << text << " in " << width;
  }
}

TEST(TextCells, FittingReadsNoFurtherThanItMustAndAnythingOnlyOnce) {
  // With the whole text read each time these calls would touch 5 TB.
  std::string text;
  text.resize(50'000'000, 'x');
  std::size_t fitted = 0;
  for (int call = 0; call < 100'000; ++call) fitted += FitCells(text, 10).bytes;
  EXPECT_EQ(fitted, 1'000'000u);

  text = "e";
  for (int mark = 0; mark < 1'000'000; ++mark) text += kAcute;
  EXPECT_EQ(FirstGrapheme(text).bytes, text.size());
  EXPECT_EQ(CellWidth(text), 1);
  EXPECT_EQ(FitCells("a" + text, 1).bytes, 1u);
}

}  // namespace
}  // namespace kel
