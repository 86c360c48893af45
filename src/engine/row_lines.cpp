#include "engine/row_lines.h"

#include <algorithm>
#include <cstring>

#include "common/control_codes.h"
#include "engine/page_format.h"

namespace kel {

namespace {

// What stands in a cell for a grapheme that is wider than the whole column.
constexpr std::string_view kTooWide = "?";

// A blank that carries a combining mark is no place to break: mark and blank are one character.
std::size_t LastBlank(std::string_view text) {
  std::size_t blank = text.rfind(' ');
  while (blank != std::string_view::npos && FirstGrapheme(text.substr(blank)).bytes > 1) {
    blank = blank == 0 ? std::string_view::npos : text.rfind(' ', blank - 1);
  }
  return blank;
}

}  // namespace

RowLines::RowLines(GridSource& grid, std::span<const Cells> widths, std::int32_t col1,
                   std::int32_t col2, Cells left_margin, bool print_column_divider)
    : grid_(grid),
      divider_(print_column_divider ? kColumnDivider : ' '),
      margin_end_(static_cast<std::size_t>(left_margin) + 1),
      blank_line_(margin_end_, ' ') {
  blank_line_[0] = kTitleMark;
  for (std::int32_t col = col1; col <= col2; ++col) {
    const Cells width = widths[static_cast<std::size_t>(col)];
    if (width <= 0) continue;
    Column& column = columns_.emplace_back();
    column.index = col;
    column.width = width;
    column.divider_after = col < col2;
    column.side = TextSide::kLeft;
    column.offset = blank_line_.size();
    blank_line_.append(static_cast<std::size_t>(width), ' ');
    if (column.divider_after) blank_line_ += divider_;
  }
}

std::vector<ReportColumn> RowLines::Columns() const {
  std::vector<ReportColumn> columns;
  for (const Column& column : columns_) columns.push_back({column.width, column.side});
  return columns;
}

void RowLines::Begin(std::int32_t row) {
  row_ = row;
  first_line_ = true;
  continues_ = true;
}

bool RowLines::Next(std::string_view& line) {
  if (!continues_) return false;
  continues_ = false;
  bool one_byte_per_cell = true;
  for (Column& column : columns_) {
    if (first_line_) ReadText(column);
    TakePiece(column);
    grid_.SetCol(column.index);
    column.font = grid_.Font();
    column.side = grid_.Side(column.index);
    column.before = BlanksBefore(column);
    one_byte_per_cell &= column.plain && !column.font.bold && !column.font.underline;
  }
  first_line_ = false;
  if (one_byte_per_cell) {
    PaintLine();
  } else {
    AssembleLine();
  }
  line = FinishedLine();
  return true;
}

Cells RowLines::BlanksBefore(const Column& column) {
  const Cells blanks = column.width - column.cells;
  switch (column.side) {
    case TextSide::kLeft:
      return 0;
    case TextSide::kCenter:
      return blanks / 2;
    case TextSide::kRight:
      break;
  }
  return blanks;
}

void RowLines::ReadText(Column& column) {
  column.rest = grid_.TextMatrix(row_, column.index);
  column.plain = IsPlain(column.rest);
  if (column.plain) return;
  column.cleaned = CleanText(column.rest);
  column.rest = column.cleaned;
}

// Takes the piece for this line off the column's rest.
void RowLines::TakePiece(Column& column) {
  const std::string_view rest = column.rest;
  TextPiece piece;
  if (column.plain) {
    piece.bytes = std::min(rest.size(), static_cast<std::size_t>(column.width));
    piece.cells = static_cast<Cells>(piece.bytes);
  } else {
    piece = FitCells(rest, column.width);
  }
  column.shown = rest.substr(0, piece.bytes);
  column.cells = piece.cells;
  if (piece.bytes == rest.size()) {
    column.rest = {};
    return;
  }
  if (piece.bytes == 0) {
    column.shown = kTooWide;
    column.cells = 1;
    column.rest = rest.substr(FirstGrapheme(rest).bytes);
    continues_ = continues_ || !column.rest.empty();
    return;
  }
  // The break keeps its blank: the next piece starts right after it, so no text is lost.
  continues_ = true;
  const std::size_t blank = LastBlank(column.shown);
  if (blank != std::string_view::npos) {
    column.shown = column.shown.substr(0, blank + 1);
    column.cells = column.plain ? static_cast<Cells>(blank + 1) : CellWidth(column.shown);
  }
  column.rest = rest.substr(column.shown.size());
}

// Every cell stands at a fixed place, so the texts are painted over a line of empty cells.
void RowLines::PaintLine() {
  line_ = blank_line_;
  for (const Column& column : columns_) {
    column.shown.copy(line_.data() + column.offset + column.before, column.shown.size());
  }
}

// Codes and texts of any script: the cells are strung together. Underline codes stand inside the
// padding and bold codes around it.
void RowLines::AssembleLine() {
  line_.assign(blank_line_, 0, margin_end_);
  for (const Column& column : columns_) {
    const Cells after = column.width - column.cells - column.before;
    if (column.font.bold) line_ += kBoldOn;
    line_.append(static_cast<std::size_t>(column.before), ' ');
    if (column.font.underline) line_ += kUnderlineOn;
    line_ += column.shown;
    if (column.font.underline) line_ += kUnderlineOff;
    line_.append(static_cast<std::size_t>(after), ' ');
    if (column.font.bold) line_ += kBoldOff;
    if (column.divider_after) line_ += divider_;
  }
}

std::string_view RowLines::FinishedLine() const {
  const std::size_t last = line_.find_last_not_of(' ');
  const std::size_t end = last == std::string::npos || last < margin_end_ ? margin_end_ : last + 1;
  const std::string_view line = std::string_view(line_).substr(0, end);
  const bool has_codes = std::memchr(line.data(), kEsc, line.size()) != nullptr;
  return has_codes ? line : line.substr(1);
}

}  // namespace kel
