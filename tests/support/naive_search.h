// A text search without any of the search's means: character by character, whole file in memory.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "common/text_cells.h"

namespace kel::testing {

/// A character's folded form, and its bytes in the text.
struct NaiveCharacter {
  std::string folded;
  std::size_t bytes = 1;
};

struct NaivePlace {
  std::int64_t line = 0;
  std::int64_t column = 0;
  std::int64_t cells = 0;
  bool operator==(const NaivePlace&) const = default;
};

class NaiveSearch {
 public:
  /// `first` tells the first character of a text.
  NaiveSearch(std::string_view content, std::function<NaiveCharacter(std::string_view)> first)
      : first_(std::move(first)) {
    for (std::size_t begin = 0; begin < content.size();) {
      const std::size_t end = std::min(content.find('\n', begin), content.size());
      std::string line = WithoutCodes(content.substr(begin, end - begin));
      if (!line.empty() && line.back() == '\r') line.pop_back();
      characters_.push_back(Characters(line));
      lines_.push_back(std::move(line));
      begin = end + 1;
    }
  }

  NaivePlace Find(std::string_view text, std::int64_t line, std::int64_t after_column) const {
    const std::vector<NaiveCharacter> wanted = Characters(text);
    const bool nowhere = wanted.empty() || text.find_first_of("\r\n") != text.npos;
    for (; !nowhere && line <= static_cast<std::int64_t>(lines_.size()); ++line, after_column = 0) {
      const std::string& searched = lines_[static_cast<std::size_t>(line) - 1];
      const std::vector<NaiveCharacter>& characters =
          characters_[static_cast<std::size_t>(line) - 1];
      std::size_t offset = 0;
      for (std::size_t i = 0; i + wanted.size() <= characters.size(); ++i) {
        std::size_t end = offset;
        std::size_t same = 0;
        while (same < wanted.size() && characters[i + same].folded == wanted[same].folded) {
          end += characters[i + same++].bytes;
        }
        if (same == wanted.size()) {
          const NaivePlace place = PlaceOf(searched, line, offset, end);
          if (place.column > after_column) return place;
        }
        offset += characters[i].bytes;
      }
    }
    return {};
  }

 private:
  static std::string WithoutCodes(std::string_view line) {
    std::string left;
    while (!line.empty()) {
      std::size_t removed = line[0] == '\x01' ? 1 : 0;
      for (const std::string_view code : {"\033E", "\033F", "\x1b-1", "\x1b-0"}) {
        if (line.substr(0, code.size()) == code) removed = code.size();
      }
      if (removed == 0) left += line[0];
      line.remove_prefix(std::max<std::size_t>(removed, 1));
    }
    return left;
  }

  std::vector<NaiveCharacter> Characters(std::string_view text) const {
    std::vector<NaiveCharacter> characters;
    while (!text.empty()) {
      characters.push_back(first_(text));
      text.remove_prefix(characters.back().bytes);
    }
    return characters;
  }

  static NaivePlace PlaceOf(std::string_view line, std::int64_t number, std::size_t begin,
                            std::size_t end) {
    NaivePlace place{number, 1, 0};
    for (std::size_t offset = 0; offset < end;) {
      const TextPiece grapheme = FirstGrapheme(line.substr(offset));
      const bool drawn = line[offset] != '\x1b' && line[offset] != '\x0c';
      offset += grapheme.bytes;
      (offset <= begin ? place.column : place.cells) += drawn ? grapheme.cells : 0;
    }
    place.cells = std::max<std::int64_t>(place.cells, 1);
    return place;
  }

  std::function<NaiveCharacter(std::string_view)> first_;
  std::vector<std::string> lines_;
  std::vector<std::vector<NaiveCharacter>> characters_;
};

}  // namespace kel::testing
