// SPDX-License-Identifier: Apache-2.0
// The shared memory object that a tester's `save_shared` reads: on a real system the screen that
// the server draws, here a test picture.
//
// 640 by 480 pixels of red, green, blue and alpha, row after row, 1228800 bytes in all: vertical
// bars of eight colours over a grey ramp.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ventrik::bench {

inline constexpr char kSharedPictureName[] = "/TORVALE_GLES2";

// The bytes of the object.
std::vector<std::uint8_t> SharedTestPicture();

// Makes the object, and removes it at the end if this is what made it. An object of that name that
// is there already is left alone: it belongs to another engine or another server. Only what an
// engine that was killed has left behind, with nobody's lock on it, is taken over. A failure is
// reported; there is no object then. One thread.
class SharedPicture {
 public:
  explicit SharedPicture(const std::string& name = kSharedPictureName);
  ~SharedPicture() { Remove(); }
  SharedPicture(const SharedPicture&) = delete;
  SharedPicture& operator=(const SharedPicture&) = delete;

  // Whether the object is this one's to remove.
  bool isOwner() const { return object_ != -1; }

  // Removes the object now, once.
  void Remove();

 private:
  bool Create();
  void TakeOver();

  const std::string name_;
  int object_ = -1;  // open and locked while this is the owner
};

}  // namespace ventrik::bench
