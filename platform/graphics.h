// SPDX-License-Identifier: Apache-2.0
// The seam to the operating system: what EGL needs to know of it.
#pragma once

namespace platform {

#ifdef __QNX__

inline void PrepareGraphics() {}  // the system's own drivers need nothing

#else

// Lets EGL work on a machine without a display, and keeps memory for the next frame. Before the
// first EGL call, while the process has one thread: it changes the environment.
void PrepareGraphics();

#endif

}  // namespace platform
