// SPDX-License-Identifier: Apache-2.0
// The monkey: a thread that sends the engine one random command a second and follows its answers.
//
// Plain data; what is done with it stands in the headers beside. Fields without a Guarded<> belong
// to the monkey's thread, of which there is one at a time, but for three plain words that have a
// function each to write them. The others are shared with the listener, which follows the answers,
// and hold together each for itself: parts of one line may stem from different moments of a search.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "state/guarded.h"
#include "state/process_state.h"

namespace ventrik {

// A section of the configuration: a command that may be drawn.
struct MonkeyCommandRecord {
  std::wstring name;               // the keyword or, for `batch` and fixed lines, a whole command
  std::int32_t baseWeight = 0;     // key `default`
  std::int32_t currentWeight = 0;  // in force
  std::int32_t activeRouteWeight = 0;        // in force while a route is active
  std::map<std::wstring, float> influences;  // command names and factors, once this one was sent
};

struct MonkeyWeights {
  std::vector<MonkeyCommandRecord> commandRecords;  // in file order
  // The sum of the current weights after loading and after influences. Oddity: not touched when all
  // weights change at once, so it can be stale.
  std::int32_t weightTotal = 0;
  std::vector<std::wstring> blockedCommands;  // names, each once
};

// Where the search stands that the answers lead down.
struct MonkeySearch {
  std::wstring searchPath;     // tagged text of what has been chosen
  std::wstring spellTerm;      // a tag with what has been typed of its value, closed; or empty
  std::wstring lastSelection;  // tagged text of the latest choice
  std::int32_t spellLimit = 0;
};

inline constexpr std::size_t kMostGeoResults = 10;

// The monkey's own note of an item that it has defined.
struct ItemRecord {
  std::wstring type;
  std::wstring name;
};

// The region of random coordinates, in whole degrees.
struct MonkeyRegion {
  std::int32_t longitudeMin = 0;
  std::int32_t longitudeMax = 0;
  std::int32_t latitudeMin = 0;
  std::int32_t latitudeMax = 0;
};

struct Monkey {
  // The one monkey of the process. Built by the first call.
  static Monkey& Instance();

  std::vector<ItemRecord> itemRecords;
  bool commandValid = true;    // of the latest line that was generated
  std::wstring commandBuffer;  // the line under construction
  std::deque<std::wstring> queuedCommands;
  MonkeyRegion region;

  // Set once a configuration has been opened. Oddity: it stays set when the thread has ended, so
  // answers are followed on; only a generated `quit` clears it.
  Flag monkeyRunning = 0;
  volatile std::int32_t stopRequest = 0;  // `stopmonkey`: seconds to pause, below 0 to end
  Flag activeRoute = 0;

  Guarded<MonkeyWeights> weights;
  Guarded<MonkeySearch> search;
  Guarded<std::vector<std::int32_t>> routeHandles;      // of calculated routes
  Guarded<std::vector<std::wstring>> recentGeoResults;  // details with a position, oldest first
};

// The three words that threads share without a lock are written here only, so that
// tests/thread_sanitizer.supp can name who does. Any thread.
void SetMonkeyRunning(Monkey& monkey, bool runs);
void SetStopRequest(Monkey& monkey, std::int32_t seconds);
void SetActiveRoute(Monkey& monkey, bool isActive);

}  // namespace ventrik
