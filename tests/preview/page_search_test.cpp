#include "preview/page_search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "preview/search_window.h"
#include "support/naive_search.h"
#include "support/test_folder.h"

namespace kel {
namespace {

struct Place {
  LineNumber line = 0;
  Cells column = 0;
  Cells cells = 0;
  bool operator==(const Place&) const = default;
};

void PrintTo(const Place& place, std::ostream* out) {
  *out << place.line << ':' << place.column << '+' << place.cells;
}

class PageSearchTest : public ::testing::Test {
 protected:
  void Write(std::string_view content) { testing::WriteFile(path, content); }

  Place Find(std::string_view text, LineNumber line = 1, Cells after_column = 0,
             std::size_t block_size = kSearchBlockSize) {
    PageFileReader reader(path);
    const auto match = FindMatch(reader, SearchText(text), line, after_column, block_size);
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
  EXPECT_EQ(Find("b\x1b"
                 "c"),
            (Place{1, 4, 2}));
}

TEST_F(PageSearchTest, CharactersAreComparedBySimpleCaseFolding) {
  for (const auto& [line, text] :
       std::vector<std::pair<std::string, std::string>>{{"ÉTÉ", "été"},
                                                        {"ΟΔΟΣ", "οδος"},
                                                        {"οδός", "ΟΔΌΣ"},
                                                        {"\u212a", "k"},
                                                        {"kilo", "\u212aILO"},
                                                        {"ma\u017ft", "MAST"},
                                                        {"Ñ", "ñ"},
                                                        {"ШАПКА", "шапка"},
                                                        {"ϑ", "\u03f4"},
                                                        {"नकद खाता", "नकद खाता"},
                                                        {"ǅ", "ǆ"},
                                                        {"STRAßE", "straẞe"}}) {
    Write("..\n" + line);
    EXPECT_EQ(Find(text).line, 2) << line;
  }
  // Letters whose case is a language's own, and letters that are none.
  for (const auto& [line, text] : std::vector<std::pair<std::string, std::string>>{
           {"ı", "i"}, {"İ", "i"}, {"ß", "ss"}, {"é", "e"}, {"[", "{"}, {"@", "`"}}) {
    Write(line);
    EXPECT_EQ(Find(text), Place{}) << line;
  }
}

TEST_F(PageSearchTest, ColumnsAreCellsOfWholeGraphemes) {
  Write("世界 Cafe\u0301 \xff!");
  EXPECT_EQ(Find("界"), (Place{1, 3, 2}));
  EXPECT_EQ(Find("cafe"), (Place{1, 6, 4}));
  EXPECT_EQ(Find("\u0301 "), (Place{1, 9, 2}));
  EXPECT_EQ(Find("\xff!"), (Place{1, 11, 2}));
  EXPECT_EQ(Find("\x96"), Place{});  // inside of a character
}

TEST_F(PageSearchTest, TheEmptyTextAndLineEndsAreFoundNowhere) {
  Write("one\r\ntwo\rthree\r\n");
  for (const char* text : {"", "\n", "\r", "e\r", "one\r\ntwo"}) EXPECT_EQ(Find(text), Place{});
}

TEST_F(PageSearchTest, AMatchAcrossTheBlocksOfAFileIsFound) {
  const std::string filler = "some line of a report\r\n";
  std::string content;
  while (content.size() < 1'000'000) content += filler;
  for (std::size_t place = 262'144 - 30; place < 262'144 + 30; ++place) {
    std::string with = content;
    with.replace(place, 6, "ne\033Eed");
    Write(with);
    const std::string before = with.substr(0, place);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    EXPECT_EQ(Find("NEED").line, line) << place;
  }
}

TEST_F(PageSearchTest, ALineLongerThanABlockIsSearchedInPieces) {
  for (const auto& [unit, unit_cells] :
       std::vector<std::pair<std::string, Cells>>{{"0123456789", 10},
                                                  {"खाता ", 3},
                                                  {"世", 2},
                                                  {"\033Ea\x01\033F", 1},
                                                  {"\x01", 0},
                                                  {"\x1b-1\x1b-0", 0}}) {
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

// Pieces of which random texts are made, each with what it folds to; codes and bytes that are no
// UTF-8 among them.
const std::vector<std::pair<std::string, std::string>>& Pieces() {
  static const std::vector<std::pair<std::string, std::string>> pieces = {
      {"k", "k"},       {"K", "k"},       {"\u212a", "k"},     {"s", "s"},       {"S", "s"},
      {"\u017f", "s"},  {"é", "é"},       {"É", "é"},          {"θ", "θ"},       {"ϑ", "θ"},
      {"\u03f4", "θ"},  {"न", "न"},       {"ा", "ा"},          {"世", "世"},     {"1", "1"},
      {"-", "-"},       {" ", " "},       {"E", "e"},          {"e", "e"},       {"F", "f"},
      {"f", "f"},       {"\033E", ""},    {"\033F", ""},       {"\x1b-1", ""},   {"\x1b-0", ""},
      {"\x1b", "\x1b"}, {"\x01", "\x01"}, {"\x0c", "\x0c"},    {"\xff", "\xff"}, {"\xc3", "\xc3"},
      {"\xa9", "\xa9"}, {"\r", "\r"},     {"\u0301", "\u0301"}};
  return pieces;
}

// The longest piece, else a byte alone.
testing::NaiveCharacter FirstCharacter(std::string_view text) {
  testing::NaiveCharacter first{std::string(text.substr(0, 1)), 0};
  for (const auto& [piece, folded] : Pieces()) {
    const bool longer = piece.size() > first.bytes;
    if (!folded.empty() && longer && text.substr(0, piece.size()) == piece) {
      first = {folded, piece.size()};
    }
  }
  first.bytes = std::max<std::size_t>(first.bytes, 1);
  return first;
}

std::string RandomText(std::mt19937& random, std::size_t pieces, int line_ends) {
  std::string text;
  while (pieces-- > 0) {
    const std::size_t pick = random() % (Pieces().size() + static_cast<std::size_t>(line_ends));
    text += pick < Pieces().size() ? Pieces()[pick].first : "\n";
  }
  return text;
}

TEST_F(PageSearchTest, RandomTextsAreFoundWhereASimpleSearchFindsThem) {
  constexpr std::size_t kSmallBlock = 1;  // as small as it goes, so that many blocks meet
  std::mt19937 random(20);                // NOLINT: the same texts each time
  for (int round = 0; round < 150; ++round) {
    const std::string content = RandomText(random, 1500, round % 3 * 2);
    Write(content);
    const testing::NaiveSearch naive(content, FirstCharacter);
    for (std::size_t length = 1; length <= 5; ++length) {
      const std::string text = RandomText(random, length, 0);
      LineNumber line = 1;
      Cells column = 0;
      for (int matches = 0; matches < 10; ++matches) {
        const Place found = Find(text, line, column, kSmallBlock);
        const testing::NaivePlace expected = naive.Find(text, line, column);
        ASSERT_EQ(found, (Place{expected.line, static_cast<Cells>(expected.column),
                                static_cast<Cells>(expected.cells)}))
            << "round " << round << " text " << ::testing::PrintToString(text) << " after " << line
            << ':' << column;
        ASSERT_EQ(Find(text, line, column), found);
        if (found.line == 0) break;
        line = found.line;
        column = found.column;
      }
    }
  }
}

}  // namespace
}  // namespace kel
