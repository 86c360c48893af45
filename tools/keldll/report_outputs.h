// Where the pages of a report go.
#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "common/file.h"
#include "keldll/report_options.h"

namespace kel::command {

/// All outputs of one job, opened together, written together and put in place together, so that
/// the failure of one leaves the others' places as they were.
class ReportOutputs {
 public:
  /// Throws Error for a file that cannot be made, and for one that is the report's own source.
  explicit ReportOutputs(const ReportOptions& options);

  /// Writes the pages of a page file to every output.
  void Write(const std::filesystem::path& page_file);
  /// Puts the files in place. Nothing of them can be seen before.
  void Commit();

 private:
  struct Target {
    OutputKind kind;
    std::unique_ptr<OutputFile> file;  // null for standard output
  };

  void WriteTexts(const std::filesystem::path& page_file);

  std::vector<Target> targets_;
};

}  // namespace kel::command
