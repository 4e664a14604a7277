// SPDX-License-Identifier: Apache-2.0
// A second process for a test, and the means to keep step with it.
#pragma once

#include <sys/types.h>

#include <functional>

namespace ventrik::tests {

// A one-way signal between processes: what Notify sends, Await takes. Made before the fork.
class Signal {
 public:
  Signal();
  ~Signal();
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;

  void Notify(int value = 0) const;
  // The value sent, or -1 if the other process is gone. Both ends are open here, so only a value
  // ends the wait in the process that could send one itself.
  int Await() const;

 private:
  int ends_[2];
};

// Runs `body` in a forked process, which exits with its result. Fork before this process has
// channels or threads of its own: the child would hold copies of them. Killed at the end.
class ChildProcess {
 public:
  explicit ChildProcess(const std::function<int()>& body);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return pid_; }
  // Kills it and waits until it is gone.
  void Kill();
  void Stop();
  void Continue();
  // Waits for its end. Returns the exit status, or minus the signal that ended it.
  int Wait();

 private:
  pid_t pid_;
};

}  // namespace ventrik::tests
