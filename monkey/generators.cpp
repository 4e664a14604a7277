// SPDX-License-Identifier: Apache-2.0
#include "monkey/generators.h"

#include <algorithm>
#include <string>
#include <utility>

#include "monkey/draw.h"
#include "monkey/words.h"
#include "state/assertion.h"

namespace ventrik {
namespace {

constexpr const char* kSource = "monkey";
constexpr int kLetters = 25;  // "a" to "y"
constexpr std::int32_t kLongestString = 4095;
constexpr std::int32_t kPositionDigits = 6;
constexpr std::size_t kNone = static_cast<std::size_t>(-1);

wchar_t DrawLetter() {
  return static_cast<wchar_t>(L'a' + DrawBelow(kLetters));
}

// The search outwards from a drawn record for one of the type; kNone if it misses.
std::size_t FindOutwards(const std::vector<ItemRecord>& records, std::wstring_view type) {
  const auto count = static_cast<std::int64_t>(records.size());
  const std::int64_t start = DrawBelow(static_cast<int>(count));
  const auto matches = [&](std::int64_t at) {
    return records[static_cast<std::size_t>(at)].type == type;
  };
  std::int64_t step = 0;
  bool down = true;
  bool up = true;
  while (down || up) {
    if (down && start - step > 0) {
      if (matches(start - step)) return static_cast<std::size_t>(start - step);
      ++step;
    } else {
      down = false;
    }
    if (up && start + step < count) {
      if (matches(start + step)) return static_cast<std::size_t>(start + step);
      ++step;
    } else {
      up = false;
    }
  }
  return kNone;
}

std::size_t FindRecord(const std::vector<ItemRecord>& records, Choice choice,
                       std::wstring_view type) {
  const auto isOfType = [type](const ItemRecord& record) {
    return type.empty() || record.type == type;
  };
  if (choice == Choice::first) {
    const auto found = std::find_if(records.begin(), records.end(), isOfType);
    return found == records.end() ? kNone : static_cast<std::size_t>(found - records.begin());
  }
  if (choice == Choice::last) {
    const auto found = std::find_if(records.rbegin(), records.rend(), isOfType);
    return found == records.rend() ? kNone : static_cast<std::size_t>(records.rend() - found) - 1;
  }
  if (!type.empty()) return FindOutwards(records, type);
  return static_cast<std::size_t>(DrawBelow(static_cast<int>(records.size())));
}

template <class List>
std::size_t IndexOf(const List& list, Choice choice) {
  if (choice == Choice::first) return 0;
  if (choice == Choice::last) return list.size() - 1;
  return static_cast<std::size_t>(DrawBelow(static_cast<int>(list.size())));
}

void AppendSearchPath(Monkey& monkey) {
  AppendText(monkey, monkey.search.Copy().searchPath);
}

// Not by to_wstring, whose wide formatting takes several times as long.
void AppendNumber(Monkey& monkey, std::int64_t number) {
  for (const char character : std::to_string(number)) {
    monkey.commandBuffer += static_cast<wchar_t>(character);
  }
}

// A tag with a position.
void AppendGeo(Monkey& monkey, std::wstring_view tag) {
  AppendText(monkey, tag);
  AppendGeoPosition(monkey);
  AppendText(monkey, L"<*>");
}

// The type and the name, each with a separator behind it.
void BeginItem(Monkey& monkey, std::wstring_view type, std::wstring_view name) {
  AppendText(monkey, type);
  AppendText(monkey, kBetween);
  AppendText(monkey, name);
  AppendText(monkey, kBetween);
}

// How the item of each type is written; what is noted under which name.
struct ItemType {
  std::wstring_view type;
  void (*append)(Monkey& monkey, std::wstring_view name, std::vector<std::int32_t>& collected);
  const wchar_t* notedName;  // null: its own
};

constexpr ItemType kItemTypes[] = {
    {L"SRouteHandleList",
     [](Monkey& monkey, std::wstring_view name, std::vector<std::int32_t>& collected) {
       BeginItem(monkey, L"SRouteHandleList", name);
       AppendRouteHandle(monkey, Choice::random, collected);
       AppendText(monkey, kClosing);
     },
     nullptr},
    {L"SDestinationElementList",
     [](Monkey& monkey, std::wstring_view name, std::vector<std::int32_t>&) {
       BeginItem(monkey, L"SDestinationElementList", name);
       AppendGeo(monkey, L"<GEO>");
       AppendText(monkey, kBetween);
     },
     nullptr},
    {L"SRouteModeList",
     [](Monkey& monkey, std::wstring_view name, std::vector<std::int32_t>&) {
       BeginItem(monkey, L"SRouteModeList", name);
       AppendText(monkey, DrawRouteMode());
     },
     nullptr},
    {L"DetSStringArray",
     [](Monkey& monkey, std::wstring_view name, std::vector<std::int32_t>&) {
       BeginItem(monkey, L"SStringArray", name);
     },
     nullptr},
    {L"ListSStringArray",
     [](Monkey& monkey, std::wstring_view name, std::vector<std::int32_t>&) {
       BeginItem(monkey, L"SStringArray", name);
       AppendText(monkey, L"Default");
     },
     nullptr},
    {L"WepGeo",
     [](Monkey& monkey, std::wstring_view name, std::vector<std::int32_t>&) {
       BeginItem(monkey, L"SStringArray", name);
       AppendGeo(monkey, L"<GEO>");
     },
     nullptr},
    {L"WepTempIcon",
     [](Monkey& monkey, std::wstring_view name, std::vector<std::int32_t>&) {
       BeginItem(monkey, L"SStringArray", std::wstring(name) + L"temp");
       AppendText(monkey, L"<IFT>TEMP<*><POI>Google ");
       AppendInteger(monkey, 1, 1000);
       AppendText(monkey, L"<*><ID>1<*>");
       AppendGeo(monkey, L"<GEO>");
       AppendText(monkey, L"<ICON>/tmp/temp_poi.bmp<*>");
     },
     L"temp"},
    {L"SRoadSegmentList",
     [](Monkey&, std::wstring_view, std::vector<std::int32_t>&) {
       FailAssertion(kSource, __LINE__, "GenerateItem");
     },
     nullptr},
    {L"", [](Monkey&, std::wstring_view, std::vector<std::int32_t>&) { Draw(); }, nullptr},
};

}  // namespace

void AppendText(Monkey& monkey, std::wstring_view text, std::wstring* target) {
  (target != nullptr ? *target : monkey.commandBuffer) += text;
}

void AppendInteger(Monkey& monkey, std::int32_t low, std::int32_t high) {
  if (low > high) {
    monkey.commandValid = false;
    return;
  }
  const std::int64_t range = std::int64_t{high} - low + 1;
  AppendNumber(monkey, low + Draw() % range);
}

void AppendDigits(Monkey& monkey, std::int32_t count) {
  for (std::int32_t i = 0; i < count; ++i) AppendInteger(monkey, 0, 9);
}

void AppendIntegerPair(Monkey& monkey, std::int32_t low1, std::int32_t high1, std::int32_t low2,
                       std::int32_t high2) {
  AppendInteger(monkey, low1, high1);
  AppendText(monkey, L",");
  AppendInteger(monkey, low2, high2);
}

void GenerateDouble(Monkey& monkey, std::int32_t low, std::int32_t high, std::int32_t digits) {
  if (digits < 0) FailAssertion(kSource, __LINE__, "GenerateDouble");
  if (high < low) std::swap(low, high);
  if (low == high) {
    AppendInteger(monkey, high, high);
    AppendText(monkey, std::wstring(static_cast<std::size_t>(digits), L'0'));
    return;
  }
  AppendInteger(monkey, low, high - 1);
  AppendText(monkey, L".");
  AppendDigits(monkey, digits);
}

void AppendGeoPosition(Monkey& monkey) {
  const MonkeyRegion& region = monkey.region;
  GenerateDouble(monkey, region.longitudeMin, region.longitudeMax, kPositionDigits);
  AppendText(monkey, L" ");
  GenerateDouble(monkey, region.latitudeMin, region.latitudeMax, kPositionDigits);
}

void GenerateString(Monkey& monkey, std::int32_t length, std::wstring* target) {
  if (length > kLongestString) FailAssertion(kSource, __LINE__, "GenerateString");
  std::wstring letters;
  for (std::int32_t i = 0; i < length; ++i) letters += DrawLetter();
  AppendText(monkey, letters, target);
}

std::wstring MakeRandomName() {
  std::wstring name;
  for (int i = 0; i < 3; ++i) name += DrawLetter();
  return name;
}

bool AppendNameFrom(Monkey& monkey, Choice choice, std::wstring_view type) {
  const std::size_t found =
      monkey.itemRecords.empty() ? kNone : FindRecord(monkey.itemRecords, choice, type);
  if (found == kNone) {
    monkey.commandValid = false;
    return false;
  }
  AppendText(monkey, monkey.itemRecords[found].name);
  return true;
}

void AppendRouteHandle(Monkey& monkey, Choice choice, std::vector<std::int32_t>& collected) {
  const std::vector<std::int32_t> handles = monkey.routeHandles.Copy();
  if (handles.empty()) return;
  const std::int32_t handle = handles[IndexOf(handles, choice)];
  AppendNumber(monkey, handle);
  collected.push_back(handle);
}

void GenerateItem(Monkey& monkey, std::wstring_view type, std::wstring_view name,
                  std::vector<std::int32_t>& collected) {
  const std::wstring ownName = name.empty() ? MakeRandomName() : std::wstring(name);
  ItemRecord record{std::wstring(type), ownName};
  for (const ItemType& row : kItemTypes) {
    if (row.type != type) continue;
    row.append(monkey, ownName, collected);
    if (row.notedName != nullptr) record.name = row.notedName;
  }
  monkey.itemRecords.push_back(std::move(record));
}

void AppendWepParameters(Monkey& monkey) {
  const bool isGeo = DrawBelow(2) == 1;
  AppendText(monkey, isGeo ? L"<MID>map<*>" : L"<MID>all<*>");
  AppendText(monkey, kBetween);
  AppendText(monkey, isGeo ? L"zoom|highlight|visible" : L"setTemporaryItems|zoom");
  AppendText(monkey, kBetween);
  AppendNameFrom(monkey, Choice::random, isGeo ? L"WepGeo" : L"WepTempIcon");
}

void AppendEisPath(Monkey& monkey) {
  AppendSearchPath(monkey);
  AppendText(monkey, monkey.search.Copy().spellTerm);
}

void AppendListEis(Monkey& monkey) {
  const std::wstring term = monkey.search.Copy().spellTerm;
  if (term == L"<GEOC><*>" || term == L"<GEOS><*>") {
    AppendSearchPath(monkey);
    return AppendGeo(monkey, term == L"<GEOC><*>" ? L"<GEOC>" : L"<GEOS>");
  }
  AppendEisPath(monkey);
}

namespace {

void AppendRandomValue(Monkey& monkey) {
  switch (DrawBelow(5)) {
    case 0:
      return GenerateString(monkey, DrawBelow(5));
    case 1:
      return AppendDigits(monkey, DrawBelow(8));
    case 2: {
      const int low = DrawBelow(30);
      const int high = DrawBelow(30);
      return GenerateDouble(monkey, low, high, DrawBelow(8));
    }
    case 3: {
      const int low1 = DrawBelow(50);
      const int high1 = DrawBelow(100);
      const int low2 = DrawBelow(50);
      return AppendIntegerPair(monkey, low1, high1, low2, DrawBelow(100));
    }
    default:
      return AppendGeoPosition(monkey);
  }
}

}  // namespace

void AppendRandomEis(Monkey& monkey) {
  while (DrawBelow(10) != 0) {
    AppendText(monkey, L"<");
    GenerateString(monkey, DrawBelow(4) + 1);
    AppendText(monkey, L">");
    AppendRandomValue(monkey);
    AppendText(monkey, L"<*>");
  }
}

}  // namespace ventrik
