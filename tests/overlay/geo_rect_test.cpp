// SPDX-License-Identifier: Apache-2.0
#include "overlay/geo_rect.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/overlay/recording_device.h"

namespace ventrik::tests {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

TEST(GeoRect, DegreesBecomeUnits) {
  EXPECT_EQ(LongitudeUnits(1), 72000);
  EXPECT_EQ(LongitudeUnits(-180), -12960000);
  EXPECT_EQ(LatitudeUnits(1), 111111);
  EXPECT_EQ(LatitudeUnits(9), 1000000);
  EXPECT_EQ(LatitudeUnits(90), 10000000);
  EXPECT_EQ(LongitudeUnits(0), 0);
  EXPECT_EQ(LatitudeUnits(-0.0), 0);
}

TEST(GeoRect, UnitsAreCutOffTowardsZero) {
  EXPECT_EQ(LongitudeUnits(1.99 / 72000), 1);
  EXPECT_EQ(LongitudeUnits(-1.99 / 72000), -1);
  EXPECT_EQ(LongitudeUnits(-0.99 / 72000), 0);
  EXPECT_EQ(LatitudeUnits(1.99 * 9e-06), 1);
  EXPECT_EQ(LatitudeUnits(-1.99 * 9e-06), -1);
}

TEST(GeoRect, WhatDoesNotFitBecomesTheNearestThatDoes) {
  for (const double far : {29826.2, 1e9, 1e300, std::numeric_limits<double>::max(), kInfinity}) {
    EXPECT_EQ(LongitudeUnits(far), kMost) << far;
    EXPECT_EQ(LongitudeUnits(-far), kLeast) << far;
    EXPECT_EQ(LatitudeUnits(far), kMost) << far;
    EXPECT_EQ(LatitudeUnits(-far), kLeast) << far;
  }
  EXPECT_EQ(LongitudeUnits(29826.16), 2147483520);
}

TEST(GeoRect, WhatIsNoNumberIsZero) {
  EXPECT_EQ(LongitudeUnits(std::nan("")), 0);
  EXPECT_EQ(LatitudeUnits(-std::nan("")), 0);
}

TEST(GeoRect, UnitsBecomeDegrees) {
  const DegreeRect degrees = InDegrees({72000, 1000000, -36000, kLeast});
  EXPECT_DOUBLE_EQ(degrees.left, 72000 * 1.3888888888888888e-05);
  EXPECT_DOUBLE_EQ(degrees.bottom, 9);
  EXPECT_DOUBLE_EQ(degrees.right, -0.5);
  EXPECT_DOUBLE_EQ(degrees.top, -19327.352832);
}

// "none", or the part that both have.
std::string Shared(const GeoRect& a, const GeoRect& b) {
  GeoRect out = {-1, -2, -3, -4};
  const int result = IntersectRect(a, b, out);
  EXPECT_TRUE(result == 0 || result == 1);
  if (result == 1) return TextOf(out);
  EXPECT_EQ(TextOf(out), "-1,-2,-3,-4") << "left alone";
  return "none";
}

constexpr GeoRect kMiddle = {10, 20, 30, 40};

TEST(IntersectRect, TellsThePartThatBothHave) {
  EXPECT_EQ(Shared(kMiddle, {15, 25, 50, 60}), "15,25,30,40");
  EXPECT_EQ(Shared(kMiddle, {0, 0, 11, 21}), "10,20,11,21");
  EXPECT_EQ(Shared(kMiddle, {0, 30, 50, 31}), "10,30,30,31") << "across";
}

TEST(IntersectRect, OneInsideTheOther) {
  EXPECT_EQ(Shared(kMiddle, {15, 25, 20, 30}), "15,25,20,30");
  EXPECT_EQ(Shared(kMiddle, {0, 0, 90, 90}), "10,20,30,40");
  EXPECT_EQ(Shared(kMiddle, kMiddle), "10,20,30,40");
}

TEST(IntersectRect, ApartOrTouchingIsNone) {
  for (const GeoRect& other : {GeoRect{30, 20, 50, 40},  // touches east
                               GeoRect{0, 20, 10, 40},   // west
                               GeoRect{10, 40, 30, 60},  // north
                               GeoRect{10, 0, 30, 20},   // south
                               GeoRect{30, 40, 50, 60},  // a corner
                               GeoRect{31, 20, 50, 40},  // apart
                               GeoRect{10, 41, 30, 60}}) {
    EXPECT_EQ(Shared(kMiddle, other), "none") << TextOf(other);
    EXPECT_EQ(Shared(other, kMiddle), "none") << TextOf(other);
  }
}

TEST(IntersectRect, OneWithoutWidthNeverOverlaps) {
  constexpr GeoRect kAroundZero = {-10, -10, 10, 10};
  EXPECT_EQ(Shared(kAroundZero, {0, 0, 0, 0}), "none") << "no text file";
  EXPECT_EQ(Shared(kAroundZero, {0, -5, 0, 5}), "none") << "a text file without longitudes";
  EXPECT_EQ(Shared({0, -5, 0, 5}, kAroundZero), "none");
}

TEST(IntersectRect, WithoutHeightOnlyTheEdgesCount) {
  EXPECT_EQ(Shared(kMiddle, {15, 30, 25, 30}), "15,30,25,30");
  EXPECT_EQ(Shared(kMiddle, {15, 20, 25, 20}), "none");
  EXPECT_EQ(Shared(kMiddle, {15, 35, 25, 25}), "15,35,25,25") << "top below bottom";
  EXPECT_EQ(Shared(kMiddle, {15, 35, 25, 20}), "none");
  EXPECT_EQ(Shared(kMiddle, {15, 41, 25, 25}), "none");
}

TEST(IntersectRect, LeftRightOfRightNeverOverlaps) {
  EXPECT_EQ(Shared(kMiddle, {25, 25, 15, 30}), "none");
  EXPECT_EQ(Shared({25, 25, 15, 30}, kMiddle), "none");
  EXPECT_EQ(Shared({90, 20, 0, 40}, kMiddle), "none") << "also where the four edges alone would";
  EXPECT_EQ(Shared(kMiddle, {90, 20, 0, 40}), "none");
}

TEST(IntersectRect, TheWholeRangeOverlaps) {
  EXPECT_EQ(Shared({kLeast, kLeast, kMost, kMost}, kMiddle), "10,20,30,40");
}

}  // namespace
}  // namespace ventrik::tests
