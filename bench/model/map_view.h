// SPDX-License-Identifier: Apache-2.0
// What part of the world a map shows: pixels to positions and back.
//
// A map is 480 by 240 pixels, north up. Around its centre a degree of latitude and one of longitude
// have their lengths in metres there, and everything is flat. Pure functions.
#pragma once

#include <optional>
#include <vector>

#include "bench/model/replies.h"
#include "bench/world.h"

namespace ventrik::bench {

inline constexpr int kMapWidth = 480;  // pixels
inline constexpr int kMapHeight = 240;

inline constexpr int kClosestZoom = 100;  // metres from the left to the right edge
inline constexpr int kWidestZoom = 1'000'000;
inline constexpr double kMapEdge = 85;  // degrees of latitude that a centre can have, either way

// Pixels, x to the right and y down from the upper left corner.
struct MapPoint {
  double x = 0;
  double y = 0;
};

struct MapArea {
  Position lowerLeft;
  Position upperRight;
};

struct MapView {
  int zoom = 500;  // metres from the left to the right edge

  // None: the vehicle's place, wherever that goes. While the map scrolls, where it was at
  // `scrolling`.
  std::optional<Position> centre;
  std::optional<TimePoint> scrolling;
  int direction = 0;  // degrees clockwise from up, the way that the centre scrolls
  int speed = 10;     // 1 to 100, in tens of pixels a second
};

// What is in the middle at `now`; `vehicle` is where the vehicle is.
Position CentreAt(const MapView& view, const Position& vehicle, TimePoint now);

// The centre moved as it scrolls in `seconds`, not beyond the edge of the map.
Position Scrolled(const MapView& view, const Position& centre, double seconds);

// A place as a centre: not beyond the edge of the map.
Position AsCentre(const Position& place);

Position PositionAt(const Position& centre, int zoom, const MapPoint& point);
MapPoint PointOf(const Position& centre, int zoom, const Position& place);
MapArea AreaOf(const Position& centre, int zoom);

// The centre and the zoom with which all places are seen, and a single one with its surroundings.
// At least one place.
struct Framing {
  Position centre;
  int zoom;
};
Framing FrameOf(const std::vector<Position>& places);

}  // namespace ventrik::bench
