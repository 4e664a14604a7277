// SPDX-License-Identifier: Apache-2.0
#include "state/guarded.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

namespace ventrik {
namespace {

TEST(Guarded, WithHandsOutTheValueAndTheResult) {
  Guarded<std::vector<int>> numbers({1, 2});
  EXPECT_EQ(numbers.With([](std::vector<int>& value) {
    value.push_back(3);
    return value.size();
  }),
            3u);
  const auto& unchangeable = numbers;
  EXPECT_EQ(unchangeable.With([](const std::vector<int>& value) { return value.back(); }), 3);
  EXPECT_EQ(unchangeable.Copy(), (std::vector<int>{1, 2, 3}));
}

// Its end may take the same lock, as that of a replaced list does.
TEST(Guarded, ReplacedValueEndsWithoutTheLock) {
  struct LooksBack {
    Guarded<std::shared_ptr<LooksBack>>* place = nullptr;
    bool* looked = nullptr;
    ~LooksBack() {
      if (place != nullptr) *looked = place->Copy() == nullptr;
    }
  };
  bool looked = false;
  Guarded<std::shared_ptr<LooksBack>> place;
  place.Store(std::make_shared<LooksBack>());
  place.With([&](auto& value) {
    value->place = &place;
    value->looked = &looked;
  });
  place.Store(nullptr);
  EXPECT_TRUE(looked);
}

TEST(Guarded, NoTouchOfSeveralThreadsIsLost) {
  Guarded<int> count;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&count] {
      for (int touch = 0; touch < 10000; ++touch) count.With([](int& value) { ++value; });
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(count.Copy(), 40000);
}

}  // namespace
}  // namespace ventrik
