// SPDX-License-Identifier: Apache-2.0
// The memory that a surface lies in: an object that another process maps by its name.
#pragma once

#include <sys/types.h>

#include <array>
#include <cstdint>

namespace ventrik {

// The descriptor and the mapping are open from InitBuffer to CloseBuffer.
struct OverlayBuffer {
  std::array<char, 16> sid = {};  // "gwx_0"; the object's name is "/gwx_0"
  std::int32_t width = 0;         // pixels
  std::int32_t height = 0;
  std::int32_t strideAlignment = 0;  // bytes: a row is as long as the next multiple of this
  std::int32_t bytesPerPixel = 0;
  std::uint32_t glFormat = 0;  // as OpenGL names it
  std::int32_t fd = -1;
  std::uint32_t size = 0;  // bytes mapped
  std::uint8_t* pixels = nullptr;
  off64_t physicalAddress = 0;  // kept for who looks at the record in a debugger
};

// Makes the object of the buffer's name in its size and maps it; one that is there already is taken
// over. Everybody may open it, whatever this process takes from its files: the server is another
// user. Returns 0, or 1 if the system refuses, with the reason on standard error. The rendering
// thread.
int InitBuffer(OverlayBuffer& buffer);

// Unmaps and closes. The object remains under its name: the server may still look at it.
void CloseBuffer(OverlayBuffer& buffer);

}  // namespace ventrik
