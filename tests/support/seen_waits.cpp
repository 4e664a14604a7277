// SPDX-License-Identifier: Apache-2.0
// Lets the thread sanitizer follow a thread that is cancelled in a wait. Linked into every program
// of a build with that sanitizer, and into no other.
//
// The sanitizer stands in front of the C library's waits and looks away for their time, which ends
// when they return. One that unwinds never returns: the sanitizer then looks away for the rest of
// the thread's life, misses every lock that is given back on the way out, and takes what the next
// owner does for a race. So the waits that a thread may be cancelled in go past it. The main
// thread's, where signals arrive, don't: nobody cancels it, and a signal is only handed on in a
// wait that the sanitizer knows.
#include <dlfcn.h>
#include <poll.h>
#include <sys/epoll.h>
#include <time.h>
#include <unistd.h>

namespace {

// The C library's, or for the main thread the sanitizer's.
template <typename Function>
Function Find(const char* name) {
  static void* const library = dlopen("libc.so.6", RTLD_LAZY | RTLD_NOLOAD);
  return reinterpret_cast<Function>(dlsym(getpid() == gettid() ? RTLD_NEXT : library, name));
}

}  // namespace

// Asked each time, as it depends on the thread.
#define FIND(name) Find<decltype(&::name)>(#name)

extern "C" {

int poll(pollfd* files, nfds_t count, int milliseconds) {
  return FIND(poll)(files, count, milliseconds);
}

int ppoll(pollfd* files, nfds_t count, const timespec* limit, const sigset_t* signals) {
  return FIND(ppoll)(files, count, limit, signals);
}

int epoll_wait(int set, epoll_event* events, int count, int milliseconds) {
  return FIND(epoll_wait)(set, events, count, milliseconds);
}

int nanosleep(const timespec* duration, timespec* left) {
  return FIND(nanosleep)(duration, left);
}

int usleep(useconds_t microseconds) {
  return FIND(usleep)(microseconds);
}

int pause() {
  return FIND(pause)();
}

}  // extern "C"
