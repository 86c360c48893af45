// The sheets of a PDF document.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

#include "common/file.h"
#include "export/paper_geometry.h"
#include "export/pdf_fonts.h"

namespace kel {

/// Writes a PDF document into a file, sheet by sheet. One that is destroyed before Finish leaves a
/// file that is not whole. `file` must live as long.
class PdfCanvas {
 public:
  PdfCanvas(OutputFile& file, PaperSize sheet);
  ~PdfCanvas();
  PdfCanvas(const PdfCanvas&) = delete;
  PdfCanvas& operator=(const PdfCanvas&) = delete;

  /// What the current sheet is drawn with; its unit is the point, its origin the top left corner.
  cairo_t* Context() const { return context_.get(); }
  /// What follows is drawn in an OLE colour; the user's own colours are black on paper.
  void SetColor(std::int32_t ole_color);
  void SetTitle(std::string_view title);

  /// Both throw what the file says when it cannot be written.
  void EndSheet();
  void Finish();

 private:
  static cairo_status_t Take(void* canvas, const unsigned char* bytes, unsigned count) noexcept;
  void WriteBlock();
  void Check(cairo_status_t status);

  OutputFile& file_;
  std::string block_;           // written when it is big enough
  std::exception_ptr failure_;  // of the file; nothing is written after it
  bool cancelled_ = false;
  std::unique_ptr<cairo_surface_t, Releaser<cairo_surface_destroy>> surface_;
  std::unique_ptr<cairo_t, Releaser<cairo_destroy>> context_;
};

}  // namespace kel
