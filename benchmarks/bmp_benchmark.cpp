// SPDX-License-Identifier: Apache-2.0
// Weather images: what decoding costs beside the bare loop over the same bytes, and what drawing
// costs beside the bare OpenGL calls for the same runs, with its error checks. What a library takes
// to read the same file is in a file of its own.
#include <GLES/gl.h>
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <thread>

#include "benchmarks/weather_image.h"
#include "overlay/offscreen_surface.h"
#include "overlay/weather_overlay_gles.h"
#include "platform/graphics.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr int kDecodingRounds = 31;
constexpr int kDrawingRounds = 9;

// The same runs for the same device without a decoder: no checks, no codes but the two in use.
void BareDecode(const WeatherImage& image, CBMPOutputDevice& device) {
  static std::uint8_t block[kBlock];
  static std::uint8_t head[kBmpHeaders + kBmpPalette];
  const int file = open(image.path.c_str(), O_RDONLY | O_CLOEXEC);
  if (read(file, head, sizeof head) != sizeof head) std::abort();
  const std::uint8_t* const palette = head + kBmpHeaders;
  std::int32_t x = 0;
  std::int32_t y = 0;
  device.SetPosition(0, 0);
  for (ssize_t got = 0; (got = read(file, block, kBlock)) > 0;) {
    for (const std::uint8_t* pair = block; pair + 1 < block + got; pair += 2) {
      if (pair[0] != 0) {
        device.DrawRun(x, pair[0], palette + 4 * pair[1]);
        x += pair[0];
      } else if (pair[1] == 0) {
        x = 0;
        device.SetPosition(0, ++y);
      }
    }
  }
  close(file);
}

void DecodingBesideBareLoop(benchmark::State& state) {
  const WeatherImage image = MakeImage(2000);
  CountingDevice bare;
  CountingDevice ours;
  const Comparison seconds = Compare(
      state, [&] { return ProcessorSecondsOf([&] { BareDecode(image, bare); }); },
      [&] { return ProcessorSecondsOf([&] { Decode(image, ours); }); });
  if (ours.runs != bare.runs || ours.pixels != bare.pixels || ours.runs % image.runs != 0) {
    return state.SkipWithError("other runs");
  }
  ReportCost(state, "ns a run", 1e-9, static_cast<double>(image.runs), seconds);
}
BENCHMARK(DecodingBesideBareLoop)
    ->UseManualTime()
    ->Iterations(Rounds(kDecodingRounds))
    ->Unit(benchmark::kMillisecond);

void DecodingGrowth(benchmark::State& state) {
  const WeatherImage images[] = {MakeImage(200), MakeImage(632), MakeImage(2000)};
  RunGrowth(state, images[0].runs, [&](std::size_t pieces) {
    const std::size_t which = pieces == images[0].runs ? 0 : pieces < 50 * images[0].runs ? 1 : 2;
    CountingDevice device;
    const double seconds = ProcessorSecondsOf([&] { Decode(images[which], device); });
    // The squares have not quite ten and a hundred times the runs.
    return seconds * static_cast<double>(pieces) / static_cast<double>(device.runs);
  });
}
BENCHMARK(DecodingGrowth)->UseManualTime()->Iterations(Rounds(kDecodingRounds));

void Check() {
  if (glGetError() != GL_NO_ERROR) std::abort();
}

// Draws runs as the device does, and nothing else.
class BareDevice : public CountingDevice {
 public:
  void DrawRun(std::int32_t x, std::int32_t count, const std::uint8_t* colour) override {
    glColor4f(static_cast<float>(colour[2]) / 255, static_cast<float>(colour[1]) / 255,
              static_cast<float>(colour[0]) / 255, 0.8F);
    Check();
    const auto left = static_cast<GLshort>(x);
    const auto right = static_cast<GLshort>(x + count);
    const auto bottom = static_cast<GLshort>(y_);
    const auto top = static_cast<GLshort>(y_ + 1);
    const GLshort run[] = {left, top, right, top, left, bottom, right, bottom};
    glEnableClientState(GL_VERTEX_ARRAY);
    Check();
    glVertexPointer(2, GL_SHORT, 0, run);
    Check();
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    Check();
    glDisableClientState(GL_VERTEX_ARRAY);
    Check();
  }
  void SetPosition(std::int32_t, std::int32_t y) override { y_ = y; }

 private:
  std::int32_t y_ = 0;
};

// One picture, from its clearing to its last pixel: what all threads do for it, those of a driver
// that draws in software too.
template <class Draw>
double SecondsOfPicture(const OffscreenSurface& surface, int side, Draw draw) {
  const CurrentSurface current(surface);
  return ProcessSecondsOf([&] {
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glViewport(0, 0, surface.width, surface.height);
    glOrthof(0, static_cast<float>(side), static_cast<float>(side), 0, -1, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    draw();
    glFinish();
  });
}

void DrawingBesideBareCalls(benchmark::State& state) {
  static const OffscreenSurface surface = OpenOffscreenSurface();
  const WeatherImage image = MakeImage(static_cast<int>(state.range(0)));
  CBMPOutputDeviceOpenGL_1 device;
  device.SetAreas({}, {0, 0, image.side, image.side}, {});
  BareDevice bare;
  const auto drawBare = [&] { BareDecode(image, bare); };
  const auto drawOurs = [&] { Decode(image, device); };
  ReportCost(state, "ns a run", 1e-9, static_cast<double>(image.runs),
             Compare(
                 state, [&] { return SecondsOfPicture(surface, image.side, drawBare); },
                 [&] { return SecondsOfPicture(surface, image.side, drawOurs); }));
}
BENCHMARK(DrawingBesideBareCalls)
    ->ArgName("side")
    ->Arg(280)
    ->Arg(890)
    ->UseManualTime()
    ->Iterations(Rounds(kDrawingRounds))
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ventrik

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  platform::PrepareGraphics();
  ventrik::SilentLogger console;
  ventrik::logger = &console;
  // In the program it isn't the main thread that draws, and each thread has a heap of its own.
  std::thread([] { benchmark::RunSpecifiedBenchmarks(); }).join();
}
