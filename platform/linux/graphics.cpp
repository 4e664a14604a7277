// SPDX-License-Identifier: Apache-2.0
#include "platform/graphics.h"

#include <malloc.h>

#include <cstdlib>

namespace platform {
namespace {

// What a heap takes from the system at once, and keeps of what is free at its end. A driver that
// draws in software gives memory back and takes it again as it draws. By default a picture of 99000
// runs made some 1800 system calls for that, by chance of the heap's state, and with this some 25,
// which takes a third off the system's share of the time. A quarter of it helped little: a thread's
// heap, which is 64 MiB, grows by single pages once what it took at first is used up. All of this
// is address space: no memory is used before something is written there.
constexpr int kKeptMemory = 64 << 20;  // bytes

}  // namespace

void PrepareGraphics() {
  mallopt(M_TOP_PAD, kKeptMemory);
  const bool hasDisplay =
      std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
  // What the user says stays: an EGL_PLATFORM that is set isn't overwritten.
  if (!hasDisplay) setenv("EGL_PLATFORM", "surfaceless", 0);
}

}  // namespace platform
