// SPDX-License-Identifier: Apache-2.0
// Update packages. A test has none to hand out, so it is the name that says what one is like.
//
// The name is the last part of the path, "/" at its end not counted; it falls into words wherever
// a character is no ASCII letter or digit, and the case of letters doesn't matter. Each of these
// words sets a flag of the result:
//
// | Word               | Flag                                   |
// |--------------------|----------------------------------------|
// | invalid, broken    | 0x1, no package that can be read       |
// | full               | 0x4, not enough space                  |
// | old, older         | 0x8, older than what is installed      |
// | none, missing      | 0x10, no package there; so is no name  |
// | same               | 0x20, what is installed                |
//
// Without such a word the package is a good one. Its version is the first word that is a number up
// to 999999, with or without a "v" before it, and without one the version behind the installed one;
// it is 0x8 or 0x20 if it is below or at the installed version. Pure functions, any text.
#pragma once

#include <cstdint>
#include <string_view>

namespace ventrik::bench {

inline constexpr std::size_t kLongestUpdatePath = 4096;  // bytes; a longer one is 0x1

enum UpdateResult : std::int32_t {
  kUpdateSuccess = 0,
  kInvalidPackage = 0x1,
  kNotEnoughSpace = 0x4,
  kOlderPackage = 0x8,
  kNoPackage = 0x10,
  kSamePackage = 0x20,
};

struct UpdatePackage {
  std::int32_t result = kUpdateSuccess;  // UpdateResult, flags
  std::int32_t version = 0;              // of a good package
};

// With version 3 installed:
//   "/media/usb/map-v7.pkg" => 0, 7     "/media/usb/" => 0, 4     "maps 3" => 0x20
//   "full-old.pkg" => 0x4 | 0x8         "" => 0x10
UpdatePackage JudgeUpdatePackage(std::string_view path, std::int32_t installed);

// What stands behind the last "/", "/" at the end not counted.
std::string_view LastPart(std::string_view path);

}  // namespace ventrik::bench
