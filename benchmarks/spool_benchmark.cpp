// A text-mode job on its way to a port, beside `cat` of the same files:
//   spool_benchmark PAGES FOLDER
// KELDLL_SPOOL names the helper program.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/posix/spooler_port.h"
#include "side_by_side.h"

namespace {

namespace fs = std::filesystem;
using kel::benchmarks::Seconds;

constexpr int kRuns = 15;

// Takes what comes through a FIFO, as a printer without limits would.
void Drain(const fs::path& fifo) {
  std::vector<char> block(1 << 16);
  const int reader = ::open(fifo.c_str(), O_RDONLY | O_CLOEXEC);
  while (::read(reader, block.data(), block.size()) > 0) {
  }
  ::close(reader);
}

// The least time until the port has all of what `send` sends.
double Least(const fs::path& port, bool fifo, const std::function<void()>& send) {
  double least = 1e9;
  for (int run = 0; run < kRuns; ++run) {
    if (!fifo) fs::remove(port);
    least = std::min(least, Seconds([&] {
                       std::thread reader([&] {
                         if (fifo) Drain(port);
                       });
                       send();
                       reader.join();
                     }));
  }
  return least;
}

void Compare(const char* kind, const fs::path& port, bool fifo, const kel::PortJob& job) {
  std::string cat = "exec cat";
  for (const kel::PortJob::Part& part : job.parts) cat += " " + part.file.string();
  cat += " > " + port.string();
  kel::SpoolerPort spooler(kel::SpoolerPort::Waiting::kUntilSent);
  const double yardstick = Least(port, fifo, [&] {
    if (std::system(cat.c_str()) != 0) std::abort();  // NOLINT(concurrency-mt-unsafe)
  });
  const double ours = Least(port, fifo, [&] { spooler.Send(job); });
  std::printf("spool: %s %.1f ms, cat %.1f ms, ratio %.2f (at most 1.2)\n", kind, ours * 1e3,
              yardstick * 1e3, ours / yardstick);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const int pages = std::atoi(argv[1]);
  const fs::path folder = argv[2];
  std::ofstream(folder / "set_up") << "\033P";
  std::ofstream(folder / "reset") << "\033@";
  std::ofstream file(folder / "pages");
  for (int i = 0; i < pages; ++i) {
    for (int line = 0; line < 65; ++line) file << std::string(78, 'x') << "\r\n";
    file << "\f\r\n";
  }
  file.close();
  kel::PortJob job;
  job.title = "benchmark";
  job.parts = {{folder / "set_up"}, {folder / "pages", true}, {folder / "reset"}};
  job.port = (folder / "fifo").string();
  if (::mkfifo(job.port.c_str(), 0600) != 0) return 1;
  Compare("to a FIFO", job.port, true, job);
  job.port = (folder / "file").string();
  Compare("to a file", job.port, false, job);
  return 0;
}
