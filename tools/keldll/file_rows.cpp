#include "keldll/file_rows.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "common/decimal_text.h"
#include "common/numeric_value.h"
#include "data/decimal.h"

namespace kel::command {
namespace {

class GridRows : public Statement {
 public:
  explicit GridRows(MemoryGrid grid);

  int ColumnCount() const override { return static_cast<int>(columns_.size()); }
  const ColumnInfo& Column(int column) const override {
    return columns_.at(static_cast<std::size_t>(column));
  }
  bool Step() override {
    if (row_ + 1 >= grid_.Rows()) return false;
    ++row_;
    return true;
  }
  CellView Cell(int column) const override { return CellView::Text(grid_.Text(row_, column)); }

 private:
  FieldType TypeOf(std::int32_t column) const;

  MemoryGrid grid_;
  std::vector<ColumnInfo> columns_;
  std::int32_t row_;
};

GridRows::GridRows(MemoryGrid grid)
    : grid_(std::move(grid)), row_(std::max(grid_.FixedRows(), 1) - 1) {
  for (std::int32_t column = 0; column < grid_.Cols(); ++column) {
    columns_.push_back({std::string(grid_.Text(0, column)), TypeOf(column)});
  }
}

FieldType GridRows::TypeOf(std::int32_t column) const {
  bool has_number = false;
  for (std::int32_t row = row_ + 1; row < grid_.Rows(); ++row) {
    const std::string_view text = grid_.Text(row, column);
    if (text.empty()) continue;
    if (!IsNumeric(text)) return FieldType::kText;
    has_number = true;
  }
  return has_number ? FieldType::kDouble : FieldType::kText;
}

/// Gives names that are different, beginning with the first column.
class Names {
 public:
  std::string NameFor(std::string_view heading, std::size_t column) {
    std::string wanted = Plain(heading);
    if (wanted.empty()) wanted = "Column " + std::to_string(column + 1);
    std::string name = wanted;
    for (int number = 2; !taken_.insert(Folded(name)).second; ++number) {
      name = wanted + " (" + std::to_string(number) + ")";
    }
    return name;
  }

 private:
  /// A condition writes a name between brackets.
  static std::string Plain(std::string_view heading) {
    std::string name;
    for (const char c : heading) {
      const bool is_control = static_cast<unsigned char>(c) < ' ';
      name += c == '[' ? '(' : c == ']' ? ')' : is_control ? ' ' : c;
    }
    name.erase(0, name.find_first_not_of(' '));
    name.erase(name.find_last_not_of(' ') + 1);
    return name;
  }

  static std::string Folded(std::string name) {
    for (char& c : name) {
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return name;
  }

  std::unordered_set<std::string> taken_;
};

class PlainRows : public Statement {
 public:
  explicit PlainRows(std::unique_ptr<Statement> rows);

  int ColumnCount() const override { return static_cast<int>(columns_.size()); }
  const ColumnInfo& Column(int column) const override {
    return columns_.at(static_cast<std::size_t>(column));
  }
  bool Step() override;
  CellView Cell(int column) const override { return cells_.at(static_cast<std::size_t>(column)); }
  bool MayChangeThread() const override { return rows_->MayChangeThread(); }

 private:
  static CellView PlainNumber(std::string_view text, std::string& number);

  std::unique_ptr<Statement> rows_;
  std::vector<ColumnInfo> columns_;
  std::vector<CellView> cells_;       // of the current row
  std::vector<std::string> numbers_;  // that cells_ shows where the file has others
};

PlainRows::PlainRows(std::unique_ptr<Statement> rows) : rows_(std::move(rows)) {
  Names names;
  for (int i = 0; i < rows_->ColumnCount(); ++i) {
    columns_.push_back(rows_->Column(i));
    columns_.back().name = names.NameFor(columns_.back().name, columns_.size() - 1);
  }
  cells_.resize(columns_.size());
  numbers_.resize(columns_.size());
}

bool PlainRows::Step() {
  if (!rows_->Step()) return false;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    cells_[i] = rows_->Cell(static_cast<int>(i));
    if (IsNumericType(columns_[i].type)) cells_[i] = PlainNumber(cells_[i].bytes, numbers_[i]);
  }
  return true;
}

/// Decimals stay as the file writes them.
CellView PlainRows::PlainNumber(std::string_view text, std::string& number) {
  if (text.empty()) return {};
  if (ParseDecimal(text)) return CellView::Text(text);
  std::optional<std::string> shortest = DecimalText(text);
  if (!shortest) return CellView::Text(text);
  number = text;
  std::erase(number, ',');
  if (!ParseDecimal(number)) number = std::move(*shortest);
  return CellView::Text(number);
}

}  // namespace

std::unique_ptr<Statement> OpenGrid(MemoryGrid grid) {
  return std::make_unique<GridRows>(std::move(grid));
}

std::unique_ptr<Statement> TableRows(std::unique_ptr<Statement> rows) {
  return std::make_unique<PlainRows>(std::move(rows));
}

}  // namespace kel::command
