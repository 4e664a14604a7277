// SPDX-License-Identifier: Apache-2.0
// Random map controls: a chain of fields in a fixed order, most of them present every second time.
#include <cstddef>

#include "monkey/draw.h"
#include "monkey/generators.h"

namespace ventrik {
namespace {

struct Words {
  const wchar_t* words[4];
  int count;
};

void AppendOneOf(Monkey& monkey, const Words& words) {
  AppendText(monkey, words.words[DrawBelow(words.count)]);
}

constexpr Words kPowersToFour = {{L"1", L"2", L"4"}, 3};
constexpr Words kPowersToEight = {{L"1", L"2", L"4", L"8"}, 4};

void AppendZoom(Monkey& monkey) {
  constexpr const wchar_t* kSteps[] = {L"-1", L"-2", L"-3"};
  const int drawn = DrawBelow(4);
  if (drawn < 3) return AppendText(monkey, kSteps[drawn]);
  AppendInteger(monkey, 100, 1'000'000);
}

struct Field {
  const wchar_t* tag;
  void (*appendValue)(Monkey& monkey);
};

template <int low, int high>
void Integer(Monkey& monkey) {
  AppendInteger(monkey, low, high);
}

template <int low1, int high1, int low2, int high2>
void Pair(Monkey& monkey) {
  AppendIntegerPair(monkey, low1, high1, low2, high2);
}

template <const Words& words>
void OneOf(Monkey& monkey) {
  AppendOneOf(monkey, words);
}

constexpr Field kBeforeTheWindow[] = {
    {L"<MZ>", AppendZoom},
    {L"<MVT>", OneOf<kPowersToEight>},
    {L"<MH>", OneOf<kPowersToFour>},
    {L"<MVI>", Integer<0, 1>},
};

constexpr Field kWindow[] = {
    {L"<MP>", Pair<0, 240, 0, 120>},
    {L"<MR>", Pair<240, 479, 120, 239>},
};

constexpr Field kBehindTheWindow[] = {
    {L"<MSD>", Integer<0, 359>},
    {L"<MSM>", OneOf<kPowersToEight>},
    {L"<MSS>", Integer<1, 100>},
    {L"<MEV>", Integer<0, 90>},
    {L"<MAS>", Integer<1, 2>},
    {L"<M3L>", Integer<0, 1>},
    {L"<M3T>", Integer<0, 1>},
    {L"<M3C>", Integer<0, 1>},
    {L"<MLR>", Integer<0, 2>},
    {L"<MSP>", Integer<0, 1>},
    {L"<MSC>", Integer<0, 1>},
    {L"<MTI>", Integer<0, 1>},
    {L"<MTF>", Integer<0, 1>},
    {L"<MSL>", Integer<0, 2>},
    {L"<MVR>", Pair<240, 479, 120, 239>},
    {L"<MVP>", Pair<0, 240, 0, 120>},
    {L"<MEP>", Pair<5, 475, 5, 235>},
    {L"<MRT>", Integer<0, 1>},
    {L"<PRE>", [](Monkey& monkey) { AppendText(monkey, L"0"); }},
};

void AppendMapId(Monkey& monkey) {
  AppendText(monkey, DrawBelow(2) == 1 ? L"<MID>all<*>" : L"<MID>map<*>");
}

// Each field has a draw of its own that lets it in.
template <std::size_t N>
void AppendSome(Monkey& monkey, const Field (&fields)[N]) {
  for (const Field& field : fields) {
    if (DrawBelow(2) != 1) continue;
    AppendText(monkey, field.tag);
    field.appendValue(monkey);
    AppendText(monkey, L"<*>");
  }
}

}  // namespace

void AppendMapControlEis(Monkey& monkey) {
  AppendMapId(monkey);
  AppendSome(monkey, kBeforeTheWindow);
  if (DrawBelow(10) == 0) {
    AppendText(monkey, L"<MP>0,0<*><MR>480,240<*>");
  } else {
    AppendSome(monkey, kWindow);
  }
  AppendSome(monkey, kBehindTheWindow);
}

}  // namespace ventrik
