// SPDX-License-Identifier: Apache-2.0
#include "bench/scenario_run.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "messages/encoders.h"
#include "messages/function_ids.h"
#include "messages/message_layout.h"

namespace ventrik::bench {
namespace {

ScenarioRun MakeRun(const std::string& rules, std::uint32_t seed = 0) {
  std::string error;
  auto scenario = ParseScenario("{\"rules\": [" + rules + "]}", "demo.json", error);
  EXPECT_TRUE(scenario) << error;
  return ScenarioRun(scenario.value_or(Scenario{}), seed);
}

template <class Request>
ScenarioRun::Outcome Receive(ScenarioRun& run, const Request& request) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(request.data());
  return run.Received({bytes, request.size()});
}

Block Encoded(FunctionId id, const MessageFields& fields) {
  Block block;
  std::string error;
  EXPECT_TRUE(EncodeMessage(id, fields, block, error)) << error;
  return block;
}

// The first byte of each message, one after the other.
std::string Bytes(const std::vector<ScenarioRun::Post>& posts) {
  std::string bytes;
  for (const ScenarioRun::Post& post : posts) bytes += std::to_string(post.block.at(0));
  return bytes;
}

template <class Request>
std::string Taken(ScenarioRun& run, const Request& request) {
  return Bytes(Receive(run, request).posts);
}

// ---- which rules are set off

TEST(ScenarioRun, AllMatchingRulesAreSetOffInTheirOrder) {
  ScenarioRun run = MakeRun(
      "{\"on\": 302, \"send\": [{\"hex\": \"01\"}, {\"hex\": \"02\"}]},"
      "{\"on\": \"connect\", \"send\": [{\"hex\": \"03\"}]},"
      "{\"on\": \"REQU_GET_SPELL\", \"send\": [{\"hex\": \"04\"}]}");
  EXPECT_EQ(Taken(run, encode::REQU_GET_SPELL("")), "124");
  EXPECT_EQ(Bytes(run.Connected().posts), "3");
  EXPECT_FALSE(Receive(run, encode::REQU_INIT()).isRuled);
  EXPECT_FALSE(run.Received({nullptr, 0}).isRuled);
}

TEST(ScenarioRun, ARuleIsSpentAfterItsTimes) {
  ScenarioRun run = MakeRun(
      "{\"on\": 0, \"times\": 2, \"send\": [{\"hex\": \"01\"}]},"
      "{\"on\": 0, \"send\": [{\"hex\": \"02\"}]}");
  EXPECT_EQ(Taken(run, encode::REQU_INIT()), "12");
  EXPECT_EQ(Taken(run, encode::REQU_SHUTDOWN()), "");
  EXPECT_EQ(Taken(run, encode::REQU_INIT()), "12");
  EXPECT_EQ(Taken(run, encode::REQU_INIT()), "2");
  EXPECT_EQ(Taken(run, encode::REQU_INIT()), "2");
}

TEST(ScenarioRun, TellsWhetherARuleWasSetOffAndReplacesTheAnswer) {
  ScenarioRun run = MakeRun(
      "{\"on\": 0, \"times\": 1, \"instead\": true, \"send\": []},"
      "{\"on\": 0, \"instead\": false, \"times\": 2, \"send\": []}");
  const auto first = Receive(run, encode::REQU_INIT());
  EXPECT_TRUE(first.isRuled);
  EXPECT_TRUE(first.isInstead);
  const auto second = Receive(run, encode::REQU_INIT());
  EXPECT_TRUE(second.isRuled);
  EXPECT_FALSE(second.isInstead);
  EXPECT_FALSE(Receive(run, encode::REQU_INIT()).isRuled);
}

// ---- what a message must have

// Whether a rule with these keys, on such a message, is set off by it.
bool Matches(FunctionId id, const std::string& keys, const MessageFields& fields) {
  ScenarioRun run =
      MakeRun("{\"on\": " + std::to_string(id) + ", " + keys + ", \"send\": [{\"hex\": \"01\"}]}");
  return Taken(run, Encoded(id, fields)) == "1";
}

TEST(ScenarioRun, ComparesFieldsOfEveryKind) {
  const struct {
    FunctionId id;
    const char* where;
    MessageFields equal;
    MessageFields other;
  } kRows[] = {
      {REQU_START_GUIDANCE, "\"routeHandle\": 7", {{"routeHandle", 7}}, {{"routeHandle", 8}}},
      {REQU_START_GUIDANCE, "\"routeHandle\": 0", {}, {{"routeHandle", -1}}},
      {INFO_NEXT_MAN_INFO, "\"nextManInfo1\": 255", {{"nextManInfo1", 255}}, {}},
      {REQU_SET_DEMO_MODE,
       "\"onOff\": 1, \"longitude\": 11.5, \"latitude\": 48",
       {{"onOff", 1}, {"longitude", 11.5}, {"latitude", 48.0}},
       {{"onOff", 1}, {"longitude", 11.5}, {"latitude", 48.25}}},
      {REQU_GET_SPELL,
       "\"inputEIS\": \"<CTY>M\u00FC<*>\"",
       {{"inputEIS", std::string("<CTY>M\u00FC<*>")}},
       {{"inputEIS", std::string("<CTY>M\u00FC<*> ")}}},
      {TMC_DATA, "\"text\": \"ab\"", {{"text", std::string("ab")}}, {{"text", std::string("a")}}},
      {REQU_SET_TMC_MODE, "\"text\": 3", {{"text", 3}}, {{"text", 2}}},
      {GPS_DATA,
       "\"body\": \"00FF\"",
       {{"body", std::string("\0\xFF", 2)}},
       {{"body", std::string("\0\xFF\0", 3)}}},
      {REQU_KILL_TRIP,
       "\"handles\": [7, 8]",
       {{"handles", std::vector<std::int32_t>{7, 8}}},
       {{"handles", std::vector<std::int32_t>{7, 8, 9}}}},
      {REQU_KILL_TRIP, "\"handles\": []", {}, {{"handles", std::vector<std::int32_t>{7}}}},
      {REQU_GET_DETAILS,
       "\"fieldNames\": [\"GEO\", \"POP\"]",
       {{"fieldNames", std::vector<std::string>{"GEO", "POP"}}},
       {{"fieldNames", std::vector<std::string>{"POP", "GEO"}}}},
      {REQU_NEW_TRIP,
       "\"destinations\": [[\"A\", [\"b\"]], [\"C\", []]]",
       {{"destinations", DestinationValues{{"A", {"b"}}, {"C", {}}}}},
       {{"destinations", DestinationValues{{"A", {"b"}}, {"C", {"d"}}}}}},
  };
  for (const auto& row : kRows) {
    const std::string keys = std::string("\"where\": {") + row.where + "}";
    EXPECT_TRUE(Matches(row.id, keys, row.equal)) << row.where;
    EXPECT_FALSE(Matches(row.id, keys, row.other)) << row.where;
  }
}

TEST(ScenarioRun, EveryFieldOfWhereMustAgree) {
  const std::string keys = "\"where\": {\"startIndex\": 1, \"resultCount\": 10}";
  EXPECT_TRUE(Matches(REQU_GET_LIST, keys, {{"startIndex", 1}, {"resultCount", 10}}));
  EXPECT_FALSE(Matches(REQU_GET_LIST, keys, {{"startIndex", 1}, {"resultCount", 11}}));
  EXPECT_FALSE(Matches(REQU_GET_LIST, keys, {{"resultCount", 10}}));
  EXPECT_TRUE(Matches(REQU_GET_LIST, "\"where\": {}", {}));
}

TEST(ScenarioRun, FindsAPartOfAnyText) {
  const std::string keys = "\"contains\": \"CTY>Pas\"";
  const std::string text = "<CTY>Passau<*>";
  EXPECT_TRUE(Matches(REQU_GET_SPELL, keys, {{"inputEIS", text}}));
  EXPECT_FALSE(Matches(REQU_GET_SPELL, keys, {{"inputEIS", std::string("<CTY>pas<*>")}}));
  EXPECT_FALSE(Matches(REQU_GET_SPELL, keys, {}));
  EXPECT_TRUE(Matches(TMC_DATA, keys, {{"text", text}}));
  EXPECT_TRUE(Matches(REQU_GET_LIST, keys, {{"fieldNames", std::vector<std::string>{"a", text}}}));
  EXPECT_FALSE(
      Matches(REQU_GET_LIST, keys, {{"fieldNames", std::vector<std::string>{"CTY>", "Pas"}}}));
  EXPECT_TRUE(Matches(REQU_NEW_TRIP, keys, {{"destinations", DestinationValues{{text, {}}}}}));
  EXPECT_TRUE(
      Matches(REQU_NEW_TRIP, keys, {{"destinations", DestinationValues{{"", {"a", text}}}}}));
  EXPECT_FALSE(Matches(REQU_NEW_TRIP, keys, {{"destinations", DestinationValues{{"a", {"b"}}}}}));
}

TEST(ScenarioRun, WhereAndContainsMustBothHold) {
  const std::string keys = "\"where\": {\"startIndex\": 1}, \"contains\": \"a\"";
  const std::string text = "abc";
  EXPECT_TRUE(Matches(REQU_GET_LIST, keys, {{"startIndex", 1}, {"inputEIS", text}}));
  EXPECT_FALSE(Matches(REQU_GET_LIST, keys, {{"startIndex", 2}, {"inputEIS", text}}));
  EXPECT_FALSE(Matches(REQU_GET_LIST, keys, {{"startIndex", 1}}));
}

TEST(ScenarioRun, TakesMessagesCutShortAnywhere) {
  ScenarioRun run = MakeRun(
      "{\"on\": \"REQU_NEW_TRIP\", \"where\": {\"routeModes\": [33, 2]}, \"contains\": \"lunch\","
      " \"send\": [{\"hex\": \"01\"}]}");
  const Block whole = Encoded(REQU_NEW_TRIP, {{"destinations", DestinationValues{{"A", {"lunch"}}}},
                                              {"routeModes", std::vector<std::int32_t>{33, 2}}});
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_EQ(Taken(run, Block(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))),
              "")
        << size;
  }
  EXPECT_EQ(Taken(run, whole), "1");
}

// ---- states

TEST(ScenarioRun, ARuleWaitsForItsState) {
  ScenarioRun run = MakeRun(
      "{\"on\": \"REQU_START_GUIDANCE\", \"to\": \"guiding\", \"send\": [{\"hex\": \"01\"}]},"
      "{\"on\": \"REQU_STOP_GUIDANCE\", \"in\": \"guiding\", \"to\": \"start\","
      " \"send\": [{\"hex\": \"02\"}]},"
      "{\"on\": \"REQU_STOP_GUIDANCE\", \"in\": \"start\", \"send\": [{\"hex\": \"03\"}]},"
      "{\"on\": \"REQU_INIT\", \"in\": [\"guiding\", \"start\"], \"send\": [{\"hex\": \"04\"}]}");
  EXPECT_EQ(Taken(run, encode::REQU_INIT()), "4");
  EXPECT_EQ(Taken(run, encode::REQU_STOP_GUIDANCE()), "3");
  EXPECT_EQ(run.state(), "start");
  EXPECT_EQ(Taken(run, encode::REQU_START_GUIDANCE(7)), "1");
  EXPECT_EQ(run.state(), "guiding");
  EXPECT_EQ(Taken(run, encode::REQU_INIT()), "4");
  EXPECT_EQ(Taken(run, encode::REQU_STOP_GUIDANCE()), "2");
  EXPECT_EQ(run.state(), "start");
}

TEST(ScenarioRun, RulesOfOneMessageAreTestedAgainstTheStateBefore) {
  ScenarioRun run = MakeRun(
      "{\"on\": 0, \"in\": \"start\", \"to\": \"a\", \"send\": [{\"hex\": \"01\"}]},"
      "{\"on\": 0, \"in\": \"a\", \"to\": \"b\", \"send\": [{\"hex\": \"02\"}]},"
      "{\"on\": 0, \"in\": \"start\", \"to\": \"c\", \"send\": [{\"hex\": \"03\"}]},"
      "{\"on\": 0, \"in\": \"start\", \"send\": [{\"hex\": \"04\"}]}");
  EXPECT_EQ(Taken(run, encode::REQU_INIT()), "134");
  EXPECT_EQ(run.state(), "c");  // the last one that says so
  EXPECT_EQ(Taken(run, encode::REQU_INIT()), "");
}

TEST(ScenarioRun, ConnectingHasStatesToo) {
  ScenarioRun run = MakeRun(
      "{\"on\": \"connect\", \"in\": \"start\", \"to\": \"known\", \"send\": [{\"hex\": \"01\"}]}");
  EXPECT_EQ(Bytes(run.Connected().posts), "1");
  EXPECT_EQ(Bytes(run.Connected().posts), "");
}

TEST(ScenarioRun, BeginsInTheStateOfTheFile) {
  std::string error;
  const auto scenario = ParseScenario("{\"state\": \"asleep\", \"rules\": []}", "demo.json", error);
  ASSERT_TRUE(scenario) << error;
  EXPECT_EQ(ScenarioRun(*scenario).state(), "asleep");
}

// ---- delays

std::vector<long> Delays(ScenarioRun& run, int times) {
  std::vector<long> delays;
  for (int i = 0; i < times; ++i) {
    for (const auto& post : Receive(run, encode::REQU_INIT()).posts) {
      delays.push_back(static_cast<long>(post.after.count()));
    }
  }
  return delays;
}

const char* const kSpread = "{\"on\": 0, \"send\": [{\"after_ms\": [100, 300], \"hex\": \"\"}]}";

TEST(ScenarioRun, DelaysStayInTheirRangeAndDiffer) {
  ScenarioRun run = MakeRun(kSpread, 1);
  const std::vector<long> delays = Delays(run, 1000);
  const std::set<long> different(delays.begin(), delays.end());
  EXPECT_GE(*different.begin(), 100);
  EXPECT_LE(*different.rbegin(), 300);
  EXPECT_GT(different.size(), 150u);
}

TEST(ScenarioRun, ASeedRepeatsTheDelays) {
  ScenarioRun first = MakeRun(kSpread, 1);
  ScenarioRun second = MakeRun(kSpread, 1);
  ScenarioRun third = MakeRun(kSpread, 2);
  const std::vector<long> delays = Delays(first, 10);
  EXPECT_EQ(Delays(second, 10), delays);
  EXPECT_NE(Delays(third, 10), delays);
}

TEST(ScenarioRun, OtherRulesDontChangeARulesDelays) {
  ScenarioRun alone = MakeRun(kSpread, 1);
  ScenarioRun beside =
      MakeRun(std::string(kSpread) +
                  ", {\"on\": \"connect\", \"send\": [{\"after_ms\": [100, 300], \"hex\": \"\"}]}",
              1);
  beside.Connected();
  EXPECT_EQ(Delays(beside, 10), Delays(alone, 10));
}

TEST(ScenarioRun, AFixedDelayIsItself) {
  ScenarioRun run = MakeRun("{\"on\": 0, \"send\": [{\"after_ms\": 250, \"hex\": \"\"}]}");
  EXPECT_EQ(Delays(run, 2), (std::vector<long>{250, 250}));
}

// ---- periods

class ScenarioPeriods : public ::testing::Test {
 protected:
  // What is taken at a time in milliseconds, as "CLIENT:BYTES" of each period that was over.
  static std::string At(ScenarioRun& run, int time) {
    std::string text;
    for (const auto& outcome : run.TakePeriods(Time(time))) {
      text += (text.empty() ? "" : " ") + std::string(outcome.client == &client_ ? "1:" : "2:") +
              Bytes(outcome.posts);
    }
    return text;
  }
  static TimePoint Time(int milliseconds) { return TimePoint{} + Milliseconds(milliseconds); }

  static inline IpcPeer client_{};
  static inline IpcPeer other_{};
};

TEST_F(ScenarioPeriods, BeginWithTheClient) {
  ScenarioRun run = MakeRun("{\"every_ms\": 100, \"times\": 2, \"send\": [{\"hex\": \"01\"}]}");
  EXPECT_EQ(run.NextPeriod(), std::nullopt);
  run.Begin(&client_, Time(1000));
  EXPECT_EQ(run.NextPeriod(), Time(1100));
  EXPECT_EQ(At(run, 1099), "");
  EXPECT_EQ(At(run, 1100), "1:1");
  EXPECT_EQ(run.NextPeriod(), Time(1200));
  run.Begin(&client_, Time(1150));  // they run already
  EXPECT_EQ(At(run, 1200), "1:1");
  EXPECT_EQ(run.NextPeriod(), std::nullopt);
  EXPECT_EQ(At(run, 5000), "");
}

TEST_F(ScenarioPeriods, EndWithTheClient) {
  ScenarioRun run = MakeRun("{\"every_ms\": 100, \"times\": 2, \"send\": [{\"hex\": \"01\"}]}");
  run.Begin(&client_, Time(0));
  EXPECT_EQ(At(run, 100), "1:1");
  run.End(&client_);
  EXPECT_EQ(At(run, 1000), "");
  run.Begin(&client_, Time(1000));  // anew, with all its times
  EXPECT_EQ(At(run, 1100), "1:1");
  EXPECT_EQ(At(run, 1200), "1:1");
  EXPECT_EQ(At(run, 1300), "");
}

TEST_F(ScenarioPeriods, EveryClientHasItsOwn) {
  ScenarioRun run = MakeRun("{\"every_ms\": 100, \"times\": 2, \"send\": [{\"hex\": \"01\"}]}");
  run.Begin(&client_, Time(0));
  run.Begin(&other_, Time(50));
  EXPECT_EQ(At(run, 100), "1:1");
  EXPECT_EQ(At(run, 150), "2:1");
  run.End(&client_);
  EXPECT_EQ(At(run, 300), "2:1");
}

TEST_F(ScenarioPeriods, ComeInTheOrderOfTheirTimesThenOfTheFile) {
  ScenarioRun run = MakeRun(
      "{\"every_ms\": 70, \"times\": 1, \"send\": [{\"hex\": \"01\"}]},"
      "{\"every_ms\": 50, \"times\": 1, \"send\": [{\"hex\": \"02\"}]},"
      "{\"every_ms\": 70, \"times\": 1, \"send\": [{\"hex\": \"03\"}]}");
  run.Begin(&client_, Time(0));
  EXPECT_EQ(At(run, 80), "1:2 1:1 1:3");
}

TEST_F(ScenarioPeriods, ThatPassUnseenAreLeftOut) {
  ScenarioRun run = MakeRun("{\"every_ms\": 100, \"send\": [{\"hex\": \"01\"}]}");
  run.Begin(&client_, Time(0));
  EXPECT_EQ(At(run, 1010), "1:1");
  EXPECT_EQ(run.NextPeriod(), Time(1110));
}

TEST_F(ScenarioPeriods, OutsideTheirStateDontCount) {
  ScenarioRun run = MakeRun(
      "{\"every_ms\": 100, \"times\": 2, \"in\": \"on\", \"to\": \"start\","
      " \"send\": [{\"hex\": \"01\"}]},"
      "{\"on\": 0, \"to\": \"on\", \"send\": []}");
  run.Begin(&client_, Time(0));
  EXPECT_EQ(At(run, 100), "");
  Receive(run, encode::REQU_INIT());
  EXPECT_EQ(At(run, 200), "1:1");
  EXPECT_EQ(run.state(), "start");
  EXPECT_EQ(At(run, 300), "");
  Receive(run, encode::REQU_INIT());
  EXPECT_EQ(At(run, 400), "1:1");
  Receive(run, encode::REQU_INIT());
  EXPECT_EQ(At(run, 500), "");  // its two times are over
}

// Unlike the rules of a message: each period is an occasion by itself.
TEST_F(ScenarioPeriods, SeeTheStateThatThePeriodBeforeLeft) {
  ScenarioRun run = MakeRun(
      "{\"every_ms\": 100, \"in\": \"start\", \"to\": \"a\", \"send\": [{\"hex\": \"01\"}]},"
      "{\"every_ms\": 100, \"in\": \"a\", \"send\": [{\"hex\": \"02\"}]}");
  run.Begin(&client_, Time(0));
  EXPECT_EQ(At(run, 100), "1:1 1:2");
  EXPECT_EQ(At(run, 200), "1:2");
}

TEST_F(ScenarioPeriods, AreSetOffByNothingElse) {
  ScenarioRun run = MakeRun("{\"every_ms\": 100, \"send\": [{\"hex\": \"01\"}]}");
  EXPECT_FALSE(run.Connected().isRuled);
  EXPECT_FALSE(Receive(run, encode::REQU_INIT()).isRuled);
}

// ---- rules never set off

TEST_F(ScenarioPeriods, AndOtherRulesAreListedIfNeverSetOff) {
  ScenarioRun run = MakeRun(
      "{\"on\": \"connect\", \"send\": []},\n"
      "{\"on\": \"REQU_INIT\", \"send\": []},\n"
      "{\"on\": 4711, \"send\": []},\n"
      "{\"every_ms\": 50, \"send\": []}");
  EXPECT_EQ(run.NeverSetOff(),
            (std::vector<std::string>{
                "demo.json:1: rules[0] on connect", "demo.json:2: rules[1] on REQU_INIT",
                "demo.json:3: rules[2] on 4711", "demo.json:4: rules[3] every 50 ms"}));
  run.Connected();
  run.Begin(&client_, Time(0));
  run.TakePeriods(Time(50));
  EXPECT_EQ(run.NeverSetOff(), (std::vector<std::string>{"demo.json:2: rules[1] on REQU_INIT",
                                                         "demo.json:3: rules[2] on 4711"}));
}

}  // namespace
}  // namespace ventrik::bench
