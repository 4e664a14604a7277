// SPDX-License-Identifier: Apache-2.0
// A directory of a test's own, removed with everything in it at the end.
#pragma once

#include <string>

namespace ventrik::tests {

class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// The same as the place where this process's channels and names live, until the end of its life.
class TemporaryRuntimeDirectory {
 public:
  TemporaryRuntimeDirectory();
  ~TemporaryRuntimeDirectory();

  // Where the files are, once the first channel has been made.
  std::string path() const { return directory_.path() + "/ventrik"; }

 private:
  TemporaryDirectory directory_;
};

// Open descriptors of this process.
int CountDescriptors();

}  // namespace ventrik::tests
