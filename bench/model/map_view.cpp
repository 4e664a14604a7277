// SPDX-License-Identifier: Apache-2.0
#include "bench/model/map_view.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace ventrik::bench {
namespace {

constexpr double kMetresPerDegree = 111'195;  // of latitude
constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kPixelsPerSpeed = 10;  // a second
constexpr double kMargin = 1.2;         // of a frame around what it frames
constexpr int kSinglePlaceZoom = 5000;  // metres, for a town to be seen with what is around it

double WrapLongitude(double longitude) {
  return std::remainder(longitude, 360);
}

// A longitude's degrees in metres at the latitude of a centre, which is never a pole.
double MetresPerLongitude(const Position& centre) {
  return kMetresPerDegree * std::cos(centre.latitude * kRadiansPerDegree);
}

double MetresPerPixel(int zoom) {
  return static_cast<double>(zoom) / kMapWidth;
}

Position Shifted(const Position& from, double eastMetres, double northMetres) {
  return {WrapLongitude(from.longitude + eastMetres / MetresPerLongitude(from)),
          std::clamp(from.latitude + northMetres / kMetresPerDegree, -90.0, 90.0)};
}

}  // namespace

Position AsCentre(const Position& place) {
  return {place.longitude, std::clamp(place.latitude, -kMapEdge, kMapEdge)};
}

Position Scrolled(const MapView& view, const Position& centre, double seconds) {
  const double metres = view.speed * kPixelsPerSpeed * seconds * MetresPerPixel(view.zoom);
  const double angle = view.direction * kRadiansPerDegree;
  return AsCentre(Shifted(centre, metres * std::sin(angle), metres * std::cos(angle)));
}

Position CentreAt(const MapView& view, const Position& vehicle, TimePoint now) {
  const Position centre = AsCentre(view.centre.value_or(vehicle));
  if (!view.scrolling) return centre;
  const std::chrono::duration<double> time = now - *view.scrolling;
  return Scrolled(view, centre, std::max(0.0, time.count()));
}

Position PositionAt(const Position& centre, int zoom, const MapPoint& point) {
  const double scale = MetresPerPixel(zoom);
  return Shifted(centre, (point.x - kMapWidth / 2.0) * scale, (kMapHeight / 2.0 - point.y) * scale);
}

MapPoint PointOf(const Position& centre, int zoom, const Position& place) {
  const double scale = MetresPerPixel(zoom);
  const double east =
      WrapLongitude(place.longitude - centre.longitude) * MetresPerLongitude(centre);
  const double north = (place.latitude - centre.latitude) * kMetresPerDegree;
  return {kMapWidth / 2.0 + east / scale, kMapHeight / 2.0 - north / scale};
}

MapArea AreaOf(const Position& centre, int zoom) {
  return {PositionAt(centre, zoom, {0, kMapHeight}), PositionAt(centre, zoom, {kMapWidth, 0})};
}

Framing FrameOf(const std::vector<Position>& places) {
  const auto [west, east] = std::minmax_element(places.begin(), places.end(),
                                                [](const Position& first, const Position& second) {
                                                  return first.longitude < second.longitude;
                                                });
  const auto [south, north] = std::minmax_element(
      places.begin(), places.end(), [](const Position& first, const Position& second) {
        return first.latitude < second.latitude;
      });
  const Position centre =
      AsCentre({(west->longitude + east->longitude) / 2, (south->latitude + north->latitude) / 2});
  const double width = (east->longitude - west->longitude) * MetresPerLongitude(centre);
  const double height = (north->latitude - south->latitude) * kMetresPerDegree;
  if (width <= 0 && height <= 0) return {centre, kSinglePlaceZoom};
  const double zoom = kMargin * std::max(width, height * kMapWidth / kMapHeight);
  return {centre, static_cast<int>(std::clamp<double>(std::ceil(zoom), kClosestZoom, kWidestZoom))};
}

}  // namespace ventrik::bench
