// SPDX-License-Identifier: Apache-2.0
// Messages that came to nothing, and why, to be listed at the engine's end.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ventrik::bench {

// One thread at a time.
class Losses {
 public:
  // One more of that number, or without a number; `why` may be empty.
  void Count(std::optional<std::int32_t> number, const std::string& why = "");

  // A line for each number and reason, the lowest number first. A client may send any number, so
  // from the thousandth on they share one line, the last:
  //   "3 of REQU_BLOCK_ROUTE"    "1 of 4711, struck by unread"    "1 without a number"
  //   "12 of other numbers"
  std::vector<std::string> Lines() const;

 private:
  std::map<std::pair<std::optional<std::int32_t>, std::string>, std::uint64_t> counts_;
  std::uint64_t others_ = 0;
};

}  // namespace ventrik::bench
