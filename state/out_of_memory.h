// SPDX-License-Identifier: Apache-2.0
// The doors at which work is dropped that the system has no memory for: a line, a message, a text.
//
// The tester's own code throws nothing, but the library's containers do when there is no memory.
// Left alone, that would end the process, and with it a run of hours, for one list too long. Each
// door lets go of what its work held, by the guards on its stack, says so, and takes the next one.
// Only these two exceptions are caught, no memory and more than there can ever be: a cancelled
// thread unwinds through a door as if it weren't there.
#pragma once

#include <new>
#include <stdexcept>
#include <utility>

namespace ventrik {

// Prints "Error: Out of memory!\n", if there is memory for that. Any thread.
void SayOutOfMemory();

// Runs `work` and returns true. If there is not enough memory for it, says so and returns
// false; `work` may have been done in part. Blocks as long as `work` does.
// Any thread.
template <typename Work>
bool RunIfMemoryLasts(Work&& work) {
  try {
    std::forward<Work>(work)();
    return true;
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  }
  SayOutOfMemory();
  return false;
}

}  // namespace ventrik
