// SPDX-License-Identifier: Apache-2.0
// The command `tmcdebug`: one traffic event of one's own, or all test events.
#include "tests/command/navigation_fixture.h"

namespace ventrik::tests {
namespace {

using TrafficDebug = NavigationTest;

// What differs in the test events.
struct TestEvent {
  const char* htmc;
  const char* loc;
  const char* extent;
  const char* dir;
  const char* age;
  const char* codes;
  std::size_t blockSize;
};

const TestEvent kTestEvents[] = {
    {"11272644", "113", "1", "0", "60", "event_1=401 event_2=807", 107},
    {"15469228", "683", "2", "0", "15", "event_1=401", 95},
    {"19662428", "407", "1", "0", "15", "event_1=401", 95},
    {"23871332", "4057", "1", "0", "60", "event_1=401", 96},
    {"28050401", "248", "1", "1", "15", "event_1=401 event_2=807", 107},
    {"32245784", "518", "5", "0", "15", "event_1=401", 95},
    {"36439208", "298", "4", "0", "15", "event_1=401 event_2=1602", 108},
    {"1", "518", "1", "0", "15", "event_1=126", 88},
    {"2", "61", "1", "0", "15", "event_1=125", 87},
    {"3", "60", "1", "0", "15", "event_1=1", 85},
    {"4", "59", "1", "0", "15", "event_1=101", 87},
    {"5", "57", "1", "0", "15", "event_1=401", 87},
    {"80", "294", "11", "0", "15", "event_1=101 len_1=3", 98},
    {"79", "1025", "11", "0", "15", "event_1=105", 91},
};

std::string TextOf(const TestEvent& event) {
  return std::string("EVENT htmc=") + event.htmc + " loc=" + event.loc + " extent=" + event.extent +
         " dir=" + event.dir + " bidi=0 age=" + event.age + " cc=11 ltn=1 new=1 " + event.codes;
}

// The text of a block, its size told by the length word and the one byte behind it.
std::string TextIn(const Bytes& block) {
  const std::string all(block.value.begin(), block.value.end());
  const auto length = static_cast<std::size_t>(block.Block().Word(1));
  if (all.size() != length + 9 || all.back() != '\0') return "(no event)";
  return all.substr(8, length);
}

TEST_F(TrafficDebug, EmptyTextSendsAllTestEventsInOrder) {
  Run(L"tmcdebug(\"\")");
  const std::vector<Bytes> blocks = server_.TakeSent();
  ASSERT_EQ(blocks.size(), std::size(kTestEvents));
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    EXPECT_EQ(blocks[i].Block().Word(0), 9002) << i;
    EXPECT_EQ(TextIn(blocks[i]), TextOf(kTestEvents[i])) << i;
    EXPECT_EQ(blocks[i].value.size(), kTestEvents[i].blockSize) << i;
  }
  EXPECT_EQ(Printed(), L"");
}

TEST_F(TrafficDebug, EventIsNotPadded) {
  ExpectSent({
      {L"tmcdebug(\" \")", "2A230000 01000000 ' ' 00"},
      {L"tmcdebug(\"ab\")", "2A230000 02000000 'ab' 00"},
      {L"tmcdebug(\"abc\")", "2A230000 03000000 'abc' 00"},
      {L"tmcdebug(\"abcd\")", "2A230000 04000000 'abcd' 00"},
      {L"tmcdebug(\"EVENT htmc=1\")", "2A230000 0C000000 'EVENT htmc=1' 00"},
  });
}

TEST_F(TrafficDebug, EventIsNarrow) {
  ExpectSent({{L"tmcdebug(\"\u00E9\u20AC\")", "2A230000 02000000 E9 '?' 00"}});
}

TEST_F(TrafficDebug, WithoutAParameterNoEventIsSent) {
  Run(L"tmcdebug");
  EXPECT_EQ(Printed(), CountError(L't', 1));
  Run(L"tmcdebug()");
  EXPECT_EQ(Printed(), CountError(L't', 1));
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

}  // namespace
}  // namespace ventrik::tests
