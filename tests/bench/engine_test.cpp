// SPDX-License-Identifier: Apache-2.0
// What the running program answers, sends by itself and records.
#include "bench/engine.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <sstream>
#include <thread>

#include "bench/model/system.h"
#include "tests/bench/engine_fixture.h"

namespace ventrik::bench {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// ---- answers

TEST_F(EngineTest, AnswersATester) {
  const auto engine = Start();
  const TestClient client;
  ASSERT_TRUE(client.isConnected());
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_EQ(client.ReceiveName("result"), "RESP_INIT 0");
  EXPECT_TRUE(client.Send(encode::REQU_GET_SW_VERSION()));
  EXPECT_EQ(client.ReceiveName("swVersion"), "RESP_GET_SW_VERSION " + ProgramVersion());
  EXPECT_TRUE(client.Send(encode::REQU_GET_SPELL("<GEOC>Ger<*>")));
  EXPECT_EQ(client.ReceiveName("offeredCharacters"), "RESP_GET_SPELL many");
  EXPECT_TRUE(client.Send(encode::REQU_GET_LIST("<GEOC>Germany<*><CTY>Passau<*>", 1, 5, 0, {}, 2)));
  EXPECT_EQ(client.ReceiveName("itemList"), "RESP_GET_LIST <GEOS>Bayern<*><CTY>Passau<*>");
  EXPECT_TRUE(client.Send(encode::REQU_SHUTDOWN()));
  EXPECT_EQ(client.ReceiveName(), "RESP_SHUTDOWN");
}

TEST_F(EngineTest, ServesUnderTheNameGiven) {
  const auto engine = Start({"--name", "second"}, "second");
  EXPECT_FALSE(TestClient("navigation").isConnected());
  const TestClient client("second");
  ASSERT_TRUE(client.isConnected());
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_EQ(client.ReceiveName(), "RESP_INIT");
}

TEST_F(EngineTest, TakesRequestsWhileItsAnswersWait) {
  const auto engine = Start();
  const TestClient client;
  for (int i = 0; i < 100; ++i) {
    ASSERT_TRUE(client.Send(encode::REQU_GET_LIST("<CTY><*>", i + 1, 1000, 0, {{"ALL"}}, 1)));
  }
  for (int i = 0; i < 100; ++i) {
    ASSERT_EQ(client.ReceiveName("startIndex"), "RESP_GET_LIST " + std::to_string(i + 1));
  }
}

TEST_F(EngineTest, ServesTwoClientsAtOnce) {
  const auto engine = Start();
  const auto search = [](const std::string& country, const std::string& answer) {
    return [country, answer](TestClient& client) {
      for (int i = 0; i < 200; ++i) {
        if (!client.Send(encode::REQU_GET_SPELL("<GEOC>" + country + "<*>"))) return 1;
        if (client.ReceiveName("offeredCharacters") != "RESP_GET_SPELL " + answer) return 2;
      }
      return 0;
    };
  };
  const auto first = StartClient(search("Ger", "many"));
  const auto second = StartClient(search("Can", "ada"));
  EXPECT_EQ(first->Wait(), 0);
  EXPECT_EQ(second->Wait(), 0);
}

TEST_F(EngineTest, TellsClientsInTheOrderInWhichTheyConnected) {
  const auto engine = Start({"--log", Path("log")});
  tests::Signal connected;
  tests::Signal secondIsReady;
  tests::Signal firstIsReady;
  const auto first = StartClient([&](TestClient& client) {
    connected.Notify();
    secondIsReady.Await();
    if (!client.Send(encode::REQU_INIT()) || client.ReceiveName() != "RESP_INIT") return 1;
    firstIsReady.Notify();
    return client.ReceiveName() == "INFO_MEASUREMENT_SYSTEM" ? 0 : 2;
  });
  connected.Await();
  const TestClient second;
  EXPECT_TRUE(second.Send(encode::REQU_INIT()));
  EXPECT_EQ(second.ReceiveName(), "RESP_INIT");
  secondIsReady.Notify();
  firstIsReady.Await();
  EXPECT_TRUE(second.Send(encode::REQU_SET_MEASUREMENT_SYSTEM(1)));
  EXPECT_EQ(second.ReceiveName(), "INFO_MEASUREMENT_SYSTEM");
  EXPECT_TRUE(second.Send(encode::REQU_GET_SW_VERSION()));
  EXPECT_EQ(second.ReceiveName(), "RESP_GET_SW_VERSION");
  const std::string log = ReadFile("log");
  const std::string told = " INFO_MEASUREMENT_SYSTEM";
  const std::size_t tellsFirst = log.find("-> " + std::to_string(first->pid()) + told);
  const std::size_t tellsSecond = log.find("-> " + std::to_string(getpid()) + told);
  EXPECT_NE(tellsFirst, std::string::npos) << log;
  EXPECT_LT(tellsFirst, tellsSecond) << log;
  EXPECT_EQ(first->Wait(), 0);
}

TEST_F(EngineTest, BlankAnswersNothing) {
  Arguments arguments =
      Scenario("{\"on\": \"REQU_SHUTDOWN\", \"send\": [{\"hex\": \"6D020000\"}]}");
  arguments.push_back("--blank");
  const auto engine = Start(arguments);
  const TestClient client;
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_TRUE(client.Send(encode::REQU_GET_SPELL("<GEOC>Ger<*>")));
  EXPECT_TRUE(client.Send(encode::REQU_SHUTDOWN()));
  EXPECT_EQ(client.ReceiveName(), "INFO_HEARTBEAT");
  EXPECT_EQ(engine->End(), 0);
  const std::string output = engine->output();
  EXPECT_EQ(output.find("kelmora-bench: 3 messages received, "), 0u) << output;
  EXPECT_NE(output.find("kelmora-bench: not answered: 1 of REQU_INIT\n"
                        "kelmora-bench: not answered: 1 of REQU_GET_SPELL\n"),
            std::string::npos)
      << output;
}

TEST_F(EngineTest, RefusesWhatIsTooLong) {
  const auto engine = Start();
  const TestClient client;
  const Block block(kMaxPayload + 1, 0);
  IpcMessage* message = ipc_connect(client.peer());
  errno = 0;
  EXPECT_EQ(ipc_write(message, block.data(), block.size()), -1);
  EXPECT_EQ(errno, kTooLong);
  EXPECT_EQ(ipc_disconnect(message), -1);

  Block longest(kMaxPayload, 0);
  EXPECT_TRUE(client.Send(longest));  // begins with the number of REQU_INIT
  EXPECT_EQ(client.ReceiveName(), "RESP_INIT");
  EXPECT_EQ(engine->End(), 0);
  EXPECT_EQ(engine->errors(), "kelmora-bench: a message of 1048577 bytes from process " +
                                  std::to_string(getpid()) + " was refused\n");
}

TEST_F(EngineTest, AMessageWithoutAnEndHoldsUpNobodyForLong) {
  const auto engine = Start();
  const TestClient client;
  const auto request = encode::REQU_INIT();
  IpcMessage* message = ipc_connect(client.peer());
  EXPECT_EQ(ipc_write(message, request.data(), request.size()), static_cast<long>(request.size()));
  EXPECT_TRUE(client.Send(encode::REQU_GET_SW_VERSION()));
  EXPECT_EQ(client.ReceiveName(), "RESP_GET_SW_VERSION");
  // Its end comes late, and isn't taken for that of what is sent then.
  std::thread late([message] { ipc_disconnect(message); });
  std::this_thread::sleep_for(milliseconds(200));
  EXPECT_TRUE(client.Send(encode::REQU_GET_DB_VERSION()));
  EXPECT_EQ(client.ReceiveName(), "RESP_GET_DB_VERSION");
  late.join();
  EXPECT_EQ(engine->End(), 0);
  EXPECT_EQ(engine->errors(), "kelmora-bench: a message from process " + std::to_string(getpid()) +
                                  " has no end and was dropped\n");
}

// ---- heartbeat

TEST_F(EngineTest, BeatsForClientsThatAreInitialised) {
  const auto engine = Start({"--heartbeat", "0.05"});
  tests::Signal connected;
  tests::Signal beaten;
  const auto other = StartClient([&](TestClient& client) {
    connected.Notify();
    beaten.Await();
    if (!client.Send(encode::REQU_SHUTDOWN())) return 1;
    return client.ReceiveName() == "RESP_SHUTDOWN" ? 0 : 2;
  });
  connected.Await();
  const TestClient client;
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  const auto start = steady_clock::now();
  EXPECT_EQ(client.ReceiveName(), "RESP_INIT");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(client.ReceiveName(), "INFO_HEARTBEAT");
  EXPECT_GE(steady_clock::now() - start, milliseconds(100));
  beaten.Notify();
  EXPECT_EQ(other->Wait(), 0);
}

// ---- scenarios

TEST_F(EngineTest, SendsWhatIsDueOnConnecting) {
  const auto engine = Start(Scenario(
      "{\"on\": \"connect\", \"times\": 1, \"send\": [{\"message\": \"INFO_LANE_INFORMATION\","
      " \"fields\": {\"detailsEIS\": \"hello\"}}]}"));
  {
    const TestClient client;
    EXPECT_EQ(client.ReceiveName("detailsEIS"), "INFO_LANE_INFORMATION hello");
  }
  const TestClient again;
  EXPECT_TRUE(again.Send(encode::REQU_INIT()));
  EXPECT_EQ(again.ReceiveName(), "RESP_INIT");
}

TEST_F(EngineTest, SendsRulesBeforeItsOwnAnswerAndDelaysLater) {
  const auto engine = Start(Scenario(
      "{\"on\": 0, \"send\": ["
      "  {\"after_ms\": 300, \"message\": \"INFO_CALC_STATE\", \"fields\": {\"calcState\": 3}},"
      "  {\"message\": \"INFO_CALC_STATE\", \"fields\": {\"calcState\": 1}}]},"
      "{\"on\": \"REQU_INIT\", \"send\": [{\"message\": \"INFO_CALC_STATE\","
      "  \"fields\": {\"calcState\": 2}}]}"));
  const TestClient client;
  const auto start = steady_clock::now();
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_EQ(client.ReceiveName("calcState"), "INFO_CALC_STATE 1");
  EXPECT_EQ(client.ReceiveName("calcState"), "INFO_CALC_STATE 2");
  EXPECT_EQ(client.ReceiveName(), "RESP_INIT");
  EXPECT_EQ(client.ReceiveName("calcState"), "INFO_CALC_STATE 3");
  EXPECT_GE(steady_clock::now() - start, milliseconds(300));
}

TEST_F(EngineTest, SendsAnyBytes) {
  const auto engine = Start(
      Scenario("{\"on\": \"connect\", \"send\": [{\"hex\": \"\"}, {\"hex\": \"01 02 03\"}]}"));
  const TestClient client;
  EXPECT_EQ(client.Receive(), Block{});
  EXPECT_EQ(client.Receive(), (Block{1, 2, 3}));
}

// ---- recording

TEST_F(EngineTest, RecordsWhatItReceives) {
  const auto engine = Start({"--record", Path("record.log"), "--blank"});
  const TestClient client;
  EXPECT_TRUE(client.Send(encode::REQU_SHUTDOWN()));
  EXPECT_TRUE(client.Send(encode::REQU_GET_SPELL("ab")));
  EXPECT_TRUE(client.Send(Block{}));
  EXPECT_TRUE(client.Send(Block(8193, 0)));
  EXPECT_TRUE(client.Send(Block{0xFF}));
  client.Send(encode::REQU_SHUTDOWN());  // the one before is in the file once this one is taken

  // A fresh reader finds whole records while the engine runs.
  const std::string early = ReadFile("record.log");
  EXPECT_EQ(engine->End(), 0);
  const std::string record = ReadFile("record.log");
  EXPECT_EQ(record.compare(0, early.size(), early), 0);
  EXPECT_EQ(early.substr(early.size() - 1), "\n");

  std::string withoutTimes;
  std::string lastTime = "00000000";
  std::istringstream lines(record);
  for (std::string line; std::getline(lines, line);) {
    const std::string time = line.substr(0, 8);
    EXPECT_EQ(time.find_first_not_of("0123456789ABCDEF"), std::string::npos) << time;
    EXPECT_GE(time, lastTime);
    lastTime = time;
    withoutTimes += line.substr(8) + "\n";
  }
  EXPECT_EQ(withoutTimes,
            "0000000464000000\n"
            "0000000C2E0100000200000061620000\n"
            "00000000\n"
            "00000001FF\n"
            "0000000464000000\n");
  EXPECT_EQ(engine->errors(),
            "kelmora-bench: message 0 of 8193 bytes is too long to be recorded\n");
}

// ---- clients that come again

TEST_F(EngineTest, AnswersAProcessOverItsNewestConnection) {
  const auto engine =
      Start(Scenario("{\"on\": 0, \"send\": [{\"after_ms\": 200, \"hex\": \"6D020000\"}]}"));
  const TestClient old;
  EXPECT_TRUE(old.Send(encode::REQU_INIT()));
  EXPECT_EQ(old.ReceiveName(), "RESP_INIT");
  {
    const TestClient anew;
    EXPECT_TRUE(anew.Send(encode::REQU_SHUTDOWN()));
    EXPECT_EQ(anew.ReceiveName(), "RESP_SHUTDOWN");
  }
  EXPECT_EQ(old.ReceiveName(), "INFO_HEARTBEAT");  // what still waited for it
  EXPECT_EQ(engine->End(), 0);
}

// A client that does nothing but shake hands, over one connection that it keeps: each time the
// engine forgets the record before.
TEST_F(EngineTest, KeepsOneRecordOfAClientThatOnlyShakesHands) {
  const auto engine = Start();
  const TestClient client;
  const auto shakeHands = [&client] {
    IpcControlRecord record = {IPC_CONNECT,
                               {static_cast<std::uint32_t>(client.peer()->receiving.channels[0]),
                                static_cast<std::uint32_t>(client.peer()->receiving.channels[1]),
                                static_cast<std::uint32_t>(getpid())}};
    return MsgSend(client.peer()->connections[0], &record, sizeof record, &record, sizeof record);
  };
  for (int i = 0; i < 20; ++i) ASSERT_EQ(shakeHands(), 0);
  const std::size_t before = engine->Descriptors();
  for (int i = 0; i < 200; ++i) ASSERT_EQ(shakeHands(), 0);
  // Another thread closes what belonged to the older records, a little later.
  std::size_t after = engine->Descriptors();
  for (int i = 0; i < 500 && after >= before + 20; ++i) {
    usleep(10'000);
    after = engine->Descriptors();
  }
  EXPECT_LT(after, before + 20);
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_EQ(client.ReceiveName(), "RESP_INIT");
  EXPECT_EQ(engine->End(), 0);
  EXPECT_NE(engine->output().find(" 221 connections\n"), std::string::npos);
}

TEST_F(EngineTest, OutlivesManyConnections) {
  const auto engine = Start({"--heartbeat", "0.001"});
  for (int i = 0; i < 100; ++i) {
    const TestClient client;
    ASSERT_TRUE(client.Send(encode::REQU_INIT()));
    ASSERT_EQ(client.ReceiveName(), "RESP_INIT");
  }
  ExpectCleanEnd(*engine);
}

}  // namespace
}  // namespace ventrik::bench
