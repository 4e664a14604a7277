// SPDX-License-Identifier: Apache-2.0
// The extractions as a reader of single bytes would do them: slow, and easy to follow. What the
// real ones do by searching has to give the same.
#pragma once

#include <string>

#include "tests/replay/raw_log_notation.h"

namespace ventrik::tests {

// Each from a log as it is, not in the notation.
BatchChannel BatchByteByByte(const std::string& log, bool keep);
std::string TextByteByByte(const std::string& log);
std::string BothByteByByte(const std::string& log);

}  // namespace ventrik::tests
