// SPDX-License-Identifier: Apache-2.0
#include "bench/model/map_items.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "bench/eis.h"
#include "bench/search.h"

namespace ventrik::bench {
namespace {

constexpr std::int32_t kNeedsPlaces = kZoomToItems | kHighlightItems | kShowItems | kTemporaryItems;

std::optional<Position> PlaceOf(const World& world, const std::string& text) {
  if (const auto geo = FindEis(ParseEis(text), "GEO")) return ParsePosition(*geo);
  const DetailsResult details = Details(world, text, {});
  if (!details.valid) return std::nullopt;
  return details.position;
}

void ZoomTo(MapView& view, const std::vector<MapItem>& items) {
  std::vector<Position> places;
  std::transform(items.begin(), items.end(), std::back_inserter(places),
                 [](const MapItem& item) { return item.position; });
  const Framing frame = FrameOf(places);
  view.centre = frame.centre;
  view.zoom = frame.zoom;
  view.scrolling.reset();
}

}  // namespace

bool ReadWorldProperties(const World& world, std::int32_t flags,
                         const std::vector<std::string>& texts, std::vector<MapItem>& items) {
  if (flags == 0 || (flags & ~kKnownProperties) != 0) return false;
  if ((flags & kZoomToItems) != 0 && texts.empty()) return false;
  if (texts.size() > kMostMapItems) return false;
  for (const std::string& text : texts) {
    if (text.size() > kLongestMapItem) return false;
    const auto place = PlaceOf(world, text);
    if (place) items.push_back({text, *place});
    if (!place && (flags & kNeedsPlaces) != 0) return false;
  }
  return true;
}

void ApplyWorldProperties(EngineMap& map, std::int32_t flags, const std::vector<MapItem>& items) {
  if ((flags & (kHighlightItems | kShowItems)) != 0) {
    map.items = items;
    map.highlighted = (flags & kHighlightItems) != 0;
  }
  if ((flags & kTemporaryItems) != 0) map.temporaryItems = items;
  if ((flags & kZoomToItems) != 0) ZoomTo(map.view, items);
}

}  // namespace ventrik::bench
