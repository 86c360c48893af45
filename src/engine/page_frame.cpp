#include "engine/page_frame.h"

#include <algorithm>

#include "common/control_codes.h"
#include "common/error.h"
#include "common/text_cells.h"
#include "engine/page_format.h"

namespace kel {

namespace {

constexpr std::string_view kDefaultRule = "-";

// String(line width, UnderLineChar): the first character, repeated; a wide one as often as it fits.
std::string RuleText(std::string_view under_line_char, Cells line_width) {
  const std::string clean = CleanText(under_line_char);
  std::string_view unit = clean;
  TextPiece first;
  if (!unit.empty()) first = FirstGrapheme(unit);
  if (first.cells == 0) {
    unit = kDefaultRule;
    first = {kDefaultRule.size(), 1};
  }
  unit = unit.substr(0, first.bytes);
  std::string rule;
  for (Cells cells = first.cells; cells <= line_width; cells += first.cells) rule += unit;
  rule.append(static_cast<std::size_t>(line_width % first.cells), ' ');
  return rule;
}

}  // namespace

PageFrame::PageFrame(GridSource& grid, const PrintSettings& settings, Cells line_width,
                     const ReportTexts& texts, PageNumber first_page, PageFileWriter& writer)
    : grid_(grid),
      settings_(settings),
      line_width_(line_width),
      margin_(static_cast<std::size_t>(settings.left_margin), ' '),
      rule_(margin_ + RuleText(settings.under_line_char, line_width)),
      stamp_(CleanText(texts.stamp)),
      writer_(writer),
      first_page_(first_page),
      current_page_(first_page) {
  if (first_page == 1) titles_ = texts.titles;
}

void PageFrame::RequireRoomFor(std::size_t headings) const {
  if (HasRoomFor(headings)) return;
  throw Error(error_number::kInvalidProcedureCall,
              "Lines is " + std::to_string(settings_.lines) + ", but a page of this report needs " +
                  std::to_string(LeastLines(headings)) + " lines at least");
}

std::int64_t PageFrame::LeastLines(std::size_t headings) const {
  return static_cast<std::int64_t>(headings) + kPageFrameLines + 1 + SurplusTitles();
}

// Titles that the top margin cannot hold take lines of page 1's body.
std::int32_t PageFrame::SurplusTitles() const {
  return std::max(0, static_cast<std::int32_t>(titles_.size()) - settings_.top_margin);
}

void PageFrame::Open() {
  writer_.BeginPage();
  for (const std::string& title : titles_) {
    line_ = kTitleMark;
    line_ += margin_;
    line_ += CleanText(title);
    writer_.WriteLine(line_);
  }
  WriteTop();
}

void PageFrame::WriteBody(std::string_view line) {
  if (complete_) return;
  writer_.WriteLine(line);
  last_line_was_rule_ = false;
  PageStep();
}

void PageFrame::WriteRule() {
  if (complete_) return;
  WriteRuleLine();
  PageStep();
}

void PageFrame::Close() {
  if (complete_) return;
  // Exactly one rule closes the body, whoever wrote it; the rest of the page stays bare.
  bool closed = last_line_was_rule_;
  while (counter_ <= settings_.lines - 2) {
    ++counter_;
    if (closed) {
      writer_.WriteEmptyLines(1);
    } else {
      WriteRuleLine();
      closed = true;
    }
  }
  WriteFoot(kEndWord);
}

// Called after every line written into a page body.
void PageFrame::PageStep() {
  ++counter_;
  if (counter_ != settings_.lines - 1) return;
  WriteFoot(kContinuedWord);
  if (current_page_ >= settings_.end_page) {
    complete_ = true;
    return;
  }
  ++current_page_;
  writer_.BeginPage();
  WriteTop();
}

void PageFrame::WriteTop() {
  counter_ = 2;
  if (current_page_ == first_page_) {
    writer_.WriteEmptyLines(settings_.top_margin - static_cast<std::int32_t>(titles_.size()));
    WritePageLine();
    counter_ += SurplusTitles();
    return;
  }
  writer_.WriteEmptyLines(settings_.top_margin);
  WritePageLine();
  WriteRuleLine();
  for (const std::string& heading : headings_) writer_.WriteLine(heading);
  WriteRuleLine();
  counter_ += static_cast<std::int32_t>(headings_.size()) + 2;
}

void PageFrame::WritePageLine() {
  const std::string number = std::to_string(current_page_);
  const auto tail = static_cast<Cells>(number.size() + kPageWord.size());
  line_ = margin_;
  AppendAligned(line_, CleanText(grid_.Caption()), line_width_ - tail, kAlignLeft);
  line_ += kPageWord;
  line_ += number;
  writer_.WriteLine(line_);
  last_line_was_rule_ = false;
}

void PageFrame::WriteFoot(std::string_view word) {
  WriteRuleLine();
  line_ = margin_;
  Cells rest = line_width_;
  if (settings_.print_date_time) {
    AppendAligned(line_, stamp_, kStampWidth, kAlignLeft);
    rest -= kStampWidth;
  }
  AppendAligned(line_, word, rest, kAlignRight);
  writer_.WriteLine(line_);
  WriteBottomMargin();
}

void PageFrame::WriteRuleLine() {
  writer_.WriteLine(rule_);
  last_line_was_rule_ = true;
}

void PageFrame::WriteBottomMargin() {
  if (settings_.bottom_margin < 1) return;
  writer_.WriteEmptyLines(settings_.bottom_margin - 1);
  writer_.WriteLine({&kFormFeed, 1});
}

}  // namespace kel
