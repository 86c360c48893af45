#include "data/row_sort.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "common/names.h"
#include "data/ado_errors.h"
#include "data/row_sorter.h"
#include "data/sql_tokens.h"

namespace kel {
namespace {

std::size_t ColumnOf(std::string_view name, std::span<const ColumnInfo> columns) {
  const auto found = std::find_if(columns.begin(), columns.end(), [&](const ColumnInfo& column) {
    return SameName(column.name, name);
  });
  if (found == columns.end()) throw ItemNotFound();
  return static_cast<std::size_t>(found - columns.begin());
}

[[noreturn]] void Refuse(const SqlToken& token, const std::string& expected) {
  throw WrongArguments(
      "expected " + expected + " in the sort order" +
      (token.whole.empty() ? " at its end" : ", not '" + std::string(token.whole) + "'"));
}

}  // namespace

std::vector<SortField> ParseSort(std::string_view text, std::span<const ColumnInfo> columns) {
  std::vector<SortField> fields;
  SqlTokenizer tokenizer(text);
  SqlToken token;
  do {
    token = tokenizer.Next();
    const bool is_name = token.kind == SqlToken::Kind::kWord ||
                         (token.kind == SqlToken::Kind::kName && token.quote == ']');
    if (!is_name || !token.closed) Refuse(token, "the name of a field");
    const std::size_t column = ColumnOf(token.text, columns);
    token = tokenizer.Next();
    const bool descending = token.Is("DESC");
    if (descending || token.Is("ASC")) token = tokenizer.Next();
    fields.push_back({column, descending});
  } while (token.Is(','));
  if (token.kind != SqlToken::Kind::kEnd) Refuse(token, "ASC, DESC or a comma");
  return fields;
}

void SortRows(const RowStore& store, std::span<const ColumnInfo> columns,
              std::span<const SortField> fields, std::vector<RowId>& rows) {
  if (fields.empty() || rows.size() < 2) return;
  RowSorter(store, columns, fields, rows).Sort();
}

}  // namespace kel
