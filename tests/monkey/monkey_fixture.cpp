// SPDX-License-Identifier: Apache-2.0
#include "tests/monkey/monkey_fixture.h"

#include <pthread.h>
#include <unistd.h>

#include <cstdlib>
#include <deque>
#include <mutex>
#include <utility>

#include "monkey/draw.h"
#include "monkey/pace.h"
#include "platform/cancellation.h"

namespace ventrik::tests {
namespace {

std::deque<int> fed;
std::mutex pausesLock;
Pauses pauses;
RecordedPauses* present = nullptr;

int TakeFed() {
  if (fed.empty()) {
    ADD_FAILURE() << "one draw too many";
    return 0;
  }
  const int number = fed.front();
  fed.pop_front();
  return number;
}

int KeepPause(unsigned microseconds) {
  {
    const platform::CancellationDisabled whole;
    const std::lock_guard<std::mutex> hold(pausesLock);
    pauses.push_back(microseconds);
  }
  if (present->onPause) present->onPause(microseconds);
  pthread_testcancel();
  return 0;
}

}  // namespace

FedDraws::FedDraws() {
  fed.clear();
  drawSource = TakeFed;
}

FedDraws::~FedDraws() {
  drawSource = std::rand;
}

void FedDraws::Feed(const Draws& numbers) {
  fed.assign(numbers.begin(), numbers.end());
}

Draws FedDraws::Left() const {
  return {fed.begin(), fed.end()};
}

ZeroDraws::ZeroDraws() {
  drawSource = [] { return 0; };
}

ZeroDraws::~ZeroDraws() {
  drawSource = std::rand;
}

RecordedPauses::RecordedPauses() {
  pauses.clear();
  present = this;
  pauseSource = KeepPause;
}

RecordedPauses::~RecordedPauses() {
  pauseSource = usleep;
  present = nullptr;
}

Pauses RecordedPauses::Take() {
  const std::lock_guard<std::mutex> hold(pausesLock);
  return std::exchange(pauses, {});
}

MonkeyCommandRecord Record(const std::wstring& name, std::int32_t weight,
                           const std::map<std::wstring, float>& influences) {
  return {name, weight, weight, weight, influences};
}

void Reset(Monkey& monkey) {
  monkey.itemRecords.clear();
  monkey.commandValid = true;
  monkey.commandBuffer.clear();
  monkey.queuedCommands.clear();
  monkey.region = {};
  monkey.monkeyRunning = 0;
  monkey.stopRequest = 0;
  monkey.activeRoute = 0;
  monkey.weights.Store({});
  monkey.search.Store({});
  monkey.routeHandles.Store({});
  monkey.recentGeoResults.Store({});
}

std::vector<std::int32_t> CurrentWeights(const Monkey& monkey) {
  std::vector<std::int32_t> weights;
  for (const auto& record : monkey.weights.Copy().commandRecords) {
    weights.push_back(record.currentWeight);
  }
  return weights;
}

std::int32_t WeightTotal(const Monkey& monkey) {
  return monkey.weights.Copy().weightTotal;
}

Texts BlockedCommands(const Monkey& monkey) {
  return monkey.weights.Copy().blockedCommands;
}

void SetRecords(Monkey& monkey, const std::vector<MonkeyCommandRecord>& records) {
  monkey.weights.With([&records](MonkeyWeights& weights) {
    weights.commandRecords = records;
    weights.weightTotal = 0;
    for (const auto& record : records) weights.weightTotal += record.currentWeight;
  });
}

void SetSearch(Monkey& monkey, const std::wstring& path, const std::wstring& term,
               std::int32_t limit) {
  monkey.search.With([&](MonkeySearch& search) {
    search.searchPath = path;
    search.spellTerm = term;
    search.spellLimit = limit;
  });
}

std::wstring MonkeyTest::Appended(const Draws& draws, const std::function<void()>& append,
                                  const std::wstring& line) {
  draws_.Feed(draws);
  monkey_.commandBuffer = line;
  append();
  EXPECT_EQ(draws_.Left(), Draws{}) << "not drawn";
  return monkey_.commandBuffer;
}

}  // namespace ventrik::tests
