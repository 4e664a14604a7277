// SPDX-License-Identifier: Apache-2.0
// A request cut short at every byte.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "bench/model/model.h"

namespace ventrik::bench {

// Hands the request to the model in all its shorter forms, and whole, each in a block of exactly
// its size so that a reader of one byte more is caught. Every message that comes of it must be one
// that a receiver takes.
template <class Request>
void HandleCutShort(Model& model, const Request& request, TimePoint now) {
  const auto* bytes = static_cast<const std::uint8_t*>(static_cast<const void*>(request.data()));
  for (std::size_t size = 0; size <= request.size(); ++size) {
    const Block block(bytes, bytes + size);
    for (const Outgoing& message : model.Handle({block.data(), block.size()}, now)) {
      const Block answer = message.make ? message.make() : message.block;
      if (message.make && answer.empty()) continue;
      EXPECT_GE(answer.size(), sizeof(std::int32_t)) << size;
      EXPECT_LE(answer.size(), kMaxAnswer) << size;
    }
  }
}

}  // namespace ventrik::bench
