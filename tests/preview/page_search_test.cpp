#include "preview/page_search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "common/case_folding.h"
#include "preview/search_window.h"
#include "support/naive_search.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using Place = testing::NaivePlace;

class PageSearchTest : public ::testing::Test {
 protected:
  void Write(std::string_view content) { testing::WriteFile(path, content); }

  Place Find(std::string_view text, std::int64_t line = 1, std::int64_t after_column = 0,
             std::size_t block_size = kSearchBlockSize) {
    PageFileReader reader(path);
    const auto match =
        FindMatch(reader, SearchText(text), line, static_cast<Cells>(after_column), block_size);
    return match ? Place{match->line, match->column, match->cells} : Place{};
  }

  // All matches, one search after the other.
  std::vector<Place> FindAll(std::string_view text) {
    std::vector<Place> all;
    for (Place next = Find(text); next.line > 0; next = Find(text, next.line, next.column)) {
      all.push_back(next);
    }
    return all;
  }

  testing::TestFolder folder;
  std::filesystem::path path = folder / "r.rpt";
};

TEST_F(PageSearchTest, MatchesAreFoundOneAfterTheOtherWhateverTheirCase) {
  Write("nothing\r\nxABCyabc\r\n\r\nAbc");
  EXPECT_EQ(FindAll("abc"), (std::vector<Place>{{2, 2, 3}, {2, 6, 3}, {4, 1, 3}}));
  Write("aaaa");
  EXPECT_EQ(FindAll("AA").size(), 3U);
  EXPECT_EQ(Find("a", 1, 4), Place{});
  EXPECT_EQ(Find("a", 2, 0), Place{});
  EXPECT_EQ(Find("a", 1'000'000, 3), Place{});
}

TEST_F(PageSearchTest, CodesArePassedOverInTheirOrder) {
  Write(
      "\x01"
      "Ca\033Esh\033F in \x1b-12,500\x1b-0\r\n\x0c"
      "Cash\r\n");
  EXPECT_EQ(FindAll("cash"), (std::vector<Place>{{1, 1, 4}, {2, 1, 4}}));
  EXPECT_EQ(Find("in 2,500"), (Place{1, 6, 8}));
  EXPECT_EQ(Find("\033E"), Place{});
  // Only four codes and Chr(1) are removed; any other ESC is text, but takes no cell.
  Write(
      "a\x1b-8b\x1b\x1b-1"
      "c\n");
  EXPECT_EQ(Find("ab"), Place{});
  EXPECT_EQ(Find("a\x1b-8b"), (Place{1, 1, 4}));
  EXPECT_EQ(Find("b\x1b\x63"), (Place{1, 4, 2}));
  Write("世界 \xff!");
  EXPECT_EQ(Find("界"), (Place{1, 3, 2}));
  EXPECT_EQ(Find("\xff!"), (Place{1, 6, 2}));
  EXPECT_EQ(Find("\x96"), Place{});  // inside of a character
}

TEST_F(PageSearchTest, CharactersAreComparedBySimpleCaseFolding) {
  using Pairs = std::vector<std::pair<std::string, std::string>>;
  const Pairs same = {{"ÉTÉ", "été"},  {"ΟΔΟΣ", "οδος"},         {"οδός", "ΟΔΌΣ"},
                      {"\u212a", "k"}, {"kilo", "\u212aILO"},    {"ma\u017ft", "MAST"},
                      {"Ñ", "ñ"},      {"ШАПКА", "шапка"},       {"ϑ", "\u03f4"},
                      {"ǅ", "ǆ"},      {"नकद खाता", "नकद खाता"}, {"STRAßE", "straẞe"}};
  for (const auto& [line, text] : same) {
    Write("..\n" + line);
    EXPECT_EQ(Find(text).line, 2) << line;
  }
  // Letters whose case is a language's own, and letters that are none.
  for (const auto& [line, text] :
       Pairs{{"ı", "i"}, {"İ", "i"}, {"ß", "ss"}, {"é", "e"}, {"[", "{"}, {"@", "`"}}) {
    Write(line);
    EXPECT_EQ(Find(text), Place{}) << line;
  }
}

TEST_F(PageSearchTest, TheEmptyTextAndLineEndsAreFoundNowhere) {
  Write("one\r\ntwo\rthree\r\n");
  for (const char* text : {"", "\n", "\r", "e\r", "one\r\ntwo"}) EXPECT_EQ(Find(text), Place{});
}

TEST_F(PageSearchTest, AMatchAcrossTheBlocksOfAFileIsFound) {
  std::string content;
  while (content.size() < 1'000'000) content += "some line of a report\r\n";
  for (std::size_t place = 262'144 - 30; place < 262'144 + 30; ++place) {
    std::string with = content;
    with.replace(place, 6, "ne\033Eed");
    Write(with);
    const std::string before = with.substr(0, place);
    EXPECT_EQ(Find("NEED").line, std::count(before.begin(), before.end(), '\n') + 1) << place;
  }
}

TEST_F(PageSearchTest, ALineLongerThanABlockIsSearchedInPieces) {
  const std::vector<std::pair<std::string, Cells>> units = {
      {"0123456789", 10}, {"खाता ", 3}, {"\033Ea\x01\033F", 1}, {"\x01", 0}, {"\x1b-1\x1b-0", 0}};
  for (const auto& [unit, unit_cells] : units) {
    std::string content = "start ";
    Cells column = 7;
    for (; content.size() < 600'000; column += unit_cells) content += unit;
    Write(content + "needle x\r\nneedle");
    EXPECT_EQ(FindAll("needle"), (std::vector<Place>{{1, column, 6}, {2, 1, 6}})) << unit;
    EXPECT_EQ(Find("x", 1, column), (Place{1, column + 7, 1})) << unit;
    EXPECT_EQ(Find("absent"), Place{});
  }
}

TEST_F(PageSearchTest, ALongTextIsFoundAcrossThePiecesOfALine) {
  std::string text = "x";
  for (int i = 0; i < 100; ++i) text += std::to_string(i) + (i % 2 == 0 ? "k" : "\u212a");
  std::string upper = text;
  std::replace(upper.begin(), upper.end(), 'k', 'K');
  for (std::size_t before = 5000; before < 5400; before += 7) {
    Write(std::string(before, 'x') + upper + "x");
    EXPECT_EQ(Find(text, 1, 0, 1).column, static_cast<Cells>(before) + 1);
  }
}

TEST_F(PageSearchTest, TheWindowNeverHoldsMoreThanABlock) {
  Write(std::string(3'000'000, '\x01') + std::string(3'000'000, 'x') + "\n");
  const InputFile file(path);
  SearchWindow window(file, 0, 1, 6, kSearchBlockSize);
  std::size_t windows = 0;
  for (; window.Next(); ++windows) EXPECT_LE(window.Text().size(), kSearchBlockSize);
  EXPECT_GT(windows, 10U);
}

std::string RandomText(std::mt19937& random, std::size_t pieces, std::size_t line_ends) {
  // Codes and bytes that are no UTF-8 among them; the line ends last.
  static const std::vector<std::string> kPieces = {
      "k",      "K",     "\u212a", "s",      "S",      "\u017f", "é",    "É",    "θ",    "ϑ",
      "\u03f4", "न",     "ा",      "世",     "1",      "-",      " ",    "E",    "e",    "F",
      "f",      "\033E", "\033F",  "\x1b-1", "\x1b-0", "\x1b",   "\x01", "\x0c", "\xff", "\xc3",
      "\xa9",   "\r",    "\u0301", "\n",     "\n",     "\n",     "\n"};
  std::string text;
  while (pieces-- > 0) text += kPieces[random() % (kPieces.size() - 4 + line_ends)];
  return text;
}

testing::NaiveCharacter FirstCharacter(std::string_view text) {
  const Character first = FoldedCharacter(text);
  return {std::to_string(first.value), first.bytes};
}

TEST_F(PageSearchTest, RandomTextsAreFoundWhereASimpleSearchFindsThem) {
  constexpr std::size_t kSmallBlock = 1;  // as small as it goes, so that many blocks meet
  std::mt19937 random(20);                // NOLINT: the same texts each time
  for (std::size_t round = 0; round < 150; ++round) {
    const std::string content = RandomText(random, 1500, round % 3 * 2);
    Write(content);
    const testing::NaiveSearch naive(content, FirstCharacter);
    for (std::size_t length = 1; length <= 5; ++length) {
      const std::string text = RandomText(random, length, 0);
      Place last{1, 0, 0};
      for (int matches = 0; matches < 10 && last.line > 0; ++matches) {
        const Place expected = naive.Find(text, last.line, last.column);
        ASSERT_EQ(Find(text, last.line, last.column, kSmallBlock), expected)
            << round << ": " << ::testing::PrintToString(text);
        ASSERT_EQ(Find(text, last.line, last.column), expected);
        last = expected;
      }
    }
  }
}

}  // namespace
}  // namespace kel
