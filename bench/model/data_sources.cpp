// SPDX-License-Identifier: Apache-2.0
#include "bench/model/data_sources.h"

#include <iterator>

#include "bench/eis.h"
#include "bench/model/engine_state.h"

namespace ventrik::bench {
namespace {

const std::string& InputEis(const MessageFields& request) {
  return Get<std::string>(request, "inputEIS");
}

// What the source is known by; empty if the text says none.
std::string SourceOf(const std::string& inputEis) {
  std::string source;
  if (inputEis.size() > kMaxDataSource) return source;
  for (const EisPair& pair : ParseEis(inputEis)) AppendEis(source, pair.tag, pair.value);
  return source;
}

void Answer(FunctionId id, const MessageFields& request, bool isValid, Replies& out) {
  out.Answer(id, {{"inputEIS", InputEis(request)}, {"validState", YesOrNo(isValid)}}, {"inputEIS"});
}

void HandleAdd(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  DataSourcesState& sources = state.dataSources;
  const std::string source = SourceOf(InputEis(request));
  const bool isTaken = !source.empty() && sources.size() < kMaxDataSources;
  Answer(RESP_ADD_DATA_SRC, request, isTaken && sources.insert(source).second, out);
}

void HandleRemove(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  const bool wasThere = state.dataSources.erase(SourceOf(InputEis(request))) > 0;
  Answer(RESP_REM_DATA_SRC, request, wasThere, out);
}

constexpr HandlerRow kHandlers[] = {
    {REQU_ADD_DATA_SRC, HandleAdd},
    {REQU_REM_DATA_SRC, HandleRemove},
};

}  // namespace

HandlerRows DataSourcesHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

}  // namespace ventrik::bench
