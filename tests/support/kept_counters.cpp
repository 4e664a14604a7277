// SPDX-License-Identifier: Apache-2.0
// Keeps what a program has counted, where it ends otherwise than through `exit`. Linked into every
// program of a build that counts coverage, and into no other.
//
// `_exit` and `abort` write the counters first, and so does SIGUSR2, which the terminal tests then
// send in the place of SIGKILL to what is left running at a test's end. What SIGKILL or a fault
// ends in the middle of a test writes nothing.
#include <dlfcn.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>

extern "C" void __gcov_dump();

namespace {

constexpr unsigned kPatience = 5;  // seconds, should the signal have come in the middle of `malloc`

void WriteCounters(int) {
  signal(SIGALRM, SIG_DFL);
  alarm(kPatience);
  __gcov_dump();
  kill(getpid(), SIGKILL);
}

// Before the writing of an end that has begun: a signal in the middle of it would wait for its
// lock.
void LeaveSignal() {
  signal(SIGUSR2, SIG_IGN);
}

__attribute__((constructor)) void TakeSignal() {
  signal(SIGUSR2, WriteCounters);
  std::atexit(LeaveSignal);
}

}  // namespace

extern "C" {

void _exit(int status) {
  LeaveSignal();
  __gcov_dump();
  for (;;) syscall(SYS_exit_group, status);
}

void abort() {
  LeaveSignal();
  __gcov_dump();
  using Abort = void (*)();
  reinterpret_cast<Abort>(dlsym(RTLD_NEXT, "abort"))();
  __builtin_unreachable();
}

}  // extern "C"
