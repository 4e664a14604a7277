// SPDX-License-Identifier: Apache-2.0
// What the monkey does by the clock: `start` is released, weights go back to their defaults.
#include <atomic>
#include <cstdlib>
#include <ctime>

#include "monkey/draw.h"
#include "tests/monkey/driver_fixture.h"
#include "tests/monkey/set_clock.h"

namespace ventrik::tests {
namespace {

constexpr std::uint32_t kRelease = 1200000;    // milliseconds
constexpr std::uint32_t kLeastReset = 900000;  // milliseconds

std::atomic<int> drawn = 0;
std::vector<int> numbers;  // of the generator itself, in the order of their draws

int DrawOfTheGenerator() {
  numbers.push_back(std::rand());
  return 0;
}

int FirstNumber(unsigned seed) {
  std::srand(seed);
  return std::rand();
}

class DriverTimeTest : public DriverTest {
 protected:
  // One cycle at each of these times, and the weights that it leaves. A line is sent that raises
  // its own weight from 1 to 5.
  std::vector<std::int32_t> WeightsAt(const std::vector<std::uint32_t>& times) {
    Configure("[verd]\ndefault=1\nverd=5\n");
    std::vector<std::int32_t> weights;
    AtPause([&](int number) {
      if (number > 1) weights.push_back(CurrentWeights(monkey_).front());
      SetMilliClock(times[static_cast<std::size_t>(number) - 1]);
    });
    RunToEnd(L"monkey(\"" + std::to_wstring(times.size()) + L"\")");
    weights.push_back(CurrentWeights(monkey_).front());
    return weights;
  }

  // All draws give this number.
  static void DrawOnly(int number) {
    drawn = number;
    drawSource = [] { return drawn.load(); };
  }
};

TEST_F(DriverTimeTest, StartIsReleasedAfterTwentyMinutes) {
  Configure("[verd]\ndefault=1\n");
  SetMilliClock(1000);
  std::vector<Texts> blocked;
  AtPause([&](int number) {
    blocked.push_back(BlockedCommands(monkey_));
    SetMilliClock(number == 1 ? 1000 + kRelease : 1000 + kRelease + 1);
  });
  RunToEnd(L"monkey(\"2\")");
  blocked.push_back(BlockedCommands(monkey_));
  EXPECT_EQ(blocked, (std::vector<Texts>{{L"start", L"rkill"}, {L"start", L"rkill"}, {L"rkill"}}));
}

TEST_F(DriverTimeTest, StartIsReleasedAgainInEachCycle) {
  Configure("[verd]\ndefault=1\n");
  AtPause([&](int) {
    monkey_.weights.With([](MonkeyWeights& weights) { weights.blockedCommands = {L"start"}; });
    SetMilliClock(kRelease + 1);
  });
  RunToEnd(L"monkey(\"2\")");
  EXPECT_EQ(BlockedCommands(monkey_), Texts{});
}

TEST_F(DriverTimeTest, WeightsGoBackAfterTheLeastInterval) {
  EXPECT_EQ(WeightsAt({0, kLeastReset - 1, kLeastReset, kLeastReset, 2 * kLeastReset - 1,
                       2 * kLeastReset}),
            (std::vector<std::int32_t>{5, 5, 1, 5, 5, 1}));
}

TEST_F(DriverTimeTest, IntervalIsDrawn) {
  DrawOnly(1800000);
  EXPECT_EQ(WeightsAt({kLeastReset + 1799999, kLeastReset + 1800000}),
            (std::vector<std::int32_t>{5, 1}));
}

TEST_F(DriverTimeTest, IntervalIsTheRemainder) {
  DrawOnly(1800001);
  EXPECT_EQ(WeightsAt({kLeastReset - 1, kLeastReset}), (std::vector<std::int32_t>{5, 1}));
}

TEST_F(DriverTimeTest, IntervalRunsFromTheStart) {
  SetMilliClock(5000);
  EXPECT_EQ(WeightsAt({kLeastReset + 4999, kLeastReset + 5000}), (std::vector<std::int32_t>{5, 1}));
}

TEST_F(DriverTimeTest, OddityWeightsThatGoBackLeaveAStaleSum) {
  WeightsAt({kLeastReset});
  EXPECT_EQ(CurrentWeights(monkey_), std::vector<std::int32_t>{1});
  EXPECT_EQ(WeightTotal(monkey_), 5);
}

TEST_F(DriverTimeTest, InvalidLineIsNoTimeForWeightsToGoBack) {
  Configure("[list]\ndefault=1\n");
  SetSearch(monkey_, L"", L"", -5);
  AtPause([&](int) {
    monkey_.weights.With([](MonkeyWeights& w) { w.commandRecords[0].currentWeight = 7; });
    SetMilliClock(kLeastReset);
  });
  RunToEnd(L"monkey(\"1\")");
  EXPECT_EQ(CurrentWeights(monkey_), std::vector<std::int32_t>{7});
}

TEST_F(DriverTimeTest, EachCycleIsSeededByTheClock) {
  Configure("[verd]\ndefault=1\n");
  std::vector<std::size_t> cycles;
  AtPause([&](int number) {
    cycles.push_back(numbers.size());
    SetMilliClock(7000u + static_cast<std::uint32_t>(number));
  });
  numbers.clear();
  drawSource = DrawOfTheGenerator;
  RunToEnd(L"monkey(\"2\")");
  ASSERT_EQ(cycles.size(), 2u);
  ASSERT_GT(numbers.size(), cycles.back());
  EXPECT_EQ(numbers[cycles[0]], FirstNumber(7001));
  EXPECT_EQ(numbers[cycles[1]], FirstNumber(7002));
}

TEST_F(DriverTimeTest, StartIsSeededByTheClockAndThenByTheTime) {
  SetMilliClock(4711);
  numbers.clear();
  drawSource = DrawOfTheGenerator;
  const std::time_t before = std::time(nullptr);
  RunToEnd(L"monkey(\"0\")");
  const std::time_t after = std::time(nullptr);
  ASSERT_GT(numbers.size(), 1u);
  EXPECT_EQ(numbers[0], FirstNumber(4711)) << "the interval";
  bool isByTheTime = false;
  for (std::time_t time = before; time <= after; ++time) {
    isByTheTime |= numbers[1] == FirstNumber(static_cast<unsigned>(time));
  }
  EXPECT_TRUE(isByTheTime) << "the first item";
}

}  // namespace
}  // namespace ventrik::tests
