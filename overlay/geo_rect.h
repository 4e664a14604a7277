// SPDX-License-Identifier: Apache-2.0
// Rectangles of the map in whole units of a degree's fraction.
#pragma once

#include <cstdint>

namespace ventrik {

// Units for each degree. A unit of longitude is 1/72000 of a degree, one of latitude 0.000009
// degrees, which is about a metre.
inline constexpr double kUnitsPerLongitude = 72000.0;
inline constexpr double kUnitsPerLatitude = 111111.11111111111;
inline constexpr double kLongitudePerUnit = 1.3888888888888888e-05;
inline constexpr double kLatitudePerUnit = 9e-06;

struct GeoRect {
  std::int32_t left;    // units of longitude, east of Greenwich
  std::int32_t bottom;  // units of latitude, north of the equator
  std::int32_t right;
  std::int32_t top;
};

// Degrees in units, cut off towards zero. What is beyond 32 bits becomes the nearest number that
// fits, and what is no number 0. Pure, as all here is.
std::int32_t LongitudeUnits(double degrees);
std::int32_t LatitudeUnits(double degrees);

// The rectangle's edges in degrees, for texts.
struct DegreeRect {
  double left;
  double bottom;
  double right;
  double top;
};
DegreeRect InDegrees(const GeoRect& rect);

// Returns 1 and the part that both have in `out`, or 0 if there is none, and then leaves `out`
// alone. Rectangles that only touch have none, and neither has one without width, or whose left is
// right of its right.
int IntersectRect(const GeoRect& a, const GeoRect& b, GeoRect& out);

}  // namespace ventrik
