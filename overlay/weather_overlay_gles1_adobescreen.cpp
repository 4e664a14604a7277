// SPDX-License-Identifier: Apache-2.0
#include "overlay/weather_overlay_gles1_adobescreen.h"

#include <GLES/gl.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "overlay/gl_error.h"
#include "state/assertion.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr char kSourceName[] = "weather_overlay_gles1_adobescreen";
constexpr char kResources[] = "resources";
constexpr std::int32_t kStrideAlignment = 8;  // bytes
constexpr std::int32_t kBytesPerPixel = 4;

// Red, green, blue and alpha of the frame's corners, in the order of its vertices.
constexpr float FrameColours[] = {
    1.0F, 0.0F, 0.0F, 0.75F,  //
    0.1F, 0.1F, 0.1F, 0.75F,  //
    0.0F, 1.0F, 0.0F, 0.25F,  //
    0.1F, 0.1F, 0.1F, 0.25F,  //
};
constexpr GLushort FrameQuadIndices[] = {0, 1, 2, 3};
constexpr GLushort FrameOutlineIndices[] = {0, 1, 3, 2, 0, 1};

// All image sets draw on this one.
CBMPOutputDeviceOpenGL_1* outputDevice = nullptr;

// The next surface's number. Never reset, so that no identifier comes twice.
std::uint32_t nextSid = 0;

void Check(int line = __builtin_LINE()) {
  CheckGlError(kSourceName, line);
}

CBMPOutputDeviceOpenGL_1* MakeOutputDevice() {
  if (outputDevice != nullptr) FailAssertion(kSourceName, __LINE__, "WeatherOverlay_Screen");
  return new CBMPOutputDeviceOpenGL_1;
}

GLint MatrixDepth() {
  GLint depth = 0;
  glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &depth);
  Check();
  return depth;
}

// Pixel coordinates, y downwards: with the rows that are read from the lower edge up, the first of
// them is the northern edge.
void BeginFrame(std::int32_t width, std::int32_t height) {
  glPushMatrix();
  Check();
  glMatrixMode(GL_MODELVIEW);
  Check();
  glLoadIdentity();
  Check();
  glViewport(0, 0, width, height);
  Check();
  glOrthof(0, static_cast<float>(width), static_cast<float>(height), 0, -1, 1);
  Check();
  glClearColor(0, 0, 0, 0);
  Check();
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  Check();
  glEnable(GL_BLEND);
  Check();
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  Check();
}

// An image whose file has no end has left a matrix behind, and one with an end too many has taken
// ours. The next frame begins as this one did.
void EndFrame(GLint depthBefore) {
  glDisable(GL_BLEND);
  Check();
  while (MatrixDepth() > depthBefore) {
    glPopMatrix();
    Check();
  }
}

void DrawFrame(float width, float height) {
  const float vertices[] = {
      0.01F * width, 0.01F * height,  //
      0.01F * width, 0.99F * height,  //
      0.99F * width, 0.01F * height,  //
      0.99F * width, 0.99F * height,  //
  };
  glEnableClientState(GL_VERTEX_ARRAY);
  Check();
  glEnableClientState(GL_COLOR_ARRAY);
  Check();
  glVertexPointer(2, GL_FLOAT, 0, vertices);
  Check();
  glColorPointer(4, GL_FLOAT, 0, FrameColours);
  Check();
  glDrawElements(GL_TRIANGLE_STRIP, 4, GL_UNSIGNED_SHORT, FrameQuadIndices);
  Check();
  glDisableClientState(GL_COLOR_ARRAY);
  Check();
  glColor4f(1, 1, 0.1F, 1);
  Check();
  glLineWidth(3);
  Check();
  glDrawElements(GL_LINE_STRIP, 6, GL_UNSIGNED_SHORT, FrameOutlineIndices);
  Check();
  glDisableClientState(GL_VERTEX_ARRAY);
  Check();
}

// From pixels to units of the map. An area without extent has no scale; what lies in it then has no
// extent either.
void ShowArea(const GeoRect& area, std::int32_t width, std::int32_t height) {
  glScalef(ScaleFor(width, std::int64_t{area.right} - area.left),
           ScaleFor(height, std::int64_t{area.top} - area.bottom), 1);
  Check();
  glTranslatef(-static_cast<float>(area.left), -static_cast<float>(area.bottom), 0);
  Check();
}

}  // namespace

WeatherOverlay_Screen::WeatherOverlay_Screen() {
  outputDevice = MakeOutputDevice();
  screen_ = OpenOffscreenSurface();
  findResourceSets(kResources, outputDevice, imageControllers_);
  logger->print(L"Found %d image controllers\n", static_cast<int>(imageControllers_.size()));
  outputDevice->width = screen_.width;
  outputDevice->height = screen_.height;
}

WeatherOverlay_Screen::~WeatherOverlay_Screen() {
  delete std::exchange(outputDevice, nullptr);
}

const char* WeatherOverlay_Screen::GetSID(float lowerLeftLongitude, float lowerLeftLatitude,
                                          float upperRightLongitude, float upperRightLatitude) {
  buffers_.push_back(MakeBuffer());
  const OverlayBuffer& buffer = *buffers_.back();
  Render({LongitudeUnits(static_cast<double>(lowerLeftLongitude)),
          LatitudeUnits(static_cast<double>(lowerLeftLatitude)),
          LongitudeUnits(static_cast<double>(upperRightLongitude)),
          LatitudeUnits(static_cast<double>(upperRightLatitude))},
         buffer);
  return buffer.sid.data();
}

void WeatherOverlay_Screen::DropSid(const char* sid) {
  std::fprintf(stderr, "WeatherOverlay_Screen::DropSid(\"%s\")\n", sid);
  const auto isDropped = [sid](const std::unique_ptr<OverlayBuffer>& buffer) {
    if (std::strcmp(buffer->sid.data(), sid) != 0) return false;
    std::fputs("  found buffeer", stderr);
    CloseBuffer(*buffer);
    return true;
  };
  buffers_.erase(std::remove_if(buffers_.begin(), buffers_.end(), isDropped), buffers_.end());
}

std::unique_ptr<OverlayBuffer> WeatherOverlay_Screen::MakeBuffer() const {
  auto buffer = std::make_unique<OverlayBuffer>();
  buffer->strideAlignment = kStrideAlignment;
  buffer->bytesPerPixel = kBytesPerPixel;
  buffer->glFormat = GL_RGBA;
  buffer->width = screen_.width;
  buffer->height = screen_.height;
  std::snprintf(buffer->sid.data(), buffer->sid.size(), "gwx_%d",
                static_cast<std::int32_t>(nextSid++));
  std::fprintf(stderr, "new SID = %s\n", buffer->sid.data());
  if (InitBuffer(*buffer) != 0) {
    buffer.reset();
    std::abort();
  }
  return buffer;
}

void WeatherOverlay_Screen::Render(const GeoRect& area, const OverlayBuffer& buffer) {
  const std::int32_t width = outputDevice->width;
  const std::int32_t height = outputDevice->height;
  const CurrentSurface current(screen_);
  logger->print(L"WeatherOverlay_Screen::GetSID: start drawing\n");
  const GLint depth = MatrixDepth();
  BeginFrame(width, height);
  DrawFrame(static_cast<float>(width), static_cast<float>(height));
  ShowArea(area, width, height);
  // Of several sets only the first is shown.
  if (!imageControllers_.empty()) imageControllers_.front()->render(area);
  EndFrame(depth);
  eglSwapBuffers(screen_.display, screen_.surface);
  glFinish();
  eglWaitGL();
  logger->print(L"Copying buffer.\n");
  glReadPixels(0, 0, buffer.width, buffer.height, buffer.glFormat, GL_UNSIGNED_BYTE, buffer.pixels);
  Check();
}

}  // namespace ventrik
