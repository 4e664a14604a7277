// SPDX-License-Identifier: Apache-2.0
// Finding the place that a text means, as after a spoken destination:
//
// | Request               | Answer                |
// |-----------------------|-----------------------|
// | REQU_RESOLVE_LOCATION | RESP_RESOLVE_LOCATION |
#pragma once

#include <string>
#include <string_view>

#include "bench/model/subject.h"
#include "bench/world.h"

namespace ventrik::bench {

struct Resolution {
  bool valid = false;  // something in the input names a place
  // The place from the country down and its position. Of several places, what they share, without
  // a position: as a search's input it lists them.
  std::string outputEis;
  bool ambiguous = false;          // several places are meant
  std::string ambiguityType;       // the level that would decide, with the number of its choices
  std::string unresolvedElements;  // the pairs of the input that led to nothing, in their order
};

// Reads the input as a search does (bench/search.h), but from the country down, and goes on without
// what names nothing. A GEO without a name means the nearest town.
//   "<GEOC>Germany<*><CTY>Passau<*><STR>Inn<*>"
//     => "<GEOC>Germany<*><GEOS>Bayern<*><CTY>Passau<*><GEO>13.43122 48.56650<*>",
//        unresolved "<STR>Inn<*>"
//   "<CTY>Cambridge<*>"   => "<CTY>Cambridge<*>", ambiguous, "<GEOC>3<*>"
//   "<GEOC>Germny<*><CTY><*>", "abc" => not valid; both pairs of the first are unresolved
// Pure function; any text gives a resolution.
Resolution ResolveLocation(const World& world, std::string_view inputEis);

HandlerRows LocationsHandlers();

}  // namespace ventrik::bench
