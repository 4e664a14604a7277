// SPDX-License-Identifier: Apache-2.0
#include "state/assertion.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

// A console whose text the one who looks at a death's standard error gets to see.
class ConsoleOnStandardError : public Logger {
 public:
  int print(const wchar_t* format, ...) override {
    std::fprintf(stderr, "printed: %ls", format);
    return 0;
  }
  int printTo(std::FILE*, const wchar_t*, ...) override { return 0; }
};

TEST(AssertionDeathTest, TheConsoleIsToldFirst) {
  EXPECT_DEATH(
      {
        logger = new ConsoleOnStandardError;
        FailAssertion("some_file", 7, "SomeFunction");
      },
      "printed: ASSERT FAILED!\nfile:%s\nline:%d\nfunc:%s\n.*some_file:7: SomeFunction");
}

TEST(AssertionDeathTest, WithoutAConsoleTheProcessStillEnds) {
  EXPECT_DEATH(
      {
        logger = nullptr;
        FailAssertion("some_file", 7, "SomeFunction");
      },
      "some_file:7: SomeFunction");
}

}  // namespace
}  // namespace ventrik
