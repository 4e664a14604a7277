// SPDX-License-Identifier: Apache-2.0
// What any program costs that is linked with the tester's libraries.
#include <unistd.h>

int main() {
  char byte = 0;
  return write(STDOUT_FILENO, "ready\n", 6) == 6 && read(STDIN_FILENO, &byte, 1) >= 0 ? 0 : 1;
}
