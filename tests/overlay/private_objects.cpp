// SPDX-License-Identifier: Apache-2.0
#include "tests/overlay/private_objects.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace ventrik::tests {
namespace {

constexpr char kPrefixVariable[] = "VENTRIK_TEST_OBJECTS";
constexpr char kDirectory[] = "/dev/shm/";

std::string Prefix() {
  setenv(kPrefixVariable, ("ventrik-test-" + std::to_string(getpid()) + "-").c_str(), 0);
  return std::getenv(kPrefixVariable);
}

}  // namespace

PrivateObjects::PrivateObjects() {
  for (const std::string& name : Names()) Remove(name);
}

PrivateObjects::~PrivateObjects() {
  for (const std::string& name : Names()) Remove(name);
}

bool PrivateObjects::Exists(const std::string& name) {
  return fs::exists(PathOf(name));
}

std::vector<std::string> PrivateObjects::Names() {
  std::vector<std::string> names;
  const std::string prefix = Prefix();
  for (const auto& entry : fs::directory_iterator(kDirectory)) {
    const std::string name = entry.path().filename();
    if (name.rfind(prefix, 0) == 0) names.push_back(name.substr(prefix.size()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string PrivateObjects::PathOf(const std::string& name) {
  return kDirectory + Prefix() + name;
}

std::vector<std::uint8_t> PrivateObjects::Read(const std::string& name) {
  std::error_code missing;
  const auto size = fs::file_size(PathOf(name), missing);
  std::vector<std::uint8_t> content(missing ? 0 : static_cast<std::size_t>(size));
  std::ifstream(PathOf(name), std::ios::binary)
      .read(reinterpret_cast<char*>(content.data()), static_cast<std::streamsize>(content.size()));
  return content;
}

void PrivateObjects::Make(const std::string& name, const std::vector<std::uint8_t>& content) {
  std::ofstream(PathOf(name), std::ios::binary)
      .write(reinterpret_cast<const char*>(content.data()),
             static_cast<std::streamsize>(content.size()));
}

void PrivateObjects::Remove(const std::string& name) {
  fs::remove_all(PathOf(name));
}

int CountOpenObjects() {
  int count = 0;
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    const std::string target = fs::read_symlink(entry.path(), gone);
    if (target.find(kDirectory + Prefix()) == 0) ++count;
  }
  return count;
}

int CountMappedObjects() {
  int count = 0;
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    if (line.find(kDirectory + Prefix()) != std::string::npos) ++count;
  }
  return count;
}

}  // namespace ventrik::tests

extern "C" int shm_open(const char* name, int flags, mode_t mode) {
  using Open = int (*)(const char*, int, mode_t);
  static const auto system = reinterpret_cast<Open>(dlsym(RTLD_NEXT, "shm_open"));
  const char* const own = *name == '/' ? name + 1 : name;
  return system(("/" + ventrik::tests::Prefix() + own).c_str(), flags, mode);
}
