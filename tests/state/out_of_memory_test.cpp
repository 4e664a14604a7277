// SPDX-License-Identifier: Apache-2.0
#include "state/out_of_memory.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>
#include <utility>

#include "state/process_state.h"
#include "tests/support/recorded_console.h"

namespace ventrik {
namespace {

constexpr const wchar_t* kWord = L"\033[1;31mError: Out of memory!\n\033[0;37m";

// A console that fails as well.
template <class Fault>
class FailingConsole : public Logger {
 public:
  explicit FailingConsole(Fault fault) : fault_(std::move(fault)), before_(logger) {
    logger = this;
  }
  ~FailingConsole() override { logger = before_; }
  FailingConsole(const FailingConsole&) = delete;
  FailingConsole& operator=(const FailingConsole&) = delete;

  int print(const wchar_t*, ...) override {
    ++prints;
    throw fault_;
  }
  int printTo(std::FILE*, const wchar_t*, ...) override { throw fault_; }

  int prints = 0;

 private:
  const Fault fault_;
  Logger* const before_;
};

struct CountsItsEnd {
  explicit CountsItsEnd(int& ends) : ends_(ends) {}
  ~CountsItsEnd() { ++ends_; }
  CountsItsEnd(const CountsItsEnd&) = delete;
  CountsItsEnd& operator=(const CountsItsEnd&) = delete;
  int& ends_;
};

TEST(OutOfMemory, WorkThatHasItsMemoryIsDoneAndNothingIsSaid) {
  tests::RecordedConsole console;
  int done = 0;
  EXPECT_TRUE(RunIfMemoryLasts([&done] { ++done; }));
  EXPECT_EQ(done, 1);
  EXPECT_EQ(console.TakeText(), L"");
}

TEST(OutOfMemory, WorkWithoutMemoryIsDroppedWithAllItHeld) {
  tests::RecordedConsole console;
  int ends = 0;
  EXPECT_FALSE(RunIfMemoryLasts([&ends] {
    const CountsItsEnd held(ends);
    throw std::bad_alloc();
  }));
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(console.TakeText(), kWord);
}

TEST(OutOfMemory, NoMemoryForTheWordIsNoFault) {
  FailingConsole console{std::bad_alloc()};
  EXPECT_FALSE(RunIfMemoryLasts([] { throw std::bad_alloc(); }));
  EXPECT_EQ(console.prints, 1);
}

TEST(OutOfMemory, WithoutAConsoleNothingIsSaid) {
  Logger* const before = logger;
  logger = nullptr;
  EXPECT_FALSE(RunIfMemoryLasts([] { throw std::bad_alloc(); }));
  logger = before;
}

TEST(OutOfMemory, OtherFaultsPassThrough) {
  tests::RecordedConsole console;
  EXPECT_THROW(RunIfMemoryLasts([] { throw std::logic_error("other"); }), std::logic_error);
  EXPECT_EQ(console.TakeText(), L"");
  FailingConsole failing{std::logic_error("of the console")};
  EXPECT_THROW(RunIfMemoryLasts([] { throw std::bad_alloc(); }), std::logic_error);
}

}  // namespace
}  // namespace ventrik
