// SPDX-License-Identifier: Apache-2.0
// The real renderer on the real EGL, in a working directory with images of the test's making.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "overlay/weather_overlay_gles1_adobescreen.h"
#include "tests/overlay/overlay_place.h"
#include "tests/overlay/picture_model.h"
#include "tests/overlay/private_objects.h"

namespace ventrik::tests {

// An area in which a unit of the map is a pixel.
inline constexpr GeoRect kPixels = {0, 0, 640, 480};

// An image with the palette below and these codes.
TestImage ImageAt(const GeoRect& place, std::int32_t width, std::int32_t height,
                  const std::string& codes);

// The palette of those images: 0 is black, 1 red, 2 green, 3 blue, 4 white, 5 something in between.
std::vector<Entry> Palette();

class ScreenTest : public OverlayPlace {
 protected:
  ScreenTest();
  ~ScreenTest() override;

  // Writes the images into "resources", named so that they are drawn in this order.
  static void WriteImages(const std::vector<TestImage>& images);

  // The renderer, made at its first use.
  WeatherOverlay_Screen& Screen();

  // The identifier of a new surface of the area.
  std::string Render(const GeoRect& area);
  // The surface itself; it is given back and removed.
  std::vector<std::uint8_t> PictureOf(const GeoRect& area);

  // Writes the images, renders the area and compares with the model. The result says how many
  // pixels were compared.
  PictureModel::Comparison Compare(const GeoRect& area, const std::vector<TestImage>& images);
  // The same, and nothing may be wrong, nor free but the corners of the outline.
  void ExpectPicture(const GeoRect& area, const std::vector<TestImage>& images);

  PrivateObjects objects_;
  std::string errors_;  // what the last Render said on standard error
  std::unique_ptr<WeatherOverlay_Screen> screen_;
};

}  // namespace ventrik::tests
