// A place for files that are needed only while a piece of work goes on.
#pragma once

#include <filesystem>

namespace kel {

/// A new sub-folder of the temporary folder, which goes with the object and all that is in it. What
/// a killed process left is removed when the next one makes its first.
class WorkFolder {
 public:
  /// Throws Error when it cannot be made.
  WorkFolder();
  ~WorkFolder();
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace kel
