// SPDX-License-Identifier: Apache-2.0
#include "monkey/feedback.h"

#include <cwchar>
#include <string>
#include <string_view>
#include <vector>

#include "console/utf8.h"
#include "messages/function_ids.h"
#include "messages/list_response.h"
#include "monkey/draw.h"
#include "monkey/weights.h"
#include "state/saturation.h"

namespace ventrik {
namespace {

constexpr std::int32_t kCalculated = 4;
constexpr std::int32_t kWhole = 100;   // per cent
constexpr std::int32_t kNoRoute = -1;  // in any of the three words of an active route
constexpr std::wstring_view kTagEnd = L"<*>";
constexpr std::wstring_view kCountry = L"<GEOC><*>";
constexpr std::wstring_view kState = L"<GEOS><*>";

struct AvailableType {
  std::wstring tag;
  std::int32_t number;
};

// "<GEOS>16<*><CTY>500<*>": each tag and the number behind it.
std::vector<AvailableType> ReadAvailableTypes(const std::wstring& eis) {
  std::vector<AvailableType> types;
  for (std::size_t at = eis.find(L'<'); at != std::wstring::npos; at = eis.find(L'<', at + 1)) {
    if (at + 1 < eis.size() && eis[at + 1] == L'*') continue;
    const std::size_t close = eis.find(L'>', at);
    const std::size_t valueBegin = close == std::wstring::npos ? eis.size() : close + 1;
    const std::wstring value = eis.substr(valueBegin, eis.find(L'<', valueBegin) - valueBegin);
    types.push_back(
        {eis.substr(at, valueBegin - at), Saturate(std::wcstoll(value.c_str(), nullptr, 0))});
    if (close == std::wstring::npos) break;
  }
  return types;
}

void FollowAvailableInfo(const ClientApp& app, Monkey& monkey, const ReceivedBlock& block) {
  BlockCursor cursor(block, 3);
  cursor.OptionalString(block.Word(1));
  const std::wstring eis = Utf8ToWide(cursor.OptionalString(block.Word(2)));
  if (eis.empty()) {
    monkey.search.With([](MonkeySearch& search) {
      search.searchPath.clear();
      search.spellTerm.clear();
      search.lastSelection.clear();
    });
    return;
  }
  const std::vector<AvailableType> types = ReadAvailableTypes(eis);
  if (types.empty() || app.listRequested || !monkey.search.Copy().spellTerm.empty()) return;
  const AvailableType& type =
      types[static_cast<std::size_t>(DrawBelow(static_cast<int>(types.size())))];
  monkey.search.With([&type](MonkeySearch& search) {
    search.spellTerm = type.tag;
    search.spellTerm += kTagEnd;
    search.spellLimit = type.number;
  });
}

// One more character of a word that the engine will accept.
void FollowSpell(Monkey& monkey, const ReceivedBlock& block) {
  BlockCursor cursor(block, 7);
  cursor.OptionalString(block.Word(1));
  const std::wstring next = Utf8ToWide(cursor.OptionalString(block.Word(3)));
  if (next.empty()) return;
  const wchar_t character =
      next[static_cast<std::size_t>(DrawBelow(static_cast<int>(next.size())))];
  monkey.search.With([character](MonkeySearch& search) {
    std::wstring& term = search.spellTerm;
    term.resize(term.size() < kTagEnd.size() ? 0 : term.size() - kTagEnd.size());
    term += character;
    term += kTagEnd;
  });
}

// A row is chosen: the search goes on below it.
void ChooseRow(MonkeySearch& search, std::wstring_view inputEis, std::wstring_view row) {
  if (search.spellTerm == kCountry || search.spellTerm == kState) {
    search.searchPath = inputEis;
    search.lastSelection = search.spellTerm == kCountry ? kCountry : kState;
  }
  search.spellTerm.clear();
  if (!search.searchPath.empty() && !search.lastSelection.empty()) {
    const std::wstring_view tag = row.substr(0, row.find(L'>'));
    if (std::wstring_view(search.lastSelection).substr(0, tag.size()) == tag) return;
  }
  search.searchPath += row;
  search.lastSelection = row;
}

// By itself, as tests/thread_sanitizer.supp names the functions that write a shared word.
void NoteListAnswered(ClientApp& app) {
  app.listRequested = 0;
}

void FollowList(ClientApp& app, Monkey& monkey, const ReceivedBlock& block) {
  const ListResponse response = ReadListResponse(block);
  if (!response.items.empty() && !monkey.search.Copy().spellTerm.empty()) {
    const auto index = static_cast<std::size_t>(DrawBelow(static_cast<int>(response.items.size())));
    const std::wstring inputEis = Utf8ToWide(response.inputEis);
    const std::wstring row = Utf8ToWide(response.items[index]);
    monkey.search.With([&](MonkeySearch& search) { ChooseRow(search, inputEis, row); });
  }
  NoteListAnswered(app);
}

void FollowDetails(Monkey& monkey, const ReceivedBlock& block) {
  BlockCursor cursor(block, 5);
  cursor.OptionalString(block.Word(1));
  for (std::int32_t i = 0; i < block.Word(3) && !cursor.AtEnd(); ++i) cursor.NextString();
  const std::wstring eis = Utf8ToWide(cursor.OptionalString(block.Word(4)));
  if (eis.find(L"<GEO") == std::wstring::npos) return;
  monkey.recentGeoResults.With([&eis](std::vector<std::wstring>& results) {
    if (results.size() >= kMostGeoResults) results.erase(results.begin());
    results.push_back(eis);
  });
}

void FollowActiveRoute(Monkey& monkey, const ReceivedBlock& block) {
  if (monkey.activeRoute) return;
  const bool isRoute =
      block.Word(1) != kNoRoute && block.Word(2) != kNoRoute && block.Word(3) != kNoRoute;
  SetActiveRoute(monkey, isRoute);
  if (isRoute) {
    ApplyActiveRouteWeights(monkey);
  } else {
    RestoreDefaultWeights(monkey);
  }
}

void FollowCalculation(Monkey& monkey, const ReceivedBlock& block) {
  if (block.Word(2) != kCalculated || block.Word(3) != kWhole) return;
  const std::int32_t handle = block.Word(1);
  monkey.routeHandles.With([handle](auto& handles) { handles.push_back(handle); });
  for (const wchar_t* name : {L"rnew", L"start", L"rkill", L"demo"}) UnblockCommand(monkey, name);
}

void FollowDestinationReached(Monkey& monkey) {
  UnblockCommand(monkey, L"start");
  SetActiveRoute(monkey, false);
  RestoreDefaultWeights(monkey);
}

}  // namespace

void HandleMonkeyInfo(ClientApp& app, Monkey& monkey, const ReceivedBlock& block) {
  switch (block.Word(0)) {
    case RESP_GET_AVAILABLE_INFO:
      return FollowAvailableInfo(app, monkey, block);
    case RESP_GET_SPELL:
      return FollowSpell(monkey, block);
    case RESP_GET_LIST:
      return FollowList(app, monkey, block);
    case RESP_GET_DETAILS:
      return FollowDetails(monkey, block);
    case INFO_ACTIVE_ROUTE_DESC:
      return FollowActiveRoute(monkey, block);
    case INFO_CALC_STATE:
      return FollowCalculation(monkey, block);
    case INFO_DESTINATION_REACHED:
      return FollowDestinationReached(monkey);
    default:
      return;
  }
}

}  // namespace ventrik
