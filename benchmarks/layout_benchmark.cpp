// Layout alone, from a grid in memory to the page file, beside `cat` of the page file it writes.
// Files lie on the memory file system, so that the disk takes no part in it.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <string>
#include <vector>

#include "common/file.h"
#include "engine/memory_grid.h"
#include "engine/report_layout.h"
#include "side_by_side.h"

namespace {

std::size_t allocations = 0;

}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace kel {
namespace {

using benchmarks::Cat;
using benchmarks::Seconds;

constexpr std::array<Cells, 8> kWidths = {8, 14, 24, 10, 14, 14, 2, 20};

MemoryGrid Books(std::int32_t rows) {
  MemoryGrid grid("Day Book");
  grid.AddRow({"No", "Voucher", "Party", "Date", "Debit", "Credit", "DC", "Narration"});
  for (const std::int32_t col : {0, 4, 5}) grid.ColAlignment(col, kAlignRight);
  for (std::int32_t i = 1; i <= rows; ++i) {
    grid.AddRow({std::to_string(i), "Voucher " + std::to_string(i % 97), "Party name of some kind",
                 std::to_string(i % 28 + 10) + "/04/2026", std::to_string(i * 5 / 4) + ".25",
                 std::to_string(i * 5 / 2) + ".50", i % 2 == 0 ? "Dr" : "Cr",
                 "narration " + std::to_string(i % 1000)});
  }
  return grid;
}

PrintSettings Settings() {
  PrintSettings settings;
  settings.top_margin = 5;
  settings.bottom_margin = 1;
  settings.lines = 60;
  settings.end_page = std::numeric_limits<PageNumber>::max();
  return settings;
}

void LayoutBesideCat(benchmark::State& state) {
  const auto rows = static_cast<std::int32_t>(state.range(0));
  MemoryGrid grid = Books(rows);
  const PrintSettings settings = Settings();
  const std::string page_file = "/dev/shm/keldll-layout.rpt";
  const std::string copy = "/dev/shm/keldll-layout.copy";
  double best_layout = 1e9;
  double best_cat = 1e9;
  std::size_t allocated = 0;
  for (auto _ : state) {
    const std::size_t before = allocations;
    best_layout = std::min(best_layout, Seconds([&] {
                             OutputFile file(page_file);
                             PageFileWriter writer(file);
                             LayOutReport(grid, kWidths, settings, {0, 0, rows, 7, 1},
                                          {{}, "21/11/2026"}, writer, [](PageNumber) {});
                             file.Commit();
                           }));
    allocated = allocations - before;
    best_cat = std::min(best_cat, Seconds([&] { Cat(page_file, copy); }));
  }
  const auto bytes = static_cast<double>(std::filesystem::file_size(page_file));
  state.counters["MB"] = bytes / 1e6;
  state.counters["layout_s"] = best_layout;
  state.counters["cat_s"] = best_cat;
  state.counters["times_cat"] = best_layout / best_cat;
  state.counters["ns_per_row"] = best_layout * 1e9 / rows;
  state.counters["allocations_per_row"] = static_cast<double>(allocated) / rows;
  std::filesystem::remove(page_file);
  std::filesystem::remove(copy);
}
BENCHMARK(LayoutBesideCat)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Iterations(7)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kel

BENCHMARK_MAIN();
