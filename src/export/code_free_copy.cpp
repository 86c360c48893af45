#include "export/code_free_copy.h"

#include <string>

#include "common/control_codes.h"
#include "engine/page_file_reader.h"
#include "engine/page_format.h"

namespace kel {

namespace {

constexpr std::size_t kBlockSize = std::size_t{256} * 1024;

bool HasCodes(std::string_view line) {
  return line.find(kEsc) != std::string_view::npos ||
         line.find(kTitleMark) != std::string_view::npos;
}

}  // namespace

void CopyWithoutCodes(const std::filesystem::path& page_file,
                      const std::function<void(std::string_view)>& sink) {
  PageFileReader reader(page_file);
  std::string block;
  block.reserve(kBlockSize + kBlockSize / 4);
  std::string coded;
  std::string_view line;
  while (reader.NextLine(line)) {
    if (HasCodes(line)) {
      coded = line;
      StripCodesInPlace(coded, TitleMark::kRemove);
      line = coded;
    }
    block += line;
    block += kLineEnd;
    if (block.size() < kBlockSize) continue;
    sink(block);
    block.clear();
  }
  if (!block.empty()) sink(block);
}

}  // namespace kel
