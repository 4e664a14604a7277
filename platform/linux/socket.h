// SPDX-License-Identifier: Apache-2.0
// Unix-domain stream sockets between processes of one user.
//
// What makes a socket gives nothing on failure, with errno set; ENAMETOOLONG for a path that a
// socket address can't hold, which is never cut short. All sockets are non-blocking and close on
// exec.
#pragma once

#include <sys/types.h>
#include <sys/uio.h>

#include <cstddef>
#include <string>

#include "platform/unique_fd.h"

namespace platform {

// A socket that listens at `path`, mode 0600.
UniqueFd ListenAt(const std::string& path);

// A socket connected to the listener at `path`. ESRCH if nobody listens there; EPERM if the
// listener is another user's.
UniqueFd Dial(const std::string& path);

// The next connection that waits at `listener`, and the process behind it in `pid`. Connections of
// other users are closed and passed over. Nothing with errno EAGAIN if none waits.
UniqueFd AcceptFrom(int listener, pid_t& pid);

// Send and receive pieces of memory as sendmsg and recvmsg do, without waiting; a peer that is gone
// raises no signal. At least one piece. What is short, or comes down to a single piece, goes by the
// plain call, which is cheaper: most messages and all answers to them. Results and errors are those
// of the calls.
ssize_t SendPieces(int descriptor, iovec* pieces, std::size_t count);
ssize_t ReceivePieces(int descriptor, iovec* pieces, std::size_t count);

// Whether a process holds a listening socket at `path`; true when in doubt.
bool SomebodyListens(const std::string& path);

}  // namespace platform
