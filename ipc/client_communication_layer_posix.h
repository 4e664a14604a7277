// SPDX-License-Identifier: Apache-2.0
// The one object through which the tester talks to the navigation server.
//
// It owns the client side of the channel (ipc/ipc.h), connects on demand, keeps the two kernel
// messages of one Send together, and gives the listener its blocking Receive. A send's result says
// nothing of whether the server took the message: answers arrive later, as messages of their own.
//
// Locks. `mutex` covers one Send and is taken after commandLock where both are held; a thread
// cancelled in a send releases it by unwinding. `connecting` makes two threads that both find the
// layer unconnected end up on one connection: the second waits and takes the first's result.
// `client` has a leaf lock, so that Disconnect can't free a connection under a thread that reads
// it.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "ipc/ipc.h"
#include "state/guarded.h"

namespace ventrik {

class COMMUNICATION_LAYER {
 public:
  COMMUNICATION_LAYER();

  // Disconnects. A message still open then is a fault of the program and aborts it.
  ~COMMUNICATION_LAYER();

  COMMUNICATION_LAYER(const COMMUNICATION_LAYER&) = delete;
  COMMUNICATION_LAYER& operator=(const COMMUNICATION_LAYER&) = delete;

  // Replaces the name that the next Connect opens. Nothing is connected or disconnected. To switch
  // servers, set the name first and disconnect then: a thread that connects in between must not end
  // up at the old server. Any thread.
  void SetChannelName(std::string name);

  // Connects to the server under the channel name, unless another thread has done so meanwhile.
  // Returns whether the layer is connected. Blocks for the handshake, without limit.
  bool Connect();

  // Starts a message, connecting first if need be. Returns 1 with `mutex` held, or -1 with it free
  // and "ipc_connect() failed\n" on standard error.
  int BeginSend();

  // Ends the message started by BeginSend, sending its end marker, and frees `mutex`. Returns 0. A
  // data part must have been written: the server would take a lone marker for one.
  int EndSend();

  // Sends `length` bytes as one message. Returns -1 if BeginSend does, otherwise 0. Blocks until
  // the server has taken the bytes, 15 seconds at most, and then for the end marker. Any thread.
  int Send(const void* data, std::size_t length);

  // Blocks for the next message from the server, connecting first if need be. Returns its length
  // plus 1, the byte behind it in `buffer` being 0; -1 if there is no connection; -2 if length plus
  // 1 exceeds `size`, in which case the message is left unread and unanswered. Listener only.
  int Receive(void* buffer, std::size_t size);

  // Drops the connection, if there is one, and empties the message pool. A listener in Receive
  // comes back with -1. Returns 0. Expects commandLock held: a message that another thread is in
  // the middle of would be left without its end marker.
  int Disconnect();

 private:
  struct Client;

  Guarded<std::shared_ptr<Client>> client_;  // null while unconnected
  std::shared_ptr<Client> sending_;          // the connection that message_ goes out on
  IpcMessage* message_ = nullptr;            // set only between BeginSend and EndSend
  std::mutex mutex_;
  std::mutex connecting_;
  Guarded<std::string> channelName_;

  // Messages too long for Receive: their senders wait for their own time-out.
  Guarded<std::vector<IpcMessage*>> leftUnread_;
};

// The name of the server's channel: the target of the link /QXpersistence/kelmora_dul_channel, or
// "navigation" without it. Prints it. The result is a static buffer. Called once, by construction.
const char* GetChannelName();

}  // namespace ventrik
