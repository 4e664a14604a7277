// SPDX-License-Identifier: Apache-2.0
// The surface that a tester shares: a memory object with a picture in it.
#pragma once

#include <optional>
#include <string>

#include "bench/picture/png_file.h"

namespace ventrik::bench {

// What every surface has: 640 by 480 pixels of red, green, blue and alpha, the northern row first.
inline constexpr int kSurfaceWidth = 640;  // pixels
inline constexpr int kSurfaceHeight = 480;
inline constexpr std::size_t kSurfaceBytes = std::size_t{4} * kSurfaceWidth * kSurfaceHeight;

// Reads the memory object "/SID" of another process. None, with the reason in `error`, if the SID
// can't be a name (IsPlainFileName), there is no such object or it may not be read, or it hasn't
// exactly the size of a surface, be it that it shrinks meanwhile. Neither waits nor faults whatever
// the other process does to the object.
std::optional<Picture> ReadSurface(const std::string& sid, std::string& error);

// Takes the memory object "/SID" out of the world: its owner, who by design never does it, keeps
// what it has mapped. Leaves alone what ReadSurface wouldn't read for its name, kind or size, and
// what somebody holds a lock on (flock), as the maker of the picture for `save_shared` does as long
// as it lives. Doesn't wait.
void RemoveSurface(const std::string& sid);

}  // namespace ventrik::bench
