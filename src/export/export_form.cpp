#include "export/export_form.h"

#include <cmath>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include "common/numeric_value.h"
#include "common/text_cells.h"

namespace kel {
namespace {

constexpr const char* kFileLabel = "&Filename :";
constexpr const char* kMailLabel = "&Attatchment Name :";  // published so

int LoadIndex(SettingsStore& store, std::string_view key, std::size_t items) {
  const std::optional<double> index = ReadNumber(store.Read(kExportSection, key, ""));
  const bool is_item =
      index && std::trunc(*index) == *index && *index >= 0 && *index < static_cast<double>(items);
  return is_item ? static_cast<int>(*index) : 0;
}

template <typename Choice>
void StoreIndex(SettingsStore& store, std::string_view key, Choice choice) {
  store.Write(kExportSection, key, std::to_string(static_cast<int>(choice)));
}

bool FileExists(const std::string& path) {
  std::error_code ignored;  // what cannot be looked at is told by the export
  return std::filesystem::exists(path, ignored);
}

}  // namespace

ExportForm::ExportForm(SettingsStore& store)
    : store_(store),
      format_(static_cast<ExportFormat>(LoadIndex(store, kFormatKey, kFormatTexts.size()))),
      attachment_(store.Read(kExportSection, kAttachmentKey, "")) {
  Destination(
      static_cast<ExportDestination>(LoadIndex(store, kDestinationKey, kDestinationTexts.size())));
}

void ExportForm::Format(ExportFormat format) {
  format_ = format;
  const std::size_t dot = name_.rfind('.');
  if (dot == std::string::npos || !FormatOf(std::string_view(name_).substr(dot))) return;
  name_.replace(dot, std::string::npos, ExtensionOf(format));
}

void ExportForm::Destination(ExportDestination destination) {
  destination_ = destination;
  name_ = IsMail() ? attachment_ : "";
}

void ExportForm::Choose(const std::string& path) {
  agreed_ = path;
  name_ = WithExtension(path, ExtensionOf(format_));
}

const char* ExportForm::NameLabel(ExportDestination destination) {
  return destination == ExportDestination::kMail ? kMailLabel : kFileLabel;
}

ExportForm::Step ExportForm::OnOk() const {
  const bool no_name = TrimBlanks(name_).empty();
  if (IsMail()) return no_name ? Step::kAskName : Step::kExport;
  if (no_name) return destination_ == ExportDestination::kDiskFile ? Step::kBrowse : Step::kExport;
  // The file dialog did not ask about the name that an extension or another format made.
  return name_ != agreed_ && FileExists(name_) ? Step::kBrowse : Step::kExport;
}

ExportOrder ExportForm::Order(const ReportSnapshot& report) const {
  return {report, format_, destination_, name_};
}

void ExportForm::Keep() {
  if (IsMail()) store_.Write(kExportSection, kAttachmentKey, name_);
  StoreIndex(store_, kFormatKey, format_);
  StoreIndex(store_, kDestinationKey, destination_);
}

}  // namespace kel
