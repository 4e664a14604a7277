// SPDX-License-Identifier: Apache-2.0
// Drawing the runs of an image with OpenGL ES, in map coordinates.
#pragma once

#include <GLES/gl.h>

#include <array>
#include <cstdint>

#include "overlay/bmp_output_device.h"

namespace ventrik {

// What all versions of OpenGL ES have in common. Used by one thread at a time, with the context
// current on it.
class CBMPOutputDeviceOpenGLCommon : public CBMPOutputDevice {
 public:
  void SetAreas(const GeoRect& requested, const GeoRect& image, const GeoRect& shared) override;
  void SetPosition(std::int32_t x, std::int32_t y) override;

  std::int32_t width = 0;  // of the picture that is drawn on, in pixels
  std::int32_t height = 0;

 protected:
  std::int32_t x_ = 0;  // the current position in the image
  std::int32_t y_ = 0;
  std::int32_t imageWidth_ = 0;
  std::int32_t imageHeight_ = 0;
  std::array<GLshort, 8> run_ = {};  // four vertices
  GeoRect requestedArea_ = {};       // kept, as is sharedArea_, though nothing needs to clip:
  GeoRect imageArea_ = {};           // the viewport does
  GeoRect sharedArea_ = {};
  float scaleX_ = 0;  // map units for each pixel of the image
  float scaleY_ = 0;
};

// For OpenGL ES 1. Expects the model-view matrix to map units of the map to the picture. Between
// BeginImage and EndImage it maps pixels of the image; an image that lacks an end leaves it so.
class CBMPOutputDeviceOpenGL_1 : public CBMPOutputDeviceOpenGLCommon {
 public:
  // An image without pixels in one direction is drawn as nothing.
  void BeginImage(std::int32_t imageWidth, std::int32_t imageHeight) override;

  // Black isn't drawn: it stands for transparent. All else is four fifths opaque.
  void DrawRun(std::int32_t x, std::int32_t count, const std::uint8_t* colour) override;

  void EndImage() override;
};

// distance / steps; 0 for no steps, which would be out of all proportion. What is scaled by that
// has no extent and shows nothing.
float ScaleFor(std::int64_t distance, std::int64_t steps);

}  // namespace ventrik
