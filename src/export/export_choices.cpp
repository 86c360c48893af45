#include "export/export_choices.h"

#include "common/names.h"
#include "common/text_cells.h"

namespace kel {
namespace {

bool EndsWith(std::string_view name, std::string_view extension) {
  return name.size() >= extension.size() &&
         SameName(name.substr(name.size() - extension.size()), extension);
}

}  // namespace

// The text ends with "(*", the extension and ")".
std::string ExtensionOf(ExportFormat format) {
  const std::string_view text = kFormatTexts[static_cast<std::size_t>(format)];
  const std::size_t dot = text.rfind('.');
  return std::string(text.substr(dot, text.size() - 1 - dot));
}

std::optional<ExportFormat> FormatOf(std::string_view extension) {
  for (std::size_t i = 0; i < kFormatTexts.size(); ++i) {
    const auto format = static_cast<ExportFormat>(i);
    if (SameName(ExtensionOf(format), extension)) return format;
  }
  return std::nullopt;
}

std::string WithExtension(std::string_view name, std::string_view extension) {
  std::string whole(name);
  if (!EndsWith(name, extension)) whole += extension;
  return whole;
}

AttachmentNames NamesForMail(std::string_view name, std::string_view extension) {
  AttachmentNames names;
  for (std::string_view rest = TrimBlanks(name); !rest.empty();) {
    if (SameName(rest.substr(0, extension.size()), extension)) {
      rest.remove_prefix(extension.size());
    } else {
      names.subject += rest.front();
      rest.remove_prefix(1);
    }
  }
  names.file = names.subject + std::string(extension);
  return names;
}

}  // namespace kel
