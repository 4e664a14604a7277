// SPDX-License-Identifier: Apache-2.0
// The kept inputs of a fuzzer as an ordinary test: each file of the folders named is handed to it
// once. Whatever it finds wrong ends the program as it would end the fuzzer.
// Usage: NAME_corpus FOLDER ...
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argumentCount, char*** arguments);

namespace {

std::vector<std::uint8_t> BytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// What the code under test prints isn't wanted.
void DropOutput() {
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(nowhere, STDOUT_FILENO);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (LLVMFuzzerInitialize != nullptr) LLVMFuzzerInitialize(&argumentCount, &arguments);
  DropOutput();
  int count = 0;
  for (int i = 1; i < argumentCount; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(arguments[i])) {
      const std::vector<std::uint8_t> bytes = BytesOf(entry.path());
      std::fprintf(stderr, "%s: %zu bytes\n", entry.path().c_str(), bytes.size());
      LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
      ++count;
    }
  }
  std::fprintf(stderr, "%d inputs\n", count);
  return count > 0 ? 0 : 1;
}
