// What the export dialog offers, and the names that follow from the choice.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace kel {

/// The formats a report is exported in, in the order of the list.
enum class ExportFormat { kDocument, kSheet, kText, kWorkbook, kPdf };
inline constexpr std::array<const char*, 5> kFormatTexts = {
    "Microsoft Word (*.doc)", "Microsoft Excel (*.xls)", "Text Document (*.txt)",
    "Microsoft Excel Workbook (*.xlsx)", "PDF Document (*.pdf)"};

/// Where the file goes, in the order of the list.
enum class ExportDestination { kApplication, kDiskFile, kMail };
inline constexpr std::array<const char*, 3> kDestinationTexts = {
    "Application", "Disk File", "Microsoft Mail (Outlook Express)"};

/// Where the choices stand in the settings store: the indexes of the two lists, and the attachment
/// name that was typed last.
inline constexpr std::string_view kExportSection = "Export";
inline constexpr std::string_view kFormatKey = "Format";
inline constexpr std::string_view kDestinationKey = "Destination";
inline constexpr std::string_view kAttachmentKey = "Attachment";

/// The ending that a format's text names, in lower case: ".doc".
std::string ExtensionOf(ExportFormat format);
/// The format with that extension, which begins with a dot and may be in any case.
std::optional<ExportFormat> FormatOf(std::string_view extension);

/// `name` with the extension behind it, where it does not end with that in any case.
std::string WithExtension(std::string_view name, std::string_view extension);

/// What a mail says of its attachment.
struct AttachmentNames {
  std::string subject;  // the trimmed name with every occurrence of the extension removed
  std::string file;     // the subject with the extension behind it
};
AttachmentNames NamesForMail(std::string_view name, std::string_view extension);

}  // namespace kel
