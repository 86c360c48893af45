// Files: reading without surprises and writing that leaves the old file or the whole new one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string_view>

namespace kel {

/// Whether a symbolic link at the last part of a path is followed. The library's own work files
/// are opened without, so that a planted link leads nowhere; what is no regular file there is an
/// error (52) to a reader.
enum class Links { kFollow, kRefuse };

/// What tells one content of a path from another without reading it.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t node = 0;
  std::uint64_t size = 0;
  std::int64_t modified = 0;  // nanoseconds
  bool operator==(const FileStamp&) const = default;
};

/// An open file to read. One object is used by one thread at a time.
class InputFile {
 public:
  /// Throws Error 52, 53, 70 or 57.
  explicit InputFile(const std::filesystem::path& path, Links links = Links::kFollow);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  /// Bytes in the file now; 0 for a pipe.
  std::uint64_t Size() const;
  FileStamp Stamp() const;
  /// Reads at the current position, as many bytes as there are up to the buffer's size; 0 at the
  /// end.
  std::size_t Read(std::span<char> buffer);
  /// Reads at a position of the caller's choice; fewer bytes than asked only at the file's end.
  std::size_t ReadAt(std::uint64_t offset, std::span<char> buffer) const;

 private:
  friend class OutputFile;
  std::filesystem::path path_;
  int descriptor_ = -1;
};

/// A file in the making. Nothing stands at the path until Commit puts the whole file there in one
/// step; an object destroyed before leaves what was there, and a killed process leaves no litter
/// where the system offers unnamed files. Through a symbolic link (with Links::kFollow) the file
/// it leads to is replaced; devices and pipes are written directly.
///
///     OutputFile file("ledger.rpt");
///     file.Write(text);
///     file.Commit();
class OutputFile {
 public:
  /// Throws Error when the folder does not exist or may not be written.
  explicit OutputFile(const std::filesystem::path& path, Links links = Links::kFollow);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Waits until no other OutputFile that waited for its turn has the device or pipe open, so that
  /// their bytes do not mix. Files need no turns: each appears whole.
  void WaitForTurn();
  /// Appends. Throws Error 61 when the disk is full.
  void Write(std::string_view bytes);
  /// Appends the rest of another file, in the kernel where it can.
  void WriteAll(InputFile& source);
  /// Makes the file appear under its path. Call it once.
  void Commit();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace kel
