#include "engine/line_codes.h"

#include <algorithm>
#include <cstring>

#include "common/control_codes.h"

namespace kel {

namespace {

// Where `wanted` stands at or after `from`; `size` when it doesn't.
std::size_t Next(const char* begin, std::size_t size, std::size_t from, char wanted) {
  const void* found = std::memchr(begin + from, wanted, size - from);
  return found == nullptr ? size
                          : static_cast<std::size_t>(static_cast<const char*>(found) - begin);
}

}  // namespace

std::string_view CodeAt(std::string_view text) {
  for (const std::string_view code : {kBoldOn, kBoldOff, kUnderlineOn, kUnderlineOff}) {
    if (text.substr(0, code.size()) == code) return code;
  }
  return {};
}

bool MayHoldCodes(std::string_view text) {
  return text.find(kTitleMark) != std::string_view::npos ||
         text.find(kEsc) != std::string_view::npos;
}

std::size_t RemoveCodes(char* begin, std::size_t size) {
  std::size_t kept = 0;
  std::size_t done = 0;
  std::size_t escape = Next(begin, size, 0, kEsc);
  std::size_t mark = Next(begin, size, 0, kTitleMark);
  while (escape < size || mark < size) {
    const std::size_t found = std::min(escape, mark);
    const std::size_t removed = found == mark ? 1 : CodeAt({begin + found, size - found}).size();
    const std::size_t stays = found - done + (removed == 0 ? 1 : 0);  // an ESC of no code
    std::memmove(begin + kept, begin + done, stays);
    kept += stays;
    done += stays + removed;
    if (found == mark) {
      mark = Next(begin, size, done, kTitleMark);
    } else {
      escape = Next(begin, size, done, kEsc);
    }
  }
  std::memmove(begin + kept, begin + done, size - done);
  return kept + size - done;
}

std::size_t UnfinishedCode(std::string_view text) {
  const std::string_view head = kUnderlineOn.substr(0, 2);
  if (text.size() >= 2 && text.substr(text.size() - 2) == head) return 2;
  return !text.empty() && text.back() == kEsc ? 1 : 0;
}

}  // namespace kel
