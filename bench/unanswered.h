// SPDX-License-Identifier: Apache-2.0
// Messages of clients that nobody had anything for, to be listed at the engine's end.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace ventrik::bench {

// One thread at a time.
class Unanswered {
 public:
  // One more of that number.
  void Count(std::int32_t number);

  // A line for each number, the lowest first; a client may send any number, so from the thousandth
  // on they share one line, the last:
  //   "3 of REQU_BLOCK_ROUTE"    "1 of 4711"    "12 of other numbers"
  std::vector<std::string> Lines() const;

 private:
  std::map<std::int32_t, std::uint64_t> counts_;
  std::uint64_t others_ = 0;
};

}  // namespace ventrik::bench
