// SPDX-License-Identifier: Apache-2.0
// What a failed drawing call leads to: the end of the program.
#pragma once

namespace ventrik {

// Asks OpenGL for its error and, if there is one, says so on standard error and aborts. `file` and
// `line` tell which call it stood behind. With a context current on the calling thread.
void CheckGlError(const char* file, int line);

}  // namespace ventrik
