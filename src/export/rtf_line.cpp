#include "export/rtf_line.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "common/code_point.h"
#include "engine/page_format.h"

namespace kel {
namespace {

constexpr int kNatural = 100;  // percent of a font's own width
// The fonts of the reader's machine may be wider than those of this one.
constexpr double kSafety = 1.15;
// A tab leads on only from before its stop.
constexpr double kGapCells = 0.3;
// LEFT-TO-RIGHT MARK: what stands behind text from right to left is not drawn into it.
constexpr std::string_view kLeftToRight = "\\u8206?";

// A run's text and place without the gutter that stands in front of the line.
struct PaperRun {
  std::string_view text;
  Cells column = 0;
  Cells cells = 0;
};

bool HasRightToLeft(std::string_view text) {
  while (!text.empty()) {
    const CodePoint character = FirstCodePoint(text);
    if (character.IsValid() && IsRightToLeft(character)) return true;
    text.remove_prefix(character.bytes);
  }
  return false;
}

PaperRun OnPaper(const PageText& page, const TextRun& run) {
  const std::string_view text = page.TextOf(run);
  if (run.column >= kGutter) return {text, run.column - kGutter, run.cells};
  return {text.substr(1), 0, run.cells - kGutter};
}

}  // namespace

RtfLineWriter::RtfLineWriter(RtfFont& font, BlankRuns blanks, Cells left_margin,
                             const std::vector<ReportColumn>& columns)
    : font_(font), blanks_(blanks) {
  Cells start = left_margin;
  for (const ReportColumn& column : columns) {
    column_starts_.push_back(start);
    start += column.width + 1;
  }
}

void RtfLineWriter::Take(const PageText& page, const PageLine& line) {
  text_.clear();
  tab_stops_.clear();
  if (TakePieces(page, line)) {
    AppendPieces();
  } else {
    AppendRuns(page, line);
  }
  SetLook({});
}

// False when the font itself has all of the line.
bool RtfLineWriter::TakePieces(const PageText& page, const PageLine& line) {
  const auto runs = std::span(page.runs).subspan(line.first_run, line.runs);
  const auto is_loose = [&](const TextRun& run) {
    const PaperRun paper = OnPaper(page, run);
    return !run.plain &&
           (HasRightToLeft(paper.text) || !font_.FillsItsCells(paper.text, paper.cells));
  };
  if (std::none_of(runs.begin(), runs.end(), is_loose)) return false;
  pieces_.clear();
  for (const TextRun& run : runs) {
    const PaperRun paper = OnPaper(page, run);
    if (paper.text.empty()) continue;
    const Piece piece{paper.text, paper.column, paper.cells, {run.bold, run.underline},
                      false,      is_loose(run)};
    if (run.plain) {
      AppendPlainPieces(piece);
    } else {
      pieces_.push_back(piece);
    }
  }
  return true;
}

void RtfLineWriter::AppendPlainPieces(Piece run) {
  const std::string_view text = run.text;
  for (std::size_t done = 0; done < text.size();) {
    run.blank = text[done] == ' ';
    const std::size_t end =
        std::min(run.blank ? text.find_first_not_of(' ', done) : text.find(' ', done), text.size());
    run.text = text.substr(done, end - done);
    run.cells = static_cast<Cells>(run.text.size());
    pieces_.push_back(run);
    run.column += run.cells;
    done = end;
  }
}

void RtfLineWriter::AppendRuns(const PageText& page, const PageLine& line) {
  for (std::uint32_t i = 0; i < line.runs; ++i) {
    const TextRun& run = page.runs[line.first_run + i];
    Append(OnPaper(page, run).text, {run.bold, run.underline});
  }
}

void RtfLineWriter::AppendPieces() {
  for (std::size_t i = 0; i < pieces_.size();) {
    if (pieces_[i].loose) {
      i = AppendStretch(i);
    } else {
      Append(pieces_[i].text, pieces_[i].look);
      ++i;
    }
  }
}

// Behind the words of other fonts that begin at `first`, with single blanks between them. They end
// where a column or a word of the document's font begins.
std::size_t RtfLineWriter::StretchEnd(std::size_t first) const {
  std::size_t end = first + 1;
  for (; end < pieces_.size(); ++end) {
    const Piece& piece = pieces_[end];
    if (!piece.blank && !piece.loose && piece.text.front() == kColumnDivider) break;
    if (!piece.blank) continue;
    if (piece.cells > 1 || end + 1 == pieces_.size() || !pieces_[end + 1].loose) break;
    if (std::binary_search(column_starts_.begin(), column_starts_.end(), pieces_[end + 1].column)) {
      break;
    }
  }
  return end;
}

std::size_t RtfLineWriter::AppendStretch(std::size_t first) {
  const std::size_t end = StretchEnd(first);
  const std::size_t next = end < pieces_.size() && pieces_[end].blank ? end + 1 : end;
  const int narrowing = Narrowing(first, end, next);
  if (narrowing < kNatural) {
    SetLook({});
    text_ += '{';
    AppendRtfControl(text_, "\\charscalex", narrowing);
    text_ += ' ';
  }
  for (std::size_t i = first; i < end; ++i) Append(pieces_[i].text, pieces_[i].look);
  if (narrowing < kNatural) {
    SetLook({});
    text_ += '}';
  }
  if (next == pieces_.size()) return end;  // blanks at the end of a line lead nowhere
  const bool turned = HasRightToLeft(TextOf(first, end));
  if (turned) text_ += kLeftToRight;
  AppendTab(pieces_[next].column, next > end ? pieces_[end].look : Look{});
  if (turned) text_ += kLeftToRight;
  return next;
}

// How wide the letters may be, in percent, to end before the next word or the paper.
int RtfLineWriter::Narrowing(std::size_t first, std::size_t end, std::size_t next) const {
  const Piece& begin = pieces_[first];
  const double natural = NaturalWidth(first, end);
  double room = setting_.text_width - begin.column * setting_.cell_width;
  if (next < pieces_.size()) {
    room = (pieces_[next].column - begin.column - kGapCells) * setting_.cell_width;
  }
  if (natural <= room) return kNatural;
  return std::max(static_cast<int>(std::floor(kNatural * room / natural)), 1);
}

// The pieces of a line stand in its text one behind the other.
std::string_view RtfLineWriter::TextOf(std::size_t first, std::size_t end) const {
  const char* const begin = pieces_[first].text.data();
  const std::string_view last = pieces_[end - 1].text;
  return {begin, static_cast<std::size_t>(last.data() - begin) + last.size()};
}

double RtfLineWriter::NaturalWidth(std::size_t first, std::size_t end) const {
  double width = 0;
  for (std::size_t i = first; i < end;) {
    std::size_t word_end = i;
    while (word_end < end && pieces_[word_end].loose) ++word_end;
    if (word_end > i) {
      width += font_.WidthOf(TextOf(i, word_end)) * setting_.font_size * kSafety;
      i = word_end;
    } else {
      width += pieces_[i].cells * setting_.cell_width;
      ++i;
    }
  }
  return width;
}

void RtfLineWriter::AppendTab(Cells column, Look look) {
  SetLook(look);
  text_ += "\\tab ";
  AppendRtfControl(tab_stops_, "\\tx", std::lround(column * setting_.cell_width));
}

void RtfLineWriter::Append(std::string_view text, Look look) {
  if (text.empty()) return;
  SetLook(look);
  AppendRtfText(text_, text, blanks_);
}

// Complex scripts have a weight of their own.
void RtfLineWriter::SetLook(Look look) {
  if (look == look_) return;
  if (look_ != Look{}) text_ += '}';
  look_ = look;
  if (look == Look{}) return;
  text_ += '{';
  if (look.bold) text_ += R"(\rtlch\ab\ltrch\b)";
  if (look.underline) text_ += "\\ul";
  text_ += ' ';
}

}  // namespace kel
