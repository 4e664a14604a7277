// SPDX-License-Identifier: Apache-2.0
#include "shell/special_keys.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <thread>

#include "state/process_state.h"

namespace ventrik {
namespace {

TEST(Zoom, OutMultipliesAndCuts) {
  EXPECT_EQ(ZoomedOut(500), 550);
  EXPECT_EQ(ZoomedOut(454), 499);
  EXPECT_EQ(ZoomedOut(100), 110);
  EXPECT_EQ(ZoomedOut(909090), 999999);
  EXPECT_EQ(ZoomedOut(999999), 1000000);
  EXPECT_EQ(ZoomedOut(1000000), 1000000);
}

TEST(Zoom, InDividesAndCuts) {
  EXPECT_EQ(ZoomedIn(500), 454);
  EXPECT_EQ(ZoomedIn(550), 499) << "550 / 1.1 is a hair below 500 in double precision";
  EXPECT_EQ(ZoomedIn(112), 101);
  EXPECT_EQ(ZoomedIn(105), 100);
  EXPECT_EQ(ZoomedIn(100), 100);
}

TEST(SpecialKeys, SevenKeysAreAndOthersAreNot) {
  ClientApp app;
  autoScroll = 1;  // no pause between start and stop of a move
  for (const int key : {'8', '6', '2', '4', '-', '+'}) {
    EXPECT_EQ(HandleSpecialKey(app, key, false), 1) << key;
  }
  EXPECT_EQ(HandleSpecialKey(app, '5', false), 1);
  EXPECT_EQ(autoScroll, 0);
  for (const int key : std::initializer_list<int>{'0', '1', '3', '7', '9', 'a', 0, 10, -1, 255}) {
    EXPECT_EQ(HandleSpecialKey(app, key, true), 0) << key;
  }
}

TEST(SpecialKeys, DoNotWaitForTheCommandOfAnotherThread) {
  LockCommands();
  std::thread keyboard([] {
    ClientApp app;
    HandleSpecialKey(app, '+', false);
    EXPECT_EQ(app.mapZoomScale, 454);
  });
  keyboard.join();  // would never come if the key took the lock
  UnlockCommands();
}

TEST(SpecialKeys, ZoomIsKeptFromKeyToKey) {
  ClientApp app;
  HandleSpecialKey(app, '+', false);
  HandleSpecialKey(app, '+', false);
  EXPECT_EQ(app.mapZoomScale, 412);
  HandleSpecialKey(app, '-', false);
  EXPECT_EQ(app.mapZoomScale, 453);
}

}  // namespace
}  // namespace ventrik
