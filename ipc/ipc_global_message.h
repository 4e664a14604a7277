// SPDX-License-Identifier: Apache-2.0
// A program-wide way to open and close one message, beside the communication layer.
//
// Part of the transport's design and used by no path of the tester: all sending goes through
// COMMUNICATION_LAYER. One thread at a time.
#pragma once

#include <string>

#include "ipc/ipc.h"

namespace ventrik {

struct GlobalMessage {
  std::string channelName;    // empty: nothing to connect to
  bool connected = false;     // a connection was opened once
  IpcPeer* client = nullptr;  // that connection, owned by whoever owns this record
  IpcMessage* message = nullptr;
  bool messageOpen = false;
};

// Opens a message, connecting first if that has not been done. Returns 0 with a message open; 1
// after "ipc_connect() failed\n" if there is no message object; -1 without a channel name, or after
// "ERROR: No IPC connection to server!!!\n" if nobody is there. Both texts go to standard error.
int OpenGlobalMessage(GlobalMessage& global);

// Sends the end marker of the open message, if there is one. Returns 0.
int CloseGlobalMessage(GlobalMessage& global);

}  // namespace ventrik
