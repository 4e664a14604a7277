// SPDX-License-Identifier: Apache-2.0
// How the program starts, refuses to start and ends, and clients that die or hang.
#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>
#include <string>

#include "tests/bench/engine_fixture.h"

namespace ventrik::bench {
namespace {

// ---- starting

class EngineStartTest : public EngineTest {
 protected:
  // Runs the program to its end, which must come by itself with status 2 and nothing said on
  // standard output. Returns what it says on standard error.
  std::string Refusal(const Arguments& arguments) {
    EngineProcess engine(arguments);
    EXPECT_EQ(engine.End(0), 2);
    EXPECT_EQ(engine.output(), "");
    return engine.errors();
  }
};

TEST_F(EngineStartTest, BadOptionsGetTheUsage) {
  for (const Arguments& arguments :
       {Arguments{"--nope"}, {"word"}, {"--name"}, {"--record"}, {"--heartbeat", "often"}}) {
    EXPECT_NE(Refusal(arguments).find("\nUsage: kelmora-bench [OPTIONS]\n"), std::string::npos)
        << arguments[0];
  }
  EXPECT_EQ(Refusal({"--nope"}).substr(0, 64),
            "kelmora-bench: The following argument was not expected: --nope\n"
            "A");
}

TEST_F(EngineStartTest, AHeartbeatIsADecimalNumberOfSeconds) {
  for (const std::string& text :
       Arguments{"-1", "1e1", "0.0001", "86401", "nan", "inf", "0x1", "1s", ""}) {
    const std::string first = "kelmora-bench: --heartbeat: '" + text +
                              "' is no number of seconds: 0, or 0.001 to 86400\n";
    EXPECT_EQ(Refusal({"--heartbeat", text}).substr(0, first.size()), first);
  }
}

TEST_F(EngineStartTest, FilesMustBeUsable) {
  EXPECT_EQ(Refusal({"--scenario", Path("none.json")}),
            "kelmora-bench: " + Path("none.json") + ": No such file or directory\n");
  EXPECT_EQ(Refusal({"--scenario", directory_.path()}),
            "kelmora-bench: " + directory_.path() + ": Is a directory\n");
  EXPECT_EQ(Refusal({"--record", directory_.path()}),
            "kelmora-bench: " + directory_.path() + ": Is a directory\n");
  EXPECT_EQ(RuntimeFiles(), "");
}

TEST_F(EngineStartTest, AScenarioMustBeRight) {
  EXPECT_EQ(Refusal(Scenario("\n{\"on\": \"connect\", \"send\": [{\"hex\": \"123\"}]}")),
            "kelmora-bench: " + Path("scenario.json") +
                ":2:29: rules[0].send[0].hex: odd number of digits\n");
}

TEST_F(EngineStartTest, ANameMustBeOne) {
  for (const std::string& name : {std::string("a/b"), std::string(".."), std::string(300, 'x')}) {
    EXPECT_EQ(Refusal({"--name", name}),
              "kelmora-bench: the name \"" + name + "\" can't be the name of a server\n");
  }
}

TEST_F(EngineStartTest, ANameIsServedOnce) {
  const auto engine = Start();
  WriteFile("record.log", "kept");
  EXPECT_EQ(Refusal({"--record", Path("record.log")}),
            "kelmora-bench: the name \"navigation\" is taken by a server that is running\n");
  EXPECT_EQ(ReadFile("record.log"), "kept");
  {
    const TestClient client;
    EXPECT_TRUE(client.Send(encode::REQU_INIT()));
    EXPECT_EQ(client.ReceiveName(), "RESP_INIT");
  }
  ExpectCleanEnd(*engine);
}

TEST_F(EngineStartTest, HelpAndVersionEndWell) {
  EngineProcess help({"--help"});
  EXPECT_EQ(help.End(0), 0);
  const std::string text = help.output();
  for (const char* option : {"--name", "--record", "--scenario", "--check", "--seed", "--blank",
                             "--heartbeat", "--help", "--version"}) {
    EXPECT_NE(text.find(std::string("\n  ") + option + " "), std::string::npos) << option;
  }
  EngineProcess version({"--version"});
  EXPECT_EQ(version.End(0), 0);
  EXPECT_EQ(version.output().substr(0, 14), "kelmora-bench ");
}

// ---- ending

TEST_F(EngineTest, EndsOnEachSignal) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    const auto engine = Start();
    ExpectCleanEnd(*engine, number);
    EXPECT_EQ(engine->output(), "kelmora-bench: 0 messages received, 0 sent, 0 connections\n");
    EXPECT_EQ(engine->errors(), "");
  }
}

TEST_F(EngineTest, EndsWithMessagesStillWaiting) {
  const auto engine =
      Start(Scenario("{\"on\": \"connect\", \"send\": [{\"after_ms\": 86400000, \"hex\": \"\"}]}"));
  TestClient client;
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_EQ(client.ReceiveName(), "RESP_INIT");
  EXPECT_EQ(engine->End(), 0);
  client.Close();
  EXPECT_EQ(RuntimeFiles(), "");
}

TEST_F(EngineTest, EndsInTheMiddleOfSending) {
  const auto engine = Start();
  TestClient client;
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  IpcMessage* answer = ipc_accept(client.peer());  // and the engine waits until it is read
  ASSERT_NE(answer, nullptr);
  EXPECT_EQ(engine->End(), 0);
  ipc_finish(answer, 0);
  client.Close();
  EXPECT_EQ(RuntimeFiles(), "");
}

TEST_F(EngineTest, EndsBeforeItsEndMarkerIsTaken) {
  const auto engine = Start();
  TestClient client;
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  IpcMessage* answer = ipc_accept(client.peer());
  ASSERT_NE(answer, nullptr);
  Block block(ipc_length(answer));
  EXPECT_EQ(ipc_read(answer, block.data(), block.size()), 0);  // all but the marker
  EXPECT_EQ(engine->End(), 0);
  ipc_finish(answer, 0);
  client.Close();
  EXPECT_EQ(RuntimeFiles(), "");
}

TEST_F(EngineTest, EndsInTheMiddleOfReceiving) {
  const auto engine = Start();
  TestClient client;
  IpcMessage* request = ipc_connect(client.peer());
  EXPECT_EQ(ipc_write(request, "12345678", 8), 8);  // and the engine waits for the end marker
  EXPECT_EQ(engine->End(), 0);
  EXPECT_EQ(ipc_disconnect(request), -1);
  client.Close();
  EXPECT_EQ(RuntimeFiles(), "");
}

// ---- clients that die or hang

class LostClientTest : public EngineTest {
 protected:
  // Lets a client do something, then kills it.
  void LoseClient(const std::function<void(TestClient&)>& before) {
    tests::Signal done;
    const auto lost = StartClient([&](TestClient& client) {
      before(client);
      done.Notify();
      for (;;) pause();
      return 0;
    });
    done.Await();
    lost->Kill();
  }

  void ExpectService() {
    const TestClient client;
    ASSERT_TRUE(client.isConnected());
    EXPECT_TRUE(client.Send(encode::REQU_INIT()));
    EXPECT_EQ(client.ReceiveName(), "RESP_INIT");
  }
};

TEST_F(LostClientTest, KilledBeforeItsEndMarker) {
  const auto engine = Start({"--record", Path("record.log")});
  LoseClient([](TestClient& client) { ipc_write(ipc_connect(client.peer()), "12345678", 8); });
  ExpectService();
  EXPECT_EQ(engine->End(), 0);
  EXPECT_NE(engine->errors().find(" has no end and was dropped\n"), std::string::npos);
  EXPECT_EQ(ReadFile("record.log").substr(8), "0000000400000000\n");  // without the lost one
}

TEST_F(LostClientTest, KilledWhileItIsAnswered) {
  const auto engine = Start();
  LoseClient([](TestClient& client) {
    client.Send(encode::REQU_INIT());
    ipc_accept(client.peer());
  });
  ExpectService();
  EXPECT_EQ(engine->End(), 0);
}

TEST_F(LostClientTest, KilledWithMessagesWaiting) {
  const auto engine =
      Start(Scenario("{\"on\": \"connect\", \"send\": [{\"after_ms\": 100, \"hex\": \"6D020000\"},"
                     "{\"after_ms\": 86400000, \"hex\": \"6D020000\"}]}"));
  for (int i = 0; i < 5; ++i) {
    LoseClient([](TestClient&) {});
  }
  const TestClient client;
  EXPECT_EQ(client.ReceiveName(), "INFO_HEARTBEAT");
  EXPECT_EQ(engine->End(), 0);
}

// The others wait until it is given up, once, and it is answered again in a new session.
TEST_F(LostClientTest, OneThatNeverReceivesHoldsNobodyUpForEver) {
  const auto engine = Start({"--heartbeat", "0.01"});
  tests::Signal sent;
  tests::Signal goOn;
  const auto hung = StartClient([&](TestClient& client) {
    for (int i = 0; i < 20; ++i) client.Send(encode::REQU_INIT());
    sent.Notify();
    goOn.Await();
    if (!client.Send(encode::REQU_INIT()) || !client.Send(encode::REQU_SHUTDOWN())) return 1;
    std::string name = "INFO_HEARTBEAT";
    while (name == "INFO_HEARTBEAT" || name == "RESP_INIT") name = client.ReceiveName();
    return name == "RESP_SHUTDOWN" ? 0 : 2;
  });
  sent.Await();
  ExpectService();
  goOn.Notify();
  const std::string report = "kelmora-bench: process " + std::to_string(hung->pid()) +
                             " takes no messages; what is due to it is dropped until its next "
                             "REQU_INIT\n";
  EXPECT_EQ(hung->Wait(), 0);
  EXPECT_EQ(engine->End(), 0);
  EXPECT_NE(engine->errors().find(report), std::string::npos);
}

TEST_F(LostClientTest, OneThatNeverTakesTheEndMarkerHoldsNobodyUpForEver) {
  const auto engine = Start();
  tests::Signal done;
  const auto hung = StartClient([&](TestClient& client) {
    client.Send(encode::REQU_INIT());
    IpcMessage* answer = ipc_accept(client.peer());
    Block block(ipc_length(answer));
    ipc_read(answer, block.data(), block.size());
    done.Notify();
    for (;;) pause();
    return 0;
  });
  done.Await();
  ExpectService();
  EXPECT_EQ(engine->End(), 0);
}

}  // namespace
}  // namespace ventrik::bench
