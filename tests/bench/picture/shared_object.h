// SPDX-License-Identifier: Apache-2.0
// A shared memory object as a tester makes it.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <vector>

namespace ventrik::bench {

class SharedObject {
 public:
  // `name` without the "/". It begins with `size` bytes of zero.
  SharedObject(const std::string& name, off_t size)
      : name_("/" + name), object_(shm_open(name_.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600)) {
    EXPECT_NE(object_, -1) << name_;
    Resize(size);
  }
  ~SharedObject() {
    close(object_);
    shm_unlink(name_.c_str());
  }
  SharedObject(const SharedObject&) = delete;
  SharedObject& operator=(const SharedObject&) = delete;

  void Resize(off_t size) { EXPECT_EQ(ftruncate(object_, size), 0); }
  void Write(const std::vector<std::uint8_t>& bytes, off_t at) {
    EXPECT_EQ(pwrite(object_, bytes.data(), bytes.size(), at), static_cast<ssize_t>(bytes.size()));
  }

 private:
  const std::string name_;
  const int object_;
};

// A name that no test that runs at the same time has.
inline std::string OwnObjectName(const std::string& name) {
  return "ventrik-test-" + std::to_string(getpid()) + "-" + name;
}

}  // namespace ventrik::bench
