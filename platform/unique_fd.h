// SPDX-License-Identifier: Apache-2.0
// Owner of one file descriptor: closes it when it goes. Threads: any, one at a time.
#pragma once

#include <unistd.h>

#include <utility>

#include "platform/cancellation.h"

namespace platform {

class UniqueFd {
 public:
  UniqueFd() = default;
  explicit UniqueFd(int descriptor) : descriptor_(descriptor) {}
  UniqueFd(UniqueFd&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~UniqueFd() {
    if (descriptor_ < 0) return;
    const CancellationDisabled whole;  // close is a cancellation point
    close(descriptor_);
  }

  int get() const { return descriptor_; }
  explicit operator bool() const { return descriptor_ >= 0; }

 private:
  int descriptor_ = -1;
};

}  // namespace platform
