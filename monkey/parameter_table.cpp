// SPDX-License-Identifier: Apache-2.0
// Which parameters each command gets, and what happens beside.
#include <cstdint>
#include <string_view>

#include "monkey/command_generation.h"
#include "monkey/generators.h"
#include "monkey/monkey_batch.h"
#include "monkey/pace.h"
#include "monkey/prepared_commands.h"
#include "monkey/weights.h"
#include "monkey/words.h"

namespace ventrik {
namespace {

constexpr unsigned kWepPause = 2'000'000;  // microseconds
constexpr std::wstring_view kBatch = L"batch";

using Parameter = void (*)(Monkey& monkey);

template <const wchar_t* (*draw)()>
void Word(Monkey& monkey) {
  AppendText(monkey, draw());
}

template <int low, int high>
void Integer(Monkey& monkey) {
  AppendInteger(monkey, low, high);
}

template <int length>
void Letters(Monkey& monkey) {
  GenerateString(monkey, length);
}

void Empty(Monkey&) {}

void SearchPath(Monkey& monkey) {
  AppendText(monkey, monkey.search.Copy().searchPath);
}

void Longitude(Monkey& monkey) {
  GenerateDouble(monkey, monkey.region.longitudeMin, monkey.region.longitudeMax, 6);
}

void Latitude(Monkey& monkey) {
  GenerateDouble(monkey, monkey.region.latitudeMin, monkey.region.latitudeMax, 6);
}

void RouteHandle(Monkey& monkey) {
  std::vector<std::int32_t> unused;
  AppendRouteHandle(monkey, Choice::random, unused);
}

void NewItem(Monkey& monkey) {
  std::vector<std::int32_t> unused;
  GenerateItem(monkey, L"", L"", unused);
}

void ListFields(Monkey& monkey) {
  AppendNameFrom(monkey, Choice::random, L"ListSStringArray");
}

// One more than the limit, as a 32-bit word counts.
std::int32_t BeyondSpellLimit(const Monkey& monkey) {
  const auto limit = static_cast<std::uint32_t>(monkey.search.Copy().spellLimit);
  return static_cast<std::int32_t>(limit + 1);
}

template <int low>
void UpToBeyondSpellLimit(Monkey& monkey) {
  AppendInteger(monkey, low, BeyondSpellLimit(monkey));
}

struct ParameterRow {
  std::wstring_view name;
  Parameter parameters[6];
};

// Commands whose parameters are appended one by one.
constexpr ParameterRow kParameters[] = {
    {L"adas", {Word<DrawOnOff>}},
    {L"audio", {Word<DrawAudioMode>}},
    {L"blk", {Word<DrawBlockAction>, Empty}},
    {L"citem", {Letters<3>}},
    {L"demo", {Word<DrawOnOff>, Longitude, Latitude}},
    {L"info", {SearchPath}},
    {L"item", {NewItem}},
    {L"lang", {Word<DrawLanguage>, Integer<0, 5>}},
    {L"list",
     {AppendListEis, UpToBeyondSpellLimit<1>, UpToBeyondSpellLimit<-1>, Word<DrawSortOrder>,
      ListFields, Word<DrawOnOff>}},
    {L"litem", {Letters<4>}},
    {L"meas", {Word<DrawMeasurementUnit>}},
    {L"map", {AppendMapControlEis}},
    {L"opt", {AppendEisPath}},
    {L"overlay", {Empty}},
    {L"posdet", {Word<DrawSendingMode>, Integer<0, 10>}},
    {L"prompt", {Word<DrawOnOff>}},
    {L"rswarn", {Word<DrawWarningMode>, Integer<10, 100>}},
    {L"sci", {Empty, Integer<0, 480>, Integer<0, 240>, Word<DrawContentType>, Integer<1, 11>}},
    {L"savevolthlog", {Empty}},
    {L"spell", {AppendEisPath}},
    {L"sscm", {Word<DrawSafetyWarningMode>}},
    {L"start", {RouteHandle}},
    {L"startlog", {Letters<8>}},
    {L"sshot", {Empty, Letters<5>}},
    {L"tmcm", {Word<DrawOnOff>}},
    {L"tmcrm", {Word<DrawTmcMode>, Integer<0, 10>}},
    {L"tmca", {Word<DrawTmcAction>, Letters<3>}},
    {L"tmci", {Word<DrawTmcMessageClass>, Word<DrawSendingMode>}},
    {L"tmctm", {Word<DrawTuningMode>, Empty}},
    {L"wait", {Integer<1, 5>}},
    {L"weather", {Word<DrawOnOff>}},
    {L"wep", {AppendWepParameters}},
};

void AppendParameters(Monkey& monkey, const ParameterRow& row) {
  const wchar_t* separator = kOpening;
  for (const Parameter append : row.parameters) {
    if (append == nullptr) break;
    AppendText(monkey, separator);
    append(monkey);
    separator = kBetween;
  }
  AppendText(monkey, kClosing);
}

void ForgetItems(ClientApp&, Monkey& monkey) {
  monkey.itemRecords.clear();
}

void StopRunning(ClientApp&, Monkey& monkey) {
  SetMonkeyRunning(monkey, false);
}

void EndRoute(ClientApp&, Monkey& monkey) {
  UnblockCommand(monkey, L"rnew");
  SetActiveRoute(monkey, false);
  RestoreDefaultWeights(monkey);
}

void WaitForTheMap(ClientApp&, Monkey&) {
  Pause(kWepPause);
}

struct EffectRow {
  std::wstring_view name;
  void (*act)(ClientApp& app, Monkey& monkey);
};

// What happens beside, once the parameters are there.
constexpr EffectRow kEffects[] = {
    {L"citem", ForgetItems}, {L"citems", ForgetItems},  {L"det", GenerateDet},
    {L"quit", StopRunning},  {L"rkill", GenerateRkill}, {L"rnew", GenerateRnew},
    {L"stop", EndRoute},     {L"wep", WaitForTheMap},
};

bool CanBeginAGeneratedCommand(wchar_t letter) {
  return letter >= L'a' && letter <= L'w';
}

}  // namespace

void GenerateParameters(ClientApp& app, Monkey& monkey, std::wstring_view name) {
  if (name.empty() || !CanBeginAGeneratedCommand(name[0])) return;
  if (name.substr(0, kBatch.size()) == kBatch && name != L"batchlog") {
    return LoadMonkeyBatch(monkey, name);
  }
  for (const ParameterRow& row : kParameters) {
    if (row.name == name) AppendParameters(monkey, row);
  }
  for (const EffectRow& row : kEffects) {
    if (row.name == name) row.act(app, monkey);
  }
}

}  // namespace ventrik
