// SPDX-License-Identifier: Apache-2.0
// A picture of a map, as a screen shot shows it.
#pragma once

#include <vector>

#include "bench/model/map_view.h"
#include "bench/picture/png_file.h"
#include "bench/world.h"

namespace ventrik::bench {

struct MapColour {
  std::uint8_t red;
  std::uint8_t green;
  std::uint8_t blue;
};

inline constexpr MapColour kLandColour{236, 232, 218};
inline constexpr MapColour kTownColour{90, 84, 74};
inline constexpr MapColour kItemColour{240, 150, 30};
inline constexpr MapColour kHighlightColour{214, 40, 48};
inline constexpr MapColour kVehicleColour{30, 90, 220};
inline constexpr MapColour kJunctionColour{40, 110, 60};

// What is on a map; everything refers to the time of the picture.
struct MapContents {
  Position centre;
  int zoom;  // as in MapView
  Position vehicle;
  std::vector<Position> items;
  std::vector<Position> highlighted;
  bool junctionView;
};

// Towns are dots, larger for more people; items are squares, highlighted places rings, the vehicle
// an arrow head; a junction view covers the right third. Pure.
Picture DrawMap(const World& world, const MapContents& contents);

}  // namespace ventrik::bench
