// SPDX-License-Identifier: Apache-2.0
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "platform/neutrino.h"
#include "platform/unique_fd.h"

namespace platform {

// A process descriptor becomes readable when the process ends, while kill() finds a process until
// its parent has waited for it.
bool ProcessIsGone(pid_t pid) {
  const CancellationDisabled whole;
  const UniqueFd process(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));
  if (!process) return errno == ESRCH || errno == EINVAL;
  pollfd ended = {process.get(), POLLIN, 0};
  return poll(&ended, 1, 0) == 1;
}

}  // namespace platform
