// SPDX-License-Identifier: Apache-2.0
// World properties: what a tester puts on maps.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bench/model/maps.h"

namespace ventrik::bench {

// The flags of the wire.
enum WorldProperty : std::int32_t {
  kZoomToItems = 0x1,          // the map moves so that all items are seen
  kHighlightItems = 0x2,       // the items replace those on the map and are highlighted
  kShowItems = 0x4,            // the items replace those on the map
  kItemVisibilities = 0x8,     // taken, without effect: there are no kinds of items here
  kTemporaryItems = 0x10,      // the items replace the temporary ones
  kZoomToDifferences = 0x100,  // taken, without effect: routes aren't drawn
  kKnownProperties = 0x11F,
};

// Whether these flags can be set with these items: at least one flag and none unknown, no more and
// no longer items than maps.h allows, for each item a place if the flags need one, and at least one
// item to zoom to. An item's place is its GEO, or what its path names (search.h). If so, the items
// with places are in `items`. Pure.
bool ReadWorldProperties(const World& world, std::int32_t flags,
                         const std::vector<std::string>& texts, std::vector<MapItem>& items);

// Does to the map what the flags say.
void ApplyWorldProperties(EngineMap& map, std::int32_t flags, const std::vector<MapItem>& items);

}  // namespace ventrik::bench
