// The printer that makes a PDF file of what it prints.
#pragma once

#include <filesystem>
#include <memory>

#include "engine/system_printer.h"

namespace kel {

/// Begins a document that becomes the file at `path` when it ends. Its sheets have the page size of
/// the settings. Throws Error when the file cannot be made.
std::unique_ptr<PrinterDocument> BeginPdfDocument(const std::filesystem::path& path,
                                                  const DocumentSettings& settings);

}  // namespace kel
