// SPDX-License-Identifier: Apache-2.0
// The engine's own threads, in one process with its client, so that the thread sanitizer sees all
// of what they share.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bench/engine.h"
#include "platform/thread_start.h"
#include "tests/bench/built_in_world.h"
#include "tests/bench/engine_fixture.h"

#if defined(__SANITIZE_THREAD__)
// The sanitizer hears of no lock that a cancelled thread takes on its way out, and so doesn't know
// that the main thread waits for it. What Stop() does behind that wait is left out; until then it
// sees everything.
extern "C" const char* __tsan_default_suppressions() {
  return "race:ventrik::bench::Engine::Stop\nrace:~Presence\n";
}
#endif

namespace ventrik::bench {
namespace {

// Receives for a client until its connection is closed.
class Listener {
 public:
  explicit Listener(const TestClient& client)
      : peer_(client.peer()), thread_([this] {
          while (IpcMessage* message = ipc_accept(peer_)) {
            Block block(ipc_length(message) + 1);
            ipc_read(message, block.data(), block.size());
            ipc_finish(message, 0);
            ++received_;
          }
        }) {}
  // Ends the connection. Its numbers may be the engine's next ones, so nobody may use them again.
  ~Listener() {
    ipc_hang_up(peer_);
    thread_.join();
    for (int i = 0; i < 2; ++i) peer_->receiving.channels[i] = peer_->connections[i] = -1;
  }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  void AwaitMessages(int count) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (received_ < count && std::chrono::steady_clock::now() < end) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_GE(received_.load(), count);
  }

 private:
  IpcPeer* peer_;
  std::atomic<int> received_{0};
  std::thread thread_;
};

class EngineThreadsTest : public EngineTest {
 protected:
  EngineThreadsTest() {
    platform::PrepareCancellation();
    options_.logFile = Path("log");
    options_.recordFile = Path("record");
    options_.pictureFolder = directory_.path();
    std::filesystem::create_directory(Path("folder"));
    options_.heartbeat = std::chrono::milliseconds(5);
    options_.seed = 1;
    WriteFile("scenario.json", R"({"rules": [
      {"every_ms": 3, "send": [{"message": "INFO_NEXT_MAN_INFO"}]},
      {"on": "connect", "send": [{"message": "INFO_LANE_INFORMATION"}]},
      {"on": "REQU_GET_SPELL", "send": [
        {"after_ms": [0, 20], "message": "RESP_GET_LIST"}]}]})");
    options_.scenarioFile = Path("scenario.json");
  }

  void AddFault(const std::string& text) {
    std::string error;
    const auto fault = ParseFault(text, error);
    ASSERT_TRUE(fault) << error;
    options_.faults.push_back(*fault);
  }

  std::unique_ptr<Engine> StartEngine() {
    auto engine = std::make_unique<Engine>(options_, BuiltInWorld());
    std::string error;
    EXPECT_TRUE(engine->Start(error)) << error;
    return engine;
  }

  // Everything that keeps the model's own thread busy, and that writes files.
  static void SetOff(const TestClient& client) {
    SDestinationElementList stops;
    stops.items.push_back(
        {"<GEOC>Germany<*><CTY>Potsdam<*>", std::make_shared<const SStringArray>()});
    client.Send(encode::REQU_INIT());
    client.Send(encode::REQU_NEW_TRIP(stops, {{1}}));
    client.Send(encode::REQU_SET_DEMO_MODE(1, 0, 0));
    client.Send(encode::REQU_START_GUIDANCE(1));
    client.Send(encode::REQU_VEH_LOC_INFO_DETAILS(2, 1));
    client.Send(encode::REQU_CHECK_FOR_UPDATE("/map-v2.pkg"));
    client.Send(encode::REQU_MAP_CONTROLS("<MID>map<*><MSM>1<*><MSS>50<*>"));
  }

  static void Ask(const TestClient& client, int times) {
    for (int i = 0; i < times; ++i) {
      client.Send(encode::REQU_GET_SPELL("<GEOC>Ger<*>"));
      client.Send(encode::REQU_STORE_DEVICE_STATUS("status.txt"));
      client.Send(encode::REQU_SCREEN_SHOT("map", "shot.png"));
      client.Send(encode::REQU_SCREEN_SHOT("map", "folder"));  // can't be written, and is reported
    }
  }

  Options options_;
};

TEST_F(EngineThreadsTest, ServeAClientWhileTimeBringsMore) {
  const auto engine = StartEngine();
  {
    const TestClient client;
    ASSERT_TRUE(client.isConnected());
    const Listener listener(client);
    SetOff(client);
    Ask(client, 10);
    listener.AwaitMessages(200);
  }
  EXPECT_TRUE(engine->Stop());
  EXPECT_NE(engine->Table().find("RESP_SCREEN_SHOT"), std::string::npos);
  EXPECT_TRUE(std::filesystem::exists(Path("shot.png")));
}

TEST_F(EngineThreadsTest, CommitFaultsOnAllOfThem) {
  for (const char* fault :
       {"drop,probability=0.1", "late,probability=0.1,seconds=0.05", "duplicate,probability=0.2",
        "reorder,probability=0.2", "flood,probability=0.05,copies=5", "unknown,probability=0.1",
        "truncate,probability=0.1", "lie,probability=0.1", "endless,probability=0.1",
        "miscount,probability=0.1"}) {
    AddFault(fault);
  }
  const auto engine = StartEngine();
  {
    const TestClient client;
    const Listener listener(client);
    SetOff(client);
    Ask(client, 10);
    listener.AwaitMessages(200);
  }
  EXPECT_TRUE(engine->Stop());
  EXPECT_FALSE(engine->Remarks().empty());
}

TEST_F(EngineThreadsTest, LoseTheirClientsAndAreStartedAgain) {
  AddFault("restart,message=REQU_SHUTDOWN,seconds=0.01,after=1,times=2");
  AddFault("die,message=REQU_SHUTDOWN,seconds=0.01,times=1");
  const auto engine = StartEngine();
  for (int life = 0; life < 4; ++life) {
    std::unique_ptr<TestClient> client;
    while (!client || !client->isConnected()) client = std::make_unique<TestClient>();
    const Listener listener(*client);
    SetOff(*client);
    Ask(*client, 2);
    listener.AwaitMessages(20);
    client->Send(encode::REQU_SHUTDOWN());
  }
  EXPECT_TRUE(engine->Stop());
  EXPECT_NE(engine->Remarks().back().find("faults: "), std::string::npos);
}

TEST_F(EngineThreadsTest, EndInTheMiddleOfSending) {
  for (int i = 0; i < 5; ++i) {
    const auto engine = StartEngine();
    const TestClient client;
    const Listener listener(client);
    SetOff(client);
    Ask(client, i);
    EXPECT_TRUE(engine->Stop());
  }
}

}  // namespace
}  // namespace ventrik::bench
