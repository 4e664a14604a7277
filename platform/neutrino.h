// SPDX-License-Identifier: Apache-2.0
// The seam to the operating system: the message-passing calls of QNX Neutrino.
//
// Everything above platform/ is written against these names. On the target this header includes the
// system's own; elsewhere it declares the same functions, and platform/linux/ provides them over
// Unix-domain stream sockets. No other header or source asks which system it is built for.
//
// What ventrik relies on, call by call, stands beside each declaration. Common to all: a failure is
// -1 (or null) with errno set; a dead peer never raises SIGPIPE; nothing busy-waits; any thread may
// call anything. Only MsgSend, MsgSendv, MsgReceive and MsgRead wait, and only these are
// cancellation points: a cancelled thread leaves no lock taken and no half message behind.
#pragma once

#ifdef __QNX__

#include <assert.h>
#include <errno.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/dispatch.h>
#include <sys/neutrino.h>
#include <sys/siginfo.h>

namespace platform {
// The kernel lets a thread that is cancelled in a send go only once the receiver has answered.
inline bool CancelledSendWasAnswered() {
  return true;
}

inline bool ProcessIsGone(pid_t pid) {
  return kill(pid, 0) != 0 && errno == ESRCH;
}

[[noreturn]] inline void AssertFailed(const char* expression, const char* file, int line,
                                      const char* function) {
  __assert(expression, file, static_cast<unsigned>(line), function);
  abort();
}
}  // namespace platform

#else

#include <signal.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <time.h>

#include <cstddef>
#include <cstdint>

// Flags of ChannelCreate.
inline constexpr unsigned _NTO_CHF_FIXED_PRIORITY = 0x01;  // no effect here
inline constexpr unsigned _NTO_CHF_UNBLOCK = 0x02;     // pulse: a sender gave up before its answer
inline constexpr unsigned _NTO_CHF_DISCONNECT = 0x08;  // pulse: a client's last connection is gone
inline constexpr unsigned _NTO_CHF_COID_DISCONNECT = 0x40;  // no effect here

// Index and flag of ConnectAttach.
inline constexpr unsigned _NTO_SIDE_CHANNEL = 0x40000000;
inline constexpr int _NTO_COF_CLOEXEC = 0x01;  // always so here

// States that TimerTimeout can limit.
inline constexpr int _NTO_TIMEOUT_SEND = 0x10;
inline constexpr int _NTO_TIMEOUT_RECEIVE = 0x20;
inline constexpr int _NTO_TIMEOUT_REPLY = 0x40;

inline constexpr int SIGEV_UNBLOCK = 5;  // the only notification that TimerTimeout takes here

// Pulses, as MsgReceive delivers them with result 0.
inline constexpr std::int8_t _PULSE_CODE_UNBLOCK = -32;     // value: the receive id
inline constexpr std::int8_t _PULSE_CODE_DISCONNECT = -33;  // value: 0

struct _pulse {  // 16 bytes, as on the target
  std::uint16_t type;
  std::uint16_t subtype;
  std::int8_t code;
  std::uint8_t zero[3];
  std::int32_t value;
  std::int32_t scoid;
};

struct _msg_info {
  pid_t pid;              // the sender's process
  int chid;               // the channel the message came in on
  std::size_t msglen;     // bytes copied into the caller's buffer
  std::size_t srcmsglen;  // bytes the sender sent
  std::size_t dstmsglen;  // bytes the sender takes back
};

using iov_t = iovec;

// A channel to receive on. Returns its id, at least 1 and never used again in this process.
// Errors: EMFILE, EACCES and others of the socket calls; ENAMETOOLONG for an over-long run-time
// directory; EPERM if that directory belongs to somebody else.
int ChannelCreate(unsigned flags);

// Destroys a channel of this process: senders that wait for an answer on it and threads that wait
// in MsgReceive come back with ESRCH. Errors: EINVAL for an unknown id.
int ChannelDestroy(int chid);

// A connection to the channel `chid` of process `pid` (0: this one), verified to be there and to
// belong to this user. Returns an id with _NTO_SIDE_CHANNEL set if `index` has it. The id stays
// valid when an exchange over it times out or breaks: the next message dials the same channel anew.
// `nd` must be 0. Errors: ESRCH if there is no such process or channel.
int ConnectAttach(std::uint32_t nd, pid_t pid, int chid, unsigned index, int flags);

// Gives a connection back. A send in progress on it comes to its own end. Errors: EBADF.
int ConnectDetach(int coid);

// Sends a message and blocks until the receiver answers it. The bytes go out of the caller's memory
// as they lie. Returns the status of MsgReply, with up to `rbytes` of its data in `rmsg`.
// Errors: the number given to MsgError; ESRCH if the receiver is gone or goes away, at once;
// ETIMEDOUT after TimerTimeout; EINTR if a signal handler ran; EBADF for an unknown id.
long MsgSend(int coid, const void* smsg, std::size_t sbytes, void* rmsg, std::size_t rbytes);

// The same with the message gathered from `sparts` pieces and the answer scattered over `rparts`.
long MsgSendv(int coid, const iov_t* siov, std::size_t sparts, const iov_t* riov,
              std::size_t rparts);

// Blocks for a message or a pulse. Copies up to `bytes` of the message's start into `msg`; the rest
// is fetched with MsgRead. Returns the receive id, at least 1, that must be answered by MsgReply or
// MsgError; or 0 for a pulse, which is not answered. Several threads may wait on one channel.
// `info` may be null. Errors: ESRCH if the channel is or gets destroyed; ETIMEDOUT.
int MsgReceive(int chid, void* msg, std::size_t bytes, struct _msg_info* info);

// Copies up to `bytes` of a received message from `offset` on straight into `msg`, and returns how
// many there were. Blocks while the sender is still sending. Offsets go forward only: what lies
// before the first byte not yet fetched is gone (EINVAL). Errors: ESRCH if the sender gave up.
ssize_t MsgRead(int rcvid, void* msg, std::size_t bytes, std::size_t offset);

// Answers a message: the sender's MsgSend returns `status`, with the data given. Unfetched bytes of
// the message are dropped. Errors: ESRCH if the sender no longer waits.
int MsgReply(int rcvid, long status, const void* msg, std::size_t bytes);

// Answers with a failure: the sender's MsgSend returns -1 with errno `error`, any number. An error
// of 0 makes it return 0. Errors: as MsgReply.
int MsgError(int rcvid, int error);

// Limits the calling thread's next blocking call, in the states named by `flags`, to `*ntime`
// nanoseconds; null or no flags takes the limit back. Clock, notification (SIGEV_UNBLOCK) and
// `otime` (null) have one form here. Returns 0.
int TimerTimeout(clockid_t id, int flags, const struct sigevent* notify, const std::uint64_t* ntime,
                 std::uint64_t* otime);

struct dispatch_t;

struct name_attach_t {
  dispatch_t* dpp;
  int chid;  // the channel that the name leads to
  int mntid;
};

// A dispatch handle over an existing channel. `flags` must be 0. Null on failure.
dispatch_t* dispatch_create_channel(int chid, unsigned flags);

// Frees the handle and destroys its channel.
int dispatch_destroy(dispatch_t* dpp);

// Makes the handle's channel findable under `path`, a plain name: no "/" and no "..". A name left
// behind by a dead process is replaced; a live one is not stolen (EEXIST). `flags` must be 0.
// Errors: EINVAL, ENAMETOOLONG for what can't be a name. Null on failure.
name_attach_t* name_attach(dispatch_t* dpp, const char* path, unsigned flags);

// Takes the name back, destroys the dispatch handle with its channel, and frees the record.
// `flags` must be 0.
int name_detach(name_attach_t* attach, unsigned flags);

// A connection to the channel behind a name, as ConnectAttach. Errors: ENOENT if nobody is there;
// EINVAL, ENAMETOOLONG as name_attach.
int name_open(const char* name, int flags);

namespace platform {
// For the unwinding of a thread cancelled in MsgSend or MsgSendv: whether the receiver had
// answered, and not with an error, that is, has taken the message. Calling thread.
bool CancelledSendWasAnswered();

// Whether the process `pid` has ended, also if its parent has not taken notice yet. Any thread.
bool ProcessIsGone(pid_t pid);

// Reports a failed internal assumption on standard error and aborts the process.
[[noreturn]] void AssertFailed(const char* expression, const char* file, int line,
                               const char* function);
}  // namespace platform

#endif
