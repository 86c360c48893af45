// What a work file holds now, kept for later.
#pragma once

#include <filesystem>
#include <memory>
#include <utility>

namespace kel {

/// A second name for the content that a file of the temporary folder has now. Writing the file anew
/// does not change it. The name goes with the object.
class HeldFile {
 public:
  /// Null where the file system gives a file no second name.
  static std::shared_ptr<const HeldFile> Hold(const std::filesystem::path& file);
  ~HeldFile();
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

  const std::filesystem::path& Path() const { return path_; }

 private:
  explicit HeldFile(std::filesystem::path path) : path_(std::move(path)) {}

  std::filesystem::path path_;
};

}  // namespace kel
