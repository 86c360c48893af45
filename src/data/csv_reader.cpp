#include "data/csv_reader.h"

#include <algorithm>
#include <cstring>

namespace kel {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

const char* FindByte(const char* begin, const char* end, char wanted) {
  const void* found = std::memchr(begin, wanted, static_cast<std::size_t>(end - begin));
  return found == nullptr ? end : static_cast<const char*>(found);
}

std::string_view Between(const char* begin, const char* end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace

CsvReader::CsvReader(const std::filesystem::path& path, std::size_t block_bytes)
    : path_(path), file_(path), buffer_(std::max(block_bytes, kByteOrderMark.size()) + 1) {
  Fill();
  if (Between(buffer_.data(), buffer_.data() + end_).starts_with(kByteOrderMark)) {
    begin_ = kByteOrderMark.size();
  }
}

bool CsvReader::Next() {
  Scan scan = ScanRecord();
  for (; scan == Scan::kNeedsMore; scan = ScanRecord()) Fill();
  if (scan == Scan::kEnd) return false;
  for (const std::size_t index : with_doubled_quotes_) Unquote(values_[index]);
  return true;
}

/// Takes a whole record apart, or leaves everything as it was for another try with more bytes.
CsvReader::Scan CsvReader::ScanRecord() {
  values_.clear();
  with_doubled_quotes_.clear();
  lines_in_record_ = 1;
  line_ = lines_consumed_ + 1;
  const char* const limit = buffer_.data() + end_;
  const char* const record = buffer_.data() + begin_;
  if (record == limit) return at_file_end_ ? Scan::kEnd : Scan::kNeedsMore;

  const char* at = record;
  for (;; ++at) {
    at = *at == '"' ? ScanQuoted(at + 1) : ScanPlain(at);
    if (at == nullptr) return Scan::kNeedsMore;
    if (*at != ',') break;
  }
  is_blank_line_ = values_.size() == 1 && values_[0].empty() && *record != '"';
  begin_ = std::min(static_cast<std::size_t>(at - buffer_.data()) + 1, end_);
  lines_consumed_ += lines_in_record_;
  return Scan::kRecord;
}

/// Adds the value at `begin`; the result is the comma or line end behind it, the end of a file
/// without a last line end included, or null when the buffer ends first.
const char* CsvReader::ScanPlain(const char* begin) {
  const char* const limit = buffer_.data() + end_;
  const char* at = begin;
  while (*at != ',' && *at != '\n') ++at;  // the sentinel ends it
  if (at == limit) {
    if (!at_file_end_) return nullptr;
    values_.push_back(Between(begin, at));
    return at;
  }
  const bool ends_with_cr = *at == '\n' && at != begin && at[-1] == '\r';
  values_.push_back(Between(begin, ends_with_cr ? at - 1 : at));
  return at;
}

/// The same for a value whose opening quote stands before `begin`.
const char* CsvReader::ScanQuoted(const char* begin) {
  const char* const limit = buffer_.data() + end_;
  bool has_doubled_quotes = false;
  const char* close = FindByte(begin, limit, '"');
  while (close != limit && close + 1 != limit && close[1] == '"') {
    has_doubled_quotes = true;
    close = FindByte(close + 2, limit, '"');
  }
  // Whether a quote closes the value shows only in what follows it: two bytes for CR LF.
  if (!at_file_end_ && limit - close < 3) return nullptr;
  const std::uint64_t opening_line = lines_consumed_ + lines_in_record_;
  if (close == limit) throw LineError(opening_line, "a quote is never closed");

  lines_in_record_ += static_cast<std::uint64_t>(std::count(begin, close, '\n'));
  const char* at = close + 1;
  if (at != limit && *at == '\r' && at + 1 != limit && at[1] == '\n') ++at;
  if (at != limit && *at != ',' && *at != '\n') {
    throw LineError(lines_consumed_ + lines_in_record_, "text after a closing quote");
  }
  if (has_doubled_quotes) with_doubled_quotes_.push_back(values_.size());
  values_.push_back(Between(begin, close));
  return at;
}

/// Makes one quote of each two, within the buffer.
void CsvReader::Unquote(std::string_view& value) {
  char* const begin = buffer_.data() + (value.data() - buffer_.data());
  const char* const end = begin + value.size();
  char* to = begin;
  for (const char* from = begin; from != end;) {
    const char* const quote = FindByte(from, end, '"');
    const char* const stop = quote == end ? end : quote + 1;
    to = std::copy(from, stop, to);
    from = quote == end ? end : quote + 2;
  }
  value = Between(begin, to);
}

/// Moves what is not consumed to the buffer's beginning and fills the rest. A record that takes the
/// whole buffer doubles it, so that scanning it anew each time stays linear in all.
void CsvReader::Fill() {
  std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
            buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
  end_ -= begin_;
  begin_ = 0;
  if (end_ + 1 == buffer_.size()) buffer_.resize(2 * end_ + 1);
  while (!at_file_end_ && end_ + 1 < buffer_.size()) {
    const std::size_t read = file_.Read({buffer_.data() + end_, buffer_.size() - 1 - end_});
    at_file_end_ = read == 0;
    end_ += read;
  }
  buffer_[end_] = '\n';
}

Error CsvReader::RecordError(const std::string& reason) const { return LineError(line_, reason); }

Error CsvReader::LineError(std::uint64_t line, const std::string& reason) const {
  return {error_number::kInvalidFileFormat,
          path_.string() + ", line " + std::to_string(line) + ": " + reason};
}

}  // namespace kel
