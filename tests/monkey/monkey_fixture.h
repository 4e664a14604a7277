// SPDX-License-Identifier: Apache-2.0
// Verbs for tests of the monkey: the numbers it draws are fed to it, its sleeps take no time.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "monkey/monkey.h"
#include "tests/command/command_fixture.h"

namespace ventrik::tests {

using Draws = std::vector<int>;
using Pauses = std::vector<unsigned>;

// What Draw gives in a scope, number by number. A draw without a number gives 0 and is a failure.
class FedDraws {
 public:
  FedDraws();
  ~FedDraws();
  FedDraws(const FedDraws&) = delete;
  FedDraws& operator=(const FedDraws&) = delete;

  // In place of what was left.
  void Feed(const Draws& numbers);
  // What was not drawn.
  Draws Left() const;
};

// Every draw of a scope gives 0. Any thread may draw.
class ZeroDraws {
 public:
  ZeroDraws();
  ~ZeroDraws();
  ZeroDraws(const ZeroDraws&) = delete;
  ZeroDraws& operator=(const ZeroDraws&) = delete;
};

// Keeps the pauses of a scope, in microseconds. Each is over at once, but a cancellation point.
class RecordedPauses {
 public:
  RecordedPauses();
  ~RecordedPauses();
  RecordedPauses(const RecordedPauses&) = delete;
  RecordedPauses& operator=(const RecordedPauses&) = delete;

  Pauses Take();

  // Called with each pause once it is kept, by the thread that pauses. Set it while none does.
  std::function<void(unsigned microseconds)> onPause;
};

// A record of the configuration, with its default in force.
MonkeyCommandRecord Record(const std::wstring& name, std::int32_t weight,
                           const std::map<std::wstring, float>& influences = {});

// Puts all state of a monkey back to that of a new one.
void Reset(Monkey& monkey);

std::vector<std::int32_t> CurrentWeights(const Monkey& monkey);
std::int32_t WeightTotal(const Monkey& monkey);
Texts BlockedCommands(const Monkey& monkey);

// Replaces the records; the sum becomes that of their weights.
void SetRecords(Monkey& monkey, const std::vector<MonkeyCommandRecord>& records);
void SetSearch(Monkey& monkey, const std::wstring& path, const std::wstring& term,
               std::int32_t limit = 0);

// A monkey of its own, in a working directory of its own.
class MonkeyTest : public CommandFileTest {
 protected:
  // What `append` makes of a line, given these draws, all of which it takes.
  std::wstring Appended(const Draws& draws, const std::function<void()>& append,
                        const std::wstring& line = L"");

  FedDraws draws_;
  RecordedPauses pauses_;
  Monkey monkey_;
};

}  // namespace ventrik::tests
