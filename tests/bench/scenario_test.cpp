// SPDX-License-Identifier: Apache-2.0
#include "bench/scenario.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "messages/function_ids.h"
#include "messages/message_layout.h"

namespace ventrik::bench {
namespace {

using std::chrono::milliseconds;

Scenario Parse(const std::string& text) {
  std::string error;
  const auto scenario = ParseScenario(text, "demo.json", error);
  EXPECT_TRUE(scenario) << error;
  return scenario.value_or(Scenario{});
}

std::string ErrorOf(const std::string& text) {
  std::string error;
  return ParseScenario(text, "demo.json", error) ? "(no error)" : error;
}

std::string RuleWith(const std::string& send) {
  return "{\"rules\": [{\"on\": \"connect\", \"send\": [" + send + "]}]}";
}

Block SendOf(const std::string& send) {
  const Scenario scenario = Parse(RuleWith(send));
  if (scenario.rules.size() != 1 || scenario.rules[0].send.size() != 1) return {};
  return scenario.rules[0].send[0].block;
}

Block Encoded(FunctionId id, const MessageFields& fields) {
  Block block;
  std::string error;
  EXPECT_TRUE(EncodeMessage(id, fields, block, error)) << error;
  return block;
}

// ---- what can be said

TEST(Scenario, MayHaveNoRules) {
  EXPECT_TRUE(Parse("{\"rules\": []}").rules.empty());
}

TEST(Scenario, KeepsRulesAndMessagesInOrder) {
  const Scenario scenario = Parse(
      "{\"rules\": [\n"
      "  {\"on\": \"REQU_INIT\", \"times\": 2, \"send\": [{\"hex\": \"01\"}, {\"hex\": \"02\"}]},\n"
      "  {\"on\": 4711, \"send\": []},\n"
      "  {\"on\": \"connect\", \"send\": [{\"hex\": \"03\", \"after_ms\": 250}]}]}");
  ASSERT_EQ(scenario.rules.size(), 3u);
  EXPECT_EQ(scenario.rules[0].message, REQU_INIT);
  EXPECT_EQ(scenario.rules[0].times, 2);
  ASSERT_EQ(scenario.rules[0].send.size(), 2u);
  EXPECT_EQ(scenario.rules[0].send[0].block, Block{1});
  EXPECT_EQ(scenario.rules[0].send[0].after, milliseconds(0));
  EXPECT_EQ(scenario.rules[0].send[1].block, Block{2});
  EXPECT_EQ(scenario.rules[1].message, 4711);
  EXPECT_EQ(scenario.rules[1].times, std::nullopt);
  EXPECT_TRUE(scenario.rules[1].send.empty());
  EXPECT_EQ(scenario.rules[2].message, std::nullopt);
  ASSERT_EQ(scenario.rules[2].send.size(), 1u);
  EXPECT_EQ(scenario.rules[2].send[0].after, milliseconds(250));
}

TEST(Scenario, TakesHexOfAnyCaseWithBlanks) {
  EXPECT_EQ(SendOf("{\"hex\": \"9d 01\\n0 0\\t00Ff\"}"), (Block{0x9D, 1, 0, 0, 0xFF}));
  EXPECT_EQ(SendOf("{\"hex\": \"\"}"), Block{});
}

TEST(Scenario, ConvertsFieldsByTheirKinds) {
  EXPECT_EQ(SendOf("{\"message\": \"RESP_SHUTDOWN\"}"), Encoded(RESP_SHUTDOWN, {}));
  EXPECT_EQ(SendOf("{\"message\": \"RESP_SHUTDOWN\", \"fields\": {}}"), Encoded(RESP_SHUTDOWN, {}));
  EXPECT_EQ(
      SendOf("{\"message\": \"INFO_CALC_STATE\", \"fields\":"
             " {\"calcPercent\": -2147483648, \"routeHandle\": 2147483647}}"),
      Encoded(INFO_CALC_STATE, {{"routeHandle", 2147483647}, {"calcPercent", -2147483647 - 1}}));
  EXPECT_EQ(SendOf("{\"message\": \"INFO_NEXT_MAN_INFO\", \"fields\": {\"nextManInfo1\": 255}}"),
            Encoded(INFO_NEXT_MAN_INFO, {{"nextManInfo1", 255}}));
  EXPECT_EQ(SendOf("{\"message\": \"RESP_PICK_INFO\", \"fields\": {\"mapEIS\": \"<MID>1<*>\","
                   " \"xWorldCoordinate\": 11.5, \"yWorldCoordinate\": -48,"
                   " \"pickInfo\": [\"a\", \"\u00FC\"]}}"),
            Encoded(RESP_PICK_INFO, {{"mapEIS", std::string("<MID>1<*>")},
                                     {"xWorldCoordinate", 11.5},
                                     {"yWorldCoordinate", -48.0},
                                     {"pickInfo", std::vector<std::string>{"a", "\u00FC"}}}));
  EXPECT_EQ(SendOf("{\"message\": \"REQU_SET_TMC_MODE\", \"fields\": {\"text\": 3}}"),
            Encoded(REQU_SET_TMC_MODE, {{"text", 3}}));
  EXPECT_EQ(SendOf("{\"message\": \"REQU_GET_SPELL\", \"fields\": {\"inputEIS\": \"\"}}"),
            Encoded(REQU_GET_SPELL, {}));
  EXPECT_EQ(SendOf("{\"message\": \"TMC_DATA\", \"fields\": {\"text\": \"abc\"}}"),
            Encoded(TMC_DATA, {{"text", std::string("abc")}}));
  EXPECT_EQ(SendOf("{\"message\": \"GPS_DATA\", \"fields\": {\"body\": \"00 ff\"}}"),
            Encoded(GPS_DATA, {{"body", std::string("\0\xFF", 2)}}));
  EXPECT_EQ(
      SendOf("{\"message\": \"RESP_NEW_TRIP\", \"fields\": {\"destinations\":"
             " [[\"A\", [\"b\", \"c\"]], [\"D\", []]], \"handles\": [1, -2]}}"),
      Encoded(RESP_NEW_TRIP, {{"destinations", DestinationValues{{"A", {"b", "c"}}, {"D", {}}}},
                              {"handles", std::vector<std::int32_t>{1, -2}}}));
}

TEST(Scenario, ReadsWhatARuleAsksFor) {
  const Scenario scenario = Parse(
      "{\"state\": \"asleep\",\n\"rules\": [\n"
      "{\"on\": \"REQU_GET_LIST\", \"where\": {\"startIndex\": 1, \"fieldNames\": [\"GEO\"]},"
      " \"contains\": \"<CTY>\", \"in\": \"asleep\", \"to\": \"awake\", \"instead\": true,"
      " \"send\": []},\n\n"
      "{\"every_ms\": 1000, \"times\": 3, \"in\": [\"asleep\", \"awake\"], \"send\": []}]}");
  EXPECT_EQ(scenario.file, "demo.json");
  EXPECT_EQ(scenario.state, "asleep");
  ASSERT_EQ(scenario.rules.size(), 2u);
  const ScenarioRule& first = scenario.rules[0];
  EXPECT_EQ(first.line, 3);
  EXPECT_EQ(first.message, REQU_GET_LIST);
  EXPECT_EQ(first.period, std::nullopt);
  EXPECT_EQ(first.where,
            (MessageFields{{"startIndex", 1}, {"fieldNames", std::vector<std::string>{"GEO"}}}));
  EXPECT_EQ(first.contains, "<CTY>");
  EXPECT_EQ(first.in, std::vector<std::string>{"asleep"});
  EXPECT_EQ(first.to, "awake");
  EXPECT_TRUE(first.instead);
  const ScenarioRule& second = scenario.rules[1];
  EXPECT_EQ(second.line, 5);
  EXPECT_EQ(second.message, std::nullopt);
  EXPECT_EQ(second.period, milliseconds(1000));
  EXPECT_EQ(second.times, 3);
  EXPECT_EQ(second.in, (std::vector<std::string>{"asleep", "awake"}));
  EXPECT_EQ(second.to, std::nullopt);
  EXPECT_FALSE(second.instead);
}

TEST(Scenario, BeginsInTheStateStart) {
  EXPECT_EQ(Parse("{\"rules\": []}").state, "start");
}

TEST(Scenario, LeavesDelaysToChance) {
  const Scenario scenario = Parse(
      RuleWith("{\"hex\": \"\", \"after_ms\": [100, 300]}, {\"hex\": \"\", \"after_ms\": [5, 5]}"));
  ASSERT_EQ(scenario.rules.at(0).send.size(), 2u);
  EXPECT_EQ(scenario.rules[0].send[0].after, milliseconds(100));
  EXPECT_EQ(scenario.rules[0].send[0].spread, milliseconds(200));
  EXPECT_EQ(scenario.rules[0].send[1].after, milliseconds(5));
  EXPECT_EQ(scenario.rules[0].send[1].spread, milliseconds(0));
  EXPECT_TRUE(scenario.UsesChance());
  EXPECT_FALSE(Parse(RuleWith("{\"hex\": \"\", \"after_ms\": [5, 5]}")).UsesChance());
  EXPECT_FALSE(Parse(RuleWith("{\"hex\": \"\", \"after_ms\": 5}")).UsesChance());
}

// ---- errors

// Without the column, which the tests of positions look at.
std::string LineAndError(const std::string& text) {
  const std::string error = ErrorOf(text);
  const std::size_t line = error.find(':', std::string("demo.json:").size());
  return error.substr(0, line) + error.substr(std::min(error.find(": "), error.size()));
}

struct ErrorRow {
  const char* text;
  const char* error;
};

TEST(ScenarioErrors, OfTheRules) {
  const ErrorRow kRows[] = {
      {"[]", "demo.json:1:1: the scenario: takes an object"},
      {"\n3\n", "demo.json:2:1: the scenario: takes an object"},
      {"{}", "demo.json:1:1: the scenario: has no \"rules\""},
      {"{\"rules\": [],\n\"rule\": []}",
       "demo.json:2:1: rule: unknown key; known here: state, rules"},
      {"{\n\"rules\":\n{}}", "demo.json:2:1: rules: takes a list of rules"},
      {"{\"rules\": [\n{}]}", "demo.json:2:1: rules[0]: takes either \"on\" or \"every_ms\""},
      {"{\"rules\": [\n\n4\n]}", "demo.json:3:1: rules[0]: takes an object"},
      {"{\"rules\": [{\"on\": 1}]}", "demo.json:1:12: rules[0]: has no \"send\""},
      {"{\"rules\": [{\"on\": 1, \"send\": []},\n{\"on\": 1, \"sned\": []}]}",
       "demo.json:2:11: rules[1].sned: unknown key; known here: on, every_ms, where, contains, in, "
       "to, times, instead, send"},
      {"{\"rules\": [{\"on\": \"REQU_\", \"send\": []}]}",
       "demo.json:1:13: rules[0].on: no message is called \"REQU_\""},
      {"{\"rules\": [{\"on\": null, \"send\": []}]}",
       "demo.json:1:13: rules[0].on: takes the name or number of a message or \"connect\""},
      {"{\"rules\": [{\"on\": 1.5, \"send\": []}]}",
       "demo.json:1:13: rules[0].on: takes the name or number of a message or \"connect\""},
      {"{\"rules\": [{\"on\": 2147483648, \"send\": []}]}",
       "demo.json:1:13: rules[0].on: takes a whole number from -2147483648 to 2147483647"},
      {"{\"rules\": [{\"on\": 1,\n\"times\": 0, \"send\": []}]}",
       "demo.json:2:1: rules[0].times: takes a whole number from 1 to 2147483647"},
      {"{\"rules\": [{\"on\": 1, \"times\": \"2\", \"send\": []}]}",
       "demo.json:1:22: rules[0].times: takes a whole number from 1 to 2147483647"},
      {"{\"rules\": [{\"on\": 1, \"send\": {}}]}",
       "demo.json:1:22: rules[0].send: takes a list of messages"},
  };
  for (const ErrorRow& row : kRows) EXPECT_EQ(ErrorOf(row.text), row.error) << row.text;
}

TEST(ScenarioErrors, OfWhatARuleAsksFor) {
  const ErrorRow kRows[] = {
      {"\"on\": 1, \"every_ms\": 5", ": takes either \"on\" or \"every_ms\""},
      {"\"every_ms\": 0", ".every_ms: takes a whole number from 1 to 86400000"},
      {"\"every_ms\": [1, 2]", ".every_ms: takes a whole number from 1 to 86400000"},
      {"\"every_ms\": 5, \"where\": {}", ".where: goes with a message in \"on\""},
      {"\"every_ms\": 5, \"contains\": \"a\"", ".contains: goes with a message in \"on\""},
      {"\"every_ms\": 5, \"instead\": true", ".instead: goes with a message in \"on\""},
      {"\"on\": \"connect\", \"where\": {}", ".where: goes with a message in \"on\""},
      {"\"on\": \"connect\", \"instead\": false", ".instead: goes with a message in \"on\""},
      {"\"on\": 1, \"instead\": 1", ".instead: takes true or false"},
      {"\"on\": 4711, \"where\": {}", ".where: this message's fields are unknown"},
      {"\"on\": \"REQU_INIT\", \"where\": 1", ".where: takes an object"},
      {"\"on\": \"REQU_INIT\", \"where\": {\"answer\": 1}",
       ".where.answer: no such field; REQU_INIT has no fields"},
      {"\"on\": \"REQU_START_GUIDANCE\", \"where\": {\"routeHandle\": \"7\"}",
       ".where.routeHandle: takes a whole number from -2147483648 to 2147483647"},
      {"\"on\": \"REQU_GET_LIST\", \"where\": {\"fieldNames\": [1]}",
       ".where.fieldNames[0]: takes a text"},
      {"\"on\": 4711, \"contains\": \"\"", ".contains: this message's fields are unknown"},
      {"\"on\": \"REQU_INIT\", \"contains\": \"a\"", ".contains: this message has no text"},
      {"\"on\": \"GPS_DATA\", \"contains\": \"a\"", ".contains: this message has no text"},
      {"\"on\": \"REQU_GET_SPELL\", \"contains\": [\"a\"]", ".contains: takes a text"},
      {"\"on\": 1, \"in\": []", ".in: takes a state or a list of states"},
      {"\"on\": 1, \"in\": 1", ".in: takes a state or a list of states"},
      {"\"on\": 1, \"in\": [\"start\", 1]", ".in[1]: takes a text"},
      {"\"on\": 1, \"in\": \"other\"", ".in: no rule leads to \"other\""},
      {"\"on\": 1, \"in\": [\"start\", \"other\"]", ".in: no rule leads to \"other\""},
      {"\"on\": 1, \"to\": 1", ".to: takes a text"},
  };
  for (const ErrorRow& row : kRows) {
    EXPECT_EQ(LineAndError(std::string("{\"rules\": [{\"send\": [], ") + row.text + "}]}"),
              std::string("demo.json:1: rules[0]") + row.error)
        << row.text;
  }
  EXPECT_EQ(LineAndError("{\"rules\": [],\n\"state\": 1}"), "demo.json:2: state: takes a text");
  EXPECT_EQ(LineAndError(
                "{\"rules\": [{\"on\": 1, \"in\": \"start\", \"send\": []}],\n\"state\": \"a\"}"),
            "demo.json:1: rules[0].in: no rule leads to \"start\"");
}

TEST(ScenarioErrors, OfAMessage) {
  const ErrorRow kRows[] = {
      {"7", "takes an object"},
      {"{}", "takes either \"hex\" or \"message\""},
      {"{\"hex\": \"\", \"message\": \"RESP_INIT\"}", "takes either \"hex\" or \"message\""},
      {"{\"fields\": {}}", ".fields: goes with a \"message\""},
      {"{\"hex\": \"\", \"fields\": {}}", ".fields: goes with a \"message\""},
      {"{\"hexx\": \"\"}", ".hexx: unknown key; known here: after_ms, hex, message, fields"},
      {"{\"hex\": \"012\"}", ".hex: odd number of digits"},
      {"{\"hex\": \"0x12\"}", ".hex: a character that is no hexadecimal digit"},
      {"{\"hex\": 12}", ".hex: takes a text of hexadecimal digits"},
      {"{\"hex\": \"\", \"after_ms\": -1}", ".after_ms: takes a whole number from 0 to 86400000"},
      {"{\"hex\": \"\", \"after_ms\": 1.5}", ".after_ms: takes a whole number from 0 to 86400000"},
      {"{\"hex\": \"\", \"after_ms\": 99999999999999999999}",
       ".after_ms: takes a whole number from 0 to 86400000"},
      {"{\"hex\": \"\", \"after_ms\": []}", ".after_ms: takes a number or [least, most]"},
      {"{\"hex\": \"\", \"after_ms\": [1, 2, 3]}", ".after_ms: takes a number or [least, most]"},
      {"{\"hex\": \"\", \"after_ms\": [2, 1]}", ".after_ms: the most is less than the least"},
      {"{\"hex\": \"\", \"after_ms\": [-1, 1]}",
       ".after_ms[0]: takes a whole number from 0 to 86400000"},
      {"{\"hex\": \"\", \"after_ms\": [1, \"2\"]}",
       ".after_ms[1]: takes a whole number from 0 to 86400000"},
      {"{\"message\": \"RESP_INITT\"}", ".message: no message is called \"RESP_INITT\""},
      {"{\"message\": \"FUNC_INVALID\"}", ".message: no message is called \"FUNC_INVALID\""},
      {"{\"message\": 1}", ".message: takes the name of a message"},
      {"{\"message\": \"RESP_INIT\", \"fields\": []}", ".fields: takes an object"},
      {"{\"message\": \"RESP_INIT\", \"fields\": {\"answer\": 1}}",
       ".fields.answer: no such field; RESP_INIT has result:word"},
      {"{\"message\": \"RESP_SHUTDOWN\", \"fields\": {\"answer\": 1}}",
       ".fields.answer: no such field; RESP_SHUTDOWN has no fields"},
  };
  for (const ErrorRow& row : kRows) {
    const std::string what = row.error;
    EXPECT_EQ(LineAndError(RuleWith(row.text)),
              "demo.json:1: rules[0].send[0]" + std::string(what[0] == '.' ? "" : ": ") + what)
        << row.text;
  }
}

TEST(ScenarioErrors, OfAField) {
  const struct {
    const char* message;
    const char* field;
    const char* value;
    const char* error;
  } kRows[] = {
      {"RESP_INIT", "result", "\"0\"", ": takes a whole number from -2147483648 to 2147483647"},
      {"RESP_INIT", "result", "2147483648",
       ": takes a whole number from -2147483648 to 2147483647"},
      {"RESP_INIT", "result", "-2147483649",
       ": takes a whole number from -2147483648 to 2147483647"},
      {"RESP_INIT", "result", "true", ": takes a whole number from -2147483648 to 2147483647"},
      {"INFO_NEXT_MAN_INFO", "nextManInfo1", "256", ": takes a whole number from 0 to 255"},
      {"INFO_NEXT_MAN_INFO", "nextManInfo1", "-1", ": takes a whole number from 0 to 255"},
      {"RESP_PICK_INFO", "xWorldCoordinate", "\"1\"", ": takes a number"},
      {"RESP_GET_SPELL", "inputEIS", "5", ": takes a text"},
      {"RESP_GET_SPELL", "inputEIS", "\"a\\u0000b\"", ": a text can't hold a NUL"},
      {"GPS_DATA", "body", "[]", ": takes a text of hexadecimal digits"},
      {"GPS_DATA", "body", "\"abc\"", ": odd number of digits"},
      {"RESP_GET_LIST", "itemList", "\"a\"", ": takes a list of texts"},
      {"RESP_GET_LIST", "itemList", "[\"a\", 1]", "[1]: takes a text"},
      {"RESP_KILL_TRIP", "handles", "1", ": takes a list of numbers"},
      {"RESP_KILL_TRIP", "handles", "[1, 1.5]",
       "[1]: takes a whole number from -2147483648 to 2147483647"},
      {"RESP_NEW_TRIP", "destinations", "{}", ": takes a list of destinations"},
      {"RESP_NEW_TRIP", "destinations", "[\"A\"]", "[0]: takes [\"text\", [\"item\", ...]]"},
      {"RESP_NEW_TRIP", "destinations", "[[\"A\"]]", "[0]: takes [\"text\", [\"item\", ...]]"},
      {"RESP_NEW_TRIP", "destinations", "[[1, []]]", "[0][0]: takes a text"},
      {"RESP_NEW_TRIP", "destinations", "[[\"A\", \"b\"]]", "[0][1]: takes a list of texts"},
      {"REQU_NEW_TRIP", "destinations", "[[\"A\", [0]]]", "[0][1][0]: takes a text"},
  };
  for (const auto& row : kRows) {
    const std::string text = std::string("{\"message\": \"") + row.message +
                             "\",\n\"fields\": {\n\"" + row.field + "\": " + row.value + "}}";
    EXPECT_EQ(LineAndError(RuleWith(text)),
              std::string("demo.json:3: rules[0].send[0].fields.") + row.field + row.error)
        << text;
  }
}

TEST(ScenarioErrors, NameTheLineAndColumnOfTheKey) {
  EXPECT_EQ(ErrorOf("{\n"
                    "  \"rules\": [\n"
                    "    {\n"
                    "      \"on\": \"REQU_INIT\",\n"
                    "      \"send\": [\n"
                    "        {\"hex\": \"00\"},\n"
                    "        {\"hex\":\n"
                    "          \"0\"}]}]}"),
            "demo.json:7:10: rules[0].send[1].hex: odd number of digits");
}

TEST(ScenarioErrors, NameTheColumnOfAnElementOfAList) {
  const std::string head = "{\"rules\": [{\"on\": 1, \"in\": ";
  EXPECT_EQ(ErrorOf(head + "[\"start\" ,\n\t 1]}]}"),
            "demo.json:2:3: rules[0].in[1]: takes a text");
  EXPECT_EQ(ErrorOf(head + "[\"\u00FC\", {}]}]}"), "demo.json:1:35: rules[0].in[1]: takes a text")
      << "in bytes";
  EXPECT_EQ(ErrorOf(head + "[\n12,13\n]}]}"), "demo.json:2:1: rules[0].in[0]: takes a text");
}

TEST(ScenarioErrors, NameTheColumnBehindNumbersOfAllEnds) {
  const std::string head =
      "{\"rules\": [{\"on\": 1, \"send\": [{\"message\": \"RESP_KILL_TRIP\",\n"
      "\"fields\": {\"handles\": [";
  const std::string path = ": rules[0].send[0].fields.handles";
  const std::string error = ": takes a whole number from -2147483648 to 2147483647";
  EXPECT_EQ(ErrorOf(head + "\n1,\n1.5\n]}}]}]}"), "demo.json:4:1" + path + "[1]" + error);
  EXPECT_EQ(ErrorOf(head + "1,1.5]}}]}]}"), "demo.json:2:26" + path + "[1]" + error);
  EXPECT_EQ(ErrorOf(head + "1 , 2\n,null]}}]}]}"), "demo.json:3:2" + path + "[2]" + error);
  EXPECT_EQ(ErrorOf(head + "1], \"handle\": 2}}]}]}"),
            "demo.json:2:28: rules[0].send[0].fields.handle: no such field; RESP_KILL_TRIP has "
            "handles:words");
}

TEST(ScenarioErrors, AByteOrderMarkIsSkipped) {
  EXPECT_EQ(ErrorOf("\xEF\xBB\xBF{\"rules\":\n 1}"), "demo.json:1:5: rules: takes a list of rules");
}

TEST(ScenarioErrors, OfTheJson) {
  const ErrorRow kRows[] = {
      {"",
       "demo.json:1:1: syntax error while parsing value - unexpected end of input; expected "
       "'[', '{', or a literal"},
      {"{\n\"rules\": [,]}",
       "demo.json:2:11: rules: syntax error while parsing value - unexpected ','; expected '[', "
       "'{', or a literal"},
      {"{\"rules\": []}\nx",
       "demo.json:2:1: syntax error while parsing value - invalid literal; "
       "last read: '\"rules\": []}<U+000A>x'; expected end of input"},
      {"{\"rules\": [{\"on\": 1},\n{\"on\": ]}]}",
       "demo.json:2:8: rules[1].on: syntax error while parsing value - unexpected ']'; expected "
       "'[', '{', or a literal"},
      {"{\"rules\": [{\"send\": [{\"hex\": \"\"\n\"message\": 1}]}]}",
       "demo.json:2:9: rules[0].send[0]: syntax error while parsing object - unexpected string "
       "literal; expected '}'"},
      {"{\"rules\": [],\n \"rules\": []}", "demo.json:2:2: rules: the key is there already"},
      {"{\"rules\": [{\"on\": 1, \"on\": 2}]}",
       "demo.json:1:22: rules[0].on: the key is there already"},
      {"{\"rules\":\n 1e999}", "demo.json:2:2: rules: number overflow parsing '1e999'"},
  };
  for (const ErrorRow& row : kRows) EXPECT_EQ(ErrorOf(row.text), row.error) << row.text;
}

TEST(ScenarioErrors, DeepNestingIsRefused) {
  std::string path;
  for (int level = 1; level < 32; ++level) path += "[0]";
  EXPECT_EQ(ErrorOf(std::string(1000000, '[')),
            "demo.json:1:33: " + path + ": too many lists and objects in one another");
}

TEST(ScenarioErrors, EveryPrefixIsRefused) {
  const std::string text =
      "{\"state\": \"a\", \"rules\": [{\"on\": \"REQU_GET_SPELL\", \"where\": {\"inputEIS\": "
      "\"x\"}, "
      "\"instead\": true, \"in\": [\"a\"], \"times\": 1, \"send\": [{\"after_ms\": [5, 6], "
      "\"message\": "
      "\"RESP_NEW_TRIP\", \"fields\": {\"destinations\": [[\"\u00FC\", [\"b\"]]], \"handles\": "
      "[12]}}]}]}";
  EXPECT_EQ(ErrorOf(text), "(no error)");
  for (std::size_t length = 0; length < text.size(); ++length) {
    EXPECT_EQ(ErrorOf(text.substr(0, length)).substr(0, 12), "demo.json:1:") << length;
  }
}

}  // namespace
}  // namespace ventrik::bench
