// SPDX-License-Identifier: Apache-2.0
// The client half: handshake, sending, and waiting for a message from the server.
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>

#include "console/utf8.h"
#include "ipc/acquired_message.h"
#include "ipc/ipc.h"
#include "ipc/time_limit.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

void ForgetConnections(IpcMessage& message) {
  message.connections[0] = -1;
  message.connections[1] = -1;
}

void DestroyChannels(const int (&channels)[2]) {
  for (const int channel : channels) {
    if (channel != -1) ChannelDestroy(channel);
  }
}

void DetachConnections(const int (&connections)[2]) {
  for (const int connection : connections) {
    if (connection != -1) ConnectDetach(connection);
  }
}

void PrintSendError(int error) {
  if (logger == nullptr) return;
  const std::wstring text = Utf8ToWide(std::strerror(error));
  logger->print(L"IPC MsgSendv error(%d): %ls\n", error, text.c_str());
}

IpcControlRecord EndMarker(const IpcMessage& message) {
  return {IPC_DATA, {message.peer->processId, 0, 0}};
}

long SendEndMarker(const IpcMessage& message) {
  const IpcControlRecord marker = EndMarker(message);
  return MsgSend(message.connections[message.partIndex], &marker, sizeof marker, nullptr, 0);
}

// Takes the end markers that an earlier, cancelled listener left. Returns false if the channel is
// gone.
bool TakeOwedEndMarkers(IpcPeer& peer, int channel) {
  while (peer.owedEndMarkers > 0) {
    IpcControlRecord record = {};
    const int id = MsgReceive(channel, &record, sizeof record, nullptr);
    if (id < 0) return false;
    if (id == 0) continue;
    MsgReply(id, 0, nullptr, 0);
    if (record.kind == IPC_DATA) --peer.owedEndMarkers;
  }
  return true;
}

// Frees what an operation has made so far if it fails or is cancelled.
struct OpenPeer {
  IpcPeer* peer;
  ~OpenPeer() {
    if (peer != nullptr) ipc_close(peer);
  }
};

}  // namespace

int ipc_init() {
  return 0;
}

IpcPeer* ipc_open(const char* name) {
  OpenPeer open{new (std::nothrow) IpcPeer{}};
  if (open.peer == nullptr) return nullptr;
  IpcPeer& peer = *open.peer;
  peer.processId = static_cast<std::uint32_t>(getpid());
  for (int& channel : peer.receiving.channels) {
    channel = ChannelCreate(_NTO_CHF_FIXED_PRIORITY | _NTO_CHF_UNBLOCK);
  }
  for (int& connection : peer.receiving.connections) connection = -1;
  for (int& channel : peer.spareChannels) channel = -1;
  peer.connections[0] = name_open(name, 0);
  peer.connections[1] = -1;

  IpcControlRecord record = {
      IPC_CONNECT,
      {static_cast<std::uint32_t>(peer.receiving.channels[0]),
       static_cast<std::uint32_t>(peer.receiving.channels[1]), peer.processId}};
  if (MsgSend(peer.connections[0], &record, sizeof record, &record, sizeof record) == -1) {
    return nullptr;
  }
  peer.connections[1] =
      ConnectAttach(0, static_cast<pid_t>(record.words[2]), static_cast<int>(record.words[1]),
                    _NTO_SIDE_CHANNEL, _NTO_COF_CLOEXEC);
  open.peer = nullptr;
  return &peer;
}

void ipc_hang_up(IpcPeer* peer) {
  DestroyChannels(peer->receiving.channels);
  DetachConnections(peer->receiving.connections);
  DestroyChannels(peer->spareChannels);
  DetachConnections(peer->connections);
}

int ipc_close(IpcPeer* peer) {
  ipc_hang_up(peer);
  delete peer;
  return 0;
}

IpcMessage* ipc_connect(IpcPeer* peer) {
  IpcMessage* message = ipc_message_acquire();
  if (message == nullptr) return nullptr;
  message->connections[0] = peer->connections[0];
  message->connections[1] = peer->connections[1];
  message->peer = peer;
  return message;
}

long ipc_write(IpcMessage* message, const void* data, std::size_t length) {
  // However the data part ends, the end marker comes next, and only a data part that was taken is
  // followed by one.
  struct DataPart {
    IpcMessage& message;
    bool cancelled = true;
    ~DataPart() {
      message.partIndex = 1;
      if (!cancelled) return;
      // The end marker is the next thing sent, on the thread's way out, where nothing could cancel
      // its wait.
      LimitNextSend(kPartingTimeout);
      if (!platform::CancelledSendWasAnswered()) ForgetConnections(message);
    }
  };
  LimitNextSend(kIpcDataTimeout);
  const IpcControlRecord header = {
      IPC_DATA, {message->peer->processId, static_cast<std::uint32_t>(length), 0}};
  const iov_t parts[2] = {{const_cast<IpcControlRecord*>(&header), sizeof header},
                          {const_cast<void*>(data), length}};
  DataPart part{*message};
  const long taken = MsgSendv(message->connections[message->partIndex], parts, 2, nullptr, 0);
  part.cancelled = false;
  const int error = errno;
  if (taken != static_cast<long>(length)) ForgetConnections(*message);
  if (taken == -1) PrintSendError(error);
  return taken;
}

int ipc_disconnect(IpcMessage* message) {
  // A receiver that has taken the data waits for this marker, so a thread cancelled before it was
  // answered sends it once more, with a limit, on its way out.
  struct Parting {
    IpcMessage* message;
    bool cancelled = true;
    ~Parting() {
      const int error = errno;
      if (cancelled && !platform::CancelledSendWasAnswered()) {
        LimitNextSend(kPartingTimeout);
        SendEndMarker(*message);
      }
      ipc_message_release(message);
      errno = error;
    }
  };
  Parting parting{message};
  const long answer = SendEndMarker(*message);
  parting.cancelled = false;
  return answer == 0 ? 0 : -1;
}

IpcMessage* ipc_accept(IpcPeer* peer) {
  // Copied first: once the channel is destroyed the record may go.
  const int channels[2] = {peer->receiving.channels[0], peer->receiving.channels[1]};
  if (!TakeOwedEndMarkers(*peer, channels[1])) return nullptr;
  AcquiredMessage acquired;
  IpcMessage* message = acquired.get();
  if (message == nullptr) return nullptr;
  IpcControlRecord record = {};
  for (;;) {
    record = {};
    message->receiveId = MsgReceive(channels[0], &record, sizeof record, nullptr);
    if (message->receiveId == -1) return nullptr;
    if (message->receiveId == 0) continue;
    if (record.kind == IPC_DATA) break;
    MsgError(message->receiveId, kIpcUnknownKind);
  }
  if (record.words[1] == 0) {
    MsgReply(message->receiveId, 0, nullptr, 0);
    message->receiveId = -1;
  }
  message->peer = peer;
  message->channels[0] = channels[0];
  message->channels[1] = channels[1];
  message->partIndex = 1;
  message->offset = sizeof record;
  message->remaining = record.words[1];
  return acquired.Release();
}

}  // namespace ventrik
