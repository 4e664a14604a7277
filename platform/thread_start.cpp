// SPDX-License-Identifier: Apache-2.0
#include "platform/thread_start.h"

#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <memory>

namespace platform {
namespace {

pthread_mutex_t countLock = PTHREAD_MUTEX_INITIALIZER;
pthread_cond_t countChanged = PTHREAD_COND_INITIALIZER;
int threadCount = 0;

void Count(int change) {
  pthread_mutex_lock(&countLock);
  threadCount += change;
  pthread_cond_broadcast(&countChanged);
  pthread_mutex_unlock(&countLock);
}

struct Start {
  void* (*body)(void*);
  void* argument;
};

struct Presence {
  Presence() = default;
  ~Presence() { Count(-1); }
  Presence(const Presence&) = delete;
  Presence& operator=(const Presence&) = delete;
};

void* Enter(void* start) {
  const Presence present;
  const std::unique_ptr<Start> held(static_cast<Start*>(start));
  return held->body(held->argument);
}

void* WaitToBeCancelled(void*) {
  for (;;) pause();
}

}  // namespace

bool StartThread(pthread_t& thread, void* (*body)(void*), void* argument) {
  sigset_t ends;
  sigset_t before;
  sigemptyset(&ends);
  sigaddset(&ends, SIGINT);
  sigaddset(&ends, SIGTERM);
  sigaddset(&ends, SIGALRM);
  auto start = std::make_unique<Start>(Start{body, argument});
  Count(+1);
  pthread_sigmask(SIG_BLOCK, &ends, &before);
  pthread_t created = 0;
  const bool started = pthread_create(&created, nullptr, Enter, start.get()) == 0;
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  if (started) {
    static_cast<void>(start.release());  // the thread's now
  } else {
    Count(-1);
  }
  thread = started ? created : 0;
  return started;
}

void CancelAndForget(pthread_t& thread) {
  pthread_mutex_lock(&countLock);
  const pthread_t old = thread;
  thread = 0;  // before the handle goes, because the signal handler may look at any moment
  pthread_mutex_unlock(&countLock);
  if (old == 0) return;
  pthread_cancel(old);
  pthread_detach(old);
}

bool WaitForThreads(int milliseconds) {
  timespec end = {};
  clock_gettime(CLOCK_REALTIME, &end);
  end.tv_sec += milliseconds / 1000;
  end.tv_nsec += milliseconds % 1000 * 1000000L;
  if (end.tv_nsec >= 1000000000L) {
    end.tv_nsec -= 1000000000L;
    ++end.tv_sec;
  }
  pthread_mutex_lock(&countLock);
  bool inTime = true;
  while (threadCount > 0 && inTime) {
    inTime = pthread_cond_timedwait(&countChanged, &countLock, &end) == 0;
  }
  const bool ended = threadCount == 0;
  pthread_mutex_unlock(&countLock);
  return ended;
}

void PrepareCancellation() {
  pthread_t thread = 0;
  if (pthread_create(&thread, nullptr, WaitToBeCancelled, nullptr) != 0) return;
  pthread_cancel(thread);
  pthread_join(thread, nullptr);
}

}  // namespace platform
