// SPDX-License-Identifier: Apache-2.0
#include "ipc/ipc_global_message.h"

#include <cstdio>

namespace ventrik {
namespace {

bool ConnectOnce(GlobalMessage& global) {
  if (!global.connected) {
    ipc_init();
    global.client = ipc_open(global.channelName.c_str());
    global.connected = global.client != nullptr;
  }
  if (global.client != nullptr) return true;
  std::fputs("ERROR: No IPC connection to server!!!\n", stderr);
  return false;
}

}  // namespace

int OpenGlobalMessage(GlobalMessage& global) {
  if (global.channelName.empty()) return -1;
  if (!ConnectOnce(global)) return -1;
  global.message = ipc_connect(global.client);
  if (global.message == nullptr) {
    std::fputs("ipc_connect() failed\n", stderr);
    return 1;
  }
  global.messageOpen = true;
  return 0;
}

int CloseGlobalMessage(GlobalMessage& global) {
  if (global.messageOpen) ipc_disconnect(global.message);
  global.messageOpen = false;
  return 0;
}

}  // namespace ventrik
