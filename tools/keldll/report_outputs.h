// Where the pages of a report go.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/file.h"
#include "engine/report_windows.h"
#include "keldll/report_options.h"

namespace kel::command {

/// Throws Error 70 when what is to be written is the report's own source.
void RefuseSource(const std::string& written, const std::string& source);

/// All outputs of one job, opened together, written together and put in place together, so that
/// the failure of one leaves the others' places as they were.
class ReportOutputs {
 public:
  /// Throws Error for a file that cannot be made, and for one that is the report's own source.
  explicit ReportOutputs(const ReportOptions& options);

  /// Writes the pages of a report to every output. `next_page` is called for each page of those
  /// that take longer than a copy.
  void Write(const ReportSnapshot& report, const std::function<void()>& next_page);
  /// Puts the files in place. Nothing of them can be seen before.
  void Commit();

 private:
  struct Target {
    Output output;
    std::unique_ptr<OutputFile> file;  // null for standard output
  };

  static bool IsText(const Target& target);
  static void WriteFile(const Target& target, const ReportSnapshot& report,
                        const std::function<void()>& next_page);

  void WriteTexts(const std::filesystem::path& page_file);

  std::vector<Target> targets_;
};

}  // namespace kel::command
