// SPDX-License-Identifier: Apache-2.0
// Any file must be read as the place of a weather image, and compared with any other place.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "overlay/weather_images.h"

namespace {

void Demand(bool isTrue) {
  if (!isTrue) std::abort();
}

bool IsInside(const ventrik::GeoRect& inner, const ventrik::GeoRect& outer) {
  return inner.left >= outer.left && inner.right <= outer.right && inner.bottom >= outer.bottom &&
         inner.top <= outer.top;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const int file = memfd_create("logfile", MFD_CLOEXEC);
  Demand(file >= 0 && write(file, data, size) == static_cast<ssize_t>(size));
  const ventrik::GeoRect place = ventrik::ReadGeoRect("/proc/self/fd/" + std::to_string(file));
  close(file);
  // Around Greenwich, so that signs matter.
  constexpr ventrik::GeoRect kArea = {-720000, 5000000, 720000, 6000000};
  ventrik::GeoRect shared = {};
  if (ventrik::IntersectRect(kArea, place, shared) != 0) {
    Demand(IsInside(shared, kArea) && IsInside(shared, place));
  }
  const ventrik::DegreeRect degrees = ventrik::InDegrees(place);
  // Back in units it is at most one beside what it was.
  Demand(std::abs(std::int64_t{ventrik::LongitudeUnits(degrees.left)} - place.left) <= 1);
  Demand(std::abs(std::int64_t{ventrik::LatitudeUnits(degrees.top)} - place.top) <= 1);
  return 0;
}
