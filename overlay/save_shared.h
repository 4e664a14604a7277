// SPDX-License-Identifier: Apache-2.0
// Saving the server's shared screen as a picture file.
#pragma once

namespace ventrik {

// Writes the memory object "/TORVALE_GLES2", 640 by 480 pixels of 32 bits, into a BMP file with its
// rows and bytes in the order in which they lie. Failures go to standard error. Oddity: where the
// object can't be mapped its descriptor stays open, and where the file can't be opened the mapping
// stays as well. The thread that runs the command; no cancellation point.
void SaveShared(const char* path);

}  // namespace ventrik
