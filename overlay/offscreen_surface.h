// SPDX-License-Identifier: Apache-2.0
// A place to draw on that no screen shows: EGL's pixel buffer and the context for it.
#pragma once

#include <EGL/egl.h>

#include <cstdint>

namespace ventrik {

struct OffscreenSurface {
  EGLDisplay display = EGL_NO_DISPLAY;
  EGLSurface surface = EGL_NO_SURFACE;
  EGLConfig config = nullptr;
  EGLContext context = EGL_NO_CONTEXT;
  std::int32_t width = 0;  // pixels
  std::int32_t height = 0;
};

// Sets EGL up, with a surface of 640 by 480 pixels, and tries whether its context can be made
// current on the calling thread; it isn't afterwards. A failure is reported on standard error and
// aborts. Never undone.
OffscreenSurface OpenOffscreenSurface();

// Makes the context current on the calling thread for a scope. It is current nowhere in between, so
// that the next thread can have it, also when this one has been cancelled meanwhile, and EGL keeps
// nothing of the thread; that costs less than a microsecond. A failure is reported and aborts.
class CurrentSurface {
 public:
  explicit CurrentSurface(const OffscreenSurface& surface);
  ~CurrentSurface();
  CurrentSurface(const CurrentSurface&) = delete;
  CurrentSurface& operator=(const CurrentSurface&) = delete;

 private:
  const OffscreenSurface& surface_;
};

}  // namespace ventrik
