// Comma-separated values (RFC 4180) taken apart into records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "common/error.h"
#include "common/file.h"

namespace kel {

/// The records of a CSV file, one after the other, out of a buffer of one block that grows only for
/// a record that is longer. Values are views into the buffer.
///
/// Records end with CR LF or LF; a CR elsewhere is data. A quote counts at the beginning of a value
/// only. What follows the last line end is no record when it is empty. Bytes of any value pass; a
/// UTF-8 byte order mark at the file's beginning is skipped.
class CsvReader {
 public:
  static constexpr std::size_t kBlockBytes = std::size_t{256} * 1024;

  /// Throws Error when the file cannot be opened. REQUIRES block_bytes > 0.
  explicit CsvReader(const std::filesystem::path& path, std::size_t block_bytes = kBlockBytes);

  /// Goes to the next record; false at the file's end. Throws Error 321 for text after a closing
  /// quote and a quote that is never closed, and Error when the file cannot be read; there is
  /// nothing to read after an error.
  bool Next();

  /// The current record's values, good until the next call of Next. Never empty.
  const std::vector<std::string_view>& Values() const noexcept { return values_; }
  /// True when the current record is a line without a single character.
  bool IsBlankLine() const noexcept { return is_blank_line_; }

  /// Error 321 naming the file and the line where the current record begins.
  Error RecordError(const std::string& reason) const;

 private:
  enum class Scan { kRecord, kNeedsMore, kEnd };

  Scan ScanRecord();
  const char* ScanPlain(const char* begin);
  const char* ScanQuoted(const char* begin);
  void Unquote(std::string_view& value);
  void Fill();
  Error LineError(std::uint64_t line, const std::string& reason) const;

  std::filesystem::path path_;
  InputFile file_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;  // first byte that is not consumed
  std::size_t end_ = 0;    // behind the last byte read; there stands a line end as a sentinel
  bool at_file_end_ = false;

  std::vector<std::string_view> values_;
  std::vector<std::size_t> with_doubled_quotes_;  // indexes into values_
  bool is_blank_line_ = false;
  std::uint64_t line_ = 0;  // of the current record's beginning, counted from 1
  std::uint64_t lines_consumed_ = 0;
  std::uint64_t lines_in_record_ = 0;
};

}  // namespace kel
