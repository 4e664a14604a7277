// SPDX-License-Identifier: Apache-2.0
// Weather surfaces beside the bare calls: setting EGL up to the first picture in a process that has
// just started, a picture of the frame alone in a new surface, and the reading back of it.
#include <EGL/egl.h>
#include <GLES/gl.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <thread>

#include "benchmarks/beside.h"
#include "overlay/offscreen_surface.h"
#include "overlay/overlay_buffer.h"
#include "overlay/weather_overlay_gles1_adobescreen.h"
#include "platform/graphics.h"
#include "platform/shared_memory.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

const char* const kStartOption = "--start";
const char* const kBareName = "/ventrik_benchmark";
constexpr int kWidth = 640;  // pixels
constexpr int kHeight = 480;
constexpr std::size_t kBytes = std::size_t{4} * kWidth * kHeight;

// Sends what is said on standard error away for a scope.
class Quiet {
 public:
  Quiet() : before_(dup(STDERR_FILENO)) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDERR_FILENO);
    close(nowhere);
  }
  ~Quiet() {
    dup2(before_, STDERR_FILENO);
    close(before_);
  }
  Quiet(const Quiet&) = delete;
  Quiet& operator=(const Quiet&) = delete;

 private:
  int before_;
};

void Check() {
  if (glGetError() != GL_NO_ERROR) std::abort();
}

// Lets work(memory) fill a new object, which is gone again at the end.
template <class Work>
void InNewObject(Work work) {
  const int descriptor = shm_open(kBareName, O_RDWR | O_CREAT, 0600);
  if (ftruncate(descriptor, kBytes) != 0) std::abort();
  void* const memory = mmap(nullptr, kBytes, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
  if (memory == MAP_FAILED) std::abort();
  work(memory);
  munmap(memory, kBytes);
  close(descriptor);
  shm_unlink(kBareName);
}

struct BareScreen {
  EGLDisplay display = EGL_NO_DISPLAY;
  EGLSurface surface = EGL_NO_SURFACE;
  EGLContext context = EGL_NO_CONTEXT;
};

BareScreen OpenBareScreen() {
  const EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT,
                           EGL_RED_SIZE,     8,  //
                           EGL_GREEN_SIZE,   8,
                           EGL_BLUE_SIZE,    8,  //
                           EGL_ALPHA_SIZE,   8,
                           EGL_DEPTH_SIZE,   24,
                           EGL_NONE};
  const EGLint size[] = {EGL_WIDTH, kWidth, EGL_HEIGHT, kHeight, EGL_NONE};
  BareScreen made;
  made.display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
  eglInitialize(made.display, nullptr, nullptr);
  eglBindAPI(EGL_OPENGL_ES_API);
  EGLConfig config = nullptr;
  EGLint count = 0;
  eglChooseConfig(made.display, wanted, &config, 1, &count);
  made.context = eglCreateContext(made.display, config, EGL_NO_CONTEXT, nullptr);
  made.surface = eglCreatePbufferSurface(made.display, config, size);
  return made;
}

void MakeCurrent(const BareScreen& screen) {
  if (eglMakeCurrent(screen.display, screen.surface, screen.surface, screen.context) != EGL_TRUE) {
    std::abort();
  }
}

// The frame without an error check behind each call.
void DrawBareFrame() {
  const float width = kWidth;
  const float height = kHeight;
  const float vertices[] = {0.01F * width, 0.01F * height, 0.01F * width, 0.99F * height,
                            0.99F * width, 0.01F * height, 0.99F * width, 0.99F * height};
  const float colours[] = {1.0F, 0.0F, 0.0F, 0.75F, 0.1F, 0.1F, 0.1F, 0.75F,
                           0.0F, 1.0F, 0.0F, 0.25F, 0.1F, 0.1F, 0.1F, 0.25F};
  const GLushort quad[] = {0, 1, 2, 3};
  const GLushort outline[] = {0, 1, 3, 2, 0, 1};
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  glViewport(0, 0, kWidth, kHeight);
  glOrthof(0, width, height, 0, -1, 1);
  glClearColor(0, 0, 0, 0);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glEnableClientState(GL_VERTEX_ARRAY);
  glEnableClientState(GL_COLOR_ARRAY);
  glVertexPointer(2, GL_FLOAT, 0, vertices);
  glColorPointer(4, GL_FLOAT, 0, colours);
  glDrawElements(GL_TRIANGLE_STRIP, 4, GL_UNSIGNED_SHORT, quad);
  glDisableClientState(GL_COLOR_ARRAY);
  glColor4f(1, 1, 0.1F, 1);
  glLineWidth(3);
  glDrawElements(GL_LINE_STRIP, 6, GL_UNSIGNED_SHORT, outline);
  glDisableClientState(GL_VERTEX_ARRAY);
  glDisable(GL_BLEND);
  glFinish();
}

void ReadBackTo(void* memory) {
  glReadPixels(0, 0, kWidth, kHeight, GL_RGBA, GL_UNSIGNED_BYTE, memory);
  Check();
}

void DrawBareSurface() {
  InNewObject([](void* memory) {
    DrawBareFrame();
    ReadBackTo(memory);
  });
}

void DropSurface(WeatherOverlay_Screen& screen, const char* sid) {
  const std::string name = std::string("/") + sid;
  screen.DropSid(sid);
  shm_unlink(name.c_str());
}

std::string PixelsOf(const std::string& name) {
  const int descriptor = shm_open(name.c_str(), O_RDONLY, 0);
  std::string pixels(kBytes, '\0');
  if (read(descriptor, pixels.data(), pixels.size()) != static_cast<ssize_t>(kBytes)) pixels = "";
  close(descriptor);
  return pixels;
}

// Whether both give the same picture.
bool PicturesAreSame(WeatherOverlay_Screen& screen, const BareScreen& bare) {
  const std::string sid = screen.GetSID(0, 0, 1, 1);
  const std::string ours = PixelsOf("/" + sid);
  DropSurface(screen, sid.c_str());
  std::string other(kBytes, '\0');
  MakeCurrent(bare);
  DrawBareFrame();
  ReadBackTo(other.data());
  eglMakeCurrent(bare.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  return ours == other && ours.find_first_not_of('\0') != std::string::npos;
}

void SurfaceBesideBareCalls(benchmark::State& state) {
  const Quiet quiet;
  WeatherOverlay_Screen screen;
  const BareScreen bare = OpenBareScreen();
  if (!PicturesAreSame(screen, bare)) return state.SkipWithError("another picture");
  ReportCost(state, "us a surface", 1e-6, 1,
             Compare(
                 state,
                 [&] {
                   MakeCurrent(bare);
                   const double seconds = ProcessSecondsOf([] { DrawBareSurface(); });
                   eglMakeCurrent(bare.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
                   return seconds;
                 },
                 [&] {
                   return ProcessSecondsOf([&] { DropSurface(screen, screen.GetSID(0, 0, 1, 1)); });
                 }));
}
BENCHMARK(SurfaceBesideBareCalls)
    ->UseManualTime()
    ->Iterations(Rounds(101))
    ->Unit(benchmark::kMillisecond);

OverlayBuffer NewBuffer() {
  OverlayBuffer buffer;
  std::strcpy(buffer.sid.data(), "gwx_benchmark");
  buffer.width = kWidth;
  buffer.height = kHeight;
  buffer.strideAlignment = 8;
  buffer.bytesPerPixel = 4;
  if (InitBuffer(buffer) != 0) std::abort();
  return buffer;
}

void DropBuffer(OverlayBuffer& buffer) {
  CloseBuffer(buffer);
  shm_unlink("/gwx_benchmark");
}

// The reading back into a new object, from its making to its end.
void ReadBackBesideBareCalls(benchmark::State& state) {
  const Quiet quiet;
  const OffscreenSurface surface = OpenOffscreenSurface();
  const CurrentSurface current(surface);
  DrawBareFrame();
  ReportCost(state, "us a picture", 1e-6, 1,
             Compare(
                 state, [] { return ProcessorSecondsOf([] { InNewObject(ReadBackTo); }); },
                 [] {
                   return ProcessorSecondsOf([] {
                     OverlayBuffer buffer = NewBuffer();
                     ReadBackTo(buffer.pixels);
                     DropBuffer(buffer);
                   });
                 }));
}
BENCHMARK(ReadBackBesideBareCalls)
    ->UseManualTime()
    ->Iterations(Rounds(101))
    ->Unit(benchmark::kMillisecond);

// The call alone, where the object's pages are touched for the first time, beside the same into
// memory that is in place.
void ReadBackBesideMemoryInPlace(benchmark::State& state) {
  const Quiet quiet;
  const OffscreenSurface surface = OpenOffscreenSurface();
  const CurrentSurface current(surface);
  DrawBareFrame();
  std::vector<char> inPlace(kBytes);
  ReportCost(state, "us a picture", 1e-6, 1,
             Compare(
                 state, [&] { return ProcessorSecondsOf([&] { ReadBackTo(inPlace.data()); }); },
                 [] {
                   OverlayBuffer buffer = NewBuffer();
                   const double seconds = ProcessorSecondsOf([&] { ReadBackTo(buffer.pixels); });
                   DropBuffer(buffer);
                   return seconds;
                 }));
}
BENCHMARK(ReadBackBesideMemoryInPlace)
    ->UseManualTime()
    ->Iterations(Rounds(101))
    ->Unit(benchmark::kMillisecond);

// What a process that was started for it takes from its first EGL call to its first picture, on a
// thread as the listener is: the processor's time of all its threads.
void StartAndTell(const char* which) {
  const bool ours = std::strcmp(which, "ours") == 0;
  double seconds = 0;
  std::thread([&] {
    const Quiet quiet;
    seconds = ProcessSecondsOf([ours] {
      if (ours) {
        WeatherOverlay_Screen screen;
        DropSurface(screen, screen.GetSID(0, 0, 1, 1));
      } else {
        MakeCurrent(OpenBareScreen());
        DrawBareSurface();
      }
    });
  }).join();
  if (write(STDOUT_FILENO, &seconds, sizeof seconds) != sizeof seconds) std::abort();
}

double SecondsOfStart(const char* which) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) std::abort();
  const pid_t process = fork();
  if (process == 0) {
    dup2(ends[1], STDOUT_FILENO);
    execl("/proc/self/exe", "surface_benchmark", kStartOption, which, nullptr);
    _exit(1);
  }
  close(ends[1]);
  double seconds = 0;
  if (read(ends[0], &seconds, sizeof seconds) != sizeof seconds) std::abort();
  close(ends[0]);
  waitpid(process, nullptr, 0);
  return seconds;
}

void EglStartBesideBareCalls(benchmark::State& state) {
  ReportCost(
      state, "ms a start", 1e-3, 1,
      Compare(
          state, [] { return SecondsOfStart("bare"); }, [] { return SecondsOfStart("ours"); }));
}
BENCHMARK(EglStartBesideBareCalls)
    ->UseManualTime()
    ->Iterations(Rounds(21))
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ventrik

int main(int argc, char** argv) {
  platform::PrepareGraphics();
  ventrik::SilentLogger console;
  ventrik::logger = &console;
  const ventrik::Scratch files;
  if (chdir(files.Path("").c_str()) != 0) return 1;  // where there are no images
  if (argc == 3 && std::strcmp(argv[1], ventrik::kStartOption) == 0) {
    ventrik::StartAndTell(argv[2]);
    return 0;
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  std::thread([] { benchmark::RunSpecifiedBenchmarks(); }).join();
}
