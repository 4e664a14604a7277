// SPDX-License-Identifier: Apache-2.0
// What goes over a socket: each message behind a SendHeader, each answer behind a ReplyHeader.
//
// A socket carries one exchange at a time, so nothing needs a number. Both ends are processes of
// one user on one machine; the magic word only keeps strangers' bytes from being taken for a
// message.
#pragma once

#include <cstdint>

namespace platform {

inline constexpr std::uint32_t kSendMagic = 0x314d5351;

struct SendHeader {
  std::uint32_t magic;
  std::uint32_t length;         // bytes of the message behind this header
  std::uint32_t replyCapacity;  // bytes that the sender takes back
};
static_assert(sizeof(SendHeader) == 12);

struct ReplyHeader {
  std::int32_t status;   // result of the send if `error` is 0
  std::int32_t error;    // errno of a refused message
  std::uint32_t length;  // bytes of answer behind this header
  std::uint32_t last;    // not 0: the receiver hangs up, and the next message must dial anew
};
static_assert(sizeof(ReplyHeader) == 16);

}  // namespace platform
