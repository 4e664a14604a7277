// SPDX-License-Identifier: Apache-2.0
#include "shell/special_keys.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "messages/builders.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr const char* kStopMoving = "<MID>map<*><MSM>2<*>";
constexpr useconds_t kMoveTime = 300000;  // microseconds
constexpr double kZoomStep = 1.1;
constexpr std::int32_t kSmallestScale = 100;
constexpr std::int32_t kLargestScale = 1000000;

// The compass direction of a key, or null.
const char* DirectionOf(int key) {
  switch (key) {
    case '8':
      return "0";
    case '6':
      return "90";
    case '2':
      return "180";
    case '4':
      return "270";
    default:
      return nullptr;
  }
}

void Move(const char* direction) {
  const std::string start = std::string("<MID>map<*><MSD>") + direction + "<*><MSM>1<*><MSS>10<*>";
  send::REQU_MAP_CONTROLS(start);
  if (autoScroll) return;
  usleep(kMoveTime);
  send::REQU_MAP_CONTROLS(kStopMoving);
}

void Zoom(ClientApp& app, std::int32_t scale) {
  app.mapZoomScale = scale;
  send::REQU_MAP_CONTROLS("<MID>map<*><MZ>" + std::to_string(scale) + "<*>");
}

int ActOn(ClientApp& app, int key) {
  if (const char* direction = DirectionOf(key)) {
    Move(direction);
  } else if (key == '5') {
    autoScroll = !autoScroll;
    if (!autoScroll) send::REQU_MAP_CONTROLS(kStopMoving);
  } else if (key == '-') {
    Zoom(app, ZoomedOut(app.mapZoomScale));
  } else if (key == '+') {
    Zoom(app, ZoomedIn(app.mapZoomScale));
  } else {
    return 0;
  }
  return 1;
}

}  // namespace

std::int32_t ZoomedOut(std::int32_t scale) {
  const double larger = scale * kZoomStep;
  return larger < kLargestScale ? static_cast<std::int32_t>(larger) : kLargestScale;
}

std::int32_t ZoomedIn(std::int32_t scale) {
  const double smaller = scale / kZoomStep;
  return smaller > kSmallestScale ? static_cast<std::int32_t>(smaller) : kSmallestScale;
}

int HandleSpecialKey(ClientApp& app, int key, bool flushInput) {
  const int acted = ActOn(app, key);
  if (flushInput) std::fflush(stdin);
  return acted;
}

}  // namespace ventrik
