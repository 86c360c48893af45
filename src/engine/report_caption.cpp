#include "engine/report_caption.h"

#include <string_view>

#include "common/control_codes.h"
#include "common/text_cells.h"
#include "engine/page_file_reader.h"
#include "engine/page_format.h"

namespace kel {
namespace {

constexpr std::size_t kMostBytes = 255;  // of a job's name (RFC 8011, job-name)

// The bytes of the first graphemes that take no more than `most`.
std::size_t FitBytes(std::string_view text, std::size_t most) {
  std::size_t fitting = 0;
  while (fitting < text.size()) {
    const std::size_t next = FirstGrapheme(text.substr(fitting)).bytes;
    if (fitting + next > most) break;
    fitting += next;
  }
  return fitting;
}

}  // namespace

std::string CaptionOf(const std::filesystem::path& page_file, const JobValues& job) {
  constexpr std::size_t kMostLineBytes = 4096;
  const std::string tail = std::string(kPageWord) + std::to_string(job.first_page);
  PageFileReader reader(page_file);
  std::string_view line;
  while (reader.NextLineNumber() <= job.page_length && reader.NextLineStart(line, kMostLineBytes)) {
    if (line.empty() || line.front() == kTitleMark || line.size() < tail.size() ||
        line.substr(line.size() - tail.size()) != tail)
      continue;
    const std::string caption = CleanText(TrimBlanks(line.substr(0, line.size() - tail.size())));
    return caption.substr(0, FitBytes(caption, kMostBytes));
  }
  return {};
}

}  // namespace kel
