// SPDX-License-Identifier: Apache-2.0
#include "monkey/prepared_commands.h"

#include <algorithm>
#include <string>

#include "command/executor.h"
#include "monkey/command_generation.h"
#include "monkey/draw.h"
#include "monkey/generators.h"
#include "monkey/weights.h"

namespace ventrik {
namespace {

constexpr int kDetailsDraws = 101;
constexpr int kMostForAllTags = 74;

// The oldest of the details that had a position; false if there are none.
bool TakeOldestGeoResult(Monkey& monkey, std::wstring& eis) {
  return monkey.recentGeoResults.With([&eis](std::vector<std::wstring>& results) {
    if (results.empty()) return false;
    eis = results.front();
    results.erase(results.begin());
    return true;
  });
}

void SendRandomDestination(ClientApp& app, Monkey& monkey) {
  std::wstring eis;
  std::vector<std::int32_t> unused;
  if (DrawBelow(4) != 1 && TakeOldestGeoResult(monkey, eis)) {
    SendDestinationItem(app, monkey, L"de", eis);
  } else {
    SendItemCommand(app, monkey, L"SDestinationElementList", L"de", unused);
  }
}

// Forgets each handle once. Returns whether any is left.
bool RemoveHandles(Monkey& monkey, const std::vector<std::int32_t>& handles) {
  return monkey.routeHandles.With([&handles](std::vector<std::int32_t>& known) {
    for (const std::int32_t handle : handles) {
      const auto found = std::find(known.begin(), known.end(), handle);
      if (found != known.end()) known.erase(found);
    }
    return !known.empty();
  });
}

}  // namespace

void GenerateDet(ClientApp& app, Monkey& monkey) {
  ExecuteCommand(app, L"citem(\"allitem\")", true);
  if (DrawBelow(kDetailsDraws) > kMostForAllTags) {
    const int count = DrawBelow(4) + 1;
    for (int i = 0; i < count; ++i) SendRandomStringItem(app, monkey);
  } else {
    SendAllTagItem(app, monkey);
  }
  monkey.commandBuffer = L"det(\"";
  AppendText(monkey, monkey.search.Copy().searchPath);
  AppendText(monkey, L"\", \"allitem\")");
}

void GenerateRkill(ClientApp& app, Monkey& monkey) {
  ExecuteCommand(app, L"citem(\"rh\")", true);
  const int count = DrawBelow(static_cast<int>(monkey.routeHandles.Copy().size())) + 1;
  std::vector<std::int32_t> handles;
  for (int i = 0; i < count; ++i) {
    SendItemCommand(app, monkey, L"SRouteHandleList", L"rh", handles);
  }
  monkey.commandBuffer = L"rkill(\"rh\")";
  if (RemoveHandles(monkey, handles)) return;
  BlockCommand(monkey, L"start");
  BlockCommand(monkey, L"rkill");
}

void GenerateRnew(ClientApp& app, Monkey& monkey) {
  BlockCommand(monkey, L"demo");
  BlockCommand(monkey, L"rnew");
  ExecuteCommand(app, L"citem(\"rm\")", true);
  ExecuteCommand(app, L"citem(\"de\")", true);
  const int modes = DrawBelow(3) + 1;
  const int destinations = DrawBelow(3) + 1;
  std::vector<std::int32_t> unused;
  for (int i = 0; i < modes; ++i) SendItemCommand(app, monkey, L"SRouteModeList", L"rm", unused);
  for (int i = 0; i < destinations; ++i) SendRandomDestination(app, monkey);
  monkey.commandBuffer = L"rnew(\"de\", \"rm\")";
}

}  // namespace ventrik
