#include "export/pdf_canvas.h"

#include <cairo-pdf.h>

#include "common/error.h"
#include "common/ole_color.h"
#include "export/pdf_shaping.h"

namespace kel {
namespace {

constexpr std::size_t kBlockSize = std::size_t{256} * 1024;
constexpr OleColor kSystemColor = 0x80000000;

double Channel(OleColor color, unsigned shift) {
  constexpr OleColor kMost = 0xFF;
  return static_cast<double>(color >> shift & kMost) / kMost;
}

}  // namespace

PdfCanvas::PdfCanvas(OutputFile& file, PaperSize sheet)
    : file_(file),
      surface_(cairo_pdf_surface_create_for_stream(Take, this, sheet.width, sheet.height)),
      context_(cairo_create(surface_.get())) {
  Check(cairo_status(context_.get()));
}

PdfCanvas::~PdfCanvas() { cancelled_ = true; }

void PdfCanvas::SetColor(std::int32_t ole_color) {
  auto color = static_cast<OleColor>(ole_color);
  if ((color & kSystemColor) != 0) color = 0;
  cairo_set_source_rgb(Context(), Channel(color, 0), Channel(color, 8), Channel(color, 16));
}

void PdfCanvas::SetTitle(std::string_view title) {
  if (title.empty()) return;
  const std::string text = TextForPdf(title);
  cairo_pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_TITLE, text.c_str());
}

void PdfCanvas::EndSheet() {
  cairo_show_page(Context());
  Check(cairo_status(Context()));
}

void PdfCanvas::Finish() {
  cairo_surface_finish(surface_.get());
  Check(cairo_surface_status(surface_.get()));
  WriteBlock();
}

// Nothing may be thrown through cairo: a failure waits for the next Check.
cairo_status_t PdfCanvas::Take(void* canvas, const unsigned char* bytes, unsigned count) noexcept {
  auto& self = *static_cast<PdfCanvas*>(canvas);
  if (self.cancelled_) return CAIRO_STATUS_SUCCESS;
  if (self.failure_) return CAIRO_STATUS_WRITE_ERROR;
  try {
    self.block_.append(reinterpret_cast<const char*>(bytes), count);
    if (self.block_.size() >= kBlockSize) self.WriteBlock();
    return CAIRO_STATUS_SUCCESS;
  } catch (...) {
    self.failure_ = std::current_exception();
    return CAIRO_STATUS_WRITE_ERROR;
  }
}

void PdfCanvas::WriteBlock() {
  file_.Write(block_);
  block_.clear();
}

void PdfCanvas::Check(cairo_status_t status) {
  if (failure_) std::rethrow_exception(failure_);
  if (status == CAIRO_STATUS_SUCCESS) return;
  const int number =
      status == CAIRO_STATUS_NO_MEMORY ? error_number::kOutOfMemory : error_number::kInternalError;
  throw Error(number, std::string("cannot draw the PDF: ") + cairo_status_to_string(status));
}

}  // namespace kel
