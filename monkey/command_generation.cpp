// SPDX-License-Identifier: Apache-2.0
#include "monkey/command_generation.h"

#include "command/executor.h"
#include "monkey/generators.h"
#include "monkey/monkey_log.h"
#include "monkey/weights.h"
#include "monkey/words.h"
#include "state/logger.h"

namespace ventrik {
namespace {

constexpr const wchar_t* kDetailsList = L"allitem";

void BeginItemLine(Monkey& monkey) {
  monkey.commandBuffer = L"item";
  AppendText(monkey, kOpening);
}

void RunItemLine(ClientApp& app, Monkey& monkey) {
  AppendText(monkey, kClosing);
  ExecuteCommand(app, monkey.commandBuffer, true);
}

// An `item` line of the parameters given.
void SendItemLine(ClientApp& app, Monkey& monkey,
                  std::initializer_list<std::wstring_view> parameters) {
  BeginItemLine(monkey);
  const wchar_t* separator = L"";
  for (const std::wstring_view parameter : parameters) {
    AppendText(monkey, separator);
    AppendText(monkey, parameter);
    separator = kBetween;
  }
  RunItemLine(app, monkey);
}

}  // namespace

std::wstring GenerateCommand(ClientApp& app, Monkey& monkey) {
  monkey.commandValid = true;
  const std::wstring name = PickCommand(monkey);
  const bool hasRecords = monkey.weights.With(
      [](const MonkeyWeights& weights) { return !weights.commandRecords.empty(); });
  if (!hasRecords) {
    logger->print(L"monkey_config.txt not found or empty\n");
    return {};
  }
  monkey.commandBuffer = name;
  GenerateParameters(app, monkey, name);
  AppendToMonkeyLog(monkey.commandBuffer);
  return monkey.commandBuffer;
}

void SendItemCommand(ClientApp& app, Monkey& monkey, std::wstring_view type, std::wstring_view name,
                     std::vector<std::int32_t>& handles) {
  BeginItemLine(monkey);
  GenerateItem(monkey, type, name, handles);
  RunItemLine(app, monkey);
}

void SendDestinationItem(ClientApp& app, Monkey& monkey, std::wstring_view listName,
                         std::wstring_view eis) {
  SendItemLine(app, monkey, {L"SDestinationElementList", listName, eis, L""});
}

void SendRandomStringItem(ClientApp& app, Monkey& monkey) {
  SendItemLine(app, monkey, {L"SStringArray", kDetailsList, DrawItemTag()});
}

void SendAllTagItem(ClientApp& app, Monkey& monkey) {
  SendItemLine(app, monkey, {L"SStringArray", kDetailsList, L"<ALL>"});
}

}  // namespace ventrik
