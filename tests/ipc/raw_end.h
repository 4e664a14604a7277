// SPDX-License-Identifier: Apache-2.0
// The other end of a connection, made of kernel calls alone, so that every byte shows.
#pragma once

#include <cstdint>
#include <string>

#include "platform/neutrino.h"

namespace ventrik::tests {

// The 16 bytes of a control record, little-endian.
std::string Record(std::uint32_t kind, std::uint32_t first, std::uint32_t second,
                   std::uint32_t third);
std::string Record(std::uint32_t kind, int first, int second, int third);

// One of the four words of a record.
std::uint32_t WordOf(const std::string& record, std::size_t index);

// A message that waits for its answer.
struct RawMessage {
  int id = -1;
  std::string bytes;
  std::size_t answerRoom = 0;  // bytes that the sender takes back
};

// Waits for the next message on a channel, passing over pulses.
RawMessage TakeRaw(int chid);

// Sends and waits for the answer: its status as text, "error N" for errno N.
std::string SendRaw(int coid, const std::string& bytes);

// The same, giving up after some milliseconds.
std::string SendRawWithin(int milliseconds, int coid, const std::string& bytes);

// A server whose ids are all different from those of a client that opens it.
struct RawServer {
  name_attach_t* attach;
  int channel0;
  int channel1;
};
RawServer OpenRawServer(const char* name);

// A client after a handshake, with connections to its two channels.
struct RawClient {
  std::string request;  // its connect request, as it came
  std::size_t answerRoom;
  int toChannel0;
  int toChannel1;
};
RawClient ShakeHands(const RawServer& server);

// A client's channels and its connections to a server, and what the server answered.
struct RawConnection {
  int channels[2];
  int toChannel0;
  int toChannel1;
  std::string reply;
};
RawConnection ConnectRaw(const char* name);

}  // namespace ventrik::tests
