// SPDX-License-Identifier: Apache-2.0
#include "overlay/geo_rect.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ventrik {
namespace {

std::int32_t Truncate(double units) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (std::isnan(units)) return 0;
  return static_cast<std::int32_t>(std::clamp<double>(units, Limits::min(), Limits::max()));
}

}  // namespace

std::int32_t LongitudeUnits(double degrees) {
  return Truncate(degrees * kUnitsPerLongitude);
}

std::int32_t LatitudeUnits(double degrees) {
  return Truncate(degrees * kUnitsPerLatitude);
}

DegreeRect InDegrees(const GeoRect& rect) {
  return {rect.left * kLongitudePerUnit, rect.bottom * kLatitudePerUnit,
          rect.right * kLongitudePerUnit, rect.top * kLatitudePerUnit};
}

int IntersectRect(const GeoRect& a, const GeoRect& b, GeoRect& out) {
  if (a.left >= a.right || b.left >= b.right) return 0;
  if (b.left >= a.right || b.right <= a.left || b.bottom >= a.top || b.top <= a.bottom) return 0;
  out = {std::max(a.left, b.left), std::max(a.bottom, b.bottom), std::min(a.right, b.right),
         std::min(a.top, b.top)};
  return 1;
}

}  // namespace ventrik
