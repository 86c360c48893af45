#include "common/text_cells.h"

#include <gtest/gtest.h>

#include <string>
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
    // Every place in a word read at once, and in the bytes behind the last whole word.
    for (std::size_t place = 0; place < 21; ++place) {
      std::string text(21, 'a');
      text[place] = static_cast<char>(code);
      EXPECT_EQ(IsPlain(text), plain) << "code " << code << " at " << place;
    }
  }
  EXPECT_TRUE(IsPlain(""));
}

TEST(TextCells, OneControlCodeBesideEscapesIsNotPlain) {
  EXPECT_TRUE(IsPlain("\033E\033-1A\033-0\033F"));
  EXPECT_FALSE(IsPlain("\033E\033-1\n\033-0\033F"));
}

TEST(TextCells, CleanTextTurnsEachLineEndAndControlCodeIntoOneBlank) {
  using namespace std::string_literals;
  EXPECT_EQ(CleanText("a\r\nb\rc\nd\te\ff\x01g\0h"s), "a b c d e f g h");
  EXPECT_EQ(CleanText("\n\r\r\n"), "   ");
  EXPECT_EQ(CleanText("\033E" + kRupee + "\xff"), "\033E" + kRupee + "\xff");
  EXPECT_EQ(CleanText(""), "");
}

struct WidthCase {
  const char* what;
  std::string text;
  std::size_t bytes;  // of the first grapheme
  Cells cells;        // of the first grapheme
  Cells whole;        // of the whole text
};

TEST(TextCells, GraphemesAreMeasuredWhole) {
  const std::vector<WidthCase> cases = {
      {"ASCII letter", "ab", 1, 1, 2},
      {"escape", "\033E", 1, 1, 2},
      {"carriage return and line feed", "\r\n", 1, 1, 2},
      {"letter with accents", "e" + kAcute + kAcute + "x", 5, 1, 2},
      {"accent behind a control code", "\n" + kAcute, 1, 1, 1},
      {"accent alone", kAcute + "x", 2, 0, 1},
      {"rupee sign", kRupee + "5", 3, 1, 2},
      {"wide character", kWide + kWide, 3, 2, 4},
      {"joined emoji", kFamily + "x", kFamily.size(), 2, 3},
      {"two flags", "\U0001F1EE\U0001F1F3\U0001F1EC\U0001F1E7", 8, 1, 2},
      {"Hangul syllable of three letters", "\u1112\u1161\u11ab.", 9, 2, 3},
      {"Hindi syllable with a vowel sign", "\u0915\u093f\u0938", 6, 1, 2},
      {"zero width space", "\u200b\u200b", 3, 0, 0},
      {"number sign that Unicode joins to a digit",
       "\u0600"
       "1",
       2, 0, 1},
  };
  for (const WidthCase& c : cases) {
    const TextPiece first = FirstGrapheme(c.text);
    EXPECT_EQ(first.bytes, c.bytes) << c.what;
    EXPECT_EQ(first.cells, c.cells) << c.what;
    EXPECT_EQ(CellWidth(c.text), c.whole) << c.what;
  }
}

TEST(TextCells, EveryByteThatIsNoUtf8IsOneCellOfItsOwn) {
  const std::vector<std::pair<const char*, std::string>> broken = {
      {"continuation byte", "\x80"},
      {"overlong slash", "\xc0\xaf"},
      {"overlong NUL of three bytes", "\xe0\x80\x80"},
      {"surrogate", "\xed\xa0\x80"},
      {"above U+10FFFF", "\xf4\x90\x80\x80"},
      {"truncated rupee sign", "\xe2\x82"},
      {"truncated emoji", "\xf0\x9f\x91"},
      {"bytes that never occur", "\xfe\xff"},
  };
  for (const auto& [what, bytes] : broken) {
    const auto cells = static_cast<Cells>(bytes.size());
    EXPECT_EQ(CellWidth(bytes), cells) << what;
    EXPECT_EQ(FirstGrapheme(bytes).bytes, 1u) << what;
    EXPECT_EQ(CellWidth("a" + bytes + "b"), cells + 2) << what;
    EXPECT_EQ(FirstGrapheme("a" + bytes).bytes, 1u) << what;
    EXPECT_EQ(FirstGrapheme(bytes + kAcute).bytes, 1u) << what << " with an accent behind it";
  }
}

struct FitCase {
  const char* what;
  std::string text;
  Cells width;
  std::size_t bytes;
  Cells cells;
};

TEST(TextCells, FittingNeverCutsInsideAGrapheme) {
  const std::vector<FitCase> cases = {
      {"shorter", "abc", 5, 3, 3},
      {"exact", "abc", 3, 3, 3},
      {"longer", "abcdefghijkl", 10, 10, 10},
      {"accent behind the last cell", "abc" + kAcute + "d", 3, 5, 3},
      {"accent behind the first letter too many", "abcd" + kAcute, 3, 3, 3},
      {"accent at the text's end", "abc" + kAcute, 3, 5, 3},
      {"wide character in the last cell", "ab" + kWide, 3, 2, 2},
      {"wide character that fits", "a" + kWide + "b", 3, 4, 3},
      {"only accents", kAcute + kAcute, 1, 4, 0},
      {"nothing fits", "abc", 0, 0, 0},
      {"accents fit into nothing", kAcute + "a", 0, 2, 0},
      {"negative width", "abc", -5, 0, 0},
      {"zero width spaces behind", "a\u200b\u200bb", 1, 7, 1},
      {"empty", "", 4, 0, 0},
  };
  for (const FitCase& c : cases) {
    const TextPiece piece = FitCells(c.text, c.width);
    EXPECT_EQ(piece.bytes, c.bytes) << c.what;
    EXPECT_EQ(piece.cells, c.cells) << c.what;
  }
}

TEST(TextCells, FittingLooksNoFurtherThanTheGraphemeBehindTheWidth) {
  // With the whole text read each time these calls would touch 5 TB.
  std::string text;
  text.resize(50'000'000, 'x');
  std::size_t fitted = 0;
  for (int call = 0; call < 100'000; ++call) fitted += FitCells(text, 10).bytes;
  EXPECT_EQ(fitted, 1'000'000u);
}

TEST(TextCells, AGraphemeOfAMillionMarksIsOneCell) {
  std::string text = "e";
  for (int mark = 0; mark < 1'000'000; ++mark) text += kAcute;
  EXPECT_EQ(FirstGrapheme(text).bytes, text.size());
  EXPECT_EQ(CellWidth(text), 1);
  EXPECT_EQ(FitCells(text, 1).bytes, text.size());
  EXPECT_EQ(FitCells("a" + text, 1).bytes, 1u);
}

TEST(TextCells, AlignedTextIsExactlyAsWideAsAsked) {
  struct AlignCase {
    std::string text;
    Cells width;
    int alignment;
    std::string expected;
  };
  const std::vector<AlignCase> cases = {
      {"abc", 5, kAlignLeft, "abc  "},
      {"abc", 5, kAlignRight, "  abc"},
      {"abc", 5, kAlignCenter, "  abc"},
      {"abcdef", 5, kAlignLeft, "abcde"},
      {"abcdef", 5, kAlignRight, "abcde"},
      {"abc", 0, kAlignLeft, ""},
      {"abc", -3, kAlignRight, ""},
      {"", 2, kAlignLeft, "  "},
      {kRupee + "5", 4, kAlignRight, "  " + kRupee + "5"},
      {"e" + kAcute, 3, kAlignLeft, "e" + kAcute + "  "},
      {kWide + kWide, 3, kAlignLeft, kWide + " "},
      {kWide + kWide, 3, kAlignRight, kWide + " "},
      {"\xff", 2, kAlignRight, " \xff"},
  };
  for (const AlignCase& c : cases) {
    std::string line = "|";
    AppendAligned(line, c.text, c.width, c.alignment);
    EXPECT_EQ(line, "|" + c.expected) << c.text << " in " << c.width;
  }
}

TEST(TextCells, PiecesThatFitPutTogetherAreTheText) {
  const std::string mixed =
      "Ledger " + kWide + "e" + kAcute + "\xff" + kFamily + kRupee + "\u200b\033E";
  std::string text;
  for (int i = 0; i < 50; ++i) text += mixed;
  for (Cells width = 2; width < 30; ++width) {
    std::string_view rest = text;
    std::string joined;
    Cells cells = 0;
    while (!rest.empty()) {
      const TextPiece piece = FitCells(rest, width);
      ASSERT_GT(piece.bytes, 0u);
      ASSERT_EQ(CellWidth(rest.substr(0, piece.bytes)), piece.cells);
      ASSERT_LE(piece.cells, width);
      joined += rest.substr(0, piece.bytes);
      cells += piece.cells;
      rest.remove_prefix(piece.bytes);
    }
    EXPECT_EQ(joined, text);
    EXPECT_EQ(cells, CellWidth(text));
  }
}

}  // namespace
}  // namespace kel
