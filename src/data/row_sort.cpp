#include "data/row_sort.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "common/names.h"
#include "data/ado_errors.h"
#include "data/cell_order.h"
#include "data/sort_keys.h"
#include "data/sql_tokens.h"

namespace kel {
namespace {

// Shorter runs are sorted by comparing, longer ones by the digits of their keys.
constexpr std::size_t kShortRun = 48;
constexpr std::size_t kFewKeys = 512;

/// A row on its way to its place.
struct Entry {
  std::uint64_t key;  // of the field and level that the rows are being sorted by
  RowId row;
  std::uint32_t place;  // in the list as it was given
};

bool Precedes(const Entry& left, const Entry& right) noexcept {
  return left.key != right.key ? left.key < right.key : left.place < right.place;
}

class RowSorter {
 public:
  RowSorter(const RowStore& store, std::span<const ColumnInfo> columns,
            std::span<const SortField> fields, std::span<RowId> rows)
      : store_(store), fields_(fields), rows_(rows), keys_(fields.size()) {
    for (const SortField& field : fields) domains_.push_back(DomainOf(columns[field.column].type));
  }

  void Sort() {
    entries_.reserve(rows_.size());
    for (const RowId row : rows_) {
      entries_.push_back({0, row, static_cast<std::uint32_t>(entries_.size())});
    }
    SortRun({0, entries_.size(), 0, 0});
    keys_[0]->DropKeys();
    while (!runs_.empty()) {
      const Run run = runs_.back();
      runs_.pop_back();
      SortEqualsOf(run);
    }
    std::transform(entries_.begin(), entries_.end(), rows_.begin(),
                   [](const Entry& entry) { return entry.row; });
  }

 private:
  /// Entries that are equal in all fields before `field`, and in its keys of all levels before.
  struct Run {
    std::size_t begin;
    std::size_t end;
    std::size_t field;
    std::size_t level;
  };

  /// Sorts a run by its key; what is equal then is left to SortEqualsOf.
  void SortRun(const Run& run) {
    const SortKeys& keys = KeysOf(run.field);
    const auto begin = entries_.begin() + static_cast<std::ptrdiff_t>(run.begin);
    const auto end = entries_.begin() + static_cast<std::ptrdiff_t>(run.end);
    for (auto entry = begin; entry != end; ++entry) {
      entry->key = keys.KeyAt(entry->place, run.level);
    }
    runs_.push_back(run);
    // Entries of equal keys stand in the order of their places already.
    if (std::is_sorted(begin, end, Precedes)) return;
    if (run.end - run.begin <= kFewKeys) {
      std::sort(begin, end, Precedes);
    } else {
      SortByDigits(run.begin, run.end);
    }
  }

  const SortKeys& KeysOf(std::size_t field) {
    if (keys_[field] == nullptr) {
      // The rows stand in their first order until the end.
      keys_[field] = std::make_unique<SortKeys>(store_, fields_[field], domains_[field], rows_);
    }
    return *keys_[field];
  }

  void SortByDigits(std::size_t begin, std::size_t end);

  void SortEqualsOf(const Run& run) {
    for (std::size_t begin = run.begin; begin < run.end;) {
      std::size_t end = begin + 1;
      while (end < run.end && entries_[end].key == entries_[begin].key) ++end;
      if (end - begin > 1) SortEquals({begin, end, run.field, run.level});
      begin = end;
    }
  }

  /// Sorts a run whose entries have equal keys by what comes behind these.
  void SortEquals(const Run& run) {
    const SortKeys& keys = *keys_[run.field];
    const std::uint64_t key = entries_[run.begin].key;
    const bool is_decided = keys.Decides(key, run.level);
    const bool has_tail = !is_decided && keys.HasTail(key, run.level);
    if (is_decided && run.field + 1 == fields_.size()) return;
    if (run.end - run.begin <= kShortRun || (!is_decided && !has_tail)) {
      SortByComparing(run, is_decided, has_tail);
    } else if (is_decided) {
      SortRun({run.begin, run.end, run.field + 1, 0});
    } else {
      SortRun({run.begin, run.end, run.field, run.level + 1});
    }
  }

  void SortByComparing(const Run& run, bool is_decided, bool has_tail) {
    const std::size_t first_field = run.field + (is_decided || has_tail ? 1 : 0);
    const auto precedes = [&](const Entry& left, const Entry& right) {
      int order = has_tail ? CompareTails(run, left, right) : 0;
      if (order == 0) order = CompareFields(first_field, left, right);
      return order != 0 ? order < 0 : left.place < right.place;
    };
    std::sort(entries_.begin() + static_cast<std::ptrdiff_t>(run.begin),
              entries_.begin() + static_cast<std::ptrdiff_t>(run.end), precedes);
  }

  int CompareTails(const Run& run, const Entry& left, const Entry& right) const noexcept {
    const SortKeys& keys = *keys_[run.field];
    const int order =
        keys.TailBehind(left.place, run.level).compare(keys.TailBehind(right.place, run.level));
    return fields_[run.field].descending ? -order : order;
  }

  int CompareFields(std::size_t first, const Entry& left, const Entry& right) const noexcept {
    for (std::size_t i = first; i < fields_.size(); ++i) {
      const std::size_t column = fields_[i].column;
      const int order =
          CompareCells(store_.Cell(left.row, column), store_.Cell(right.row, column), domains_[i]);
      if (order != 0) return fields_[i].descending ? -order : order;
    }
    return 0;
  }

  const RowStore& store_;
  std::span<const SortField> fields_;
  std::span<RowId> rows_;
  std::vector<CellDomain> domains_;
  std::vector<std::unique_ptr<SortKeys>> keys_;  // by field, made when first asked for
  std::vector<Entry> entries_;
  std::vector<Entry> other_entries_;  // where SortByDigits puts them in turn
  std::vector<Run> runs_;             // sorted by their keys, equal keys not looked at yet
};

/// Sorts by the keys' bytes, the lowest first; keeps the order of equal keys.
void RowSorter::SortByDigits(std::size_t begin, std::size_t end) {
  constexpr std::size_t kDigits = sizeof(Entry::key);
  constexpr std::size_t kValues = 256;
  const std::size_t count = end - begin;
  other_entries_.resize(std::max(other_entries_.size(), count));
  Entry* from = entries_.data() + begin;
  Entry* to = other_entries_.data();
  const auto value_at = [](const Entry& entry, std::size_t digit) {
    return static_cast<std::size_t>(entry.key >> (8 * digit) & 0xFFU);
  };

  std::vector<std::array<std::size_t, kValues>> counts(kDigits);
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t digit = 0; digit < kDigits; ++digit) ++counts[digit][value_at(from[i], digit)];
  }
  for (std::size_t digit = 0; digit < kDigits; ++digit) {
    std::array<std::size_t, kValues>& places = counts[digit];
    if (places[value_at(from[0], digit)] == count) continue;
    std::size_t place = 0;
    for (std::size_t& value : places) place += std::exchange(value, place);
    for (std::size_t i = 0; i < count; ++i) to[places[value_at(from[i], digit)]++] = from[i];
    std::swap(from, to);
  }
  if (from != entries_.data() + begin) std::copy_n(from, count, to);
}

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
