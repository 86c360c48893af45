// RapidJSON over the library's files, with its own faults made into exceptions.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

// Texts and arrays of more than 4 GB keep their length.
#define RAPIDJSON_NO_SIZETYPEDEFINE
namespace rapidjson {
using SizeType = std::size_t;
}
#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include "common/file.h"

namespace kel::command {

/// A fault in a JSON file; whoever knows the file and the place in it says them.
class JsonFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The bytes of a file as RapidJSON's stream; knows the line and the column it has come to.
class JsonInput {
 public:
  using Ch = char;

  explicit JsonInput(InputFile& file) : file_(file) { Fill(); }

  char Peek() const { return *next_; }
  char Take() {
    const char byte = *next_;
    if (next_ == end_) return byte;
    ++next_;
    if (byte == '\n') {
      ++line_;
      line_start_ = Tell();
    }
    if (next_ == end_) Fill();
    return byte;
  }
  std::size_t Tell() const { return before_ + static_cast<std::size_t>(next_ - block_.data()); }

  // RapidJSON names these for parsing in place, which needs a buffer with the whole text.
  void Put(char /*byte*/) {}
  char* PutBegin() { return nullptr; }
  std::size_t PutEnd(char* /*begin*/) { return 0; }

  /// A NUL in the file looks like the end to RapidJSON; this tells them apart.
  bool AtEnd() const { return next_ == end_; }
  void SkipByteOrderMark() {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    if (std::string_view(next_, static_cast<std::size_t>(end_ - next_)).starts_with(kMark)) {
      next_ += kMark.size();
      if (next_ == end_) Fill();
    }
  }
  std::string Place() const {
    return "line " + std::to_string(line_) + ", column " + std::to_string(Tell() - line_start_ + 1);
  }

 private:
  static constexpr std::size_t kBlock = std::size_t{64} * 1024;

  void Fill() {
    before_ += static_cast<std::size_t>(end_ - block_.data());
    std::size_t size = 0;
    // A pipe may give a few bytes at a time; a byte order mark is looked for in whole.
    while (size < kBlock) {
      const std::size_t got = file_.Read(std::span(block_.data() + size, kBlock - size));
      if (got == 0) break;
      size += got;
    }
    next_ = block_.data();
    end_ = next_ + size;
    block_[size] = '\0';
  }

  InputFile& file_;
  std::array<char, kBlock + 1> block_{};
  const char* next_ = block_.data();
  const char* end_ = block_.data();
  std::size_t before_ = 0;  // bytes of the file before block_
  std::size_t line_start_ = 0;
  std::int64_t line_ = 1;
};

/// UTF-8 that RapidJSON copies byte by byte, as it does for equal encodings, but that refuses the
/// escape of half a surrogate pair, which RapidJSON looks for only in front of another.
struct JsonText : rapidjson::UTF8<> {
  template <typename OutputStream>
  static void Encode(OutputStream& output, unsigned code_point) {
    if (code_point >= 0xDC00 && code_point <= 0xDFFF) {
      throw JsonFault(
          rapidjson::GetParseError_En(rapidjson::kParseErrorStringUnicodeSurrogateInvalid));
    }
    rapidjson::UTF8<>::Encode(output, code_point);
  }
};

/// RapidJSON does not look at what its allocator returns.
class JsonMemory {
 public:
  static constexpr bool kNeedFree = true;

  void* Malloc(std::size_t size) { return Realloc(nullptr, 0, size); }
  void* Realloc(void* memory, std::size_t /*old_size*/, std::size_t size) {
    if (size == 0) {
      Free(memory);
      return nullptr;
    }
    void* const grown = std::realloc(memory, size);  // NOLINT(cppcoreguidelines-no-malloc)
    if (grown == nullptr) throw std::bad_alloc();
    return grown;
  }
  static void Free(void* memory) { std::free(memory); }  // NOLINT(cppcoreguidelines-no-malloc)
};

using JsonReader = rapidjson::GenericReader<JsonText, JsonText, JsonMemory>;

}  // namespace kel::command
