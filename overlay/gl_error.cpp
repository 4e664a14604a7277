// SPDX-License-Identifier: Apache-2.0
#include "overlay/gl_error.h"

#include <GLES/gl.h>

#include <cstdio>
#include <cstdlib>

namespace ventrik {

void CheckGlError(const char* file, int line) {
  const GLenum error = glGetError();
  if (error == GL_NO_ERROR) return;
  std::fprintf(stderr, "GL ERROR=0x%04x\n", error);
  switch (error) {
    case GL_INVALID_ENUM:
      std::fprintf(stderr, "%s(%d):GL_INVALID_ENUM:", file, line);
      break;
    case GL_INVALID_VALUE:
      std::fprintf(stderr, "%s(%d):GL_INVALID_VALUE:", file, line);
      break;
    case GL_INVALID_OPERATION:
      std::fprintf(stderr, "%s(%d):GL_INVALID_OPERATION:", file, line);
      break;
    case GL_OUT_OF_MEMORY:
      break;  // nothing more to be said
    default:
      std::fprintf(stderr, "GL ERROR=%d\n", static_cast<int>(error));
      break;
  }
  std::abort();
}

}  // namespace ventrik
