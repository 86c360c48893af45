#include <fcntl.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "common/error.h"
#include "common/file.h"

namespace kel {
namespace {

constexpr int kMostLinks = 40;  // as the kernel's own limit
constexpr int kMostNames = 10'000;
constexpr mode_t kPrivateMode = 0600;
constexpr mode_t kPublicMode = 0666;  // less the umask
constexpr mode_t kPermissionBits = 0777;
constexpr std::size_t kCopyBlock = std::size_t{1} << 18;
#ifdef __linux__
constexpr std::size_t kKernelCopyBlock = std::size_t{1} << 30;
#endif

[[noreturn]] void Throw(const char* what_failed, const std::filesystem::path& path,
                        int system_error = errno) {
  throw Error::FromSystem(system_error, std::string(what_failed) + " " + path.string());
}

[[noreturn]] void ThrowCannotCreate(const std::filesystem::path& path, int system_error = errno) {
  const std::string what_failed = "cannot create " + path.string();
  // What is not found is the folder: the file itself is yet to be made.
  if (system_error == ENOENT) {
    throw Error(error_number::kPathNotFound, what_failed + ": the folder does not exist");
  }
  throw Error::FromSystem(system_error, what_failed);
}

template <typename Call>
auto Retried(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

int OpenDescriptor(const std::filesystem::path& path, int flags, mode_t mode = 0) {
  return Retried([&] { return ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode); });
}

int NoFollow(Links links) { return links == Links::kRefuse ? O_NOFOLLOW : 0; }

std::filesystem::path FolderOf(const std::filesystem::path& path) {
  return path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
}

// Keeps SIGPIPE from the host program while this thread writes to a pipe: a reader that has gone
// is an error to report, not the end of the program.
class PipeSignalHold {
 public:
  PipeSignalHold() {
    ::sigemptyset(&pipe_signal_);
    ::sigaddset(&pipe_signal_, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &pipe_signal_, &before_);
  }
  ~PipeSignalHold() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  PipeSignalHold(const PipeSignalHold&) = delete;
  PipeSignalHold& operator=(const PipeSignalHold&) = delete;

  void Discard() {
    sigset_t pending;
    ::sigpending(&pending);
    int taken = 0;
    if (::sigismember(&pending, SIGPIPE) == 1) ::sigwait(&pipe_signal_, &taken);
  }

 private:
  sigset_t pipe_signal_{};
  sigset_t before_{};
};

}  // namespace

InputFile::InputFile(const std::filesystem::path& path, Links links) : path_(path) {
  // A work file is never waited for: a pipe planted in its place has no writer.
  const int waiting = links == Links::kRefuse ? O_NONBLOCK : 0;
  const int descriptor = OpenDescriptor(path, O_RDONLY | NoFollow(links) | waiting);
  if (descriptor == -1) Throw("cannot open", path);
  struct stat status {};
  const int failure = ::fstat(descriptor, &status) == -1 ? errno
                      : S_ISDIR(status.st_mode)          ? EISDIR
                                                         : 0;
  if (failure != 0) {
    ::close(descriptor);
    Throw("cannot open", path, failure);
  }
  if (links == Links::kRefuse && !S_ISREG(status.st_mode)) {
    ::close(descriptor);
    throw Error(error_number::kBadFileName, "cannot open " + path.string() + ": it is no file");
  }
#ifdef POSIX_FADV_SEQUENTIAL
  ::posix_fadvise(descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
#endif
  descriptor_ = descriptor;
}

InputFile::~InputFile() { ::close(descriptor_); }

std::uint64_t InputFile::Size() const {
  struct stat status {};
  if (::fstat(descriptor_, &status) == -1) Throw("cannot read", path_);
  return S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
}

FileStamp InputFile::Stamp() const {
  struct stat status {};
  if (::fstat(descriptor_, &status) == -1) Throw("cannot read", path_);
  FileStamp stamp;
  stamp.device = status.st_dev;
  stamp.node = status.st_ino;
  stamp.size = static_cast<std::uint64_t>(status.st_size);
#ifdef __APPLE__
  const timespec modified = status.st_mtimespec;
#else
  const timespec modified = status.st_mtim;
#endif
  stamp.modified = std::int64_t{modified.tv_sec} * 1'000'000'000 + modified.tv_nsec;
  return stamp;
}

std::size_t InputFile::Read(std::span<char> buffer) {
  const ssize_t count = Retried([&] { return ::read(descriptor_, buffer.data(), buffer.size()); });
  if (count == -1) Throw("cannot read", path_);
  return static_cast<std::size_t>(count);
}

std::size_t InputFile::ReadAt(std::uint64_t offset, std::span<char> buffer) const {
  std::size_t done = 0;
  while (done < buffer.size()) {
    const ssize_t count = Retried([&] {
      return ::pread(descriptor_, buffer.data() + done, buffer.size() - done,
                     static_cast<off_t>(offset + done));
    });
    if (count == -1) Throw("cannot read", path_);
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

struct OutputFile::Impl {
  Impl() = default;
  ~Impl();
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  void Open(const std::filesystem::path& path, Links links);
  void OpenDirectly(Links links);
  void OpenWorkFile(mode_t mode);
  bool OpenUnnamed(mode_t mode);
  void OpenHidden(mode_t mode);
  bool CopyInKernel(int source);
  void LinkUnnamed();
  void Close();

  // Calls `make` with unused names in the target's folder until it succeeds.
  template <typename Make>
  void UnderHiddenName(Make make);

  std::filesystem::path target;
  std::filesystem::path hidden;  // the work file's name, while it has one
  int descriptor = -1;
  bool direct = false;
  bool unnamed = false;
};

namespace {

// The file at the end of a chain of links, which need not exist.
std::filesystem::path Resolved(std::filesystem::path path) {
  for (int followed = 0; followed < kMostLinks; ++followed) {
    std::error_code not_a_link;
    const std::filesystem::path next = std::filesystem::read_symlink(path, not_a_link);
    if (not_a_link) return path;
    path = path.parent_path() / next;
  }
  ThrowCannotCreate(path, ELOOP);
}

// What stands at the path now; st_mode 0 when nothing does.
struct stat StatusOf(const std::filesystem::path& path, Links links) {
  struct stat status {};
  const int result =
      links == Links::kFollow ? ::stat(path.c_str(), &status) : ::lstat(path.c_str(), &status);
  if (result == -1 && errno != ENOENT) ThrowCannotCreate(path);
  if (result == -1) status.st_mode = 0;
  return status;
}

}  // namespace

OutputFile::OutputFile(const std::filesystem::path& path, Links links)
    : impl_(std::make_unique<Impl>()) {
  impl_->Open(path, links);
}

OutputFile::~OutputFile() = default;

OutputFile::Impl::~Impl() {
  if (descriptor != -1) ::close(descriptor);
  if (!hidden.empty()) ::unlink(hidden.c_str());
}

void OutputFile::Impl::Open(const std::filesystem::path& path, Links links) {
  target = path;
  const struct stat old = StatusOf(path, links);
  if (S_ISDIR(old.st_mode) || !path.has_filename()) ThrowCannotCreate(path, EISDIR);
  const bool replaces_file = S_ISREG(old.st_mode);
  if (old.st_mode != 0 && !replaces_file && !S_ISLNK(old.st_mode)) {
    OpenDirectly(links);
    return;
  }
  if (links == Links::kFollow) target = Resolved(path);
  if (replaces_file && ::access(target.c_str(), W_OK) == -1) ThrowCannotCreate(path);
  OpenWorkFile(replaces_file || links == Links::kRefuse ? kPrivateMode : kPublicMode);
  if (replaces_file && ::fchmod(descriptor, old.st_mode & kPermissionBits) == -1) {
    ThrowCannotCreate(path);
  }
}

void OutputFile::Impl::OpenDirectly(Links links) {
  direct = true;
  descriptor = OpenDescriptor(target, O_WRONLY | NoFollow(links));
  if (descriptor == -1) ThrowCannotCreate(target);
}

void OutputFile::Impl::OpenWorkFile(mode_t mode) {
  unnamed = OpenUnnamed(mode);
  if (!unnamed) OpenHidden(mode);
}

bool OutputFile::Impl::OpenUnnamed([[maybe_unused]] mode_t mode) {
#ifdef O_TMPFILE
  // Without /proc the file could never be given its name.
  if (::access("/proc/self/fd", F_OK) == -1) return false;
  descriptor = OpenDescriptor(FolderOf(target), O_TMPFILE | O_WRONLY, mode);
  if (descriptor != -1) return true;
  const bool unsupported = errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL;
  if (!unsupported) ThrowCannotCreate(target);
#endif
  return false;
}

void OutputFile::Impl::OpenHidden(mode_t mode) {
  UnderHiddenName([&](const std::filesystem::path& name) {
    descriptor = OpenDescriptor(name, O_WRONLY | O_CREAT | O_EXCL, mode);
    return descriptor != -1;
  });
}

template <typename Make>
void OutputFile::Impl::UnderHiddenName(Make make) {
  static std::atomic<unsigned> names_used{0};
  for (int tried = 0; tried < kMostNames; ++tried) {
    std::filesystem::path name = FolderOf(target) / (".kel-" + std::to_string(::getpid()) + "-" +
                                                     std::to_string(names_used++));
    if (make(name)) {
      hidden = std::move(name);
      return;
    }
    if (errno != EEXIST) ThrowCannotCreate(target);
  }
  ThrowCannotCreate(target, EEXIST);
}

void OutputFile::WaitForTurn() {
  if (!impl_->direct) return;
  const int result = Retried([&] { return ::flock(impl_->descriptor, LOCK_EX); });
  if (result == -1) Throw("cannot lock", impl_->target);
}

void OutputFile::Write(std::string_view bytes) {
  PipeSignalHold hold;
  while (!bytes.empty()) {
    const ssize_t count =
        Retried([&] { return ::write(impl_->descriptor, bytes.data(), bytes.size()); });
    if (count == -1) {
      const int failure = errno;
      if (failure == EPIPE) hold.Discard();
      Throw("cannot write", impl_->target, failure);
    }
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void OutputFile::WriteAll(InputFile& source) {
  if (impl_->CopyInKernel(source.descriptor_)) return;
  std::vector<char> block(kCopyBlock);
  while (const std::size_t count = source.Read(block)) Write({block.data(), count});
}

// False when the rest has to be copied through the program, which also reports what went wrong
// here. Files whose size the kernel does not know (those of /proc) end at once without an error,
// so an end is only believed after some bytes.
bool OutputFile::Impl::CopyInKernel([[maybe_unused]] int source) {
#ifdef __linux__
  bool copied = false;
  for (;;) {
    const ssize_t count = Retried([&] {
      return ::copy_file_range(source, nullptr, descriptor, nullptr, kKernelCopyBlock, 0);
    });
    if (count <= 0) return copied && count == 0;
    copied = true;
  }
#else
  return false;
#endif
}

void OutputFile::Commit() {
  if (impl_->unnamed) impl_->LinkUnnamed();
  impl_->Close();
  if (impl_->direct) return;
  if (::rename(impl_->hidden.c_str(), impl_->target.c_str()) == -1) {
    ThrowCannotCreate(impl_->target);
  }
  impl_->hidden.clear();
}

// A link cannot take the place of an existing file, so the file gets a name beside it first.
void OutputFile::Impl::LinkUnnamed() {
  const std::string opened = "/proc/self/fd/" + std::to_string(descriptor);
  UnderHiddenName([&](const std::filesystem::path& name) {
    return ::linkat(AT_FDCWD, opened.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
  });
}

// Some file systems (quota, network) report a full disk only here.
void OutputFile::Impl::Close() {
  const int result = ::close(std::exchange(descriptor, -1));
  if (result == -1 && errno != EINTR) Throw("cannot write", target);
}

}  // namespace kel
