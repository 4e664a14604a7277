// SPDX-License-Identifier: Apache-2.0
// What is taken out of the world as a surface, and what isn't. How surfaces are read is tested with
// the model's overlays, which tell each error to a person.
#include "bench/picture/shared_surface.h"

#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <string>

#include "tests/bench/picture/shared_object.h"

namespace ventrik::bench {
namespace {

constexpr auto kSize = static_cast<off_t>(kSurfaceBytes);

class RemoveSurfaceTest : public ::testing::Test {
 protected:
  bool Exists() const { return access(("/dev/shm/" + sid_).c_str(), F_OK) == 0; }

  const std::string sid_ = OwnObjectName("removed");
};

TEST_F(RemoveSurfaceTest, ASurfaceGoesAndItsOwnerKeepsWhatItHas) {
  SharedObject object(sid_, kSize);
  RemoveSurface(sid_);
  EXPECT_FALSE(Exists());
  object.Write({1, 2, 3, 4}, 0);
  RemoveSurface(sid_);  // nothing is there any more
  EXPECT_FALSE(Exists());
}

TEST_F(RemoveSurfaceTest, WhatHasAnotherSizeStays) {
  for (const off_t size : {off_t{0}, kSize - 1, kSize + 1}) {
    const SharedObject object(sid_, size);
    RemoveSurface(sid_);
    EXPECT_TRUE(Exists()) << size;
  }
}

TEST_F(RemoveSurfaceTest, WhatSomebodyHoldsStays) {
  const SharedObject object(sid_, kSize);
  const int holder = shm_open(("/" + sid_).c_str(), O_RDWR, 0);
  ASSERT_NE(holder, -1);
  ASSERT_EQ(flock(holder, LOCK_EX), 0);
  RemoveSurface(sid_);
  EXPECT_TRUE(Exists());
  close(holder);
  RemoveSurface(sid_);
  EXPECT_FALSE(Exists());
}

// The system would take the first of these names for the object's own.
TEST_F(RemoveSurfaceTest, ABadNameNamesNothing) {
  const SharedObject object(sid_, kSize);
  for (const std::string& name : {"/" + sid_, "./" + sid_, "../shm/" + sid_, std::string()}) {
    RemoveSurface(name);
    EXPECT_TRUE(Exists()) << name;
  }
}

}  // namespace
}  // namespace ventrik::bench
