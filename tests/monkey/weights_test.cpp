// SPDX-License-Identifier: Apache-2.0
#include "monkey/weights.h"

#include <unistd.h>

#include <climits>
#include <cmath>
#include <cstdlib>

#include "monkey/draw.h"
#include "monkey/pace.h"
#include "platform/thread_start.h"
#include "tests/monkey/monkey_fixture.h"

namespace ventrik::tests {
namespace {

using Weights = std::vector<std::int32_t>;

class PickCommandTest : public MonkeyTest {
 protected:
  // The name that these draws give, all of which are made.
  std::wstring Picked(const Draws& draws) {
    draws_.Feed(draws);
    const std::wstring name = PickCommand(monkey_);
    EXPECT_EQ(draws_.Left(), Draws{}) << "not drawn";
    return name;
  }

  // The names that the draws 0 to `last` give.
  Texts PickedUpTo(int last) {
    Texts names;
    for (int drawn = 0; drawn <= last; ++drawn) names.push_back(Picked({drawn}));
    return names;
  }

  void SetWeightTotal(std::int32_t total) {
    monkey_.weights.With([total](MonkeyWeights& weights) { weights.weightTotal = total; });
  }
};

TEST_F(PickCommandTest, OneRecordIsAlwaysPicked) {
  SetRecords(monkey_, {Record(L"verd", 1)});
  for (const int drawn : {0, 1, 2, 12345, RAND_MAX}) EXPECT_EQ(Picked({drawn}), L"verd");
}

TEST_F(PickCommandTest, EachRecordHasAsManyChancesAsItsWeight) {
  SetRecords(monkey_, {Record(L"a", 2), Record(L"b", 3), Record(L"c", 0), Record(L"d", 1)});
  EXPECT_EQ(PickedUpTo(6), (Texts{L"a", L"a", L"b", L"b", L"b", L"d", L"a"}));
  EXPECT_EQ(Picked({6 * 1000 + 4}), L"b");
}

TEST_F(PickCommandTest, WeightOfZeroIsNeverPicked) {
  SetRecords(monkey_, {Record(L"a", 0), Record(L"b", 1), Record(L"c", 0)});
  EXPECT_EQ(PickedUpTo(2), (Texts{L"b", L"b", L"b"}));
}

TEST_F(PickCommandTest, WeightInForceCounts) {
  MonkeyCommandRecord first = Record(L"a", 5);
  first.currentWeight = 0;
  MonkeyCommandRecord second = Record(L"b", 0);
  second.currentWeight = 1;
  SetRecords(monkey_, {first, second});
  EXPECT_EQ(PickedUpTo(2), (Texts{L"b", L"b", L"b"}));
}

TEST_F(PickCommandTest, NegativeWeightMovesThePick) {
  SetRecords(monkey_, {Record(L"a", 3), Record(L"b", -1), Record(L"c", 2)});
  EXPECT_EQ(PickedUpTo(3), (Texts{L"a", L"a", L"a", L"c"}));
}

TEST_F(PickCommandTest, NegativeSumIsDividedByToo) {
  SetRecords(monkey_, {Record(L"a", 1), Record(L"b", -4)});
  EXPECT_EQ(PickedUpTo(3), (Texts{L"a", L"b", L"b", L"a"}));
}

// A remainder has the sign of what is divided, and no generator here gives one below 0.
TEST_F(PickCommandTest, NegativeDrawLeavesTheNameAsItWas) {
  SetRecords(monkey_, {Record(L"a", 1), Record(L"b", 1)});
  EXPECT_EQ(Picked({-1}), L"");
  BlockCommand(monkey_, L"a");
  EXPECT_EQ(Picked({0, -1, 1}), L"b");
  EXPECT_EQ(pauses_.Take(), Pauses{1000});
}

TEST_F(PickCommandTest, OddityStaleSumGivesTheLastRecordAllThatIsBeyond) {
  SetRecords(monkey_, {Record(L"a", 1), Record(L"b", 1), Record(L"c", 0)});
  SetWeightTotal(5);
  EXPECT_EQ(PickedUpTo(5), (Texts{L"a", L"b", L"c", L"c", L"c", L"a"}));
}

TEST_F(PickCommandTest, OddityStaleSumCanKeepTheLastRecordsOut) {
  SetRecords(monkey_, {Record(L"a", 1), Record(L"b", 1), Record(L"c", 7)});
  SetWeightTotal(2);
  EXPECT_EQ(PickedUpTo(4), (Texts{L"a", L"b", L"a", L"b", L"a"}));
}

TEST_F(PickCommandTest, SumOfZeroHasARemainderOfZero) {
  SetRecords(monkey_, {Record(L"a", 0), Record(L"b", 0)});
  EXPECT_EQ(Picked({17}), L"b");
  SetRecords(monkey_, {Record(L"a", 1), Record(L"b", -1)});
  EXPECT_EQ(Picked({17}), L"a");
}

TEST_F(PickCommandTest, WithoutRecordsThereIsNoName) {
  EXPECT_EQ(Picked({17}), L"");
  SetWeightTotal(3);
  EXPECT_EQ(Picked({17}), L"");
}

TEST_F(PickCommandTest, BlockedNameIsDrawnAnew) {
  SetRecords(monkey_, {Record(L"a", 1), Record(L"b", 1), Record(L"c", 1)});
  BlockCommand(monkey_, L"a");
  EXPECT_EQ(Picked({0, 1}), L"b");
  BlockCommand(monkey_, L"b");
  EXPECT_EQ(Picked({1, 0, 2}), L"c");
  EXPECT_EQ(pauses_.Take(), Pauses{});
}

TEST_F(PickCommandTest, RoundOfRefusalsIsFollowedByAShortPause) {
  SetRecords(monkey_, {Record(L"a", 1), Record(L"b", 1), Record(L"c", 1)});
  BlockCommand(monkey_, L"a");
  EXPECT_EQ(Picked({0, 0, 0, 1}), L"b");
  EXPECT_EQ(pauses_.Take(), Pauses{1000});
  EXPECT_EQ(Picked({0, 0, 0, 0, 0, 0, 0, 1}), L"b");
  EXPECT_EQ(pauses_.Take(), (Pauses{1000, 1000}));
}

TEST_F(PickCommandTest, AllBlockedDrawsUntilOneIsReleased) {
  SetRecords(monkey_, {Record(L"a", 1), Record(L"b", 1)});
  BlockCommand(monkey_, L"a");
  BlockCommand(monkey_, L"b");
  int rounds = 0;
  pauses_.onPause = [&](unsigned) {
    if (++rounds == 3) UnblockCommand(monkey_, L"b");
  };
  EXPECT_EQ(Picked({0, 1, 1, 0, 0, 0, 0, 1}), L"b");
  EXPECT_EQ(rounds, 3);
}

TEST_F(PickCommandTest, EndlessDrawCanBeCancelled) {
  const ZeroDraws zeroes;
  SetRecords(monkey_, {Record(L"a", 1)});
  BlockCommand(monkey_, L"a");
  pauseSource = usleep;
  const auto pick = [](void* monkey) -> void* {
    PickCommand(*static_cast<Monkey*>(monkey));
    return nullptr;
  };
  pthread_t thread = 0;
  ASSERT_TRUE(platform::StartThread(thread, pick, &monkey_));
  platform::CancelAndForget(thread);
  EXPECT_TRUE(platform::WaitForThreads(60000));
}

class WeightsTest : public MonkeyTest {
 protected:
  std::vector<std::int32_t> Influenced(const std::wstring& line) {
    ApplyInfluences(monkey_, line);
    return CurrentWeights(monkey_);
  }
};

TEST_F(WeightsTest, AllWeightsChangeAtOnce) {
  SetRecords(monkey_, {{L"a", 1, 2, 3, {}}, {L"b", 4, 5, 6, {}}});
  ApplyActiveRouteWeights(monkey_);
  EXPECT_EQ(CurrentWeights(monkey_), (Weights{3, 6}));
  RestoreDefaultWeights(monkey_);
  EXPECT_EQ(CurrentWeights(monkey_), (Weights{1, 4}));
}

TEST_F(WeightsTest, OdditySumStaysWhenAllWeightsChange) {
  SetRecords(monkey_, {{L"a", 1, 2, 3, {}}, {L"b", 4, 5, 6, {}}});
  ApplyActiveRouteWeights(monkey_);
  EXPECT_EQ(WeightTotal(monkey_), 7);
  RestoreDefaultWeights(monkey_);
  EXPECT_EQ(WeightTotal(monkey_), 7);
}

TEST_F(WeightsTest, InfluenceIsTheDefaultTimesAFactor) {
  SetRecords(monkey_, {Record(L"rnew", 3, {{L"rkill", 0.5f}, {L"start", 20.0f}}),
                       Record(L"rkill", 4), Record(L"start", 2)});
  EXPECT_EQ(Influenced(L"rnew(\"de\", \"rm\")"), (Weights{3, 2, 40}));
  EXPECT_EQ(WeightTotal(monkey_), 45);
}

TEST_F(WeightsTest, InfluencesDontCompound) {
  SetRecords(monkey_,
             {Record(L"a", 1, {{L"c", 0.5f}}), Record(L"b", 1, {{L"c", 3.0f}}), Record(L"c", 8)});
  EXPECT_EQ(Influenced(L"a"), (Weights{1, 1, 4}));
  EXPECT_EQ(Influenced(L"a"), (Weights{1, 1, 4}));
  EXPECT_EQ(Influenced(L"b"), (Weights{1, 1, 24}));
  EXPECT_EQ(WeightTotal(monkey_), 26);
  EXPECT_EQ(Influenced(L"c"), (Weights{1, 1, 24}));
}

TEST_F(WeightsTest, InfluenceStartsFromTheDefaultAndNotFromTheWeightInForce) {
  SetRecords(monkey_, {{L"a", 10, 7, 30, {{L"a", 2.0f}}}});
  EXPECT_EQ(Influenced(L"a"), Weights{20});
  EXPECT_EQ(WeightTotal(monkey_), 20);
}

TEST_F(WeightsTest, InfluenceKeepsAStaleSumStale) {
  SetRecords(monkey_, {{L"a", 1, 1, 5, {{L"a", 3.0f}}}, Record(L"b", 1)});
  ApplyActiveRouteWeights(monkey_);
  EXPECT_EQ(WeightTotal(monkey_), 2);
  ApplyInfluences(monkey_, L"a");
  EXPECT_EQ(WeightTotal(monkey_), 2 - 5 + 3);
}

TEST_F(WeightsTest, WeightOfZeroIsNotLifted) {
  SetRecords(monkey_, {Record(L"a", 0, {{L"a", 100.0f}})});
  EXPECT_EQ(Influenced(L"a"), Weights{0});
}

TEST_F(WeightsTest, ProductsAreCutTowardZero) {
  SetRecords(monkey_, {Record(L"a", 1, {{L"b", 0.5f}, {L"c", 0.5f}, {L"d", -0.75f}}),
                       Record(L"b", 5), Record(L"c", -5), Record(L"d", 1)});
  EXPECT_EQ(Influenced(L"a"), (Weights{1, 2, -2, 0}));
}

TEST_F(WeightsTest, ProductsAreMadeInThirtyTwoBits) {
  SetRecords(monkey_, {Record(L"a", 16777217, {{L"a", 1.0f}})});
  EXPECT_EQ(Influenced(L"a"), Weights{16777216});
}

TEST_F(WeightsTest, ProductsThatDontFitBecomeTheNearestNumber) {
  SetRecords(monkey_, {Record(L"a", 2, {{L"a", 1e30f}})});
  EXPECT_EQ(Influenced(L"a"), Weights{INT_MAX});
  SetRecords(monkey_, {Record(L"a", 2, {{L"a", -1e30f}})});
  EXPECT_EQ(Influenced(L"a"), Weights{INT_MIN});
  SetRecords(monkey_, {Record(L"a", 2, {{L"a", INFINITY}})});
  EXPECT_EQ(Influenced(L"a"), Weights{INT_MAX});
  SetRecords(monkey_, {Record(L"a", 2, {{L"a", NAN}})});
  EXPECT_EQ(Influenced(L"a"), Weights{0});
}

TEST_F(WeightsTest, EveryRecordOfTheNameIsInfluenced) {
  SetRecords(monkey_, {Record(L"a", 1, {{L"b", 2.0f}}), Record(L"b", 3), Record(L"b", 4)});
  EXPECT_EQ(Influenced(L"a"), (Weights{1, 6, 8}));
  EXPECT_EQ(WeightTotal(monkey_), 15);
}

TEST_F(WeightsTest, InfluencedNamesAreWhole) {
  SetRecords(monkey_, {Record(L"a", 1, {{L"start", 2.0f}, {L"nosuch", 2.0f}}), Record(L"star", 3),
                       Record(L"startlog", 4), Record(L"Start", 5)});
  EXPECT_EQ(Influenced(L"a"), (Weights{1, 3, 4, 5}));
}

TEST_F(WeightsTest, LastRecordThatTheLineBeginsWithIsTheSource) {
  SetRecords(monkey_, {Record(L"startlog", 1, {{L"x", 2.0f}}), Record(L"start", 1, {{L"x", 3.0f}}),
                       Record(L"stop", 1, {{L"x", 4.0f}}), Record(L"x", 1)});
  EXPECT_EQ(Influenced(L"startlog(\"abc\")").back(), 3);
  SetRecords(monkey_, {Record(L"start", 1, {{L"x", 3.0f}}), Record(L"startlog", 1, {{L"x", 2.0f}}),
                       Record(L"x", 1)});
  EXPECT_EQ(Influenced(L"startlog(\"abc\")").back(), 2);
  EXPECT_EQ(Influenced(L"start(\"1\")").back(), 3);
}

TEST_F(WeightsTest, LastOfTwoRecordsOfANameIsTheSource) {
  SetRecords(monkey_,
             {Record(L"a", 1, {{L"x", 2.0f}}), Record(L"a", 1, {{L"x", 3.0f}}), Record(L"x", 1)});
  EXPECT_EQ(Influenced(L"a").back(), 3);
}

TEST_F(WeightsTest, RecordWithoutANameMatchesEveryLine) {
  SetRecords(monkey_,
             {Record(L"a", 1, {{L"x", 2.0f}}), Record(L"", 1, {{L"x", 3.0f}}), Record(L"x", 1)});
  EXPECT_EQ(Influenced(L"a").back(), 3);
  EXPECT_EQ(Influenced(L"").back(), 3);
}

TEST_F(WeightsTest, OddityLineThatNoRecordBeginsHasTheFirstAsSource) {
  SetRecords(monkey_,
             {Record(L"a", 1, {{L"x", 2.0f}}), Record(L"b", 1, {{L"x", 3.0f}}), Record(L"x", 1)});
  EXPECT_EQ(Influenced(L"verd").back(), 2);
  EXPECT_EQ(Influenced(L"b").back(), 3);
  EXPECT_EQ(Influenced(L"").back(), 2);
}

TEST_F(WeightsTest, LineShorterThanANameDoesntBeginWithIt) {
  SetRecords(monkey_, {Record(L"a", 1, {{L"x", 2.0f}}), Record(L"verd", 1, {{L"x", 3.0f}}),
                       Record(L"x", 1)});
  EXPECT_EQ(Influenced(L"ver").back(), 2);
}

TEST_F(WeightsTest, WithoutRecordsThereIsNothingToInfluence) {
  EXPECT_EQ(Influenced(L"a"), Weights{});
}

TEST_F(WeightsTest, CommandIsBlockedOnce) {
  const std::wstring sameText = L"start";
  BlockCommand(monkey_, L"start");
  BlockCommand(monkey_, L"rkill");
  BlockCommand(monkey_, sameText.c_str());
  EXPECT_EQ(BlockedCommands(monkey_), (Texts{L"start", L"rkill"}));
  UnblockCommand(monkey_, sameText.c_str());
  EXPECT_EQ(BlockedCommands(monkey_), Texts{L"rkill"});
  UnblockCommand(monkey_, L"nosuch");
  EXPECT_EQ(BlockedCommands(monkey_), Texts{L"rkill"});
}

TEST_F(WeightsTest, BlockedNamesAreWhole) {
  BlockCommand(monkey_, L"start");
  const MonkeyWeights weights = monkey_.weights.Copy();
  EXPECT_TRUE(IsCommandBlocked(weights, L"start"));
  for (const wchar_t* name : {L"star", L"startlog", L"Start", L"", L"start "}) {
    EXPECT_FALSE(IsCommandBlocked(weights, name)) << name;
  }
}

}  // namespace
}  // namespace ventrik::tests
