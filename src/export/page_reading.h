// The pages of a prepared report, one after the other.
#pragma once

#include "engine/page_file_reader.h"
#include "engine/page_line.h"
#include "engine/report_windows.h"

namespace kel {

/// Reads the pages of a report as they are drawn. The file is open as long as the object lives.
class ReportPages {
 public:
  /// `report` must outlive it. Throws Error 5 when no pages are prepared, and what opening a file
  /// throws.
  explicit ReportPages(const ReportSnapshot& report);

  /// Reads page `number`, counted from 1 in the file, into `page`. Throws Error 321 when the file
  /// does not hold it, and 6 when a line is too long for a page to hold it whole.
  void Read(PageNumber number, PageText& page);

 private:
  bool GoTo(PageNumber number);

  const ReportSnapshot& report_;
  PageFileReader reader_;
};

}  // namespace kel
