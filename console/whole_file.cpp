// SPDX-License-Identifier: Apache-2.0
#include "console/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstddef>

#include "console/open_file.h"
#include "platform/cancellation.h"
#include "platform/unique_fd.h"

namespace ventrik {

std::optional<std::string> ReadWholeFile(const char* path) {
  const platform::CancellationDisabled whole;
  const platform::UniqueFd file(OpenWithoutWaiting(path, O_RDONLY));
  if (!file) return std::nullopt;
  std::string bytes;
  struct stat status = {};
  if (fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode)) {
    bytes.reserve(static_cast<std::size_t>(status.st_size));
  }
  std::array<char, 65536> part;
  ssize_t count = 0;
  while ((count = read(file.get(), part.data(), part.size())) > 0) {
    bytes.append(part.data(), static_cast<std::size_t>(count));
  }
  return bytes;
}

}  // namespace ventrik
