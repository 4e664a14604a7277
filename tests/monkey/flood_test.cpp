// SPDX-License-Identifier: Apache-2.0
// Answers that come while the monkey makes its lines, as fast as they can.
#include <cstdlib>
#include <thread>

#include "monkey/command_generation.h"
#include "monkey/draw.h"
#include "monkey/feedback.h"
#include "monkey/weights.h"
#include "tests/monkey/monkey_fixture.h"

namespace ventrik::tests {
namespace {

constexpr int kLines = 3000;

// One of each kind that is followed.
const char* const kAnswers[] = {
    "2D010000 00000000 01000000 '<CTY>99<*><STR>7<*>' 00",
    "2F010000 00000000 01000000 03000000 00000000 05000000 00000000 'abc' 00",
    "33010000 00000000 01000000 01000000 02000000 02000000 00000000 02000000 00000000 01000000"
    "'<CTY>Passau<*>' 00 '<STR>Am Anger<*>' 0000",
    "35010000 00000000 01000000 00000000 01000000 '<CTY>Passau<*><GEO>13.4 48.5<*>' 00",
    "2D010000 00000000 00000000",
    "9A010000 01000000 02000000 03000000",
    "A5010000 00000000 01000000 01000000",
};

// Seldom, as `rkill` takes time for each route that there is.
const char* const kCalculated = "9D010000 4D000000 04000000 64000000";
constexpr int kRoundsToARoute = 1000;

bool EndsInATag(const std::wstring& text) {
  return text.empty() || (text.size() >= 3 && text.substr(text.size() - 3) == L"<*>");
}

using FloodTest = MonkeyTest;

TEST_F(FloodTest, LinesStayWholeWhileAnswersAreFollowed) {
  drawSource = std::rand;
  SetRecords(monkey_,
             {Record(L"spell", 9, {{L"list", 0.5f}}), Record(L"list", 9), Record(L"det", 5),
              Record(L"rnew", 3, {{L"start", 2.0f}}), Record(L"start", 3), Record(L"rkill", 1),
              Record(L"stop", 1), Record(L"verd", 1)});
  monkey_.itemRecords = {{L"ListSStringArray", L"abc"}};
  volatile bool over = false;
  volatile int rounds = 0;
  std::thread listener([&] {
    std::vector<Bytes> answers;
    for (const char* answer : kAnswers) answers.push_back(Hex(answer));
    const Bytes calculated = Hex(kCalculated);
    while (!over) {
      for (const Bytes& answer : answers) HandleMonkeyInfo(app_, monkey_, answer.Block());
      if (rounds % kRoundsToARoute == 0) HandleMonkeyInfo(app_, monkey_, calculated.Block());
      rounds = rounds + 1;
    }
  });
  Texts broken;
  for (int i = 0; i < kLines; ++i) {
    const std::wstring line = GenerateCommand(app_, monkey_);
    const bool isBare = line == L"stop" || line == L"verd";
    const bool isClosed = line.size() > 2 && line.substr(line.size() - 2) == L"\")";
    if (!isBare && !isClosed) broken.push_back(line);
    ApplyInfluences(monkey_, line);
    const MonkeySearch search = monkey_.search.Copy();
    if (!EndsInATag(search.searchPath)) broken.push_back(search.searchPath);
    if (!EndsInATag(search.spellTerm)) broken.push_back(search.spellTerm);
  }
  over = true;
  listener.join();
  EXPECT_EQ(broken, Texts{});
  EXPECT_GT(rounds, 10);
  EXPECT_LE(monkey_.recentGeoResults.Copy().size(), kMostGeoResults);
}

}  // namespace
}  // namespace ventrik::tests
