// SPDX-License-Identifier: Apache-2.0
// The renderer of weather surfaces: draws off screen with OpenGL ES 1 and copies each picture into
// shared memory.
//
// Its diagnostics go to standard error and standard output. Nothing that fails in EGL or OpenGL is
// survived: a message, and the process aborts.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "overlay/geo_rect.h"
#include "overlay/offscreen_surface.h"
#include "overlay/overlay_buffer.h"
#include "overlay/weather_images.h"
#include "overlay/weather_overlay_base.h"
#include "overlay/weather_overlay_gles.h"

namespace ventrik {

class WeatherOverlay_Screen : public WeatherOverlayBase {
 public:
  // Sets EGL up and reads the directory "resources" for image sets. Only one may exist at a time,
  // as all draw on the one output device.
  WeatherOverlay_Screen();

  // Forgets its surfaces and image sets without giving them back, and leaves EGL as it is: the
  // process ends.
  ~WeatherOverlay_Screen() override;

  WeatherOverlay_Screen(const WeatherOverlay_Screen&) = delete;
  WeatherOverlay_Screen& operator=(const WeatherOverlay_Screen&) = delete;

  // Each call makes a surface of its own, "gwx_0", "gwx_1" and so on over the life of the process,
  // with rows packed from north to south. Without an image set, or with no image in the area, it
  // shows the frame alone. Aborts if there is no shared memory for it.
  const char* GetSID(float lowerLeftLongitude, float lowerLeftLatitude, float upperRightLongitude,
                     float upperRightLatitude) override;

  void DropSid(const char* sid) override;

 private:
  std::unique_ptr<OverlayBuffer> MakeBuffer() const;
  void Render(const GeoRect& area, const OverlayBuffer& buffer);

  std::vector<std::unique_ptr<OverlayBuffer>> buffers_;  // in the order of their making
  std::vector<CWeatherImageController*> imageControllers_;
  OffscreenSurface screen_;
};

}  // namespace ventrik
