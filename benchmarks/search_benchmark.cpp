// Searches a whole page file for each text, as the preview's Find does; prints the least seconds of
// three runs and the line where the text was found, 0 for none.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <limits>

#include "engine/page_file_reader.h"
#include "preview/page_search.h"

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: search_benchmark PAGEFILE TEXT...\n", stderr);
    return 2;
  }
  for (int i = 2; i < argc; ++i) {
    double best = std::numeric_limits<double>::max();
    kel::LineNumber line = 0;
    for (int run = 0; run < 3; ++run) {
      const auto start = std::chrono::steady_clock::now();
      kel::PageFileReader reader(argv[1]);
      const kel::SearchText text(argv[i]);
      const auto match = kel::FindMatch(reader, text, 1, 0);
      const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
      best = std::min(best, seconds.count());
      line = match ? match->line : 0;
    }
    std::printf("%.3f %lld %s\n", best, static_cast<long long>(line), argv[i]);
  }
  return 0;
}
