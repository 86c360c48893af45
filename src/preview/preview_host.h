// What the preview opens that is not its own.
#pragma once

#include <functional>

#include "engine/report_windows.h"

namespace kel {

/// Change it only while no other thread uses the library.
struct PreviewHost {
  /// Shows the export dialog for a report until it is closed. Empty while there is none.
  std::function<void(const ReportSnapshot& report)> show_export;
};

PreviewHost& CurrentPreviewHost();

}  // namespace kel
