// SPDX-License-Identifier: Apache-2.0
#include "overlay/weather_overlay_gles.h"

#include "overlay/gl_error.h"

namespace ventrik {
namespace {

constexpr float kOpacity = 0.8F;

void Check(int line = __builtin_LINE()) {
  CheckGlError("weather_overlay_gles", line);
}

// The coordinates that OpenGL takes have 16 bits.
GLshort Coordinate(std::uint32_t number) {
  return static_cast<GLshort>(static_cast<std::uint16_t>(number));
}

}  // namespace

float ScaleFor(std::int64_t distance, std::int64_t steps) {
  return steps == 0 ? 0.0F : static_cast<float>(distance) / static_cast<float>(steps);
}

void CBMPOutputDeviceOpenGLCommon::SetAreas(const GeoRect& requested, const GeoRect& image,
                                            const GeoRect& shared) {
  requestedArea_ = requested;
  imageArea_ = image;
  sharedArea_ = shared;
}

void CBMPOutputDeviceOpenGLCommon::SetPosition(std::int32_t x, std::int32_t y) {
  x_ = x;
  y_ = y;
}

void CBMPOutputDeviceOpenGL_1::BeginImage(std::int32_t imageWidth, std::int32_t imageHeight) {
  imageWidth_ = imageWidth;
  imageHeight_ = imageHeight;
  glPushMatrix();
  Check();
  scaleX_ = ScaleFor(std::int64_t{imageArea_.right} - imageArea_.left, imageWidth_);
  scaleY_ = ScaleFor(std::int64_t{imageArea_.top} - imageArea_.bottom, imageHeight_);
  glTranslatef(static_cast<float>(imageArea_.left), static_cast<float>(imageArea_.bottom), 0);
  Check();
  glScalef(scaleX_, scaleY_, 1);
  Check();
}

void CBMPOutputDeviceOpenGL_1::DrawRun(std::int32_t x, std::int32_t count,
                                       const std::uint8_t* colour) {
  const std::uint8_t blue = colour[0];
  const std::uint8_t green = colour[1];
  const std::uint8_t red = colour[2];
  if (red == 0 && green == 0 && blue == 0) return;
  x_ = x;
  glColor4f(static_cast<float>(red) / 255, static_cast<float>(green) / 255,
            static_cast<float>(blue) / 255, kOpacity);
  Check();
  const GLshort left = Coordinate(static_cast<std::uint32_t>(x_));
  const GLshort right =
      Coordinate(static_cast<std::uint32_t>(x_) + static_cast<std::uint32_t>(count));
  const GLshort bottom = Coordinate(static_cast<std::uint32_t>(y_));
  const GLshort top = Coordinate(static_cast<std::uint32_t>(y_) + 1);
  run_ = {left, top, right, top, left, bottom, right, bottom};
  glEnableClientState(GL_VERTEX_ARRAY);
  Check();
  glVertexPointer(2, GL_SHORT, 0, run_.data());
  Check();
  glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
  Check();
  glDisableClientState(GL_VERTEX_ARRAY);
  Check();
}

void CBMPOutputDeviceOpenGL_1::EndImage() {
  glPopMatrix();
  Check();
}

}  // namespace ventrik
