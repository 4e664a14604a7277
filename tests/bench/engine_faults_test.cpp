// SPDX-License-Identifier: Apache-2.0
// Faults of the running program that a tester can't tell apart, or never gets to: what a sender is
// told, and what the engine does with the bytes of requests that its faults have looked at.
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <sstream>
#include <string>

#include "tests/bench/engine_fixture.h"

namespace ventrik::bench {
namespace {

class EngineFaultsTest : public EngineTest {
 protected:
  static std::unique_ptr<EngineProcess> StartWith(const Arguments& faults,
                                                  const Arguments& more = {}) {
    Arguments arguments = {"--seed", "1"};
    for (const std::string& fault : faults) arguments.push_back("--fault=" + fault);
    arguments.insert(arguments.end(), more.begin(), more.end());
    auto engine = std::make_unique<EngineProcess>(arguments);
    EXPECT_EQ(engine->ReadLine(), "kelmora-bench: serving \"navigation\"");
    EXPECT_EQ(engine->ReadLine(), "kelmora-bench: seed 1");
    return engine;
  }

  // What became of the data part: the receiver's count, or -1 and errno.
  static long Write(const TestClient& client, const Block& block) {
    IpcMessage* message = ipc_connect(client.peer());
    const long count = ipc_write(message, block.data(), block.size());
    const int error = errno;
    ipc_disconnect(message);
    errno = error;
    return count;
  }
};

// A fault for each request, which never strikes those that are sent.
constexpr const char* kNever = "unread,message=REQU_SHUTDOWN";

TEST_F(EngineFaultsTest, MessagesOfAnyLengthArePassedOnWhole) {
  const auto engine = StartWith({kNever}, {"--blank", "--record", Path("record.log")});
  const TestClient client;
  std::string expected;
  for (const std::size_t size : {0, 1, 3, 4, 5, 7, 8, 9, 4096, 8192}) {
    Block block(size);
    std::array<char, 9> text = {};
    std::snprintf(text.data(), text.size(), "%08zX", size);
    expected += text.data();
    for (std::size_t i = 0; i < size; ++i) {
      block[i] = static_cast<std::uint8_t>(1 + i % 250);
      std::snprintf(text.data(), text.size(), "%02X", static_cast<unsigned>(block[i]));
      expected += text.data();
    }
    expected += "\n";
    EXPECT_EQ(Write(client, block), static_cast<long>(size));
  }
  EXPECT_EQ(engine->End(), 0);
  std::string record;
  std::istringstream lines(ReadFile("record.log"));
  for (std::string line; std::getline(lines, line);) record += line.substr(8) + "\n";
  EXPECT_EQ(record, expected);
  EXPECT_EQ(engine->errors(), "");
}

TEST_F(EngineFaultsTest, TheLongestMessageIsTakenAndALongerOneRefused) {
  const auto engine = StartWith({kNever});
  const TestClient client;
  EXPECT_TRUE(client.Send(Block(kMaxPayload, 0)));  // begins with the number of REQU_INIT
  EXPECT_EQ(client.ReceiveName(), "RESP_INIT");
  EXPECT_EQ(Write(client, Block(kMaxPayload + 1, 0)), -1);
  EXPECT_EQ(errno, kTooLong);
  EXPECT_EQ(engine->End(), 0);
}

TEST_F(EngineFaultsTest, AMiscountIsAByteShort) {
  const auto engine = StartWith({"miscount,times=2"});
  const TestClient client;
  EXPECT_EQ(Write(client, Block(100, 0)), 99);
  EXPECT_EQ(Write(client, Block(3, 1)), 2);
  EXPECT_EQ(Write(client, Block(100, 0)), 100);
  EXPECT_EQ(engine->End(), 0);
  EXPECT_NE(engine->output().find("faults: miscount 2\n"), std::string::npos);
}

TEST_F(EngineFaultsTest, WhatIsNeverReadHoldsUpNobodyElseAndFailsAtTheEnd) {
  const auto engine = StartWith({"unread,message=REQU_SHUTDOWN"});
  tests::Signal connected;
  const auto silenced = StartClient([&](TestClient& client) {
    connected.Notify();
    const auto request = encode::REQU_SHUTDOWN();
    const auto* bytes = static_cast<const std::uint8_t*>(request.data());
    return Write(client, Block(bytes, bytes + request.size())) == -1 ? 0 : 1;
  });
  connected.Await();
  const TestClient client;
  for (int i = 0; i < 20; ++i) {
    ASSERT_TRUE(client.Send(encode::REQU_INIT()));
    ASSERT_EQ(client.ReceiveName(), "RESP_INIT");
  }
  EXPECT_EQ(engine->End(), 0);
  EXPECT_EQ(silenced->Wait(), 0);
  EXPECT_NE(engine->output().find("faults: unread 1\n"), std::string::npos);
}

TEST_F(EngineFaultsTest, TheDeadAreConnectedToAnew) {
  const auto engine = StartWith({"die,times=1,seconds=0.2"});
  const TestClient before;
  EXPECT_EQ(Write(before, Block(4, 0)), -1);
  EXPECT_EQ(errno, ESRCH);
  EXPECT_EQ(Write(before, Block(4, 0)), -1) << "an old connection stays dead";
  bool connected = false;
  while (!connected) connected = TestClient().isConnected();  // nobody serves for a while
  const TestClient after;
  ASSERT_TRUE(after.isConnected());
  EXPECT_TRUE(after.Send(encode::REQU_INIT()));
  EXPECT_EQ(after.ReceiveName(), "RESP_INIT");
  EXPECT_EQ(engine->End(), 0);
}

TEST_F(EngineFaultsTest, FaultsAreCommittedInTheirOrder) {
  const auto engine = StartWith({"unknown,message=RESP_INIT", "duplicate,message=RESP_INIT"});
  const TestClient client;
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  const Block first = client.Receive();
  EXPECT_EQ(first, (Block{1, 0, 0, 0x40, 0, 0, 0, 0})) << "still known by its own number";
  EXPECT_EQ(client.Receive(), first);
  EXPECT_EQ(engine->End(), 0);
  EXPECT_NE(engine->output().find("faults: unknown 1, duplicate 1\n"), std::string::npos);
}

// The settings of an engine after it was dead for a moment, as it tells them in answer to a request
// that it refuses.
class EngineDeathTest : public EngineFaultsTest {
 protected:
  static std::string SystemAfter(const std::string& fault) {
    const auto engine = StartWith({fault + ",message=REQU_SHUTDOWN,times=1,seconds=0"});
    {
      const TestClient before;
      EXPECT_TRUE(before.Send(encode::REQU_INIT()));
      EXPECT_EQ(before.ReceiveName(), "RESP_INIT");
      EXPECT_TRUE(before.Send(encode::REQU_SET_MEASUREMENT_SYSTEM(2)));
      EXPECT_EQ(before.ReceiveName("measurementSystem"), "INFO_MEASUREMENT_SYSTEM 2");
      EXPECT_FALSE(before.Send(encode::REQU_SHUTDOWN()));
    }
    std::unique_ptr<TestClient> after;
    while (!after || !after->isConnected()) after = std::make_unique<TestClient>();
    EXPECT_TRUE(after->Send(encode::REQU_INIT()));
    EXPECT_EQ(after->ReceiveName(), "RESP_INIT");
    EXPECT_TRUE(after->Send(encode::REQU_SET_MEASUREMENT_SYSTEM(99)));
    const std::string system = after->ReceiveName("measurementSystem");
    EXPECT_EQ(engine->End(), 0);
    EXPECT_NE(engine->output().find("not answered: 1 of REQU_SHUTDOWN, struck by " + fault + "\n"),
              std::string::npos);
    return system;
  }
};

TEST_F(EngineDeathTest, TheDeadKnowWhatTheyKnew) {
  EXPECT_EQ(SystemAfter("die"), "INFO_MEASUREMENT_SYSTEM 2");
}

TEST_F(EngineDeathTest, TheRestartedHaveForgotten) {
  EXPECT_EQ(SystemAfter("restart"), "INFO_MEASUREMENT_SYSTEM 8");
}

// ---- what is told of faults

TEST_F(EngineFaultsTest, WhatTheyStruckIsTold) {
  const auto engine = StartWith({"refuse,times=1", "miscount,message=REQU_SHUTDOWN",
                                 "drop,message=RESP_INIT,times=1", "lie,message=RESP_INIT"},
                                {"--log", Path("log"), "--record", Path("record")});
  EXPECT_FALSE(TestClient().isConnected());
  const TestClient client;
  EXPECT_FALSE(client.Send(encode::REQU_SHUTDOWN()));
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_TRUE(client.Send(encode::REQU_INIT()));
  EXPECT_EQ(client.ReceiveName(), "RESP_INIT");
  const std::string process = std::to_string(getpid());
  // The answer is told when the engine knows that it was taken, which the client knows before.
  // If it never is, the comparison below shows what is missing.
  const auto told = [&] {
    return ReadFile("log").find("-> " + process + " RESP_INIT") != std::string::npos;
  };
  for (int i = 0; i < 10'000 && !told(); ++i) usleep(1000);
  EXPECT_EQ(engine->End(), 0);
  std::string log;
  std::istringstream lines(ReadFile("log"));
  for (std::string line; std::getline(lines, line);) {
    line = line.substr(line.find_first_of("<-!"));
    log += line.substr(0, line.find(" result=")) + "\n";
  }
  EXPECT_EQ(log,
            "!! - refuse\n"
            "!! " +
                process +
                " miscount REQU_SHUTDOWN\n"
                "<- " +
                process +
                " REQU_INIT\n"
                "!! " +
                process +
                " drop RESP_INIT\n"
                "!! " +
                process +
                " lie RESP_INIT\n"
                "<- " +
                process +
                " REQU_INIT\n"
                "!! " +
                process +
                " lie RESP_INIT\n"
                "-> " +
                process + " RESP_INIT\n");
  const std::string output = engine->output();
  EXPECT_NE(output.find("kelmora-bench: not answered: 1 of REQU_SHUTDOWN, struck by miscount\n"
                        "kelmora-bench: not sent: 1 of RESP_INIT, struck by drop\n"
                        "kelmora-bench: faults: refuse 1, miscount 1, drop 1, lie 2\n"),
            std::string::npos)
      << output;
  // What a record is for, playing the same to an engine that commits no faults, goes by what was
  // acted upon.
  const std::string record = ReadFile("record");
  EXPECT_EQ(std::count(record.begin(), record.end(), '\n'), 2) << record;
  EXPECT_EQ(record.find("64000000"), std::string::npos) << record;
}

}  // namespace
}  // namespace ventrik::bench
