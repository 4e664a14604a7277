// SPDX-License-Identifier: Apache-2.0
#include "tests/support/child_process.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

// There only in programs that count coverage (kept_counters.cpp).
extern "C" __attribute__((weak)) void __gcov_dump();

namespace ventrik::tests {

Signal::Signal() {
  if (pipe(ends_) != 0) {
    std::perror("pipe");
    std::abort();
  }
}

Signal::~Signal() {
  close(ends_[0]);
  close(ends_[1]);
}

void Signal::Notify(int value) const {
  if (write(ends_[1], &value, sizeof value) != sizeof value) std::abort();
}

int Signal::Await() const {
  int value = 0;
  return read(ends_[0], &value, sizeof value) == sizeof value ? value : -1;
}

ChildProcess::ChildProcess(const std::function<int()>& body) : pid_(fork()) {
  if (pid_ < 0) {
    std::perror("fork");
    std::abort();
  }
  if (pid_ > 0) return;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  _exit(body());
}

ChildProcess::~ChildProcess() {
  if (pid_ <= 0) return;
  const bool counts = __gcov_dump != nullptr;
  kill(pid_, counts ? SIGUSR2 : SIGKILL);  // one that counts writes that down, and kills itself
  Continue();
  Wait();
}

void ChildProcess::Kill() {
  kill(pid_, SIGKILL);
  Wait();
}

void ChildProcess::Stop() {
  kill(pid_, SIGSTOP);
  int status = 0;
  waitpid(pid_, &status, WUNTRACED);
}

void ChildProcess::Continue() {
  kill(pid_, SIGCONT);
}

int ChildProcess::Wait() {
  int status = 0;
  pid_t ended = -1;
  do {
    ended = waitpid(pid_, &status, 0);
  } while (ended == -1 && errno == EINTR);
  if (ended != pid_) return -1000;
  pid_ = 0;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace ventrik::tests
