// SPDX-License-Identifier: Apache-2.0
#include "bench/fault.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "bench/damage.h"
#include "messages/function_ids.h"

namespace ventrik::bench {
namespace {

using std::chrono::milliseconds;

Fault Parsed(const std::string& text) {
  std::string error;
  const auto fault = ParseFault(text, error);
  EXPECT_TRUE(fault) << error;
  return fault.value_or(Fault());
}

std::string ErrorOf(const std::string& text) {
  std::string error;
  EXPECT_FALSE(ParseFault(text, error)) << text;
  return error;
}

TEST(ParseFault, KindAlone) {
  const Fault fault = Parsed("drop");
  EXPECT_EQ(fault.kind, FaultKind::drop);
  EXPECT_FALSE(fault.message);
  EXPECT_EQ(fault.after, 0u);
  EXPECT_FALSE(fault.times);
  EXPECT_EQ(fault.probability, 1);
}

TEST(ParseFault, EveryKindByItsName) {
  for (const char* name :
       {"refuse", "slow", "unread", "miscount", "hang", "die", "restart", "drop", "late",
        "duplicate", "reorder", "flood", "oversize", "unknown", "truncate", "lie", "endless"}) {
    EXPECT_STREQ(FaultName(Parsed(name).kind), name);
  }
}

TEST(ParseFault, EveryCondition) {
  const Fault fault = Parsed(
      "late,message=RESP_GET_LIST,after=3,times=5,from=1.5,until=60,probability=0.25,"
      "seconds=0.2");
  EXPECT_EQ(fault.kind, FaultKind::late);
  EXPECT_EQ(fault.message, RESP_GET_LIST);
  EXPECT_EQ(fault.after, 3u);
  EXPECT_EQ(fault.times, 5u);
  EXPECT_EQ(fault.from, milliseconds(1500));
  EXPECT_EQ(fault.until, milliseconds(60'000));
  EXPECT_EQ(fault.probability, 0.25);
  EXPECT_EQ(fault.duration, milliseconds(200));
  EXPECT_EQ(Parsed("flood,copies=7").copies, 7);
}

TEST(ParseFault, MessagesByNumber) {
  EXPECT_EQ(Parsed("drop,message=307").message, RESP_GET_LIST);
  EXPECT_EQ(Parsed("drop,message=-5").message, -5);
}

TEST(ParseFault, WrongOnesAreNamed) {
  EXPECT_EQ(ErrorOf("drown").substr(0, 32), "no fault 'drown'; there are refu");
  EXPECT_EQ(ErrorOf("").substr(0, 11), "no fault ''");
  EXPECT_EQ(ErrorOf("drop,often=1").substr(0, 32), "drop: no condition 'often'; ther");
  EXPECT_EQ(ErrorOf("drop,message=NO_SUCH"),
            "drop: message takes the name or the number of a message");
  EXPECT_EQ(ErrorOf("drop,message"), "drop: message takes the name or the number of a message");
  EXPECT_EQ(ErrorOf("drop,probability=1.1"), "drop: probability takes a number from 0 to 1");
  EXPECT_EQ(ErrorOf("drop,probability=nan"), "drop: probability takes a number from 0 to 1");
  EXPECT_EQ(ErrorOf("late,seconds=-1"), "late: seconds takes seconds, 0 to 86400");
  EXPECT_EQ(ErrorOf("late,seconds=1e3"), "late: seconds takes seconds, 0 to 86400");
  EXPECT_EQ(ErrorOf("flood,copies=100001"), "flood: copies takes a whole number, 0 to 100000");
  EXPECT_EQ(ErrorOf("drop,times=-1"), "drop: times takes a whole number");
  EXPECT_EQ(ErrorOf("drop,times=1x"), "drop: times takes a whole number");
}

TEST(ParseFault, WhatCanNeverHaveAnEffectIsRefused) {
  const struct {
    const char* text;
    const char* error;
  } kRows[] = {
      {"refuse,message=REQU_INIT", "refuse: message has no effect on this kind"},
      {"slow,message=0", "slow: message has no effect on this kind"},
      {"unread,message=RESP_INIT", "unread: strikes requests, and RESP_INIT is none"},
      {"miscount,message=1", "miscount: strikes requests, and RESP_INIT is none"},
      {"die,message=INFO_HEARTBEAT", "die: strikes requests, and INFO_HEARTBEAT is none"},
      {"drop,message=REQU_INIT", "drop: strikes what the engine sends, and REQU_INIT is a request"},
      {"lie,message=302", "lie: strikes what the engine sends, and REQU_GET_SPELL is a request"},
      {"unread,seconds=1", "unread: seconds has no effect on this kind"},
      {"refuse,seconds=1", "refuse: seconds has no effect on this kind"},
      {"reorder,seconds=1", "reorder: seconds has no effect on this kind"},
      {"duplicate,copies=1", "duplicate: copies has no effect on this kind"},
      {"drop,from=5,until=4", "drop: until is not behind from"},
      {"drop,until=4,from=4", "drop: until is not behind from"},
      {"drop,until=0", "drop: until is not behind from"},
      {"drop,times=1,after=2,times=3", "drop: times is there twice"},
  };
  for (const auto& row : kRows) EXPECT_EQ(ErrorOf(row.text), row.error) << row.text;
}

TEST(ParseFault, WhatMayHaveAnEffectIsTaken) {
  for (const char* text :
       {"unread,message=REQU_INIT", "hang,message=GPS_DATA", "drop,message=CMD_PACKAGE_LOADED",
        "hang,message=4711", "drop,message=4711", "slow,seconds=1", "die,seconds=0",
        "restart,seconds=1", "flood,copies=0", "drop,from=1,until=1.001"}) {
    Parsed(text);
  }
}

// Which of so many messages a fault strikes, as "x..x".
std::string Struck(const std::string& text, int count, std::uint32_t seed = 1,
                   std::int32_t message = RESP_GET_LIST) {
  ArmedFault fault(Parsed(text), seed, "fault 1");
  std::string strikes;
  for (int i = 0; i < count; ++i) strikes += fault.Strikes(message, milliseconds(i)) ? 'x' : '.';
  return strikes;
}

TEST(ArmedFault, StrikesWhatItsConditionsLetThrough) {
  EXPECT_EQ(Struck("drop", 4), "xxxx");
  EXPECT_EQ(Struck("drop,after=2", 4), "..xx");
  EXPECT_EQ(Struck("drop,times=2", 4), "xx..");
  EXPECT_EQ(Struck("drop,after=1,times=2", 5), ".xx..");
  EXPECT_EQ(Struck("drop,from=0.002", 4), "..xx");
  EXPECT_EQ(Struck("drop,until=0.002", 4), "xx..");
  EXPECT_EQ(Struck("drop,message=RESP_GET_LIST", 2), "xx");
  EXPECT_EQ(Struck("drop,message=RESP_GET_SPELL", 2), "..");
}

TEST(ArmedFault, OnesAtZeroStrikeNothing) {
  EXPECT_EQ(Struck("drop,probability=0", 50), std::string(50, '.'));
  EXPECT_EQ(Struck("drop,times=0", 50), std::string(50, '.'));
}

TEST(ArmedFault, SparesOnlyMessagesThatItIsMeantFor) {
  ArmedFault fault(Parsed("drop,message=307,after=1"), 1, "fault 1");
  EXPECT_FALSE(fault.Strikes(303, milliseconds(0)));
  EXPECT_FALSE(fault.Strikes(307, milliseconds(0)));
  EXPECT_TRUE(fault.Strikes(307, milliseconds(0)));
  EXPECT_EQ(fault.struck(), 1u);
}

TEST(ArmedFault, SeedRepeatsWhatChanceBrings) {
  const std::string once = Struck("drop,probability=0.5", 200, 42);
  EXPECT_EQ(Struck("drop,probability=0.5", 200, 42), once);
  EXPECT_NE(Struck("drop,probability=0.5", 200, 43), once);
  EXPECT_NE(once.find('x'), std::string::npos);
  EXPECT_NE(once.find('.'), std::string::npos);
}

Block BlockOf(std::size_t size) {
  Block block(size, 7);
  if (size >= 4) block[0] = 0x33, block[1] = 1, block[2] = block[3] = 0;
  return block;
}

TEST(Damage, TruncatedIsAShorterBeginning) {
  Random random(1);
  const Block whole = BlockOf(12);
  std::vector<bool> seen(12);
  for (int i = 0; i < 400; ++i) {
    const Block cut = Truncated(whole, random);
    ASSERT_LT(cut.size(), whole.size());
    EXPECT_TRUE(std::equal(cut.begin(), cut.end(), whole.begin()));
    seen[cut.size()] = true;
  }
  EXPECT_EQ(std::count(seen.begin(), seen.end(), true), 12);
  EXPECT_EQ(Truncated({}, random), Block());
}

TEST(Damage, LieChangesOneWordBehindTheNumber) {
  Random random(1);
  const Block whole = BlockOf(14);
  for (int i = 0; i < 100; ++i) {
    const Block lying = WithALie(whole, random);
    ASSERT_EQ(lying.size(), whole.size());
    int changed = 0;
    for (std::size_t word = 0; word < 3; ++word) {
      const auto at = static_cast<std::ptrdiff_t>(4 * word);
      if (!std::equal(lying.begin() + at, lying.begin() + at + 4, whole.begin() + at)) ++changed;
    }
    EXPECT_EQ(changed, 1);
    EXPECT_TRUE(std::equal(lying.begin(), lying.begin() + 4, whole.begin()));
  }
  EXPECT_EQ(WithALie(BlockOf(7), random), BlockOf(7));
}

TEST(Damage, EndlessLosesTheZeroesAtItsEnd) {
  EXPECT_EQ(WithoutAnEnd({0x33, 1, 0, 0, 'a', 0, 'b', 0, 0}), (Block{0x33, 1, 0, 0, 'a', 0, 'b'}));
  EXPECT_EQ(WithoutAnEnd({0x33, 1, 0, 0}), (Block{0x33, 1, 0, 0}));
}

TEST(Damage, UnknownNumberIsInNoCatalogue) {
  const Block block = WithUnknownNumber(BlockOf(8));
  const std::int32_t number = ReceivedBlock{block.data(), block.size()}.Word(0);
  EXPECT_EQ(number, 0x40000133);
  EXPECT_EQ(FunctionName(number), nullptr);
  EXPECT_EQ(WithUnknownNumber({1, 2}), (Block{1, 2}));
}

TEST(Damage, OversizedIsMoreThanATesterReceives) {
  EXPECT_EQ(Oversized(BlockOf(8)).size(), kMaxAnswer + 1);
  EXPECT_EQ(Oversized(BlockOf(kMaxAnswer + 5)).size(), kMaxAnswer + 5);
}

}  // namespace
}  // namespace ventrik::bench
