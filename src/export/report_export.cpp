#include "export/report_export.h"

#include <filesystem>
#include <system_error>

#include "common/error.h"
#include "common/handover.h"
#include "common/text_cells.h"

namespace kel {
namespace {

// A new file of the temporary folder. One that nobody was given goes.
class TemporaryTarget {
 public:
  explicit TemporaryTarget(ExportFormat format) : path_(HandoverPath(ExtensionOf(format))) {}
  ~TemporaryTarget() {
    std::error_code ignored;
    if (!given_) std::filesystem::remove(path_, ignored);
  }
  TemporaryTarget(const TemporaryTarget&) = delete;
  TemporaryTarget& operator=(const TemporaryTarget&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  void Given() { given_ = true; }

 private:
  std::filesystem::path path_;
  bool given_ = false;
};

bool ExportToTemporaryFile(const ExportOrder& order, Handover handover, Office& office,
                           ExportProgress& progress) {
  TemporaryTarget target(order.format);
  if (!office.MakeFile(order.format, order.report, target.Path(), handover, progress)) return false;
  target.Given();
  return true;
}

bool Mail(const ExportOrder& order, Office& office, ExportProgress& progress) {
  TemporaryTarget target(order.format);
  if (!office.MakeFile(order.format, order.report, target.Path(), Handover::kKeep, progress)) {
    return false;
  }
  office.SendMail(target.Path(), NamesForMail(order.name, ExtensionOf(order.format)));
  target.Given();
  return true;
}

// A pipe might wait for its reader for ever; and a report that lost its pages could not be exported
// again.
void RequireReplaceable(const std::filesystem::path& target, const ReportSnapshot& report) {
  std::error_code nothing_there;
  if (std::filesystem::is_other(std::filesystem::status(target, nothing_there))) {
    throw Error(error_number::kBadFileName,
                "cannot replace " + target.string() + ": it is no file");
  }
  if (std::filesystem::equivalent(target, report.page_file, nothing_there) && !nothing_there) {
    throw Error(error_number::kPermissionDenied,
                "cannot replace " + target.string() + ": the report's own pages stand there");
  }
}

}  // namespace

bool ExportReport(const ExportOrder& order, Office& office, ExportProgress& progress) {
  if (order.destination == ExportDestination::kMail) return Mail(order, office, progress);
  const Handover handover =
      order.destination == ExportDestination::kApplication ? Handover::kOpen : Handover::kKeep;
  if (TrimBlanks(order.name).empty()) {
    return ExportToTemporaryFile(order, handover, office, progress);
  }
  RequireReplaceable(order.name, order.report);
  return office.MakeFile(order.format, order.report, order.name, handover, progress);
}

}  // namespace kel
