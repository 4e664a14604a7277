// SPDX-License-Identifier: Apache-2.0
// Gathers the many short runs of an extraction, so that few large pieces are handed on.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "replay/extraction.h"

namespace ventrik {

class GatheredOutput {
 public:
  // Keeps a reference to `sink`.
  explicit GatheredOutput(const ByteSink& sink) : sink_(sink), block_(kBlockSize) {}

  void Add(std::string_view run) {
    if (run.size() > kBlockSize - used_) {
      HandOn();
      if (run.size() > kBlockSize) return sink_(run);
    }
    used_ += run.copy(block_.data() + used_, run.size());
  }

  // Hands on what has been gathered. To be called at the end.
  void HandOn() {
    if (used_ > 0) sink_({block_.data(), used_});
    used_ = 0;
  }

 private:
  static constexpr std::size_t kBlockSize = 131072;  // bytes

  const ByteSink& sink_;
  std::vector<char> block_;
  std::size_t used_ = 0;
};

}  // namespace ventrik
