// SPDX-License-Identifier: Apache-2.0
#include "monkey/weights.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "monkey/draw.h"
#include "monkey/pace.h"

namespace ventrik {
namespace {

constexpr unsigned kRefusedRoundPause = 1000;  // microseconds

// As 32-bit words do.
std::int32_t Wrapped(std::int64_t number) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(number));
}

// Cut toward zero; what has no such number becomes the nearest one, and no number at all 0.
std::int32_t Whole(float value) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (std::isnan(value)) return 0;
  const double exact = static_cast<double>(value);
  if (exact >= Limits::max()) return Limits::max();
  if (exact <= Limits::min()) return Limits::min();
  return static_cast<std::int32_t>(exact);
}

// Walks down the records with what was drawn. Below 0 the name stays as it was.
void TakeNameAt(const MonkeyWeights& weights, std::int64_t drawn, std::wstring& name) {
  const MonkeyCommandRecord* reached = nullptr;
  for (const MonkeyCommandRecord& record : weights.commandRecords) {
    if (drawn < 0) break;
    drawn -= record.currentWeight;
    reached = &record;
  }
  if (reached != nullptr) name = reached->name;
}

const MonkeyCommandRecord* SourceOf(const MonkeyWeights& weights, std::wstring_view line) {
  const auto& records = weights.commandRecords;
  const auto isBeginning = [line](const MonkeyCommandRecord& record) {
    return line.substr(0, record.name.size()) == record.name;
  };
  const auto last = std::find_if(records.rbegin(), records.rend(), isBeginning);
  if (last != records.rend()) return &*last;
  return records.empty() ? nullptr : &records.front();
}

void SetCurrentWeight(MonkeyWeights& weights, MonkeyCommandRecord& record, std::int32_t weight) {
  weights.weightTotal = Wrapped(std::int64_t{weights.weightTotal} - record.currentWeight + weight);
  record.currentWeight = weight;
}

}  // namespace

std::wstring PickCommand(Monkey& monkey) {
  std::wstring name;
  for (std::size_t refused = 1;; ++refused) {
    std::size_t round = 0;
    bool blocked = false;
    const std::int32_t total =
        monkey.weights.With([](const MonkeyWeights& weights) { return weights.weightTotal; });
    const int drawn = DrawBelow(total);
    monkey.weights.With([&](const MonkeyWeights& weights) {
      TakeNameAt(weights, drawn, name);
      blocked = IsCommandBlocked(weights, name);
      round = weights.commandRecords.size();
    });
    if (!blocked) return name;
    if (refused % std::max<std::size_t>(round, 1) == 0) Pause(kRefusedRoundPause);
  }
}

void RestoreDefaultWeights(Monkey& monkey) {
  monkey.weights.With([](MonkeyWeights& weights) {
    for (MonkeyCommandRecord& record : weights.commandRecords) {
      record.currentWeight = record.baseWeight;
    }
  });
}

void ApplyActiveRouteWeights(Monkey& monkey) {
  monkey.weights.With([](MonkeyWeights& weights) {
    for (MonkeyCommandRecord& record : weights.commandRecords) {
      record.currentWeight = record.activeRouteWeight;
    }
  });
}

void ApplyInfluences(Monkey& monkey, std::wstring_view line) {
  monkey.weights.With([line](MonkeyWeights& weights) {
    const MonkeyCommandRecord* source = SourceOf(weights, line);
    if (source == nullptr) return;
    for (const auto& [name, factor] : source->influences) {
      for (MonkeyCommandRecord& record : weights.commandRecords) {
        if (record.name != name) continue;
        SetCurrentWeight(weights, record, Whole(static_cast<float>(record.baseWeight) * factor));
      }
    }
  });
}

void BlockCommand(Monkey& monkey, const wchar_t* name) {
  monkey.weights.With([name](MonkeyWeights& weights) {
    if (!IsCommandBlocked(weights, name)) weights.blockedCommands.emplace_back(name);
  });
}

void UnblockCommand(Monkey& monkey, const wchar_t* name) {
  monkey.weights.With([name](MonkeyWeights& weights) {
    auto& blocked = weights.blockedCommands;
    const auto found = std::find(blocked.begin(), blocked.end(), name);
    if (found != blocked.end()) blocked.erase(found);
  });
}

bool IsCommandBlocked(const MonkeyWeights& weights, std::wstring_view name) {
  const auto& blocked = weights.blockedCommands;
  return std::find(blocked.begin(), blocked.end(), name) != blocked.end();
}

}  // namespace ventrik
