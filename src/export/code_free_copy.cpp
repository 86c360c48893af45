#include "export/code_free_copy.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "common/control_codes.h"
#include "engine/page_file_reader.h"
#include "engine/page_format.h"

namespace kel {
namespace {

// Where the next ESC or title mark is. Most lines have neither, and none is looked at twice.
class CodeFinder {
 public:
  explicit CodeFinder(std::string_view text)
      : text_(text), esc_(text.find(kEsc)), mark_(text.find(kTitleMark)) {}

  std::size_t Next(std::size_t from) {
    if (esc_ < from) esc_ = text_.find(kEsc, from);
    if (mark_ < from) mark_ = text_.find(kTitleMark, from);
    return std::min(esc_, mark_);
  }

 private:
  std::string_view text_;
  std::size_t esc_;
  std::size_t mark_;
};

// True when removing the codes leaves the lines as they are. One pass without branches, which
// compilers make a few instructions for many bytes of.
bool IsCodeFree(std::string_view lines) {
  if (!lines.ends_with(kLineEnd)) return false;
  unsigned char found =
      lines.front() == '\n' || lines.front() == kEsc || lines.front() == kTitleMark;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const char c = lines[i];
    found |= static_cast<unsigned char>(c == kEsc);
    found |= static_cast<unsigned char>(c == kTitleMark);
    found |= static_cast<unsigned char>((c == '\n') & (lines[i - 1] != '\r'));
  }
  return found == 0;
}

// Behind the end of the line at `place`, or of the text.
std::size_t LineEnd(std::string_view lines, std::size_t place) {
  return std::min(lines.find('\n', place), lines.size() - 1) + 1;
}

std::string_view WithoutEnd(std::string_view line) {
  if (line.ends_with('\n')) line.remove_suffix(1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

void AppendPlainLines(std::string_view lines, std::string& copy) {
  if (IsCodeFree(lines)) {
    copy += lines;
    return;
  }
  while (!lines.empty()) {
    const std::size_t size = LineEnd(lines, 0);
    copy += WithoutEnd(lines.substr(0, size));
    copy += kLineEnd;
    lines.remove_prefix(size);
  }
}

void AppendCodeFree(std::string_view lines, std::string& copy) {
  CodeFinder codes(lines);
  std::string coded;
  std::size_t done = 0;
  for (std::size_t code = codes.Next(0); code != std::string_view::npos; code = codes.Next(done)) {
    const std::size_t begin = lines.rfind('\n', code) + 1;  // 0 where there is no line before
    AppendPlainLines(lines.substr(done, begin - done), copy);
    done = LineEnd(lines, code);
    coded = WithoutEnd(lines.substr(begin, done - begin));
    StripCodesInPlace(coded, TitleMark::kRemove);
    copy += coded;
    copy += kLineEnd;
  }
  AppendPlainLines(lines.substr(done), copy);
}

}  // namespace

void CopyWithoutCodes(const std::filesystem::path& page_file,
                      const std::function<void(std::string_view)>& sink) {
  PageFileReader reader(page_file);
  std::string copy;
  std::string_view lines;
  while (reader.NextLines(lines)) {
    if (IsCodeFree(lines)) {
      sink(lines);
      continue;
    }
    copy.clear();
    AppendCodeFree(lines, copy);
    sink(copy);
  }
}

}  // namespace kel
