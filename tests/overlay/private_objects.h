// SPDX-License-Identifier: Apache-2.0
// Memory objects of the test's own, whatever name the code under test gives them.
//
// Surfaces and the server's screen have fixed names, and any number of testers, engines and tests
// may run on this machine. In this program shm_open puts a prefix before each name and then is the
// system's own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ventrik::tests {

// Removes the test's objects at its beginning and its end. Those of a death test's child are its
// parent's too.
class PrivateObjects {
 public:
  PrivateObjects();
  ~PrivateObjects();
  PrivateObjects(const PrivateObjects&) = delete;
  PrivateObjects& operator=(const PrivateObjects&) = delete;

  // Names are without the slash.
  static bool Exists(const std::string& name);
  static std::vector<std::string> Names();  // sorted
  // Where the file system shows the object.
  static std::string PathOf(const std::string& name);
  // The whole object as another process reads it; nothing if there is none.
  static std::vector<std::uint8_t> Read(const std::string& name);
  static void Make(const std::string& name, const std::vector<std::uint8_t>& content);
  static void Remove(const std::string& name);
};

// Descriptors and mappings of this process that belong to the test's objects.
int CountOpenObjects();
int CountMappedObjects();

}  // namespace ventrik::tests
