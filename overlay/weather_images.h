// SPDX-License-Identifier: Apache-2.0
// Weather images on disk: BMP files, each with a text file that says where on the map it belongs.
//
// All diagnostics go to standard error. One thread: the one that renders.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "overlay/bmp_output_device.h"
#include "overlay/geo_rect.h"

namespace ventrik {

// The images of one directory. Never destroyed.
class CWeatherImageController {
 public:
  explicit CWeatherImageController(CBMPOutputDevice* device) : device_(device) {}
  CWeatherImageController(const CWeatherImageController&) = delete;
  CWeatherImageController& operator=(const CWeatherImageController&) = delete;

  // Adds the BMP file at `path`, relative to the working directory. One that is there already stays
  // as it is.
  void Add(const std::string& path, const GeoRect& place);

  // Draws on the device each image that has a part of `area`, the whole of it, in byte order of the
  // paths. The files are read anew each time; one that can't be read draws nothing.
  void render(const GeoRect& area);

 private:
  void Draw(const std::string& path, const GeoRect& place, const GeoRect& area,
            const GeoRect& shared);

  std::map<std::string, GeoRect> images_;
  std::array<std::uint8_t, 65536> readBuffer_ = {};
  CBMPOutputDevice* const device_;
};

// Walks the directory and those below it, in the file system's order, and appends one set for each
// that holds a ".logfile". What can't be opened is passed over, and a link that leads back into the
// walk isn't followed. Returns the result of the last directory below, 0 if there is none.
int findResourceSets(const std::string& directory, CBMPOutputDevice* device,
                     std::vector<CWeatherImageController*>& sets);

// The place that a text file gives, all 0 if it can't be opened or is no plain file. Edges that it
// doesn't name are 0.
GeoRect ReadGeoRect(const std::string& path);

}  // namespace ventrik
