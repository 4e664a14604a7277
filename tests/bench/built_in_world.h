// SPDX-License-Identifier: Apache-2.0
// The world that the program carries, parsed once for all tests of a test program.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "bench/world.h"

namespace ventrik::bench {

inline const World& BuiltInWorld() {
  static const World world = [] {
    std::string error;
    auto parsed = World::Parse(BuiltInPlaces(), error);
    EXPECT_TRUE(parsed) << error;
    return parsed.value_or(World{});
  }();
  return world;
}

}  // namespace ventrik::bench
