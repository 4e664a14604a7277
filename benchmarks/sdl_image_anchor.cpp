// SPDX-License-Identifier: Apache-2.0
// Decoding a weather image beside a library that reads it into a picture of eight bits a pixel,
// which is what the tester does without.
#include <SDL_image.h>

#include "benchmarks/weather_image.h"

namespace ventrik {
namespace {

void DecodingBesideSdlImage(benchmark::State& state) {
  const WeatherImage image = MakeImage(2000);
  CountingDevice ours;
  bool same = true;
  const Comparison seconds = Compare(
      state,
      [&] {
        return ProcessorSecondsOf([&] {
          SDL_Surface* const picture = IMG_Load(image.path.c_str());
          same &= picture != nullptr && picture->w == image.side && picture->h == image.side;
          SDL_FreeSurface(picture);
        });
      },
      [&] {
        ours.pixels = 0;
        const double took = ProcessorSecondsOf([&] { Decode(image, ours); });
        same &= ours.pixels ==
                static_cast<std::size_t>(image.side) * static_cast<std::size_t>(image.side);
        return took;
      });
  if (!same) return state.SkipWithError("another picture");
  ReportCost(state, "ms an image", 1e-3, 1, seconds);
}
BENCHMARK(DecodingBesideSdlImage)
    ->UseManualTime()
    ->Iterations(Rounds(21))
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ventrik
