// SPDX-License-Identifier: Apache-2.0
#include "bench/builtin_answers.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "bench/eis.h"
#include "bench/search.h"
#include "messages/function_ids.h"
#include "messages/message_layout.h"

namespace ventrik::bench {
namespace {

constexpr std::int32_t kYes = 1;
constexpr std::int32_t kNo = 2;

constexpr std::int32_t YesOrNo(bool yes) {
  return yes ? kYes : kNo;
}

// Names and kinds below are those of the layout table, so that nothing can be wrong with them; the
// tests encode every answer.
Block Encode(FunctionId id, const MessageFields& fields) {
  Block block;
  std::string error;
  EncodeMessage(id, fields, block, error);
  return block;
}

template <class Value>
const Value& Get(const MessageFields& fields, std::string_view name) {
  return std::get<Value>(*FindField(fields, name));
}

const std::string& InputEis(const MessageFields& request) {
  return Get<std::string>(request, "inputEIS");
}

// Encodes an answer whose fields named in `repeated` come from the request.
Block EncodeWithin(std::size_t limit, FunctionId id, MessageFields fields,
                   const std::vector<std::string_view>& repeated) {
  Block block = Encode(id, fields);
  if (block.size() <= limit) return block;
  MessageFields own;
  for (MessageField& field : fields) {
    bool isRepeated = false;
    for (const std::string_view name : repeated) isRepeated |= field.name == name;
    if (!isRepeated) own.push_back(std::move(field));
  }
  return Encode(id, own);
}

std::string DataVersion(const World& world) {
  std::size_t places = 0;
  for (const Country& country : world.countries) {
    for (const State& state : country.states) places += state.towns.size();
  }
  // The date is that of world/SOURCE.md.
  return "GeoNames 2022-03-04, " + std::to_string(places) + " places";
}

Block AnswerSpell(const MessageFields& request, const World& world) {
  const SpellResult result = Spell(world, InputEis(request));
  return EncodeWithin(kMaxAnswer, RESP_GET_SPELL,
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

ListResult FindRows(const MessageFields& request, const World& world) {
  ListRequest list;
  list.inputEis = InputEis(request);
  list.startIndex = Get<std::int32_t>(request, "startIndex");
  list.count = Get<std::int32_t>(request, "resultCount");
  list.order = static_cast<ListOrder>(Get<std::int32_t>(request, "sortOption"));
  list.fields = Get<std::vector<std::string>>(request, "fieldNames");
  if (!AsksForHighwayExits(list.inputEis)) return List(world, list);
  ListResult none;
  none.valid = true;
  none.startIndex = std::max<std::int32_t>(list.startIndex, 1);
  return none;
}

Block AnswerList(const MessageFields& request, const World& world) {
  ListResult result = FindRows(request, world);
  return EncodeWithin(kMaxAnswer, RESP_GET_LIST,
                      {{"inputEIS", InputEis(request)},
                       {"validState", YesOrNo(result.valid)},
                       {"startIndex", result.startIndex},
                       {"resultCount", result.total},
                       {"word5", 0},
                       {"fieldOptions", Get<std::vector<std::string>>(request, "fieldNames")},
                       {"itemList", std::move(result.rows)},
                       {"outputEIS", result.valid ? InputEis(request) : std::string()},
                       {"completeState", YesOrNo(result.complete)}},
                      {"inputEIS", "fieldOptions", "outputEIS"});
}

}  // namespace

std::string ProgramVersion() {
  return "kelmora-bench " VENTRIK_VERSION;
}

std::vector<Block> BuiltInAnswers(ReceivedBlock request, const World& world) {
  const auto fields = DecodeMessage(request);
  if (!fields) return {};
  switch (request.Word(0)) {
    case REQU_INIT:
      return {Encode(RESP_INIT, {{"result", 0}})};
    case REQU_SHUTDOWN:
      return {Encode(RESP_SHUTDOWN, {})};
    case REQU_GET_SW_VERSION:
      return {Encode(RESP_GET_SW_VERSION, {{"swVersion", ProgramVersion()}})};
    case REQU_GET_DB_VERSION:
      return {Encode(RESP_GET_DB_VERSION, {{"dbVersion", DataVersion(world)}})};
    case REQU_GET_SPELL:
      return {AnswerSpell(*fields, world)};
    case REQU_GET_LIST:
      return {AnswerList(*fields, world)};
    default:
      return {};
  }
}

}  // namespace ventrik::bench
