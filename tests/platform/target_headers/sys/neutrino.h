// SPDX-License-Identifier: Apache-2.0
// Declarations of the target's message-passing calls, written for this project from their public
// documentation, so that the target's side of the seam is compiled without the target's system.
#pragma once

#include <signal.h>
#include <stdint.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <time.h>

#define _NTO_CHF_FIXED_PRIORITY 0x0001
#define _NTO_CHF_UNBLOCK 0x0002
#define _NTO_CHF_DISCONNECT 0x0008
#define _NTO_CHF_COID_DISCONNECT 0x0040

#define _NTO_SIDE_CHANNEL ((unsigned)0x40000000)
#define _NTO_COF_CLOEXEC 0x0001

#define _NTO_TIMEOUT_SEND (1 << 4)
#define _NTO_TIMEOUT_RECEIVE (1 << 5)
#define _NTO_TIMEOUT_REPLY (1 << 6)

#define SIGEV_UNBLOCK 5

#define _PULSE_CODE_UNBLOCK (-32)
#define _PULSE_CODE_DISCONNECT (-33)

typedef struct iovec iov_t;

struct _pulse {
  uint16_t type;
  uint16_t subtype;
  int8_t code;
  uint8_t zero[3];
  union {
    int sival_int;
    void* sival_ptr;
  } value;
  int32_t scoid;
};

struct _msg_info {
  uint32_t nd;
  uint32_t srcnd;
  pid_t pid;
  int32_t tid;
  int32_t chid;
  int32_t scoid;
  int32_t coid;
  int32_t msglen;
  int32_t srcmsglen;
  int32_t dstmsglen;
  int16_t priority;
  int16_t flags;
  uint32_t reserved;
};

extern "C" {
int ChannelCreate(unsigned flags);
int ChannelDestroy(int chid);
int ConnectAttach(uint32_t nd, pid_t pid, int chid, unsigned index, int flags);
int ConnectDetach(int coid);
int MsgSend(int coid, const void* smsg, int sbytes, void* rmsg, int rbytes);
int MsgSendv(int coid, const iov_t* siov, int sparts, const iov_t* riov, int rparts);
int MsgReceive(int chid, void* msg, int bytes, struct _msg_info* info);
int MsgRead(int rcvid, void* msg, int bytes, int offset);
int MsgReply(int rcvid, int status, const void* msg, int bytes);
int MsgError(int rcvid, int error);
int TimerTimeout(clockid_t id, int flags, const struct sigevent* notify, const uint64_t* ntime,
                 uint64_t* otime);
void __assert(const char* expression, const char* file, unsigned line, const char* function);
}
