#include "export/replaced_file.h"

#include <string>
#include <system_error>

#include "common/error.h"
#include "common/file.h"

namespace kel {
namespace {

constexpr int kMostLinks = 40;
// Of a name of 255 bytes, the most that file systems have; the rest is for what is added.
constexpr std::size_t kMostKeptOfName = 200;

// The file at the end of a chain of links, which need not exist.
std::filesystem::path Followed(std::filesystem::path path) {
  for (int followed = 0; followed < kMostLinks; ++followed) {
    std::error_code no_link;
    const std::filesystem::path next = std::filesystem::read_symlink(path, no_link);
    if (no_link) break;
    path = path.parent_path() / next;
  }
  return path;
}

bool Exists(const std::filesystem::path& path) {
  std::error_code failure;
  return std::filesystem::exists(std::filesystem::symlink_status(path, failure));
}

std::filesystem::path FreeNameBeside(const std::filesystem::path& path) {
  const auto kept = path.filename().native().substr(0, kMostKeptOfName);
  std::filesystem::path name;
  int number = 1;
  do {
    name = path.parent_path() / ".";
    name += kept;
    name += number == 1 ? ".before" : ".before" + std::to_string(number);
    ++number;
  } while (Exists(name));
  return name;
}

}  // namespace

ReplacedFile::ReplacedFile(const std::filesystem::path& target) : path_(Followed(target)) {
  std::error_code failure;
  const std::filesystem::file_status status = std::filesystem::status(path_, failure);
  if (std::filesystem::is_other(status)) {
    throw Error(error_number::kBadFileName,
                "cannot replace " + target.string() + ": it is no file");
  }
  const OutputFile refusing(path_);
}

ReplacedFile::~ReplacedFile() {
  if (!undone_at_end_) return;
  std::error_code failure;  // leaves the old file under its other name
  if (before_.empty()) {
    std::filesystem::remove(path_, failure);
  } else {
    std::filesystem::rename(before_, path_, failure);
  }
}

void ReplacedFile::SetAside() {
  if (Exists(path_)) {
    const std::filesystem::path name = FreeNameBeside(path_);
    std::error_code failure;
    std::filesystem::rename(path_, name, failure);
    if (failure) {
      throw Error::FromSystem(failure.default_error_condition().value(),
                              "cannot replace " + path_.string());
    }
    before_ = name;
  }
  undone_at_end_ = true;
}

void ReplacedFile::Commit() {
  undone_at_end_ = false;
  std::error_code failure;
  if (!before_.empty()) std::filesystem::remove(before_, failure);
}

}  // namespace kel
