#include "common/control_codes.h"

#include <array>
#include <cstring>

namespace kel {
namespace {

// The order is published: it decides which digits are taken for part of a code.
constexpr std::array<std::string_view, 12> kDashCodesInTurn = {
    "\x1b-26", "\x1b-24", "\x1b-22", "\x1b-20", "\x1b-18",    "\x1b-16",
    "\x1b-14", "\x1b-12", "\x1b-10", "\x1b-8",  kUnderlineOn, kUnderlineOff};
constexpr std::string_view kDashCode = "\x1b-";

// Deletes from left to right in one pass; what a deletion joins is not looked at again.
void DeleteAll(std::string& line, std::size_t from, std::string_view code) {
  std::size_t found = line.find(code, from);
  if (found == std::string::npos) return;
  std::size_t kept = found;
  while (found != std::string::npos) {
    const std::size_t rest = found + code.size();
    found = line.find(code, rest);
    const std::size_t end = found == std::string::npos ? line.size() : found;
    std::memmove(line.data() + kept, line.data() + rest, end - rest);
    kept += end - rest;
  }
  line.resize(kept);
}

}  // namespace

std::string StripCodes(std::string_view line, TitleMark mark) {
  std::string stripped(line);
  StripCodesInPlace(stripped, mark);
  return stripped;
}

void StripCodesInPlace(std::string& line, TitleMark mark) {
  const std::size_t first = line.find(kEsc);
  if (first != std::string::npos) {
    DeleteAll(line, first, kBoldOn);
    DeleteAll(line, first, kBoldOff);
    // Most lines with codes are only bold.
    if (line.find(kDashCode, first) != std::string::npos) {
      for (const std::string_view code : kDashCodesInTurn) DeleteAll(line, first, code);
    }
  }
  if (mark == TitleMark::kRemove) std::erase(line, kTitleMark);
}

}  // namespace kel
