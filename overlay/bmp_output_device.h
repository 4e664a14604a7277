// SPDX-License-Identifier: Apache-2.0
// What a decoded image is drawn on, run by run.
#pragma once

#include <cstdint>

#include "overlay/geo_rect.h"

namespace ventrik {

// One thread. An image is drawn by SetAreas, BeginImage, then SetPosition and DrawRun as often as
// the file has it, and EndImage for each end code of the file: none, if it lacks one.
class CBMPOutputDevice {
 public:
  virtual ~CBMPOutputDevice() = default;

  // The area that is drawn, the one of the next image, and the part that both have.
  virtual void SetAreas(const GeoRect& requested, const GeoRect& image, const GeoRect& shared) = 0;

  // The size in pixels, as the file says it: anything.
  virtual void BeginImage(std::int32_t width, std::int32_t height) = 0;

  // `count` pixels, 1 to 255, of one colour from column `x` on, eastwards on the current line.
  // `colour` are the bytes blue, green, red and one without a meaning.
  virtual void DrawRun(std::int32_t x, std::int32_t count, const std::uint8_t* colour) = 0;

  // The current column and line. Line 0 is the southern edge.
  virtual void SetPosition(std::int32_t x, std::int32_t y) = 0;

  virtual void EndImage() = 0;
};

}  // namespace ventrik
