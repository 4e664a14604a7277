// SPDX-License-Identifier: Apache-2.0
#include "tests/support/temporary_directory.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace ventrik::tests {

TemporaryDirectory::TemporaryDirectory() {
  char path[] = "/tmp/ventrik-test-XXXXXX";
  if (mkdtemp(path) == nullptr) {
    std::perror("mkdtemp");
    std::abort();
  }
  path_ = path;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

TemporaryRuntimeDirectory::TemporaryRuntimeDirectory() {
  setenv("XDG_RUNTIME_DIR", directory_.path().c_str(), 1);
}

TemporaryRuntimeDirectory::~TemporaryRuntimeDirectory() {
  unsetenv("XDG_RUNTIME_DIR");
}

int CountDescriptors() {
  int count = -1;  // the one that looks
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    static_cast<void>(entry);
    ++count;
  }
  return count;
}

}  // namespace ventrik::tests
