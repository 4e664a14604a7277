// SPDX-License-Identifier: Apache-2.0
// What the manual shows of scenarios is right, and does what the manual says.
#include <gtest/gtest.h>

#include <set>

#include "bench/scenario.h"
#include "tests/bench/engine_fixture.h"
#include "tests/bench/worked_scenarios.h"

namespace ventrik::bench {
namespace {

TEST(WorkedScenario, AllAreRight) {
  std::set<std::string> titles;
  for (const WorkedScenario& worked : WorkedScenarios()) {
    std::string error;
    const auto scenario = ParseScenario(worked.text, worked.title, error);
    EXPECT_TRUE(scenario) << error;
    EXPECT_TRUE(scenario && !scenario->rules.empty()) << worked.title;
    titles.insert(worked.title);
  }
  EXPECT_EQ(titles, (std::set<std::string>{
                        "A route that is calculated",
                        "A server that fails to initialise, once, and then sends nonsense",
                        "A search that goes wrong for one country",
                        "Guidance that speaks by itself",
                    }));
}

class WorkedScenarioTest : public EngineTest {
 protected:
  std::unique_ptr<EngineProcess> StartWorked(const std::string& title) {
    WriteFile("worked.json", WorkedScenarioOf(title));
    return Start({"--scenario", Path("worked.json")});
  }
};

TEST_F(WorkedScenarioTest, FailsToInitialiseOnce) {
  const auto engine =
      StartWorked("A server that fails to initialise, once, and then sends nonsense");
  const TestClient client;
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_EQ(client.ReceiveName("result"), "RESP_INIT 5");
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_EQ(client.ReceiveName("result"), "RESP_INIT 0");
  EXPECT_EQ(client.Receive(), (Block{0x2F, 1, 0, 0, 0x10, 0, 0, 0, 1, 0}));
  EXPECT_EQ(client.Receive(), (Block{0x39, 0x30, 0, 0}));
}

TEST_F(WorkedScenarioTest, SearchGoesWrongForOneCountry) {
  const auto engine = StartWorked("A search that goes wrong for one country");
  EXPECT_EQ(engine->ReadLine().substr(0, 20), "kelmora-bench: seed ");
  const TestClient client;
  // The answer of chance comes after that to the request behind it, and nothing comes with it.
  EXPECT_TRUE(client.Send(encode::REQU_GET_SPELL("<GEOC>Fra<*>")));
  EXPECT_TRUE(client.Send(encode::REQU_GET_SPELL("<GEOC>Ger<*>")));
  EXPECT_EQ(client.ReceiveName("offeredCharacters"), "RESP_GET_SPELL many");
  EXPECT_EQ(client.ReceiveName("validState"), "RESP_GET_SPELL 2");

  const std::string places = "<GEOC>Germany<*><CTY><*>";
  EXPECT_TRUE(client.Send(encode::REQU_GET_LIST(places, 1, 5, 0, {{"POP"}}, 2)));
  EXPECT_EQ(client.ReceiveName("itemList"), "RESP_GET_LIST <CTY>Atlantis<*><POP>0<*>");
  EXPECT_TRUE(client.Send(encode::REQU_GET_LIST(places, 2, 5, 0, {{"POP"}}, 2)));
  EXPECT_EQ(client.ReceiveName("startIndex"), "RESP_GET_LIST 2");
  EXPECT_TRUE(client.Send(encode::REQU_GET_LIST("<GEOC>France<*><CTY><*>", 1, 5, 0, {{"POP"}}, 2)));
  EXPECT_EQ(client.ReceiveName("itemList").find("Atlantis"), std::string::npos);
}

TEST_F(WorkedScenarioTest, GuidanceSpeaksByItself) {
  const auto engine = StartWorked("Guidance that speaks by itself");
  const TestClient client;
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_EQ(client.ReceiveName(), "RESP_INIT");
  EXPECT_TRUE(client.Send(encode::REQU_START_GUIDANCE(7)));
  EXPECT_EQ(client.ReceiveName("calcState"), "INFO_CALC_STATE 6");
  EXPECT_TRUE(client.Send(encode::REQU_START_GUIDANCE(7)));
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(client.ReceiveName("distance"), "INFO_NEXT_MAN_INFO 400");
  }
  EXPECT_TRUE(client.Send(encode::REQU_STOP_GUIDANCE()));
  EXPECT_EQ(client.ReceiveName(), "INFO_ACTIVE_ROUTE_DESC");
  EXPECT_TRUE(client.Send(encode::REQU_START_GUIDANCE(7)));
  EXPECT_EQ(client.ReceiveName("calcState"), "INFO_CALC_STATE 6");
  EXPECT_EQ(engine->End(), 0);
  EXPECT_EQ(engine->output().find("never set off"), std::string::npos);
}

}  // namespace
}  // namespace ventrik::bench
