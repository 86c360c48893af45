#include "export/pdf_printer.h"

#include <algorithm>
#include <vector>

#include "common/file.h"
#include "engine/page_line.h"
#include "export/paper_geometry.h"
#include "export/pdf_canvas.h"
#include "export/pdf_cell_font.h"
#include "export/pdf_line.h"

namespace kel {
namespace {

class PdfDocument : public PrinterDocument {
 public:
  PdfDocument(const std::filesystem::path& path, const DocumentSettings& settings);

  double SheetHeight() const override { return AreaOf(sheet_).height; }
  double LineHeight(float points) const override { return fonts_.Cell().height * points; }
  void PrintSheet(std::span<const PrintedLine> lines) override;
  void End() override;

 private:
  PaperSize sheet_;
  PdfCellFonts fonts_;
  OutputFile file_;
  PdfCanvas canvas_;
  LinePainter painter_;
  LineLook look_;
  PageText page_;
};

PdfDocument::PdfDocument(const std::filesystem::path& path, const DocumentSettings& settings)
    : sheet_(SheetOf(settings.page_width, settings.page_height, settings.portrait)),
      fonts_({settings.font, false, settings.font_flags.italic}),
      file_(path),
      canvas_(file_, sheet_),
      painter_(canvas_.Context(), fonts_),
      look_{false, settings.font_flags.underline, settings.font_flags.strikethrough} {
  canvas_.SetColor(settings.fore_color);
  canvas_.SetTitle(settings.title);
}

void PdfDocument::PrintSheet(std::span<const PrintedLine> lines) {
  page_.Clear();
  double width = 0;
  double height = 0;
  for (const PrintedLine& line : lines) {
    CheckPoints(line.points);
    AppendRawLine(page_, line.text);
    const Cells cells = PaperWidth(page_, page_.lines.back());
    width = std::max(width, cells * fonts_.Cell().width * line.points);
    height += LineHeight(line.points);
  }
  const PaperArea area = AreaOf(sheet_);
  const double scale = ScaleToFit(area, width, height);
  double top = area.top;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    look_.bold = lines[i].bold;
    const double size = lines[i].points * scale;
    painter_.Draw(page_, page_.lines[i], {area.left, top, size}, look_);
    top += fonts_.Cell().height * size;
  }
  canvas_.EndSheet();
}

void PdfDocument::End() {
  canvas_.Finish();
  file_.Commit();
}

}  // namespace

std::unique_ptr<PrinterDocument> BeginPdfDocument(const std::filesystem::path& path,
                                                  const DocumentSettings& settings) {
  return std::make_unique<PdfDocument>(path, settings);
}

}  // namespace kel
