// SPDX-License-Identifier: Apache-2.0
// Scenarios in the running program: checked, repeated by a seed, in place of its own answers, by
// themselves, and what is told of them at the end.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <sstream>
#include <string>

#include "tests/bench/engine_fixture.h"

namespace ventrik::bench {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

Arguments With(Arguments arguments, const Arguments& more) {
  arguments.insert(arguments.end(), more.begin(), more.end());
  return arguments;
}

// ---- checking

class ScenarioCheck : public EngineTest {
 protected:
  struct Result {
    int status;
    std::string output;
    std::string errors;
  };
  Result RunToItsEnd(const Arguments& arguments) {
    EngineProcess engine(arguments);
    const int status = engine.End(0);
    return {status, engine.output(), engine.errors()};
  }
};

TEST_F(ScenarioCheck, TellsThatAFileIsRight) {
  const Result result = RunToItsEnd(
      With(Scenario("{\"on\": 0, \"send\": []}, {\"every_ms\": 5, \"send\": []}"), {"--check"}));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, Path("scenario.json") + ": 2 rules, no errors\n");
  EXPECT_EQ(result.errors, "");
  EXPECT_FALSE(std::filesystem::exists(runtime_.path()));  // no name was taken
}

TEST_F(ScenarioCheck, WorksBesideAnEngineAndLeavesFilesAlone) {
  const auto engine = Start();
  WriteFile("record.log", "kept");
  const Result result =
      RunToItsEnd(With(Scenario(""), {"--check", "--record", Path("record.log")}));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, Path("scenario.json") + ": 0 rules, no errors\n");
  EXPECT_EQ(ReadFile("record.log"), "kept");
}

TEST_F(ScenarioCheck, TellsWhatIsWrong) {
  const struct {
    const char* text;
    const char* error;
  } kRows[] = {
      {"{\"rules\": [\n{\"on\": 0, \"every_ms\": 1, \"send\": []}]}",
       ":2:1: rules[0]: takes either \"on\" or \"every_ms\"\n"},
      {"{\"rules\": [\n,]}",
       ":2:1: rules: syntax error while parsing value - unexpected ','; expected '[', '{', or a "
       "literal\n"},
  };
  for (const auto& row : kRows) {
    WriteFile("wrong.json", row.text);
    const Result result = RunToItsEnd({"--scenario", Path("wrong.json"), "--check"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "kelmora-bench: " + Path("wrong.json") + row.error);
  }
  EXPECT_EQ(RunToItsEnd({"--check", "--scenario", Path("none.json")}).errors,
            "kelmora-bench: " + Path("none.json") + ": No such file or directory\n");
}

TEST_F(ScenarioCheck, NeedsAScenario) {
  const Result result = RunToItsEnd({"--check"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors.substr(0, 45),
            "kelmora-bench: --check requires --scenario\n"
            "A ");
  EXPECT_NE(result.errors.find("\nUsage: kelmora-bench [OPTIONS]\n"), std::string::npos);
}

// ---- chance

TEST_F(ScenarioCheck, ASeedIsANumberOf32Bits) {
  for (const std::string& text : Arguments{"-1", "4294967296", "0x1", "1.5", "one", ""}) {
    const Result result = RunToItsEnd({"--seed", text});
    EXPECT_EQ(result.status, 2);
    const std::string first = "kelmora-bench: --seed: '" + text + "' is no seed: 0 to 4294967295\n";
    EXPECT_EQ(result.errors.substr(0, first.size()), first);
  }
}

class ScenarioProgram : public EngineTest {};

TEST_F(ScenarioProgram, SaysItsSeedIfChanceHasASay) {
  const Arguments spread =
      Scenario("{\"on\": 0, \"send\": [{\"hex\": \"\", \"after_ms\": [0, 1]}]}");
  const auto engine = Start(With(spread, {"--seed", "4294967295"}));
  EXPECT_EQ(engine->ReadLine(), "kelmora-bench: seed 4294967295");
  EXPECT_EQ(engine->End(), 0);
  const auto unseeded = Start(spread);
  const std::string line = unseeded->ReadLine();
  EXPECT_EQ(line.substr(0, 20), "kelmora-bench: seed ");
  EXPECT_EQ(line.find_first_not_of("0123456789", 20), std::string::npos);
  EXPECT_GT(line.size(), 20u);
}

TEST_F(ScenarioProgram, KeepsItsSeedToItselfOtherwise) {
  const auto engine = Start(
      With(Scenario("{\"on\": 0, \"times\": 1, \"send\": [{\"hex\": \"\", \"after_ms\": [7, 7]}]}"),
           {"--seed", "1"}));
  const TestClient client;
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_EQ(client.Receive(), Block{});
  EXPECT_EQ(engine->End(), 0);
  EXPECT_EQ(engine->output().find("seed"), std::string::npos);
}

// Ten messages with delays that lie far apart come in an order that the seed decides.
TEST_F(ScenarioProgram, ASeedRepeatsWhatChanceBrought) {
  std::string sends;
  for (int i = 0; i < 10; ++i) {
    sends += std::string(i == 0 ? "" : ", ") + "{\"after_ms\": [0, 1000], \"hex\": \"0" +
             std::to_string(i) + "\"}";
  }
  const Arguments arguments = Scenario("{\"on\": 0, \"instead\": true, \"send\": [" + sends + "]}");
  const auto order = [&](const std::string& seed) {
    const auto engine = Start(With(arguments, {"--seed", seed}));
    const TestClient client;
    EXPECT_TRUE(client.Send(encode::REQU_INIT()));
    std::string text;
    for (int i = 0; i < 10; ++i) text += std::to_string(client.Receive().at(0));
    EXPECT_EQ(engine->End(), 0);
    return text;
  };
  EXPECT_EQ(order("1"), order("1"));
  EXPECT_NE(order("1"), order("2"));
}

// ---- rules and the engine's own answers

TEST_F(ScenarioProgram, ARuleInsteadOfTheAnswerReplacesIt) {
  const auto engine =
      Start(Scenario("{\"on\": \"REQU_GET_SPELL\", \"contains\": \"<GEOC>Fra\", \"times\": 1,"
                     " \"instead\": true, \"send\": [{\"hex\": \"6D020000\"}]}"));
  const TestClient client;
  for (const char* country : {"Ger", "Fra", "Fra"}) {
    EXPECT_TRUE(client.Send(encode::REQU_GET_SPELL(std::string("<GEOC>") + country + "<*>")));
  }
  EXPECT_EQ(client.ReceiveName(), "INFO_HEARTBEAT");
  EXPECT_EQ(client.ReceiveName("offeredCharacters"), "RESP_GET_SPELL many");
  EXPECT_EQ(client.ReceiveName("offeredCharacters"), "RESP_GET_SPELL nce");
  EXPECT_TRUE(client.Send(encode::REQU_SHUTDOWN()));
  EXPECT_EQ(client.ReceiveName(), "RESP_SHUTDOWN");
}

// The client takes part as if the engine had answered REQU_INIT by itself.
TEST_F(ScenarioProgram, AReplacedStartIsAStart) {
  const auto engine = Start(
      Scenario("{\"on\": \"REQU_INIT\", \"instead\": true, \"send\": [{\"message\": \"RESP_INIT\","
               " \"fields\": {\"result\": 3}}]}"));
  const TestClient client;
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_EQ(client.ReceiveName("result"), "RESP_INIT 3");
  EXPECT_TRUE(client.Send(encode::REQU_SET_MEASUREMENT_SYSTEM(1)));
  EXPECT_EQ(client.ReceiveName(), "INFO_MEASUREMENT_SYSTEM");
}

TEST_F(ScenarioProgram, OneStateIsSharedByAllClients) {
  const auto engine =
      Start(Scenario("{\"on\": 4711, \"to\": \"on\", \"send\": [{\"hex\": \"01\"}]},"
                     "{\"on\": 4712, \"in\": \"on\", \"send\": [{\"hex\": \"02\"}]},"
                     "{\"on\": 4712, \"in\": \"start\", \"send\": [{\"hex\": \"03\"}]}"));
  const Block first = {0x67, 0x12, 0, 0};
  const Block second = {0x68, 0x12, 0, 0};
  const TestClient client;
  EXPECT_TRUE(client.Send(second));
  EXPECT_EQ(client.Receive(), Block{3});
  const auto other = StartClient([&first](TestClient& child) {
    return child.Send(first) && child.Receive() == Block{1} ? 0 : 1;
  });
  EXPECT_EQ(other->Wait(), 0);
  EXPECT_TRUE(client.Send(second));
  EXPECT_EQ(client.Receive(), Block{2});
}

// ---- periods

TEST_F(ScenarioProgram, SendsEveryPeriodFromInitOn) {
  const auto engine = Start(Scenario("{\"every_ms\": 100, \"send\": [{\"hex\": \"6D020000\"}]}"));
  const TestClient client;
  const auto start = steady_clock::now();
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_EQ(client.ReceiveName(), "RESP_INIT");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(client.ReceiveName(), "INFO_HEARTBEAT");
  EXPECT_GE(steady_clock::now() - start, milliseconds(300));
}

TEST_F(ScenarioProgram, StopsAtShutdown) {
  const auto engine = Start(
      Scenario("{\"every_ms\": 20, \"send\": [{\"hex\": \"6D020000\"}]},"
               "{\"on\": \"REQU_SHUTDOWN\", \"send\": [{\"after_ms\": 500, \"hex\": \"01\"}]}"));
  const TestClient client;
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_EQ(client.ReceiveName(), "RESP_INIT");
  EXPECT_TRUE(client.Send(encode::REQU_SHUTDOWN()));
  std::string name = client.ReceiveName();
  while (name == "INFO_HEARTBEAT") name = client.ReceiveName();  // was on its way
  EXPECT_EQ(name, "RESP_SHUTDOWN");
  EXPECT_EQ(client.Receive(), Block{1});
}

TEST_F(ScenarioProgram, OutlivesClientsThatGoWithTheirPeriodsRunning) {
  const auto engine = Start(Scenario("{\"every_ms\": 1, \"send\": [{\"hex\": \"6D020000\"}]}"));
  for (int i = 0; i < 50; ++i) {
    const auto client = StartClient([](TestClient& child) {
      if (!child.Send(encode::REQU_INIT())) return 1;
      return child.Receive().empty() || child.Receive().empty() ? 2 : 0;
    });
    ASSERT_EQ(client->Wait(), 0);
  }
  ExpectCleanEnd(*engine);
}

// ---- the end

// What an engine that has ended said behind its first line in the form of that, and without the
// program's name.
std::string RemarksOf(EngineProcess& engine) {
  const std::string program = "kelmora-bench: ";
  std::istringstream lines(engine.output());
  std::string line;
  std::getline(lines, line);
  EXPECT_EQ(line.substr(0, program.size()), program);
  std::string remarks;
  while (std::getline(lines, line)) {
    if (line.compare(0, program.size(), program) == 0)
      remarks += line.substr(program.size()) + "\n";
  }
  return remarks;
}

TEST_F(ScenarioProgram, TellsWhatCameToNothing) {
  const auto engine = Start(With(
      Scenario("\n{\"on\": \"connect\", \"send\": []},\n{\"on\": \"REQU_INIT\", \"send\": []},\n"
               "{\"on\": \"REQU_SHUTDOWN\", \"where\": {}, \"in\": \"start\", \"send\": []}"),
      {"--blank"}));
  const TestClient client;
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_TRUE(client.Send(encode::REQU_GET_SPELL("")));
  EXPECT_TRUE(client.Send(encode::REQU_GET_SPELL("")));
  EXPECT_TRUE(client.Send(Block{0x67, 0x12, 0, 0}));
  EXPECT_EQ(engine->End(), 0);
  EXPECT_EQ(RemarksOf(*engine), "never set off: " + Path("scenario.json") +
                                    ":4: rules[2] on REQU_SHUTDOWN\n"
                                    "not answered: 1 of REQU_INIT, a rule sends nothing\n"
                                    "not answered: 2 of REQU_GET_SPELL\n"
                                    "not answered: 1 of 4711\n");
}

TEST_F(ScenarioProgram, WhatTheEngineAnswersIsAnswered) {
  const auto engine = Start();
  const TestClient client;
  EXPECT_TRUE(client.Send(encode::REQU_GET_SPELL("")));
  EXPECT_TRUE(client.Send(Block{0x67, 0x12, 0, 0}));
  EXPECT_EQ(client.ReceiveName(), "RESP_GET_SPELL");
  EXPECT_EQ(engine->End(), 0);
  EXPECT_EQ(RemarksOf(*engine), "not answered: 1 of 4711\n");
}

}  // namespace
}  // namespace ventrik::bench
