// SPDX-License-Identifier: Apache-2.0
#include "replay/byte_search.h"

#include <algorithm>

#include "replay/byte_vector.h"

namespace ventrik {
namespace {

class Searched {
 public:
  Searched(char one, char other)
      : one_(static_cast<std::uint8_t>(one)), other_(static_cast<std::uint8_t>(other)) {}

  // FF where one of them stands, 0 elsewhere.
  ByteVector In(const char* from) const {
    const ByteVector bytes = LoadVector(from);
    return reinterpret_cast<ByteVector>(bytes == one_) |
           reinterpret_cast<ByteVector>(bytes == other_);
  }

 private:
  std::uint8_t one_;
  std::uint8_t other_;
};

// The index of the first byte that is set.
std::size_t FirstSet(ByteVector mask) {
  const VectorHalves halves = Halves(mask);
  const int bits =
      halves.low != 0 ? __builtin_ctzll(halves.low) : 64 + __builtin_ctzll(halves.high);
  return static_cast<std::size_t>(bits) / 8;
}

}  // namespace

std::size_t FindEither(std::string_view text, std::size_t from, char one, char other) {
  const Searched searched(one, other);
  std::size_t at = std::min(from, text.size());
  for (; text.size() - at >= kVectorSize; at += kVectorSize) {
    const ByteVector mask = searched.In(text.data() + at);
    if (IsAnySet(mask)) return at + FirstSet(mask);
  }
  while (at < text.size() && text[at] != one && text[at] != other) ++at;
  return at;
}

}  // namespace ventrik
