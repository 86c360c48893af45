#include "engine/page_line.h"

#include <algorithm>
#include <array>

#include "common/control_codes.h"
#include "engine/line_codes.h"

namespace kel {

namespace {

constexpr std::string_view kReplacement = "\xef\xbf\xbd";  // U+FFFD

struct Look {
  bool bold = false;
  bool underline = false;
};

/// From byte `offset` of a line without its codes on.
struct LookChange {
  std::size_t offset = 0;
  Look look;
};

bool IsAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }
bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == '\x7f'; }

// The code points are those of Unicode's InCB property (annex 29): a linker after a consonant joins
// it with the next consonant of its script into one conjunct, which is shaped as a whole.
constexpr std::array<char32_t, 6> kLinkers = {0x094D, 0x09CD, 0x0ACD, 0x0B4D, 0x0C4D, 0x0D4D};
constexpr char32_t kScriptBlock = 0x80;
constexpr char32_t kFirstConsonant = 0x15;  // in every one of these blocks, as the last one
constexpr char32_t kLastConsonant = 0x39;
constexpr char32_t kFirstDottedConsonant = 0x58;  // precomposed with a nukta
constexpr char32_t kLastDottedConsonant = 0x5F;
constexpr std::string_view kJoiner = "\xe2\x80\x8d";  // U+200D, behind a linker
constexpr std::size_t kLetterBytes = 3;               // of every letter of these blocks

// The code point of the three bytes at `at`; 0 when they are none.
char32_t ThreeByteLetter(std::string_view text, std::size_t at) {
  if (at + kLetterBytes > text.size()) return 0;
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
  if ((byte(0) & 0xf0U) != 0xe0 || (byte(1) & 0xc0U) != 0x80 || (byte(2) & 0xc0U) != 0x80) return 0;
  return (byte(0) & 0x0fU) << 12U | (byte(1) & 0x3fU) << 6U | (byte(2) & 0x3fU);
}

bool FormsConjunct(std::string_view before, std::string_view after) {
  if (before.size() > kJoiner.size() && before.ends_with(kJoiner)) {
    before.remove_suffix(kJoiner.size());
  }
  if (before.size() < kLetterBytes) return false;
  const char32_t linker = ThreeByteLetter(before, before.size() - kLetterBytes);
  if (std::find(kLinkers.begin(), kLinkers.end(), linker) == kLinkers.end()) return false;
  const char32_t letter = ThreeByteLetter(after, 0);
  const char32_t place = letter % kScriptBlock;
  const bool is_consonant = (place >= kFirstConsonant && place <= kLastConsonant) ||
                            (place >= kFirstDottedConsonant && place <= kLastDottedConsonant);
  return letter / kScriptBlock == linker / kScriptBlock && is_consonant;
}

// The ASCII characters that `text` begins with, `most` at most, but for one that may carry a
// combining mark.
std::size_t AsciiAlone(std::string_view text, std::size_t most) {
  std::size_t count = 0;
  while (count < most && IsAscii(text[count])) ++count;
  return count > 0 && count < text.size() && !IsAscii(text[count]) ? count - 1 : count;
}

// Builds one line of a page, run by run.
class LineBuilder {
 public:
  explicit LineBuilder(PageText& page) : page_(page), first_run_(page.runs.size()) {}
  ~LineBuilder() {
    page_.lines.push_back({static_cast<std::uint32_t>(first_run_),
                           static_cast<std::uint32_t>(page_.runs.size() - first_run_)});
  }
  LineBuilder(const LineBuilder&) = delete;
  LineBuilder& operator=(const LineBuilder&) = delete;

  // Appends the first graphemes of `text`, no further than the one that holds byte `end` - 1;
  // returns their bytes.
  std::size_t Append(std::string_view text, std::size_t end, Look look);

  Cells Columns() const { return column_; }

 private:
  void AppendAscii(std::string_view text, Look look);
  void AppendGrapheme(std::string_view grapheme, Cells cells, Look look);
  bool JoinsConjunct(std::string_view grapheme, Look look) const;
  void Join(std::string_view zero_width);
  void BeginRun(Look look, bool plain);

  PageText& page_;
  std::size_t first_run_;
  Cells column_ = 0;
};

std::size_t LineBuilder::Append(std::string_view text, std::size_t end, Look look) {
  std::size_t done = 0;
  while (done < end) {
    const std::size_t most =
        std::min(end - done, static_cast<std::size_t>(kMostLineCells - column_));
    const std::size_t ascii = AsciiAlone(text.substr(done), most);
    AppendAscii(text.substr(done, ascii), look);
    done += ascii;
    if (done == end) break;
    const TextPiece grapheme = FirstGrapheme(text.substr(done));
    if (grapheme.cells > kMostLineCells - column_) return text.size();
    AppendGrapheme(text.substr(done, grapheme.bytes), grapheme.cells, look);
    done += grapheme.bytes;
  }
  return done;
}

void LineBuilder::AppendAscii(std::string_view text, Look look) {
  if (text.empty()) return;
  BeginRun(look, true);
  for (const char c : text) page_.text.push_back(IsControl(c) ? ' ' : c);
  page_.runs.back().bytes += static_cast<std::uint32_t>(text.size());
  page_.runs.back().cells += static_cast<Cells>(text.size());
  column_ += static_cast<Cells>(text.size());
}

void LineBuilder::AppendGrapheme(std::string_view grapheme, Cells cells, Look look) {
  if (cells == 0) {
    Join(grapheme);
    return;
  }
  if (grapheme.size() == 1 && IsAscii(grapheme[0])) {
    AppendAscii(grapheme, look);
    return;
  }
  if (JoinsConjunct(grapheme, look)) {
    TextRun& run = page_.runs.back();
    page_.text.append(grapheme);
    run.bytes += static_cast<std::uint32_t>(grapheme.size());
    run.cells += cells;
    column_ += cells;
    return;
  }
  BeginRun(look, false);
  const std::string_view drawn = grapheme.size() == 1 ? kReplacement : grapheme;
  page_.text.append(drawn);
  page_.runs.back().bytes = static_cast<std::uint32_t>(drawn.size());
  page_.runs.back().cells = cells;
  column_ += cells;
}

bool LineBuilder::JoinsConjunct(std::string_view grapheme, Look look) const {
  if (page_.runs.size() == first_run_) return false;
  const TextRun& last = page_.runs.back();
  return !last.plain && last.bold == look.bold && last.underline == look.underline &&
         FormsConjunct(page_.TextOf(last), grapheme);
}

// What has no width of its own is drawn with the character before it; there always is one, the
// gutter.
void LineBuilder::Join(std::string_view zero_width) {
  TextRun carrier = page_.runs.back();
  if (carrier.plain && carrier.cells > 1) {
    TextRun& run = page_.runs.back();
    run.bytes -= 1;
    run.cells -= 1;
    carrier.offset += run.bytes;
    carrier.column += run.cells;
    carrier.bytes = 1;
    carrier.cells = 1;
    page_.runs.push_back(carrier);
  }
  page_.text.append(zero_width);
  TextRun& run = page_.runs.back();
  run.plain = false;
  run.bytes += static_cast<std::uint32_t>(zero_width.size());
}

// Makes the last run one to which plain text may be appended, or a new one.
void LineBuilder::BeginRun(Look look, bool plain) {
  if (plain && page_.runs.size() > first_run_) {
    const TextRun& last = page_.runs.back();
    if (last.plain && last.bold == look.bold && last.underline == look.underline) return;
  }
  TextRun run;
  run.offset = static_cast<std::uint32_t>(page_.text.size());
  run.column = column_;
  run.plain = plain;
  run.bold = look.bold;
  run.underline = look.underline;
  page_.runs.push_back(run);
}

// Takes the codes out of a line. Graphemes are made of what is left, as the search makes them.
std::vector<LookChange> TakeCodes(std::string& line, Look look) {
  std::vector<LookChange> looks = {{0, look}};
  std::erase(line, kTitleMark);
  std::size_t kept = 0;
  for (std::size_t done = 0; done < line.size();) {
    if (line[done] != kEsc) {
      line[kept++] = line[done++];
      continue;
    }
    const std::string_view code = CodeAt(std::string_view(line).substr(done));
    if (code == kBoldOn || code == kBoldOff) look.bold = code == kBoldOn;
    if (code == kUnderlineOn || code == kUnderlineOff) look.underline = code == kUnderlineOn;
    looks.push_back({kept, look});
    done += std::max<std::size_t>(code.size(), 1);
  }
  line.resize(kept);
  return looks;
}

MarkedCells Marked(std::size_t line, Cells column, Cells cells, Cells columns) {
  if (cells <= 0 || column < 1 || column >= columns) return {};
  return {static_cast<std::int32_t>(line), column, std::min(cells, columns - column)};
}

}  // namespace

void PageText::Clear() {
  text.clear();
  runs.clear();
  lines.clear();
  match = {};
  underline = false;
}

Cells PaperWidth(const PageText& page, const PageLine& line) {
  if (line.runs == 0) return 0;
  const TextRun& last = page.runs[line.first_run + line.runs - 1];
  return std::max(last.column + last.cells - kGutter, 0);
}

void AppendRawLine(PageText& page, std::string_view line) {
  LineBuilder builder(page);
  if (TrimBlanks(line).empty()) return;
  const Look look{false, page.underline};
  builder.Append(" ", 1, look);
  builder.Append(line, line.size(), look);
}

void AppendFormattedLine(PageText& page, std::string_view line, Cells mark_column,
                         Cells mark_cells) {
  std::string text(line);
  const std::vector<LookChange> looks = TakeCodes(text, {false, page.underline});
  page.underline = looks.back().look.underline;
  LineBuilder builder(page);
  builder.Append(" ", 1, looks.front().look);
  std::size_t done = 0;
  for (std::size_t i = 0; i < looks.size(); ++i) {
    const std::size_t end = i + 1 < looks.size() ? looks[i + 1].offset : text.size();
    if (done >= end) continue;
    done += builder.Append(std::string_view(text).substr(done), end - done, looks[i].look);
  }
  if (mark_cells > 0) {
    page.match = Marked(page.lines.size(), mark_column, mark_cells, builder.Columns());
  }
}

void AppendPageLine(PageText& page, std::string_view line, Cells mark_column, Cells mark_cells) {
  std::string without_form_feeds;
  if (line.find(kFormFeed) != std::string_view::npos) {
    without_form_feeds = line;
    std::erase(without_form_feeds, kFormFeed);
    line = without_form_feeds;
  }
  if (!TrimBlanks(line).empty() && (mark_cells > 0 || line.front() == kTitleMark)) {
    AppendFormattedLine(page, line, mark_column, mark_cells);
  } else {
    AppendRawLine(page, line);
  }
}

}  // namespace kel
