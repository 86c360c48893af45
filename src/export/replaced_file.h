// A file that another program writes over.
#pragma once

#include <filesystem>

namespace kel {

/// Keeps what stands at a path until a program that knows no better than to write there has made
/// the new file whole. A process killed in between leaves the old file beside, as ".NAME.before".
///
///     ReplacedFile file("ledger.xls");
///     ... the work that may fail without having touched the file ...
///     file.SetAside();
///     ... the program makes file.Path() ...
///     file.Commit();
class ReplacedFile {
 public:
  /// Touches nothing. Symbolic links are followed. Throws Error 52 for what is no file, and as
  /// OutputFile does where none can be written.
  explicit ReplacedFile(const std::filesystem::path& target);
  /// Without Commit, what was set aside stands at the path again; where nothing was, nothing does.
  ~ReplacedFile();
  ReplacedFile(const ReplacedFile&) = delete;
  ReplacedFile& operator=(const ReplacedFile&) = delete;

  /// Where the new file is to be made.
  const std::filesystem::path& Path() const { return path_; }
  /// From now on nothing stands at the path. Throws Error, for a file in use by a program, too.
  void SetAside();
  /// Gives up what was there before.
  void Commit();

 private:
  std::filesystem::path path_;
  std::filesystem::path before_;  // what was set aside; empty where nothing was
  bool undone_at_end_ = false;
};

}  // namespace kel
