#include "export/pdf_report.h"

#include <algorithm>
#include <optional>
#include <string>

#include "engine/report_caption.h"
#include "export/page_reading.h"
#include "export/paper_geometry.h"
#include "export/pdf_canvas.h"
#include "export/pdf_cell_font.h"
#include "export/pdf_line.h"

namespace kel {
namespace {

constexpr const char* kTextModeFamily = "Liberation Mono";

// How the settings want text to look.
struct ReportType {
  FontLook font;
  std::optional<EmCell> cell;
  double size = 0;  // points
  LineLook look;
  std::int32_t color = 0;
};

ReportType TypeOf(const PrintSettings& settings) {
  if (settings.mode == kTextMode) {
    const TextPitch pitch = PitchOf(settings.font);
    const EmCell cell{pitch.cell_width / pitch.size, pitch.cell_height / pitch.size};
    return {{kTextModeFamily, false, false}, cell, pitch.size, {}, 0};
  }
  CheckPoints(settings.font_size);
  const FontFlags& flags = settings.font_flags;
  return {{settings.font, false, flags.italic},
          std::nullopt,
          settings.font_size,
          {flags.bold, flags.underline, flags.strikethrough},
          settings.fore_color};
}

// Draws the pages of one report, all in one size.
class PagePrinter {
 public:
  PagePrinter(const ReportSnapshot& report, OutputFile& file);

  void Print(const PageText& page);
  void Finish() { canvas_.Finish(); }

 private:
  double FittingSize(Cells width, std::int32_t lines) const;

  PaperSize sheet_;
  ReportType type_;
  PdfCellFonts fonts_;
  double size_;
  PdfCanvas canvas_;
  LinePainter painter_;
};

PagePrinter::PagePrinter(const ReportSnapshot& report, OutputFile& file)
    : sheet_(SheetOf(report.settings.page_width, report.settings.page_height,
                     report.settings.portrait)),
      type_(TypeOf(report.settings)),
      fonts_(type_.font, type_.cell),
      size_(FittingSize(report.job.page_width - report.settings.right_margin,
                        report.job.page_length - 1)),
      canvas_(file, sheet_),
      painter_(canvas_.Context(), fonts_) {
  canvas_.SetColor(type_.color);
  canvas_.SetTitle(CaptionOf(report.page_file, report.job));
}

double PagePrinter::FittingSize(Cells width, std::int32_t lines) const {
  const EmCell cell = fonts_.Cell();
  return type_.size * ScaleToFit(AreaOf(sheet_), width * cell.width * type_.size,
                                 lines * cell.height * type_.size);
}

void PagePrinter::Print(const PageText& page) {
  Cells width = 0;
  std::int32_t lines = 0;
  for (std::size_t i = 0; i < page.lines.size(); ++i) {
    const Cells cells = PaperWidth(page, page.lines[i]);
    width = std::max(width, cells);
    if (cells > 0) lines = static_cast<std::int32_t>(i) + 1;
  }
  const double size = std::min(size_, FittingSize(width, lines));
  const PaperArea area = AreaOf(sheet_);
  for (std::size_t i = 0; i < page.lines.size(); ++i) {
    const double top = area.top + static_cast<double>(i) * fonts_.Cell().height * size;
    painter_.Draw(page, page.lines[i], {area.left, top, size}, type_.look);
  }
  canvas_.EndSheet();
}

}  // namespace

bool WritePdfReport(const ReportSnapshot& report, OutputFile& file,
                    const std::function<bool()>& next_page) {
  ReportPages pages(report);
  PagePrinter printer(report, file);
  PageText page;
  for (PageNumber number = 1; number <= report.job.page_count; ++number) {
    if (next_page && !next_page()) return false;
    pages.Read(number, page);
    printer.Print(page);
  }
  printer.Finish();
  return true;
}

}  // namespace kel
