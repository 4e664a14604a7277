// SPDX-License-Identifier: Apache-2.0
#include "bench/model/map_picture.h"

#include <cmath>
#include <cstdlib>

namespace ventrik::bench {
namespace {

constexpr int kLargestDot = 5;  // pixels, radius
constexpr int kItemReach = 4;   // pixels from the middle
constexpr int kRingInside = 6;
constexpr int kRingOutside = 8;
constexpr int kArrowReach = 7;

Picture Sheet() {
  Picture sheet{kMapWidth, kMapHeight, {}};
  for (int pixel = 0; pixel < kMapWidth * kMapHeight; ++pixel) {
    sheet.pixels.insert(sheet.pixels.end(),
                        {kLandColour.red, kLandColour.green, kLandColour.blue, 255});
  }
  return sheet;
}

void Paint(Picture& sheet, int x, int y, const MapColour& colour) {
  if (x < 0 || x >= sheet.width || y < 0 || y >= sheet.height) return;
  std::uint8_t* pixel = &sheet.pixels[4 * static_cast<std::size_t>(y * sheet.width + x)];
  pixel[0] = colour.red;
  pixel[1] = colour.green;
  pixel[2] = colour.blue;
}

// Paints those pixels around the point, at most `reach` off, for which `isInside(dx, dy)` holds.
template <class Shape>
void PaintShape(Picture& sheet, const MapPoint& point, int reach, const MapColour& colour,
                Shape isInside) {
  if (point.x < -reach || point.x > sheet.width + reach) return;
  if (point.y < -reach || point.y > sheet.height + reach) return;
  const int x = static_cast<int>(std::lround(point.x));
  const int y = static_cast<int>(std::lround(point.y));
  for (int dy = -reach; dy <= reach; ++dy) {
    for (int dx = -reach; dx <= reach; ++dx) {
      if (isInside(dx, dy)) Paint(sheet, x + dx, y + dy, colour);
    }
  }
}

void PaintTown(Picture& sheet, const MapPoint& point, std::uint64_t population) {
  int radius = 1;
  for (std::uint64_t people = 30'000; people < population && radius < kLargestDot; people *= 4) {
    ++radius;
  }
  PaintShape(sheet, point, radius, kTownColour,
             [radius](int dx, int dy) { return dx * dx + dy * dy <= radius * radius; });
}

void PaintTowns(Picture& sheet, const World& world, const MapContents& contents) {
  for (const Country& country : world.countries) {
    for (const State& state : country.states) {
      for (const Town& town : state.towns) {
        PaintTown(sheet, PointOf(contents.centre, contents.zoom, town.position), town.population);
      }
    }
  }
}

void PaintItem(Picture& sheet, const MapPoint& point) {
  PaintShape(sheet, point, kItemReach, kItemColour, [](int, int) { return true; });
}

void PaintRing(Picture& sheet, const MapPoint& point) {
  PaintShape(sheet, point, kRingOutside, kHighlightColour, [](int dx, int dy) {
    const int square = dx * dx + dy * dy;
    return square >= kRingInside * kRingInside && square <= kRingOutside * kRingOutside;
  });
}

void PaintVehicle(Picture& sheet, const MapPoint& point) {
  PaintShape(sheet, point, kArrowReach, kVehicleColour,
             [](int dx, int dy) { return 2 * std::abs(dx) <= dy + kArrowReach; });
}

// A road that forks, on a green board.
void PaintJunction(Picture& sheet) {
  const int left = sheet.width * 2 / 3;
  const int middle = (left + sheet.width) / 2;
  const int fork = sheet.height / 2;
  for (int y = 0; y < sheet.height; ++y) {
    const int spread = y < fork ? (fork - y) / 2 : 0;
    for (int x = left; x < sheet.width; ++x) {
      const int off = std::abs(x - middle);
      const bool isRoad = std::abs(off - spread) < 5;
      Paint(sheet, x, y, isRoad ? MapColour{255, 255, 255} : kJunctionColour);
    }
  }
}

}  // namespace

Picture DrawMap(const World& world, const MapContents& contents) {
  const auto pointOf = [&contents](const Position& place) {
    return PointOf(contents.centre, contents.zoom, place);
  };
  Picture sheet = Sheet();
  PaintTowns(sheet, world, contents);
  for (const Position& item : contents.items) PaintItem(sheet, pointOf(item));
  for (const Position& place : contents.highlighted) PaintRing(sheet, pointOf(place));
  PaintVehicle(sheet, pointOf(contents.vehicle));
  if (contents.junctionView) PaintJunction(sheet);
  return sheet;
}

}  // namespace ventrik::bench
