// A report as a word-processor document.
#pragma once

#include <functional>

#include "common/file.h"
#include "engine/report_windows.h"

namespace kel {

/// Writes the pages of a report as Rich Text Format (1.9.1), which word processors open under the
/// ending .doc: one paragraph a line, one page of the document a page of the report. In text mode
/// the font is Courier New, 10 points, in any other mode the chosen one. Lines or pages that would
/// not fit the paper are set in a smaller size, at least 1 point; for a font that is not of fixed
/// pitch this is an estimate, and a line that is wider after all goes on in the next one. Bold and
/// underlined cells stay so. Paper wider than 22 inches is left to the word processor. Memory does
/// not grow with the pages.
///
/// `next_page` is asked before each page; False stops. False when stopped; the file is then not
/// whole. Throws Error when the pages cannot be read or the file not be written. The caller
/// commits.
bool WriteRtfDocument(const ReportSnapshot& report, OutputFile& file,
                      const std::function<bool()>& next_page);

}  // namespace kel
