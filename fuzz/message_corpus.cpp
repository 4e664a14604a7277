// SPDX-License-Identifier: Apache-2.0
// Usage: message_corpus DIRECTORY
// Writes each message of the tests' samples into a file of its own.
#include <cstdio>
#include <fstream>
#include <string>

#include "tests/messages/message_samples.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: message_corpus DIRECTORY\n", stderr);
    return 2;
  }
  int number = 0;
  for (const ventrik::MessageSample& sample : ventrik::ResponseSamples()) {
    const std::string path = std::string(argv[1]) + "/sample-" + std::to_string(number++);
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(sample.golden.value.data()),
               static_cast<std::streamsize>(sample.golden.value.size()));
    if (!file.flush()) {
      std::fprintf(stderr, "message_corpus: can't write %s\n", path.c_str());
      return 1;
    }
  }
  return 0;
}
