// SPDX-License-Identifier: Apache-2.0
// The command language's text variables, and the assignments that wait for a list response.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <string>

namespace ventrik {

// Sorted by wide-character value and then by length. A value is always text.
using VariableTable = std::map<std::wstring, std::wstring>;

// A line such as `name=3,list(...)` stores row 3 of the next list response in `name`.
struct PendingListAssignment {
  std::wstring variableName;
  std::int32_t itemNumber;  // row of the response, counted from 1
};

using PendingListAssignments = std::deque<PendingListAssignment>;

}  // namespace ventrik
