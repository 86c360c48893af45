// Comma-separated values (RFC 4180) read as the rows of a statement.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>

#include "data/csv_reader.h"
#include "data/driver.h"

namespace kel {

/// The records of a CSV file; the first record gives the column names. The file is streamed, so
/// memory does not grow with the number of records. A column is numeric (FieldType::kDouble) when
/// every value that is not empty in the first 1,000 records is a number, and there is one; its
/// values stay the texts they are. A UTF-8 byte order mark is skipped. Records end with CR LF or
/// LF; a shorter record reads as empty at its end; a blank line is a record in a file of one
/// column only. Throws Error 321 for a file without a heading record. Step throws Error 321 for a
/// record longer than the first one, text after a closing quote and a quote that is never closed,
/// naming file and line.
///
/// `block_bytes` is how much is read at a time.
std::unique_ptr<Statement> OpenCsv(const std::filesystem::path& path,
                                   std::size_t block_bytes = CsvReader::kBlockBytes);

}  // namespace kel
