// SPDX-License-Identifier: Apache-2.0
// Sixteen bytes that are worked on at once. The compiler makes of it what the processor has: SSE2,
// NEON, or plain words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ventrik {

inline constexpr std::size_t kVectorSize = 16;

using ByteVector [[gnu::vector_size(kVectorSize)]] = std::uint8_t;

// From any address.
inline ByteVector LoadVector(const char* from) {
  ByteVector bytes;
  std::memcpy(&bytes, from, sizeof bytes);
  return bytes;
}

// The halves of a vector, the lower bytes first.
struct VectorHalves {
  std::uint64_t low;
  std::uint64_t high;
};

inline VectorHalves Halves(ByteVector bytes) {
  VectorHalves halves;
  static_assert(sizeof halves == sizeof bytes);
  std::memcpy(&halves, &bytes, sizeof halves);
  return halves;
}

// For the results of comparisons, whose bytes are 0 or FF.

inline bool AreAllSet(ByteVector mask) {
  const VectorHalves halves = Halves(mask);
  return (halves.low & halves.high) == ~std::uint64_t{0};
}

inline bool IsAnySet(ByteVector mask) {
  const VectorHalves halves = Halves(mask);
  return (halves.low | halves.high) != 0;
}

}  // namespace ventrik
