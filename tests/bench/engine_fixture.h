// SPDX-License-Identifier: Apache-2.0
// Verbs for tests of the whole program over real channels.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>

#include "bench/engine.h"
#include "tests/bench/engine_process.h"
#include "tests/support/temporary_directory.h"

namespace ventrik::bench {

class EngineTest : public ::testing::Test {
 protected:
  // Starts the program and waits until it serves.
  std::unique_ptr<EngineProcess> Start(const Arguments& arguments = {},
                                       const std::string& name = "navigation") {
    auto engine = std::make_unique<EngineProcess>(arguments);
    EXPECT_EQ(engine->ReadLine(), "kelmora-bench: serving \"" + name + "\"");
    return engine;
  }

  // The arguments for a scenario of these rules.
  Arguments Scenario(const std::string& rules) {
    WriteFile("scenario.json", "{\"rules\": [" + rules + "]}");
    return {"--scenario", Path("scenario.json")};
  }

  // A client in a process of its own, which exits with what `body` returns.
  std::unique_ptr<tests::ChildProcess> StartClient(const std::function<int(TestClient&)>& body) {
    return std::make_unique<tests::ChildProcess>([&body] {
      TestClient client;
      return client.isConnected() ? body(client) : 98;
    });
  }

  std::string Path(const std::string& name) const { return directory_.path() + "/" + name; }

  void WriteFile(const std::string& name, const std::string& text) const {
    std::ofstream(Path(name), std::ios::binary) << text;
  }

  std::string ReadFile(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  // What channels and names there are.
  std::string RuntimeFiles() const {
    std::string names;
    for (const auto& entry : std::filesystem::directory_iterator(runtime_.path())) {
      names += entry.path().filename().string() + " ";
    }
    return names;
  }

  // Ends the engine and expects it to leave nothing.
  void ExpectCleanEnd(EngineProcess& engine, int number = SIGTERM) {
    EXPECT_EQ(engine.End(number), 0);
    EXPECT_EQ(RuntimeFiles(), "");
  }

  tests::TemporaryRuntimeDirectory runtime_;
  tests::TemporaryDirectory directory_;
};

}  // namespace ventrik::bench
