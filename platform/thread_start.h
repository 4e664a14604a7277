// SPDX-License-Identifier: Apache-2.0
// Starting and ending the program's threads.
//
// Nothing joins a thread while the program runs. So that the process can end without pulling memory
// away from a thread that is still unwinding, each thread started here is counted from before its
// creation until its body has returned or was unwound.
#pragma once

#include <pthread.h>

namespace platform {

// Starts `body(argument)` with default attributes and stores its handle in `thread`. SIGINT,
// SIGTERM and SIGALRM are left to the threads that had them open before, which is to say, to the
// main thread. Returns false, with `thread` 0, if the system has no more threads. Any thread.
bool StartThread(pthread_t& thread, void* (*body)(void*), void* argument);

// Cancels the thread in `thread`, if there is one, and lets its handle go: it is 0 afterwards. The
// thread ends at its next cancellation point, which this does not wait for. Any thread.
void CancelAndForget(pthread_t& thread);

// Waits until every thread started here has ended, at most `milliseconds`. Returns whether they
// have. Main thread.
bool WaitForThreads(int milliseconds);

// Loads what the first pthread_cancel of a process loads, so that a signal handler may call it.
void PrepareCancellation();

}  // namespace platform
