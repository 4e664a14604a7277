// SPDX-License-Identifier: Apache-2.0
// What happens when one of the program's own assumptions turns out wrong. Bytes from the server, a
// file or the keyboard are never a reason to come here.
#pragma once

namespace ventrik {

// Prints "ASSERT FAILED!\nfile:%s\nline:%d\nfunc:%s\n" through the logger and aborts the process.
[[noreturn]] void FailAssertion(const char* file, int line, const char* function);

}  // namespace ventrik
