// SPDX-License-Identifier: Apache-2.0
// A signal that comes just before a wait begins would be lost on it. So the first SIGINT or SIGTERM
// starts a timer whose signal, every tick, brings the main thread back out of whatever it waits in;
// the other threads keep these signals blocked.
#include "shell/signals.h"

#include <pthread.h>
#include <signal.h>
#include <time.h>

#include <cerrno>

#include "platform/thread_start.h"
#include "shell/history.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr long kNudgeInterval = 50'000'000;  // nanoseconds

ClientApp* handledApp = nullptr;
timer_t nudgeTimer = {};
bool canNudge = false;

void StartNudging() {
  if (!canNudge) return;
  itimerspec tick = {};
  tick.it_value.tv_nsec = kNudgeInterval;
  tick.it_interval.tv_nsec = kNudgeInterval;
  timer_settime(nudgeTimer, 0, &tick, nullptr);
}

// By reference, so that here is where the handler looks at what a thread may be writing.
void CancelIfThere(const pthread_t& place) {
  const pthread_t thread = place;
  if (thread != 0) pthread_cancel(thread);
}

void HandleSignal(int number) {
  const int error = errno;
  if (number == SIGINT || number == SIGTERM) {
    mainLoopRunning = 0;
    listenerErrorsOn = 0;
    CancelIfThere(handledApp->listenerThread);
    CancelIfThere(handledApp->monkeyThread);
    CancelIfThere(handledApp->batchlogThread);
    StartNudging();
  }
  SaveHistory();
  errno = error;
}

void Nudge(int) {}

// System V semantics: one shot, not blocked meanwhile, and interrupted calls return.
void Install(int number, void (*handler)(int), int flags) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  sigaction(number, &action, nullptr);
}

}  // namespace

void InstallSignalHandlers(ClientApp& app) {
  handledApp = &app;
  platform::PrepareCancellation();
  struct sigevent nudge = {};
  nudge.sigev_notify = SIGEV_SIGNAL;
  nudge.sigev_signo = SIGALRM;
  canNudge = timer_create(CLOCK_MONOTONIC, &nudge, &nudgeTimer) == 0;
  Install(SIGALRM, Nudge, 0);
  constexpr int kHandled[] = {SIGINT, SIGTERM, SIGILL, SIGSEGV, SIGABRT, SIGBUS, SIGFPE};
  for (const int number : kHandled) {
    Install(number, HandleSignal, static_cast<int>(SA_RESETHAND | SA_NODEFER));
  }
}

}  // namespace ventrik
