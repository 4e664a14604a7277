// SPDX-License-Identifier: Apache-2.0
// One renderer whose pictures are asked for by one thread after the other.
#include <functional>
#include <thread>

#include "platform/cancellation.h"
#include "tests/ipc/cancellable_thread.h"
#include "tests/overlay/screen_fixture.h"

namespace ventrik::tests {
namespace {

class ScreenThreads : public ScreenTest {
 protected:
  ScreenThreads() {
    WriteImages({ImageAt({50, 50, 350, 250}, 3, 2,
                         Codes({1, 1, 2, 2}) + kEndOfLine + Codes({3, 3}) + kEndOfBitmap)});
  }

  const int mappedBefore_ = CountMappedObjects();

  // As the listener does it.
  void RenderUncancelled(std::vector<std::uint8_t>& picture) {
    const platform::CancellationDisabled whole;
    picture = PictureOf(kPixels);
  }
};

TEST_F(ScreenThreads, EachNewThreadDrawsTheSame) {
  const auto first = PictureOf(kPixels);
  for (int i = 0; i < 5; ++i) {
    std::vector<std::uint8_t> picture;
    std::thread([&] { RenderUncancelled(picture); }).join();
    EXPECT_EQ(picture, first) << i;
  }
  EXPECT_EQ(PictureOf(kPixels), first) << "and the first thread again";
}

TEST_F(ScreenThreads, RendererMadeByAThreadThatHasEnded) {
  std::vector<std::uint8_t> first;
  std::thread([&] { RenderUncancelled(first); }).join();
  const auto result =
      PictureModel(kPixels, {ImageAt({50, 50, 350, 250}, 3, 2,
                                     Codes({1, 1, 2, 2}) + kEndOfLine + Codes({3, 3}))})
          .Compare(first);
  EXPECT_EQ(result.wrong, 0) << result.firstWrong;
  std::vector<std::uint8_t> second;
  std::thread([&] { RenderUncancelled(second); }).join();
  EXPECT_EQ(second, first);
}

TEST_F(ScreenThreads, RendererMadeButNotUsedByAThreadThatHasEnded) {
  std::thread([this] { Screen(); }).join();
  std::vector<std::uint8_t> picture;
  std::thread([&] { RenderUncancelled(picture); }).join();
  EXPECT_EQ(picture.size(), 1228800u);
}

TEST_F(ScreenThreads, RendererMadeByAThreadThatLivesOn) {
  Screen();
  std::vector<std::uint8_t> picture;
  std::thread([&] { RenderUncancelled(picture); }).join();
  EXPECT_EQ(PictureOf(kPixels), picture);
}

TEST_F(ScreenThreads, ThreadThatIsCancelledWhileItDrawsFinishesItsPicture) {
  const auto first = PictureOf(kPixels);
  RandomPause pause(3000);
  for (int i = 0; i < 30; ++i) {
    std::vector<std::uint8_t> last;
    bool isWhole = true;
    CancellableThread thread([&] {
      for (;;) {
        std::vector<std::uint8_t> picture;
        RenderUncancelled(picture);
        last.swap(picture);
        isWhole = isWhole && last == first;
        pthread_testcancel();
      }
    });
    pause.Take();
    EXPECT_TRUE(thread.CancelAndJoin());
    EXPECT_TRUE(isWhole);
    EXPECT_EQ(PictureOf(kPixels), first) << "and the next one can draw";
  }
  EXPECT_EQ(CountMappedObjects(), mappedBefore_);
}

}  // namespace
}  // namespace ventrik::tests
