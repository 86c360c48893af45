#include "engine/page_file_writer.h"

namespace kel {

namespace {

constexpr std::size_t kBlockSize = std::size_t{256} * 1024;

}  // namespace

PageFileWriter::PageFileWriter(OutputFile& file) : file_(file) { block_.reserve(kBlockSize); }

void PageFileWriter::WriteLine(std::string_view line) {
  Append(line);
  Append(kLineEnd);
}

void PageFileWriter::WriteEmptyLines(std::int32_t count) {
  for (std::int32_t i = 0; i < count; ++i) Append(kLineEnd);
}

void PageFileWriter::Finish() {
  file_.Write(block_);
  written_ += block_.size();
  block_.clear();
}

void PageFileWriter::Append(std::string_view bytes) {
  // The block never grows beyond its capacity, so a line costs a copy and nothing else.
  if (block_.size() + bytes.size() > block_.capacity()) {
    Finish();
    if (bytes.size() > block_.capacity()) {
      file_.Write(bytes);
      written_ += bytes.size();
      return;
    }
  }
  block_.append(bytes);
}

}  // namespace kel
