// A file that holds the fuzzer's bytes.
#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace kel::fuzzing {

class FuzzFile {
 public:
  FuzzFile() {
    std::string name = (std::filesystem::temp_directory_path() / "keldll-fuzz-XXXXXX").string();
    descriptor_ = mkstemp(name.data());
    if (descriptor_ < 0) std::abort();
    path_ = name;
  }
  ~FuzzFile() {
    close(descriptor_);
    std::filesystem::remove(path_);
  }
  FuzzFile(const FuzzFile&) = delete;
  FuzzFile& operator=(const FuzzFile&) = delete;

  const std::filesystem::path& Fill(const std::uint8_t* data, std::size_t size) const {
    if (ftruncate(descriptor_, 0) != 0) std::abort();
    if (pwrite(descriptor_, data, size, 0) != static_cast<ssize_t>(size)) std::abort();
    return path_;
  }

 private:
  int descriptor_;
  std::filesystem::path path_;
};

}  // namespace kel::fuzzing
