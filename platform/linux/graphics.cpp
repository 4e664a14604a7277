// SPDX-License-Identifier: Apache-2.0
#include "platform/graphics.h"

#include <cstdlib>

namespace platform {

void PrepareGraphics() {
  const bool hasDisplay =
      std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
  // What the user says stays: an EGL_PLATFORM that is set isn't overwritten.
  if (!hasDisplay) setenv("EGL_PLATFORM", "surfaceless", 0);
}

}  // namespace platform
