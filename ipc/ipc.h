// SPDX-License-Identifier: Apache-2.0
// The transport under the communication layer: a small symmetric library over message passing.
//
// Two processes hold one duplex connection made of two channels on each side. A message of any size
// goes as one data part, whose sender stays blocked until the receiver has read it, followed by an
// end marker on the other channel. Each side sends to the other's channels and receives on its own;
// an answer never carries data, only a count. The tester uses the client half; the server half is
// what the navigation server runs, here the bench engine.
//
//     client                                   server
//     ipc_write       -- data part -->         ipc_server_accept, ipc_read
//                     <-- count read --
//     ipc_disconnect  -- end marker -->        the end of ipc_read
//                     <-- 0 --                 ipc_finish
//
// Results are pointers, null on failure, or integers. A message object belongs to one thread. An
// IpcPeer may be read by several threads at once; after the handshake only the receiving thread
// changes it, in the one field that says so.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/neutrino.h"

namespace ventrik {

// Every kernel message starts with this record, in the processor's byte order.
struct IpcControlRecord {
  std::uint32_t kind;
  std::uint32_t words[3];
};
static_assert(sizeof(IpcControlRecord) == 16);

inline constexpr std::uint32_t IPC_CONNECT = 512;  // words: channel id 0, channel id 1, process id
inline constexpr std::uint32_t IPC_DATA = 513;     // words: client's process id, length, 0
inline constexpr std::uint32_t IPC_PROBE = 256;    // words: any

// What a record of an unknown kind is answered with: a value of the wire, not of this system's
// errno.
inline constexpr int kIpcUnknownKind = 89;

// One end of a connection; -1 stands for no id.
struct IpcPeer {
  struct Side {
    int channels[2];
    int connections[2];
  };
  IpcPeer* next;            // next client in a server's list; null in a client
  Side receiving;           // a client's own channels; 0 in a server's record of a client
  int spareChannels[2];     // never used; destroyed like `channels` if set
  int connections[2];       // the other side's channels 0 and 1
  std::uint32_t processId;  // the client's, in both sorts of record

  // End markers that are still to come on channel 1, because the thread that read their data parts
  // was cancelled before they came. The next ipc_accept takes them first. Receiving thread only.
  int owedEndMarkers;
};

struct IpcServer;

// One message in flight. Objects are recycled through a pool of at most four.
struct IpcMessage {
  IpcMessage* nextFree;
  IpcPeer* peer;                // whom it goes to or, in a client, comes from
  IpcServer* server;            // where it came in, in a server
  std::uint32_t remaining;      // bytes of the current data part not yet read
  std::size_t offset;           // where they start in the kernel message
  int receiveId;                // still to be answered, or -1
  int connections[2];           // for sending
  int channels[2];              // for reading
  int partIndex;                // which of the two comes next
  IpcPeer* clientRecord;        // in a server: the sender, or null if unknown
  std::uint32_t senderProcess;  // in a server: the sender's process, whatever id its header gives
};

// Client half -----------------------------------------------------------------------------------

// Does nothing. Returns 0. Called before every ipc_open.
int ipc_init();

// Opens a connection to the server under `name`: creates both own channels and shakes hands.
// Blocks, without limit, until the server answers. Null if nobody is there or the handshake fails.
IpcPeer* ipc_open(const char* name);

// Destroys the channels and detaches the connections of a peer, leaving the record readable for
// threads that still hold it. Threads that wait on its channels come back.
void ipc_hang_up(IpcPeer* peer);

// ipc_hang_up, and frees the record. Returns 0.
int ipc_close(IpcPeer* peer);

// Starts a message to `peer`. Null if memory is exhausted, with errno ENOMEM.
IpcMessage* ipc_connect(IpcPeer* peer);

// Sends the data part and returns the receiver's count, -1 on failure or after 15 seconds. Any
// result but `length` makes the end marker fail at once. A thread cancelled in here still sends the
// end marker if the receiver has taken the data. Prints the error of a failed send.
long ipc_write(IpcMessage* message, const void* data, std::size_t length);

// Sends the end marker, blocking until it is answered, and gives the object back. Returns 0, or -1
// if the marker was not taken. errno stays that of the send.
int ipc_disconnect(IpcMessage* message);

// Blocks for the next data part on the client's channel 0. Null if the channel is gone or memory is
// exhausted. Records of another kind are refused, pulses dropped. One thread at a time.
IpcMessage* ipc_accept(IpcPeer* peer);

// Both halves -----------------------------------------------------------------------------------

// The length in bytes of what is still to be read; after an accept, of the payload.
std::uint32_t ipc_length(const IpcMessage* message);

// Reads up to `size` bytes into `buffer`, which is zero-filled first. Having delivered the payload
// it answers the data part with the count; wanting more, it waits for the next part or the end
// marker on channel 1. Returns 0 once `size` bytes are there, the count of bytes if the end marker
// came first, or -1 if no more can come: the channel is gone, or the sender gave up before it was
// answered and so will send no end marker. In a server also, with errno ETIMEDOUT, if nothing more
// has come for 10 seconds. A size of 0 gives 0.
int ipc_read(IpcMessage* message, void* buffer, std::size_t size);

// Answers what is still unanswered, with 0 or with the error `status`, and gives the object back.
// Returns 0.
int ipc_finish(IpcMessage* message, int status);

// Empties the message pool. Returns 0.
int ipc_cleanup();

// Server half -----------------------------------------------------------------------------------

struct IpcServer {
  name_attach_t* attach;
  int channel0;  // the named channel
  int channel1;
  IpcPeer* clients;  // newest first
  char* name;        // own copy
  std::uint32_t processId;

  // Called by ipc_server_accept with each handshake, before it is answered; a result other than 0
  // refuses it with that error. May be null.
  int (*onHandshake)(void* context);

  // Called by ipc_server_accept when a client has shaken hands and stands in `clients`. May be
  // null.
  void (*onConnect)(IpcPeer& client, void* context);
  void* context;  // of both
};

// Creates both channels and attaches the name. Null on failure, with nothing left standing.
IpcServer* ipc_server_create(const char* name);

// Blocks for the next data part of any client, answering handshakes and probes on the way. Null
// after a pulse (a client has gone or given up), on failure, or once the channel is gone. One
// thread at a time; `clients` is read and changed by that thread.
IpcMessage* ipc_server_accept(IpcServer* server);

// Takes the name back, destroys the channels, closes every client record and frees the server.
// Returns 0.
int ipc_server_close(IpcServer* server);

// Message pool ----------------------------------------------------------------------------------

// A cleared object, from the pool or new. Null with errno ENOMEM if memory is exhausted; errno is 0
// otherwise.
IpcMessage* ipc_message_acquire();

// Gives an object back; the pool keeps four and frees the fifth.
void ipc_message_release(IpcMessage* message);

// Objects in the pool, for tests.
int ipc_message_pool_size();

}  // namespace ventrik
