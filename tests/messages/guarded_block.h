// SPDX-License-Identifier: Apache-2.0
// A block that ends right before memory that can't be read, so that a reader that leaves the block
// ends the test program, with or without sanitizers.
#pragma once

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "messages/block_cursor.h"

namespace ventrik {

class GuardedBlock {
 public:
  // Copies the `size` bytes at `bytes`.
  GuardedBlock(const std::uint8_t* bytes, std::size_t size) : size_(size) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    room_ = (size / page + 1) * page;
    void* const mapped =
        mmap(nullptr, room_ + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) {
      ADD_FAILURE() << "no memory for a guarded block";
      std::abort();
    }
    mapped_ = static_cast<std::uint8_t*>(mapped);
    mappedSize_ = room_ + page;
    EXPECT_EQ(mprotect(mapped_ + room_, page, PROT_NONE), 0);
    std::copy_n(bytes, size, mapped_ + room_ - size);
  }
  ~GuardedBlock() { munmap(mapped_, mappedSize_); }
  GuardedBlock(const GuardedBlock&) = delete;
  GuardedBlock& operator=(const GuardedBlock&) = delete;

  ReceivedBlock Block() const { return {mapped_ + room_ - size_, size_}; }

 private:
  std::size_t size_;
  std::size_t room_ = 0;  // bytes before the guard
  std::uint8_t* mapped_ = nullptr;
  std::size_t mappedSize_ = 0;
};

}  // namespace ventrik
