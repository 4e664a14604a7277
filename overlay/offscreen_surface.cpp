// SPDX-License-Identifier: Apache-2.0
#include "overlay/offscreen_surface.h"

#include <cstdio>
#include <cstdlib>

#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::int32_t kWidth = 640;
constexpr std::int32_t kHeight = 480;

constexpr EGLint kConfigAttributes[] = {
    EGL_SURFACE_TYPE, EGL_PBUFFER_BIT,  //
    EGL_RED_SIZE,     8,                //
    EGL_GREEN_SIZE,   8,                //
    EGL_BLUE_SIZE,    8,                //
    EGL_ALPHA_SIZE,   8,                //
    EGL_DEPTH_SIZE,   24,               //
    EGL_NONE,
};

constexpr EGLint kSurfaceAttributes[] = {EGL_WIDTH, kWidth, EGL_HEIGHT, kHeight, EGL_NONE};

[[noreturn]] void Fail(const char* message) {
  std::fputs(message, stderr);
  std::abort();
}

[[noreturn]] void FailWithError(const char* what) {
  std::fprintf(stderr, "%s0x%x\n", what, static_cast<unsigned>(eglGetError()));
  std::abort();
}

EGLDisplay OpenDisplay() {
  const EGLDisplay display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
  if (display == EGL_NO_DISPLAY) Fail("eglGetDisplay() failed\n");
  if (eglInitialize(display, nullptr, nullptr) != EGL_TRUE) {
    FailWithError("eglInitialize: error ");
  }
  if (eglBindAPI(EGL_OPENGL_ES_API) != EGL_TRUE) FailWithError("eglBindApi: error ");
  return display;
}

EGLConfig ChooseConfig(EGLDisplay display) {
  EGLConfig config = nullptr;
  EGLint count = 0;
  const EGLBoolean chosen = eglChooseConfig(display, kConfigAttributes, &config, 1, &count);
  // A choice among no configs is a success that chooses none.
  if (chosen != EGL_TRUE || count < 1) Fail("Cannot find config.\n");
  logger->print(L"Found config.\n");
  return config;
}

void PrintExtensions(EGLDisplay display) {
  const char* extensions = eglQueryString(display, EGL_EXTENSIONS);
  if (extensions == nullptr) Fail("No extensions!\n");
  logger->print(L"GL ext:  %s\n", extensions);
}

void MakeCurrent(const OffscreenSurface& surface) {
  if (eglMakeCurrent(surface.display, surface.surface, surface.surface, surface.context) !=
      EGL_TRUE) {
    FailWithError("Make current failed: ");
  }
}

}  // namespace

OffscreenSurface OpenOffscreenSurface() {
  OffscreenSurface made;
  made.display = OpenDisplay();
  made.config = ChooseConfig(made.display);
  PrintExtensions(made.display);
  made.context = eglCreateContext(made.display, made.config, EGL_NO_CONTEXT, nullptr);
  if (made.context == EGL_NO_CONTEXT) FailWithError("create context failed: ");
  made.surface = eglCreatePbufferSurface(made.display, made.config, kSurfaceAttributes);
  if (made.surface == EGL_NO_SURFACE) FailWithError("Create surface failed: ");
  logger->print(L"pbuffer ok\n");
  const CurrentSurface trial(made);
  logger->print(L"make current ok\n");
  made.width = kWidth;
  made.height = kHeight;
  logger->print(L"Real size %d*%d\n", made.width, made.height);
  return made;
}

CurrentSurface::CurrentSurface(const OffscreenSurface& surface) : surface_(surface) {
  if (eglGetCurrentContext() != surface.context) MakeCurrent(surface);
}

CurrentSurface::~CurrentSurface() {
  eglMakeCurrent(surface_.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  // What EGL keeps of a thread is freed when the thread ends and once more when the process exits,
  // if both happen at a time. So nothing is left with it.
  eglReleaseThread();
}

}  // namespace ventrik
