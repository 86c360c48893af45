// A report as a PDF document.
#pragma once

#include <functional>

#include "common/file.h"
#include "engine/report_windows.h"

namespace kel {

/// Writes the pages of a report into `file`: each page on one sheet of the size that its settings
/// tell (PageWidth by PageHeight inches, turned when not Portrait). Codes are read in order, cell
/// by cell, and nothing of the text is lost. In text mode a page looks as the dot-matrix printer
/// prints it (the pitch of its character set, 6 lines an inch), in any other mode it has the chosen
/// font. A page that would not fit is drawn smaller. The text of the document is the text of the
/// pages, in any script. Memory does not grow with the pages.
///
/// `next_page` is asked before each page; False stops. False when stopped; the file is then not
/// whole. Throws Error when the pages cannot be read or the file not be written. The caller
/// commits.
bool WritePdfReport(const ReportSnapshot& report, OutputFile& file,
                    const std::function<bool()>& next_page);

}  // namespace kel
