#include "export/rtf_document.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

#include "common/ole_color.h"
#include "engine/report_caption.h"
#include "export/page_reading.h"
#include "export/paper_geometry.h"
#include "export/rtf_font.h"
#include "export/rtf_line.h"
#include "export/rtf_text.h"

namespace kel {
namespace {

constexpr const char* kTextModeFont = "Courier New";
constexpr double kTextModeSize = 10;
constexpr double kLeftMargin = 0.25 * 72;  // points; the other margins are 0
// Wider or higher paper is more than a word processor has.
constexpr double kMostPaper = 22 * 72;
constexpr double kUsualPaperWidth = 8.5 * 72;  // of a document that does not tell its own

constexpr double kTwips = 20;        // of a point
constexpr double kLineHeight = 1.2;  // ems
constexpr long kLeastHalfPoints = 2;
// Widths are rounded when lines are set, and a line that just fits must not be broken.
constexpr double kRounding = 1.002;

// Pages are written to the file in pieces of about this size.
constexpr std::size_t kBlockBytes = std::size_t{64} << 10;

constexpr OleColor kSystemColor = 0x80000000;  // and above: a colour of the screen, black on paper

struct DocumentType {
  FontLook font;
  double size = 0;  // points
  FontFlags flags;
  OleColor color = 0;
};

DocumentType TypeOf(const PrintSettings& settings) {
  if (settings.mode == kTextMode) return {{kTextModeFont, false, false}, kTextModeSize, {}, 0};
  CheckPoints(settings.font_size);
  auto color = static_cast<OleColor>(settings.fore_color);
  if (color >= kSystemColor) color = 0;
  return {{settings.font, settings.font_flags.bold, settings.font_flags.italic},
          settings.font_size,
          settings.font_flags,
          color};
}

bool IsTurned(const PrintSettings& settings) {
  return !settings.portrait && settings.mode != kTextMode;
}

long Whole(double value) { return static_cast<long>(std::floor(value)); }

// The lines of a page without its end, the form feed's.
std::size_t LinesOf(const PageText& page) {
  const bool ends_empty = page.lines.back().runs == 0;
  return std::max<std::size_t>(page.lines.size() - (ends_empty ? 1 : 0), 1);
}

// How one page is set.
struct PageType {
  long half_points = 0;  // of the font
  long line_twips = 0;
};

class RtfWriter {
 public:
  RtfWriter(const ReportSnapshot& report, OutputFile& file);

  void Write(const PageText& page);
  void Finish();

 private:
  void AppendHead(const ReportSnapshot& report);
  void AppendFonts();
  void AppendPaper(bool turned);
  PageType TypeFor(const PageText& page, std::size_t lines) const;
  void BeginParagraph(const PageType& type, bool on_new_page);
  void AppendLetters(const PageType& type);
  void Flush();

  OutputFile& file_;
  PaperSize sheet_;
  DocumentType type_;
  RtfFont font_;
  RtfLineWriter lines_;
  double text_width_;  // points
  Cells report_width_;
  std::string rtf_;
  bool has_text_ = false;
};

RtfWriter::RtfWriter(const ReportSnapshot& report, OutputFile& file)
    : file_(file),
      sheet_(SheetOf(report.settings.page_width, report.settings.page_height,
                     !IsTurned(report.settings))),
      type_(TypeOf(report.settings)),
      font_(type_.font),
      lines_(font_, type_.font.family == kTextModeFont ? BlankRuns::kAsTheyAre : BlankRuns::kApart,
             report.settings.left_margin, report.job.columns),
      text_width_((sheet_.width <= kMostPaper ? sheet_.width : kUsualPaperWidth) - kLeftMargin),
      report_width_(report.job.page_width - report.settings.right_margin) {
  AppendHead(report);
}

void RtfWriter::AppendHead(const ReportSnapshot& report) {
  rtf_ += "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0\\deflang1024\\deflangfe1024\\adeflang1024\n";
  AppendFonts();
  rtf_ += "{\\colortbl;";
  AppendRtfControl(rtf_, "\\red", type_.color & 0xFFU);
  AppendRtfControl(rtf_, "\\green", type_.color >> 8U & 0xFFU);
  AppendRtfControl(rtf_, "\\blue", type_.color >> 16U & 0xFFU);
  rtf_ += ";}\n";
  const std::string title = CaptionOf(report.page_file, report.job);
  if (!title.empty()) {
    rtf_ += "{\\info{\\title ";
    AppendRtfText(rtf_, title, BlankRuns::kAsTheyAre);
    rtf_ += "}}\n";
  }
  AppendPaper(IsTurned(report.settings));
}

void RtfWriter::AppendFonts() {
  std::string name = type_.font.family;
  std::erase(name, ';');  // which ends a name
  rtf_ += "{\\fonttbl{\\f0";
  rtf_ += font_.HasFixedPitch() ? "\\fmodern\\fprq1" : "\\fnil\\fprq0";
  rtf_ += "\\fcharset0 ";
  AppendRtfText(rtf_, name, BlankRuns::kAsTheyAre);
  if (font_.HasFixedPitch() && name != kTextModeFont) rtf_ += "{\\*\\falt Courier New}";
  rtf_ += ";}}\n";
}

void RtfWriter::AppendPaper(bool turned) {
  if (sheet_.width <= kMostPaper) {
    AppendRtfControl(rtf_, "\\paperw", std::lround(sheet_.width * kTwips));
  }
  AppendRtfControl(rtf_, "\\paperh", std::lround(sheet_.height * kTwips));
  AppendRtfControl(rtf_, "\\margl", std::lround(kLeftMargin * kTwips));
  rtf_ += R"(\margr0\margt0\margb0\viewkind1)";
  if (turned) rtf_ += "\\landscape\\lndscpsxn";
  rtf_ += '\n';
}

void RtfWriter::Write(const PageText& page) {
  const std::size_t count = LinesOf(page);
  const PageType type = TypeFor(page, count);
  const double size = static_cast<double>(type.half_points) / 2 * kTwips;
  lines_.SetPage({font_.CellWidth() * size, size, text_width_ * kTwips});
  bool before_has_own = true;  // paragraph settings, which would go on
  for (std::size_t i = 0; i < count; ++i) {
    const bool begins_page = i == 0;
    lines_.Take(page, page.lines[i]);
    if (has_text_) rtf_ += "\\par\n";
    const bool has_own = begins_page || !lines_.TabStops().empty();
    if (has_own || before_has_own) {
      BeginParagraph(type, begins_page && has_text_);
      rtf_ += lines_.TabStops();
      if (begins_page) AppendLetters(type);
      rtf_ += ' ';
    }
    rtf_ += lines_.Text();
    before_has_own = has_own;
    has_text_ = true;
  }
  if (rtf_.size() >= kBlockBytes) Flush();
}

PageType RtfWriter::TypeFor(const PageText& page, std::size_t lines) const {
  Cells width = std::max(report_width_, 1);
  for (const PageLine& line : page.lines) width = std::max(width, PaperWidth(page, line));
  const double height = std::min(sheet_.height, kMostPaper) / static_cast<double>(lines);
  const double most = std::min(text_width_ / (width * font_.CellWidth() * kRounding),
                               std::floor(height * kTwips) / (kLineHeight * kTwips));
  PageType type;
  type.half_points =
      std::max(std::min(std::lround(2 * type_.size), Whole(2 * most)), kLeastHalfPoints);
  const double wanted = kLineHeight * static_cast<double>(type.half_points) / 2;
  type.line_twips = std::max(Whole(std::min(wanted, height) * kTwips), 1L);
  return type;
}

void RtfWriter::BeginParagraph(const PageType& type, bool on_new_page) {
  rtf_ += R"(\pard\ltrpar\ql\nowidctlpar\sb0\sa0)";
  AppendRtfControl(rtf_, "\\sl-", type.line_twips);
  rtf_ += R"(\slmult0\nocwrap\noaspalpha\noaspnum\nosnaplinegrid)";
  if (on_new_page) rtf_ += "\\pagebb";
}

// The same for letters of all scripts, or some would have the reader's own font and size.
void RtfWriter::AppendLetters(const PageType& type) {
  const FontFlags& flags = type_.flags;
  rtf_ += R"(\plain\rtlch\af0)";
  AppendRtfControl(rtf_, "\\afs", type.half_points);
  if (flags.bold) rtf_ += "\\ab";
  if (flags.italic) rtf_ += "\\ai";
  rtf_ += R"(\alang1024\ltrch\loch\f0\hich\f0\dbch\f0)";
  AppendRtfControl(rtf_, "\\fs", type.half_points);
  if (flags.bold) rtf_ += "\\b";
  if (flags.italic) rtf_ += "\\i";
  if (flags.underline) rtf_ += "\\ul";
  if (flags.strikethrough) rtf_ += "\\strike";
  rtf_ += R"(\cf1\lang1024\langfe1024\noproof\kerning0)";
}

void RtfWriter::Finish() {
  rtf_ += "}\n";
  Flush();
}

void RtfWriter::Flush() {
  file_.Write(rtf_);
  rtf_.clear();
}

}  // namespace

bool WriteRtfDocument(const ReportSnapshot& report, OutputFile& file,
                      const std::function<bool()>& next_page) {
  ReportPages pages(report);
  RtfWriter writer(report, file);
  PageText page;
  for (PageNumber number = 1; number <= report.job.page_count; ++number) {
    if (next_page && !next_page()) return false;
    pages.Read(number, page);
    writer.Write(page);
  }
  writer.Finish();
  return true;
}

}  // namespace kel
