// Another program, started without a shell.
#pragma once

#include <spawn.h>
#include <sys/types.h>

#include <string>
#include <vector>

#include "common/descriptor.h"

namespace kel {

/// What a program is started with: its arguments and the files that it finds open. Everything else
/// of ours is closed in it that was opened to be so; signals have their usual meaning.
class ChildProgram {
 public:
  ChildProgram();
  ~ChildProgram();
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  /// `from` must be one that Moved or MakePipe made.
  void Give(const Descriptor& from, int as);
  void GiveNothing(int as);
  /// The first of `arguments` is the program, by its path or by a name that is looked for in PATH.
  /// Throws Error when it cannot be started.
  void Start(std::vector<std::string> arguments);
  void Stop();
  /// Waits for the end. True when the program says that it has succeeded; a host that ignores its
  /// children's ends never knows, and gets `unknown`.
  bool Succeeded(bool unknown);

 private:
  posix_spawn_file_actions_t files_{};
  posix_spawnattr_t attributes_{};
  pid_t child_ = -1;
};

struct Pipe {
  Descriptor out;  // what is read comes from here
  Descriptor in;
};

/// Throws Error when there is none to be had.
Pipe MakePipe();
/// The same open file, under a number above those that a child program finds its files at. Throws
/// Error when there are too many open files.
Descriptor Moved(Descriptor low);
/// Reads until the other end is closed.
std::string ReadToEnd(const Descriptor& pipe);

}  // namespace kel
