// SPDX-License-Identifier: Apache-2.0
// Weather images: what decoding costs beside the bare loop over the same bytes, and what drawing
// costs beside the bare OpenGL calls for the same runs, with its error checks.
#include <GLES/gl.h>
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <random>
#include <thread>

#include "benchmarks/beside.h"
#include "overlay/bmp_decoder.h"
#include "overlay/offscreen_surface.h"
#include "overlay/weather_overlay_gles.h"
#include "platform/graphics.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::size_t kBlock = 65536;  // bytes read at a time
constexpr std::size_t kHeaders = 54;
constexpr std::size_t kPalette = 1024;
constexpr int kDecodingRounds = 31;
constexpr int kDrawingRounds = 9;

const Scratch* scratch = nullptr;

struct Image {
  std::string path;
  std::size_t runs = 0;
  int side = 0;
};

void Put(std::string& bytes, std::size_t place, std::uint32_t number) {
  std::memcpy(&bytes[place], &number, sizeof number);
}

// A square of coloured runs of 1 to 15 pixels, none of them black.
Image MakeImage(int side) {
  std::minstd_rand random(5);
  Image image = {"", 0, side};
  std::string codes;
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++image.runs) {
      const int length = std::min(side - x, 1 + static_cast<int>(random() % 15));
      codes += static_cast<char>(length);
      codes += static_cast<char>(1 + random() % 255);
      x += length;
    }
    codes += '\0';
    codes += y + 1 < side ? '\0' : '\1';
  }
  std::string bytes(kHeaders + kPalette, '\0');
  bytes[0] = 'B';
  bytes[1] = 'M';
  Put(bytes, 18, static_cast<std::uint32_t>(side));
  Put(bytes, 22, static_cast<std::uint32_t>(side));
  Put(bytes, 30, 1);
  Put(bytes, 46, 256);
  for (std::uint32_t i = 0; i < 256; ++i) Put(bytes, kHeaders + 4 * i, i * 0x010305);
  image.path = scratch->Write("image" + std::to_string(side), bytes + codes);
  return image;
}

class CountingDevice : public CBMPOutputDevice {
 public:
  void SetAreas(const GeoRect&, const GeoRect&, const GeoRect&) override {}
  void BeginImage(std::int32_t, std::int32_t) override {}
  void DrawRun(std::int32_t, std::int32_t count, const std::uint8_t*) override {
    ++runs;
    pixels += static_cast<std::size_t>(count);
  }
  void SetPosition(std::int32_t, std::int32_t) override {}
  void EndImage() override {}

  std::size_t runs = 0;
  std::size_t pixels = 0;
};

void Decode(const Image& image, CBMPOutputDevice& device) {
  static std::uint8_t block[kBlock];
  const int file = open(image.path.c_str(), O_RDONLY | O_CLOEXEC);
  CBMPDecoder decoder(&device, block, kBlock);
  ReadBmp(decoder, file);
  close(file);
  FinishBmp(decoder);
}

// The same runs for the same device without a decoder: no checks, no codes but the two in use.
void BareDecode(const Image& image, CBMPOutputDevice& device) {
  static std::uint8_t block[kBlock];
  static std::uint8_t head[kHeaders + kPalette];
  const int file = open(image.path.c_str(), O_RDONLY | O_CLOEXEC);
  if (read(file, head, sizeof head) != sizeof head) std::abort();
  const std::uint8_t* const palette = head + kHeaders;
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
  const Image image = MakeImage(2000);
  CountingDevice bare;
  CountingDevice ours;
  std::vector<double> bareTimes;
  std::vector<double> ourTimes;
  std::vector<double> ratios;
  for (auto _ : state) {
    bareTimes.push_back(SecondsOf([&] { BareDecode(image, bare); }));
    ourTimes.push_back(SecondsOf([&] { Decode(image, ours); }));
    ratios.push_back(ourTimes.back() / bareTimes.back());
    state.SetIterationTime(ourTimes.back());
  }
  if (ours.runs != bare.runs || ours.pixels != bare.pixels || ours.runs % image.runs != 0) {
    return state.SkipWithError("other runs");
  }
  const auto runs = static_cast<double>(image.runs);
  state.counters["ours_ns_a_run"] = Median(ourTimes) / runs * 1e9;
  state.counters["bare_ns_a_run"] = Median(bareTimes) / runs * 1e9;
  state.counters["ratio"] = Median(ratios);
}
BENCHMARK(DecodingBesideBareLoop)
    ->UseManualTime()
    ->Iterations(kDecodingRounds)
    ->Unit(benchmark::kMillisecond);

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

// One picture, from its clearing to its last pixel.
template <class Draw>
double SecondsOfPicture(const OffscreenSurface& surface, int side, Draw draw) {
  const CurrentSurface current(surface);
  return SecondsOf([&] {
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
  const Image image = MakeImage(static_cast<int>(state.range(0)));
  CBMPOutputDeviceOpenGL_1 device;
  device.SetAreas({}, {0, 0, image.side, image.side}, {});
  BareDevice bare;
  std::vector<double> bareTimes;
  std::vector<double> ourTimes;
  std::vector<double> ratios;
  for (auto _ : state) {
    const auto drawBare = [&] { BareDecode(image, bare); };
    const auto drawOurs = [&] { Decode(image, device); };
    bareTimes.push_back(SecondsOfPicture(surface, image.side, drawBare));
    ourTimes.push_back(SecondsOfPicture(surface, image.side, drawOurs));
    ratios.push_back(ourTimes.back() / bareTimes.back());
    state.SetIterationTime(ourTimes.back());
  }
  const auto runs = static_cast<double>(image.runs);
  state.counters["ours_ns_a_run"] = Median(ourTimes) / runs * 1e9;
  state.counters["bare_ns_a_run"] = Median(bareTimes) / runs * 1e9;
  state.counters["runs"] = runs;
  state.counters["ratio"] = Median(ratios);
}
BENCHMARK(DrawingBesideBareCalls)
    ->Arg(280)
    ->Arg(890)
    ->UseManualTime()
    ->Iterations(kDrawingRounds)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ventrik

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  platform::PrepareGraphics();
  ventrik::SilentLogger console;
  ventrik::logger = &console;
  const ventrik::Scratch files;
  ventrik::scratch = &files;
  // In the program it isn't the main thread that draws, and each thread has a heap of its own.
  std::thread([] { benchmark::RunSpecifiedBenchmarks(); }).join();
}
