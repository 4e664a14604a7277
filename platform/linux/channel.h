// SPDX-License-Identifier: Apache-2.0
// A channel: a listening socket and the connections of everybody who sends to it.
//
// Story. Receivers wait in epoll, edge-triggered, so that a connection whose message is being read
// or waits for its answer causes no wake-ups while its payload lies in the socket. A sender sends
// its next message only after the answer to the last one, so an edge that comes while a message is
// unanswered can only be more of that payload or the sender's end; the former is ignored.
//
// A connection is, in turn: idle; arriving, while fewer bytes of a message's start are there than
// the receiver asked for; in hand, from MsgReceive to the answer; or lost. The channel's lock
// covers these changes. It is held for the touch alone, never around a wait, and no cancellation
// point is reached under it. Payload is read and answers are written outside it, by the one thread
// that has the message in hand; the descriptor stays open as long as that thread holds the
// connection.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/linux/timeout.h"
#include "platform/linux/wire.h"
#include "platform/neutrino.h"
#include "platform/unique_fd.h"

namespace platform {

class Channel;

// One sender's socket, as the receiver sees it.
struct Inlet {
  UniqueFd descriptor;
  pid_t pid = 0;
  std::uint64_t key = 0;  // in the channel's table and in its epoll set
  std::weak_ptr<Channel> channel;

  // Under the channel's lock.
  bool inHand = false;
  bool lost = false;
  bool hasSent = false;  // a message has come in over it

  // Of the message arriving or in hand; touched by whoever receives it or has it in hand.
  std::vector<char> arrived;  // bytes received ahead of what the caller asked for, header included
  SendHeader header = {};
  std::size_t fetched = 0;  // bytes of the message given to the caller, or skipped by an offset
  int receiveId = 0;
};

class Channel : public std::enable_shared_from_this<Channel> {
 public:
  // Listens under the channel's path. Null with errno set on failure.
  static std::shared_ptr<Channel> Open(int chid, unsigned flags);

  int chid() const { return chid_; }

  // MsgReceive, with `deadline` already taken.
  int Receive(void* message, std::size_t bytes, _msg_info* info, const Deadline& deadline);

  // Gives up the path, wakes every receiver and hangs up on every sender.
  void Destroy();

  // Gives `inlet` back for its next message, before the answer to the last one goes out. Returns
  // false if there can be none, because the rest of the last one is still on its way: then it must
  // be lost once it is answered.
  bool Release(Inlet& inlet);

  // Takes a connection that is no more out of the channel, queueing the pulses that its flags ask
  // for.
  void Lose(const std::shared_ptr<Inlet>& inlet);

 private:
  Channel(int chid, unsigned flags) : chid_(chid), flags_(flags) {}
  bool Watch(int descriptor, std::uint64_t key, std::uint32_t events);
  bool WaitForEvent(std::uint64_t& key, std::uint32_t& events, const Deadline& deadline);
  bool TakePulse(void* message, std::size_t bytes);
  void AcceptAll();
  void AcceptLater(bool wanted);
  void LookAgain();
  int TakeMessage(std::uint64_t key, std::uint32_t events, void* message, std::size_t bytes,
                  _msg_info* info);
  std::shared_ptr<Inlet> Find(std::uint64_t key);
  void LoseLocked(Inlet& inlet);

  const int chid_;
  const unsigned flags_;
  std::string path_;
  UniqueFd listener_;
  UniqueFd epoll_;
  UniqueFd wake_;  // becomes readable when the channel is destroyed

  std::mutex lock_;  // everything below
  std::unordered_map<std::uint64_t, std::shared_ptr<Inlet>> inlets_;
  std::uint64_t lastKey_ = 0;
  std::deque<_pulse> pulses_;
  bool destroyed_ = false;
  bool acceptLater_ = false;  // connections may wait that nothing was free for
};

// The process's channels by id, and its messages in hand by receive id. Any thread.
std::shared_ptr<Channel> FindChannel(int chid);
void AddChannel(const std::shared_ptr<Channel>& channel);
std::shared_ptr<Channel> RemoveChannel(int chid);
int NewChannelId();
int AddMessageInHand(const std::shared_ptr<Inlet>& inlet);
std::shared_ptr<Inlet> FindMessageInHand(int receiveId);
std::shared_ptr<Inlet> RemoveMessageInHand(int receiveId);

}  // namespace platform
