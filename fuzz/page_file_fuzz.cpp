// Any bytes as a page file: pages are found at the same place however one gets there, the
// page-range copy holds just those bytes, and the code-free copy ends.

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "common/control_codes.h"
#include "common/error.h"
#include "engine/page_file_reader.h"
#include "engine/page_range.h"
#include "export/code_free_copy.h"
#include "fuzz_file.h"

namespace {

constexpr kel::PageNumber kPages = 6;

void Require(bool holds) {
  if (!holds) std::abort();
}

// Offsets of the first pages, each found from the top.
std::vector<std::uint64_t> Offsets(const std::filesystem::path& path, std::int32_t page_length) {
  std::vector<std::uint64_t> offsets;
  for (kel::PageNumber page = 1; page <= kPages; ++page) {
    kel::PageFileReader reader(path);
    if (!reader.GoToPage(page, page_length)) break;
    offsets.push_back(reader.Offset());
  }
  return offsets;
}

void CheckReading(const std::filesystem::path& path, std::int32_t page_length,
                  const std::vector<std::uint64_t>& offsets) {
  kel::PageFileReader reader(path);
  for (kel::PageNumber page = kPages; page >= 1; --page) {
    const bool found = reader.GoToPage(page, page_length, offsets);
    Require(found == (static_cast<std::size_t>(page) <= offsets.size()));
    if (found) Require(reader.Offset() == offsets[static_cast<std::size_t>(page) - 1]);
  }
  reader.GoToPage(1, page_length);
  std::string_view line;
  while (reader.NextLine(line)) {
    const std::string stripped = kel::StripCodes(line, kel::TitleMark::kRemove);
    Require(stripped.find(kel::kTitleMark) == std::string::npos);
    Require(stripped.size() <= line.size());
  }
}

void CheckCopies(const std::filesystem::path& path, std::int32_t page_length,
                 const std::vector<std::uint64_t>& offsets, std::uint64_t size) {
  static const kel::fuzzing::FuzzFile range;
  const std::filesystem::path& copy = range.Fill(nullptr, 0);
  kel::CopyPages(path, copy, 2, 3, page_length, offsets);
  const std::uint64_t begin = offsets.size() > 1 ? offsets[1] : size;
  const std::uint64_t end = offsets.size() > 3 ? offsets[3] : size;
  Require(std::filesystem::file_size(copy) == end - begin);
  std::size_t copied = 0;
  kel::CopyWithoutCodes(path, [&](std::string_view piece) { copied += piece.size(); });
  Require(copied <= 2 * size + 2);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const kel::fuzzing::FuzzFile file;
  if (size == 0) return 0;
  const std::int32_t page_length = data[0] % 8 + 1;
  const std::filesystem::path& path = file.Fill(data + 1, size - 1);
  const std::vector<std::uint64_t> offsets = Offsets(path, page_length);
  CheckReading(path, page_length, offsets);
  CheckCopies(path, page_length, offsets, size - 1);
  return 0;
}
