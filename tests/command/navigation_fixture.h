// SPDX-License-Identifier: Apache-2.0
// Verbs for tests of the commands that send requests.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "tests/command/command_fixture.h"

namespace ventrik::tests {

class NavigationTest : public CommandTest {
 protected:
  // A line and the one block that it sends, as Hex() takes it.
  struct Sample {
    std::wstring line;
    const char* sent;
  };

  // The one block that a line sends.
  Bytes SentBy(const std::wstring& line) {
    server_.TakeSent();
    Run(line);
    const std::vector<Bytes> blocks = server_.TakeSent();
    EXPECT_EQ(blocks.size(), 1u) << line;
    return blocks.empty() ? Bytes{} : blocks.front();
  }

  // Runs each line, and that is all that it does.
  void ExpectSent(std::initializer_list<Sample> samples) {
    for (const Sample& sample : samples) {
      EXPECT_EQ(SentBy(sample.line), Hex(sample.sent)) << sample.line;
      EXPECT_EQ(Printed(), L"") << sample.line;
    }
  }

  // One list of each kind: strings "s", handles "h", route modes "m", destinations "d".
  void FillLists() {
    FindOrCreateList(app_.stringArrayLists, "s").items = {"NAME", "\xC3\x96l"};
    FindOrCreateList(app_.routeHandleLists, "h").items = {7, -1};
    FindOrCreateList(app_.routeModeLists, "m").items = {2, 0x10};
    const auto attributes = std::make_shared<SStringArray>(SStringArray{{"x", "yy"}});
    FindOrCreateList(app_.destinationElementLists, "d").items = {
        {"home", attributes}, {"work", std::make_shared<SStringArray>()}};
  }

  std::size_t ListsInAll() const {
    return app_.stringArrayLists.size() + app_.routeHandleLists.size() +
           app_.routeModeLists.size() + app_.destinationElementLists.size();
  }

  std::string MapId() const { return printer_.mapId.Copy(); }
};

}  // namespace ventrik::tests
