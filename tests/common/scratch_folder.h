// A folder of a test's own, gone with the test.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace kel {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern = std::filesystem::temp_directory_path() / "keldll-test-XXXXXX";
    path_ = ::mkdtemp(pattern.data());
  }
  ~ScratchFolder() { std::filesystem::remove_all(path_); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

  /// The names in the folder, hidden ones too.
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      names.push_back(entry.path().filename());
    }
    return names;
  }

 private:
  std::filesystem::path path_;
};

inline void PutFile(const std::filesystem::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

inline std::string FileText(const std::filesystem::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

/// The number of the Error that `action` throws; 0 when it throws none.
template <typename ErrorType, typename Action>
int ErrorNumberOf(Action action) {
  try {
    action();
  } catch (const ErrorType& error) {
    return error.Number();
  }
  return 0;
}

}  // namespace kel
