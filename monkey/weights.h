// SPDX-License-Identifier: Apache-2.0
// Which command is drawn: weights, how they shift, and what is blocked. Any thread.
#pragma once

#include <string>
#include <string_view>

#include "monkey/monkey.h"

namespace ventrik {

// Draws a command's name by the current weights, again and again until one is not blocked; a round
// of refusals is followed by a short sleep, a cancellation point. Empty without records. Oddity:
// the sum that is drawn from can be stale, and then the last record stands for all that is beyond.
std::wstring PickCommand(Monkey& monkey);

void RestoreDefaultWeights(Monkey& monkey);    // each record's default
void ApplyActiveRouteWeights(Monkey& monkey);  // each record's weight for an active route

// Lets the command that was sent change the weights of others, each to its default times a factor.
// The command is the last record whose whole name the line begins with, the first record if there
// is none.
void ApplyInfluences(Monkey& monkey, std::wstring_view line);

void BlockCommand(Monkey& monkey, const wchar_t* name);  // once, however often it is called
void UnblockCommand(Monkey& monkey, const wchar_t* name);
bool IsCommandBlocked(const MonkeyWeights& weights, std::wstring_view name);

}  // namespace ventrik
