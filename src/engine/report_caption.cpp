#include "engine/report_caption.h"

#include <string_view>

#include "common/text_cells.h"
#include "engine/page_file_reader.h"
#include "engine/page_format.h"

namespace kel {

std::string CaptionOf(const std::filesystem::path& page_file, const JobValues& job) {
  constexpr std::size_t kMostBytes = 4096;
  const std::string tail = std::string(kPageWord) + std::to_string(job.first_page);
  PageFileReader reader(page_file);
  std::string_view line;
  while (reader.NextLineNumber() <= job.page_length && reader.NextLineStart(line, kMostBytes)) {
    if (line.size() < tail.size() || line.substr(line.size() - tail.size()) != tail) continue;
    return std::string(TrimBlanks(line.substr(0, line.size() - tail.size())));
  }
  return {};
}

}  // namespace kel
