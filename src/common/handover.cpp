#include "common/handover.h"

#include <algorithm>
#include <cerrno>
#include <random>
#include <system_error>

#include "common/error.h"
#include "common/temp_folder.h"
#include "common/text_cells.h"

namespace kel {
namespace {

constexpr std::size_t kDigits = 5;
constexpr std::size_t kLongestName = 255;  // bytes, on every usual file system

std::filesystem::path MadeFolder(std::filesystem::path folder) {
  std::error_code failure;
  std::filesystem::create_directory(folder, failure);
  std::error_code unknown;
  if (std::filesystem::is_directory(std::filesystem::symlink_status(folder, unknown))) {
    return folder;
  }
  const int why = failure ? failure.value() : ENOTDIR;
  throw Error::FromSystem(why, "cannot make the folder " + folder.string());
}

std::filesystem::path HandoverFolder() { return MadeFolder(TempFolder() / kHandoverFolderName); }

// The path in the folder of a name that nothing has.
std::filesystem::path NewPath(const std::filesystem::path& folder, std::string_view extension) {
  for (;;) {
    std::filesystem::path path = folder / TempName();
    path.replace_extension(extension);
    std::error_code unknown;
    if (!std::filesystem::exists(std::filesystem::symlink_status(path, unknown))) return path;
  }
}

// Cut before its extension, never inside a character.
std::string Shortened(std::string name) {
  if (name.size() <= kLongestName) return name;
  const std::string extension = std::filesystem::path(name).extension().string();
  const std::size_t room =
      extension.size() < kLongestName / 2 ? kLongestName - extension.size() : kLongestName;
  std::size_t end = 0;
  for (std::string_view rest = name; !rest.empty();) {
    const std::size_t bytes = FirstGrapheme(rest).bytes;
    if (end + bytes > room) break;
    end += bytes;
    rest.remove_prefix(bytes);
  }
  name.resize(end);
  return room < kLongestName ? name + extension : name;
}

}  // namespace

std::string TempName() {
  static constexpr std::string_view kHexadecimal = "0123456789ABCDEF";
  thread_local std::mt19937 numbers(std::random_device{}());
  std::string name = "rad";
  for (std::size_t i = 0; i < kDigits; ++i) name += kHexadecimal[numbers() % kHexadecimal.size()];
  return name + ".tmp";
}

std::filesystem::path HandoverPath(std::string_view extension) {
  return NewPath(HandoverFolder(), extension);
}

std::filesystem::path HandoverPathNamed(std::string_view name) {
  const std::filesystem::path folder = MadeFolder(NewPath(HandoverFolder(), ""));
  std::string usable(name);
  std::replace_if(
      usable.begin(), usable.end(),
      [](char c) { return c == '/' || static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }, '_');
  if (usable.empty() || usable == "." || usable == "..") usable = "_";
  return folder / Shortened(usable);
}

}  // namespace kel
