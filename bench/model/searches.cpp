// SPDX-License-Identifier: Apache-2.0
#include "bench/model/searches.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/eis.h"
#include "bench/model/engine_state.h"
#include "bench/search.h"
#include "bench/search_query.h"

namespace ventrik::bench {
namespace {

const std::string& InputEis(const MessageFields& request) {
  return Get<std::string>(request, "inputEIS");
}

const std::vector<std::string>& FieldNames(const MessageFields& request) {
  return Get<std::vector<std::string>>(request, "fieldNames");
}

// What an answer repeats of the input; a search that is not understood leads nowhere.
std::string OutputEis(const MessageFields& request, bool isValid) {
  return isValid ? InputEis(request) : std::string();
}

void HandleAvailableInfo(EngineState& state, const MessageFields& request, TimePoint,
                         Replies& out) {
  out.Answer(RESP_GET_AVAILABLE_INFO,
             {{"inputEIS", InputEis(request)},
              {"availableTypesEIS", AvailableTypes(state.world, InputEis(request))}},
             {"inputEIS"});
}

void HandleSpell(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  const SpellResult result = Spell(state.world, InputEis(request));
  out.Answer(RESP_GET_SPELL,
             {{"inputEIS", InputEis(request)},
              {"validState", YesOrNo(result.valid)},
              {"nextAvailableCharacters", result.nextAvailableCharacters},
              {"offeredCharacters", result.offeredCharacters},
              {"count", result.count},
              {"isFullMatch", YesOrNo(result.fullMatch)}},
             {"inputEIS"});
}

// The question that a tester asks by itself in highway mode. There are no highways in this world.
bool AsksForHighwayExits(std::string_view inputEis) {
  return FindEis(ParseEis(inputEis), "IFT") == "HWM";
}

// ---- what can be asked of a list

struct ListInfo {
  bool valid = false;
  std::vector<std::int32_t> sortOptions;
  std::vector<std::string> fields;
};

void AddSortOptions(ListInfo& info, std::initializer_list<ListOrder> orders) {
  for (const ListOrder order : orders) info.sortOptions.push_back(static_cast<std::int32_t>(order));
}

ListInfo FindListInfo(const World& world, std::string_view inputEis) {
  ListInfo info;
  if (AsksForHighwayExits(inputEis)) {
    info.valid = true;
    AddSortOptions(info, {ListOrder::defaultSort});
    return info;
  }
  const auto question = ReadQuestion(world, inputEis);
  if (!question) return info;
  info.valid = true;
  AddSortOptions(info, {ListOrder::defaultSort, ListOrder::ascending, ListOrder::descending,
                        ListOrder::nearFirst, ListOrder::farFirst});
  bool mixesLevels = false;
  for (std::size_t level = 0; level < question->level; ++level) {
    if (question->query.IsOpen(level)) {
      mixesLevels = true;  // rows of several countries or states
    } else {
      info.fields.emplace_back(kLevelTags[level].field);  // rows don't say what is chosen
    }
  }
  if (mixesLevels) {
    AddSortOptions(info, {ListOrder::hierarchicalSort, ListOrder::hierarchicalDescSort});
  }
  info.fields.insert(info.fields.end(), {"GEO", "POP", "DST"});
  return info;
}

void HandleListInfo(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  ListInfo info = FindListInfo(state.world, InputEis(request));
  out.Answer(RESP_GET_LIST_INFO,
             {{"inputEIS", InputEis(request)},
              {"validState", YesOrNo(info.valid)},
              {"sortOptions", std::move(info.sortOptions)},
              {"fieldOptions", std::move(info.fields)},
              {"outputEIS", OutputEis(request, info.valid)}},
             {"inputEIS", "outputEIS"});
}

// ---- lists and details

ListResult FindRows(const EngineState& state, const MessageFields& request) {
  ListRequest list;
  list.inputEis = InputEis(request);
  list.startIndex = Get<std::int32_t>(request, "startIndex");
  list.count = Get<std::int32_t>(request, "resultCount");
  list.order = static_cast<ListOrder>(Get<std::int32_t>(request, "sortOption"));
  list.fields = FieldNames(request);
  list.from = state.vehicle.position;
  if (!AsksForHighwayExits(list.inputEis)) return List(state.world, list);
  ListResult none;
  none.valid = true;
  none.startIndex = std::max<std::int32_t>(list.startIndex, 1);
  return none;
}

void HandleList(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  ListResult result = FindRows(state, request);
  out.Answer(RESP_GET_LIST,
             {{"inputEIS", InputEis(request)},
              {"validState", YesOrNo(result.valid)},
              {"startIndex", result.startIndex},
              {"resultCount", result.total},
              {"word5", 0},
              {"fieldOptions", FieldNames(request)},
              {"itemList", std::move(result.rows)},
              {"outputEIS", OutputEis(request, result.valid)},
              {"completeState", YesOrNo(result.complete)}},
             {"inputEIS", "fieldOptions", "outputEIS"});
}

void HandleDetails(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  DetailsResult result =
      Details(state.world, InputEis(request), FieldNames(request), state.vehicle.position);
  out.Answer(RESP_GET_DETAILS,
             {{"inputEIS", InputEis(request)},
              {"validState", YesOrNo(result.valid)},
              {"requestedFields", FieldNames(request)},
              {"outputEIS", std::move(result.outputEis)}},
             {"inputEIS", "requestedFields"});
}

constexpr HandlerRow kHandlers[] = {
    {REQU_GET_AVAILABLE_INFO, HandleAvailableInfo},
    {REQU_GET_SPELL, HandleSpell},
    {REQU_GET_LIST_INFO, HandleListInfo},
    {REQU_GET_LIST, HandleList},
    {REQU_GET_DETAILS, HandleDetails},
};

}  // namespace

HandlerRows SearchesHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

}  // namespace ventrik::bench
