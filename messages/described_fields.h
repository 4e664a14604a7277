// SPDX-License-Identifier: Apache-2.0
// A message's fields as text, for logs and for tables of expectations. Pure functions, any thread.
#pragma once

#include <string>

#include "messages/message_layout.h"

namespace ventrik {

// name=value, blank-separated in field order. Texts in single quotes, lists in square brackets, a
// destination as its text and its items in parentheses.
//   "inputEIS='<A>1<*>' validState=1 items=['a', 'b'] destinations=['x'('y'), 'z'()]"
std::string Describe(const MessageFields& fields);

}  // namespace ventrik
