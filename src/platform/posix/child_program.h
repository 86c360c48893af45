// Another program, started without a shell.
#pragma once

#include <spawn.h>
#include <sys/types.h>

#include <chrono>
#include <optional>
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
  /// The program gets a session of its own: it has no terminal, neither Ctrl+C nor the host's end
  /// reaches it, and what is stopped is all that it has started as well.
  void SetApart();
  /// The first of `arguments` is the program, by its path or by a name that is looked for in PATH.
  /// Throws Error when it cannot be started.
  void Start(std::vector<std::string> arguments);
  /// Asks the program to end.
  void Stop();
  /// Asks, and after a while forces, a program that was set apart; returns when all of it is gone.
  void StopWholly();
  /// Waits for the end, no longer than that; False while the program goes on.
  bool EndsWithin(std::chrono::milliseconds longest);
  /// How the program ended: its exit status, or 128 and the number of the signal that ended it.
  /// Nothing when the host ignores its children's ends.
  std::optional<int> Status() const { return status_; }
  /// The program may go on for as long as it likes. Its end is taken note of when the next one is
  /// started.
  void LeaveRunning();
  /// Waits for the end. True when the program says that it has succeeded; a host that ignores its
  /// children's ends never knows, and gets `unknown`.
  bool Succeeded(bool unknown);

 private:
  void Signal(int signal) const;
  // The end stays there to be taken note of by HasEnded, and the number with it is no one else's.
  bool IsOver() const;
  bool HasEnded(int how_to_wait);

  posix_spawn_file_actions_t files_{};
  posix_spawnattr_t attributes_{};
  bool apart_ = false;
  pid_t child_ = -1;
  std::optional<int> status_;
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
