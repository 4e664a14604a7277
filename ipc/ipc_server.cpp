// SPDX-License-Identifier: Apache-2.0
// The server half: the named channel, handshakes, and waiting for a message of any client.
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <new>

#include "ipc/acquired_message.h"
#include "ipc/ipc.h"

namespace ventrik {
namespace {

constexpr unsigned kNamedChannelFlags =
    _NTO_CHF_COID_DISCONNECT | _NTO_CHF_DISCONNECT | _NTO_CHF_UNBLOCK | _NTO_CHF_FIXED_PRIORITY;

bool AttachName(IpcServer& server) {
  const int channel = ChannelCreate(kNamedChannelFlags);
  if (channel == -1) return false;
  dispatch_t* dispatch = dispatch_create_channel(channel, 0);
  if (dispatch == nullptr) {
    ChannelDestroy(channel);
    return false;
  }
  server.attach = name_attach(dispatch, server.name, 0);
  if (server.attach == nullptr) {
    dispatch_destroy(dispatch);
    return false;
  }
  server.channel0 = server.attach->chid;
  return true;
}

IpcPeer* NewClientRecord(const IpcControlRecord& request) {
  IpcPeer* peer = new (std::nothrow) IpcPeer{};
  if (peer == nullptr) return nullptr;
  for (int& connection : peer->receiving.connections) connection = -1;
  // A record of a client has no channels of its own: 0 is no channel's id.
  for (int& channel : peer->spareChannels) channel = -1;
  for (int& connection : peer->connections) connection = -1;
  peer->processId = request.words[2];
  return peer;
}

// Process 0 would mean this one.
bool AttachToClient(IpcPeer& peer, const IpcControlRecord& request) {
  if (request.words[2] == 0) return false;
  for (int i = 0; i < 2; ++i) {
    peer.connections[i] =
        ConnectAttach(0, static_cast<pid_t>(request.words[2]), static_cast<int>(request.words[i]),
                      _NTO_SIDE_CHANNEL, _NTO_COF_CLOEXEC);
    if (peer.connections[i] == -1) return false;
  }
  return true;
}

// The client gets its answer whatever comes of the attaching: it finds out when it sends.
void AnswerConnect(IpcServer& server, int receiveId, const IpcControlRecord& request) {
  const int refusal = server.onHandshake != nullptr ? server.onHandshake(server.context) : 0;
  if (refusal != 0) {
    MsgError(receiveId, refusal);
    return;
  }
  IpcPeer* peer = NewClientRecord(request);
  const bool attached = peer != nullptr && AttachToClient(*peer, request);
  if (attached) {
    peer->next = server.clients;
    server.clients = peer;
  } else if (peer != nullptr) {
    ipc_close(peer);
  }
  const IpcControlRecord reply = {IPC_CONNECT,
                                  {static_cast<std::uint32_t>(server.channel0),
                                   static_cast<std::uint32_t>(server.channel1), server.processId}};
  MsgReply(receiveId, 0, &reply, sizeof reply);
  if (attached && server.onConnect != nullptr) server.onConnect(*peer, server.context);
}

IpcPeer* FindClient(const IpcServer& server, std::uint32_t processId) {
  IpcPeer* client = server.clients;
  while (client != nullptr && client->processId != processId) client = client->next;
  return client;
}

}  // namespace

IpcServer* ipc_server_create(const char* name) {
  IpcServer* server = new (std::nothrow) IpcServer{};
  if (server == nullptr) return nullptr;
  server->channel0 = -1;
  server->channel1 = -1;
  server->processId = static_cast<std::uint32_t>(getpid());
  server->name = strdup(name);
  if (server->name != nullptr && AttachName(*server)) {
    server->channel1 = ChannelCreate(_NTO_CHF_FIXED_PRIORITY | _NTO_CHF_UNBLOCK);
  }
  if (server->channel1 != -1) return server;
  ipc_server_close(server);
  return nullptr;
}

IpcMessage* ipc_server_accept(IpcServer* server) {
  AcquiredMessage acquired;
  IpcMessage* message = acquired.get();
  if (message == nullptr) return nullptr;
  for (;;) {
    IpcControlRecord record = {};
    struct _msg_info info = {};
    const int id = MsgReceive(server->channel0, &record, sizeof record, &info);
    if (id <= 0) return nullptr;
    if (record.kind == IPC_PROBE) {
      MsgReply(id, 0, nullptr, 0);
      continue;
    }
    if (record.kind == IPC_CONNECT) {
      AnswerConnect(*server, id, record);
      continue;
    }
    if (record.kind != IPC_DATA) {
      MsgError(id, kIpcUnknownKind);
      continue;
    }
    message->receiveId = id;
    if (record.words[1] == 0) {
      MsgReply(id, 0, nullptr, 0);
      message->receiveId = -1;
    }
    message->server = server;
    message->clientRecord = FindClient(*server, record.words[0]);
    message->senderProcess = static_cast<std::uint32_t>(info.pid);
    message->channels[0] = server->channel0;
    message->channels[1] = server->channel1;
    message->partIndex = 1;
    message->offset = sizeof record;
    message->remaining = record.words[1];
    return acquired.Release();
  }
}

int ipc_server_close(IpcServer* server) {
  if (server->attach != nullptr) name_detach(server->attach, 0);
  if (server->channel1 != -1) ChannelDestroy(server->channel1);
  std::free(server->name);
  while (server->clients != nullptr) {
    IpcPeer* next = server->clients->next;
    ipc_close(server->clients);
    server->clients = next;
  }
  delete server;
  return 0;
}

}  // namespace ventrik
