#include "data/row_sorter.h"

#include <algorithm>
#include <array>
#include <bit>

#include "data/threads.h"

namespace kel {
namespace {

// Shorter runs are sorted by comparing, longer ones by the digits of their keys.
constexpr std::size_t kShortRun = 48;
constexpr std::size_t kFewKeys = 512;

// From so many rows on they are dealt out into so many buckets.
constexpr std::size_t kManyRows = 32768;
constexpr unsigned kBucketBits = 11;
constexpr std::size_t kBuckets = std::size_t{1} << kBucketBits;

// So many entries before it is needed memory is asked for: where a tail stands, and the tail.
constexpr std::size_t kTailPlaceAhead = 48;
constexpr std::size_t kTailAhead = 24;

}  // namespace

RowSorter::RowSorter(const RowStore& store, std::span<const ColumnInfo> columns,
                     std::span<const SortField> fields, std::span<RowId> rows)
    : store_(store), fields_(fields), rows_(rows), keys_(fields.size()) {
  for (const SortField& field : fields) domains_.push_back(DomainOf(columns[field.column].type));
}

bool RowSorter::Precedes(const Entry& left, const Entry& right) noexcept {
  return left.key != right.key ? left.key < right.key : left.place < right.place;
}

void RowSorter::Sort() {
  const std::vector<std::size_t> ends = TakeRows();
  keys_[0]->DropKeys();
  std::vector<Work> work(MostThreads());
  RunOnThreads(ends.size(), [&](std::size_t thread, std::size_t i) {
    SortBucket(i == 0 ? 0 : ends[i - 1], ends[i], work[thread]);
  });
  std::transform(entries_.get(), entries_.get() + rows_.size(), rows_.begin(),
                 [](const Entry& entry) { return entry.row; });
}

/// Makes the entries. The result is where the buckets end that they lie in.
std::vector<std::size_t> RowSorter::TakeRows() {
  const SortKeys& keys = KeysOf(0);
  entries_ = std::make_unique_for_overwrite<Entry[]>(rows_.size());
  bool in_order = true;
  for (std::size_t i = 1; i < rows_.size() && in_order; ++i) {
    in_order = keys.KeyAt(i - 1, 0) <= keys.KeyAt(i, 0);
  }
  if (rows_.size() >= kManyRows && !in_order) return DealOut(keys);
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    entries_[i] = {keys.KeyAt(i, 0), rows_[i], static_cast<std::uint32_t>(i)};
  }
  return {rows_.size()};
}

/// Puts the entries into buckets by the first bits in which their keys differ; those of a bucket
/// keep their order.
std::vector<std::size_t> RowSorter::DealOut(const SortKeys& keys) {
  const std::size_t rows = rows_.size();
  std::uint64_t differing = 0;
  for (std::size_t i = 1; i < rows; ++i) differing |= keys.KeyAt(i, 0) ^ keys.KeyAt(0, 0);
  const auto bits = static_cast<unsigned>(std::bit_width(differing));
  const unsigned shift = bits > kBucketBits ? bits - kBucketBits : 0;
  const auto bucket_of = [shift](std::uint64_t key) {
    return static_cast<std::size_t>(key >> shift & (kBuckets - 1));
  };

  // Each part of the rows has places of its own in each bucket, behind those of the parts before.
  const std::size_t parts = MostThreads();
  const auto begin_of = [&](std::size_t part) { return rows * part / parts; };
  std::vector<std::vector<std::size_t>> places(parts, std::vector<std::size_t>(kBuckets));
  RunOnThreads(parts, [&](std::size_t /*thread*/, std::size_t part) {
    for (std::size_t i = begin_of(part); i < begin_of(part + 1); ++i) {
      ++places[part][bucket_of(keys.KeyAt(i, 0))];
    }
  });
  std::vector<std::size_t> ends(kBuckets);
  std::size_t place = 0;
  for (std::size_t bucket = 0; bucket < kBuckets; ++bucket) {
    for (std::vector<std::size_t>& part : places) place += std::exchange(part[bucket], place);
    ends[bucket] = place;
  }
  RunOnThreads(parts, [&](std::size_t /*thread*/, std::size_t part) {
    for (std::size_t i = begin_of(part); i < begin_of(part + 1); ++i) {
      const std::uint64_t key = keys.KeyAt(i, 0);
      entries_[places[part][bucket_of(key)]++] = {key, rows_[i], static_cast<std::uint32_t>(i)};
    }
  });
  return ends;
}

void RowSorter::SortBucket(std::size_t begin, std::size_t end, Work& work) {
  if (begin == end) return;
  SortByKeys({begin, end, 0, 0}, work);
  while (!work.runs.empty()) {
    const Run run = work.runs.back();
    work.runs.pop_back();
    SortEqualsOf(run, work);
  }
}

const SortKeys& RowSorter::KeysOf(std::size_t field) {
  const std::lock_guard lock(making_keys_);
  if (keys_[field] == nullptr) {
    // The rows stand in their first order until the end.
    keys_[field] = std::make_unique<SortKeys>(store_, fields_[field], domains_[field], rows_);
  }
  return *keys_[field];
}

void RowSorter::SortRun(const Run& run, Work& work) {
  const SortKeys& keys = KeysOf(run.field);
  for (std::size_t i = run.begin; i < run.end; ++i) {
    entries_[i].key = keys.KeyAt(entries_[i].place, run.level);
  }
  SortByKeys(run, work);
}

/// Sorts a run by its keys; what is equal then is left to SortEqualsOf.
void RowSorter::SortByKeys(const Run& run, Work& work) {
  Entry* const begin = entries_.get() + run.begin;
  Entry* const end = entries_.get() + run.end;
  work.runs.push_back(run);
  // Entries of equal keys stand in the order of their places already.
  if (std::is_sorted(begin, end, Precedes)) return;
  if (run.end - run.begin <= kFewKeys) {
    std::sort(begin, end, Precedes);
  } else {
    SortByDigits(run.begin, run.end, work);
  }
}

/// Sorts by the keys' bytes, the lowest first; keeps the order of equal keys.
void RowSorter::SortByDigits(std::size_t begin, std::size_t end, Work& work) {
  constexpr std::size_t kDigits = sizeof(Entry::key);
  constexpr std::size_t kValues = 256;
  const std::size_t count = end - begin;
  work.other_entries.resize(std::max(work.other_entries.size(), count));
  Entry* from = entries_.get() + begin;
  Entry* to = work.other_entries.data();
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
  if (from != entries_.get() + begin) std::copy_n(from, count, to);
}

void RowSorter::SortEqualsOf(const Run& run, Work& work) {
  const SortKeys& keys = *keys_[run.field];
  std::size_t end = run.begin;
  for (std::size_t begin = run.begin; begin < run.end; begin = end) {
    do {
      // Tails lie anywhere in memory.
      const std::size_t place_ahead = end + kTailPlaceAhead;
      const std::size_t ahead = end + kTailAhead;
      if (HasEqualBeside(place_ahead, run)) keys.FetchTailPlace(entries_[place_ahead].place);
      if (HasEqualBeside(ahead, run)) keys.FetchTail(entries_[ahead].place);
      ++end;
    } while (end < run.end && entries_[end].key == entries_[begin].key);
    if (end - begin > 1) SortEquals({begin, end, run.field, run.level}, work);
  }
}

bool RowSorter::HasEqualBeside(std::size_t i, const Run& run) const noexcept {
  return i + 1 < run.end &&
         (entries_[i].key == entries_[i - 1].key || entries_[i].key == entries_[i + 1].key);
}

/// Sorts a run whose entries have equal keys by what comes behind these.
void RowSorter::SortEquals(const Run& run, Work& work) {
  const SortKeys& keys = *keys_[run.field];
  const std::uint64_t key = entries_[run.begin].key;
  const bool is_decided = keys.Decides(key, run.level);
  const bool has_tail = !is_decided && keys.HasTail(key, run.level);
  if (is_decided && run.field + 1 == fields_.size()) return;
  if (run.end - run.begin <= kShortRun || (!is_decided && !has_tail)) {
    SortByComparing(run, is_decided, has_tail);
  } else if (is_decided) {
    SortRun({run.begin, run.end, run.field + 1, 0}, work);
  } else {
    SortRun({run.begin, run.end, run.field, run.level + 1}, work);
  }
}

void RowSorter::SortByComparing(const Run& run, bool is_decided, bool has_tail) {
  const std::size_t first_field = run.field + (is_decided || has_tail ? 1 : 0);
  const auto precedes = [&](const Entry& left, const Entry& right) {
    int order = has_tail ? CompareTails(run, left, right) : 0;
    if (order == 0) order = CompareFields(first_field, left, right);
    return order != 0 ? order < 0 : left.place < right.place;
  };
  std::sort(entries_.get() + run.begin, entries_.get() + run.end, precedes);
}

int RowSorter::CompareTails(const Run& run, const Entry& left, const Entry& right) const noexcept {
  const SortKeys& keys = *keys_[run.field];
  const int order =
      keys.TailBehind(left.place, run.level).compare(keys.TailBehind(right.place, run.level));
  return fields_[run.field].descending ? -order : order;
}

int RowSorter::CompareFields(std::size_t first, const Entry& left,
                             const Entry& right) const noexcept {
  for (std::size_t i = first; i < fields_.size(); ++i) {
    const std::size_t column = fields_[i].column;
    const int order =
        CompareCells(store_.Cell(left.row, column), store_.Cell(right.row, column), domains_[i]);
    if (order != 0) return fields_[i].descending ? -order : order;
  }
  return 0;
}

}  // namespace kel
