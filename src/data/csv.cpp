#include "data/csv.h"

#include <deque>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "common/error.h"
#include "common/numeric_value.h"

namespace kel {
namespace {

/// So many records decide which columns are numeric.
constexpr std::size_t kLookAheadRecords = 1000;

class CsvStatement : public Statement {
 public:
  CsvStatement(const std::filesystem::path& path, std::size_t block_bytes);

  int ColumnCount() const override { return static_cast<int>(columns_.size()); }
  const ColumnInfo& Column(int column) const override {
    return columns_.at(static_cast<std::size_t>(column));
  }
  bool Step() override;
  CellView Cell(int column) const override;
  bool MayChangeThread() const override { return true; }

 private:
  using Record = std::vector<std::string>;

  void ReadHeading(const std::filesystem::path& path);
  void LookAhead();
  void FindNumericColumns();
  bool NextRecord();

  CsvReader reader_;
  std::vector<ColumnInfo> columns_;
  std::deque<Record> look_ahead_;        // read, but not yet handed out
  std::exception_ptr look_ahead_error_;  // what stands behind them
  Record record_;                        // what row_ shows while it comes from the look-ahead
  std::vector<std::string_view> row_;
  bool finished_ = false;
};

CsvStatement::CsvStatement(const std::filesystem::path& path, std::size_t block_bytes)
    : reader_(path, block_bytes) {
  ReadHeading(path);
  LookAhead();
  FindNumericColumns();
}

void CsvStatement::ReadHeading(const std::filesystem::path& path) {
  do {
    if (!reader_.Next()) {
      throw Error(error_number::kInvalidFileFormat, path.string() + " has no heading record");
    }
  } while (reader_.IsBlankLine());
  for (const std::string_view name : reader_.Values()) {
    columns_.push_back({std::string(name), FieldType::kText, ""});
  }
}

/// An error waits until the records before it are handed out.
void CsvStatement::LookAhead() {
  try {
    while (look_ahead_.size() < kLookAheadRecords && NextRecord()) {
      look_ahead_.emplace_back(reader_.Values().begin(), reader_.Values().end());
    }
  } catch (const Error&) {
    look_ahead_error_ = std::current_exception();
  }
}

void CsvStatement::FindNumericColumns() {
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    bool has_number = false;
    bool has_other = false;
    for (const Record& record : look_ahead_) {
      if (column >= record.size() || record[column].empty()) continue;
      (IsNumeric(record[column]) ? has_number : has_other) = true;
      if (has_other) break;
    }
    if (has_number && !has_other) columns_[column].type = FieldType::kDouble;
  }
}

/// Goes to the reader's next record that counts.
bool CsvStatement::NextRecord() {
  do {
    if (!reader_.Next()) return false;
  } while (reader_.IsBlankLine() && columns_.size() > 1);
  if (reader_.Values().size() > columns_.size()) {
    throw reader_.RecordError(std::to_string(reader_.Values().size()) +
                              " values, but the heading record has " +
                              std::to_string(columns_.size()));
  }
  return true;
}

bool CsvStatement::Step() {
  if (!look_ahead_.empty()) {
    record_ = std::move(look_ahead_.front());
    look_ahead_.pop_front();
    row_.assign(record_.begin(), record_.end());
    return true;
  }
  if (finished_) return false;
  finished_ = true;  // and so it stays after an error
  if (look_ahead_error_ != nullptr) std::rethrow_exception(look_ahead_error_);
  if (!NextRecord()) return false;
  finished_ = false;
  row_.assign(reader_.Values().begin(), reader_.Values().end());
  return true;
}

CellView CsvStatement::Cell(int column) const {
  CellView cell;
  cell.kind = CellView::Kind::kText;
  const auto index = static_cast<std::size_t>(column);
  if (index < row_.size()) cell.bytes = row_[index];
  return cell;
}

}  // namespace

std::unique_ptr<Statement> OpenCsv(const std::filesystem::path& path, std::size_t block_bytes) {
  return std::make_unique<CsvStatement>(path, block_bytes);
}

}  // namespace kel
