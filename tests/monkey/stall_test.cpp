// SPDX-License-Identifier: Apache-2.0
// A search that asks for the same list again and again stands still until a person types a "c".
#include <unistd.h>

#include <cstdlib>

#include "command/navigation_sequences.h"
#include "monkey/driver.h"
#include "tests/monkey/driver_fixture.h"

namespace ventrik::tests {
namespace {

const std::wstring kPress = L"Press the \"c\" key to continue";

// A pipe in the place of standard input, for a scope.
class StandardInput {
 public:
  StandardInput() : before_(dup(STDIN_FILENO)) {
    int ends[2];
    if (pipe(ends) != 0 || dup2(ends[0], STDIN_FILENO) < 0) std::abort();
    close(ends[0]);
    writer_ = ends[1];
  }
  ~StandardInput() {
    End();
    dup2(before_, STDIN_FILENO);
    close(before_);
  }
  StandardInput(const StandardInput&) = delete;
  StandardInput& operator=(const StandardInput&) = delete;

  void Type(const std::string& keys) {
    EXPECT_EQ(write(writer_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }

  // Nobody types any more.
  void End() {
    if (writer_ >= 0) close(writer_);
    writer_ = -1;
  }

  // What was typed and not read.
  std::string Left() {
    End();
    std::string left(100, '\0');
    const ssize_t size = read(STDIN_FILENO, left.data(), left.size());
    left.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    return left;
  }

 private:
  int before_;
  int writer_;
};

class StallTest : public DriverTest {
 protected:
  StallTest() {
    breakStall = BreakStall;
    monkey_.monkeyRunning = 1;
    SetSearch(monkey_, L"path", L"term", 7);
    monkey_.search.With([](MonkeySearch& search) { search.lastSelection = L"selection"; });
  }

  // Asks for the same list so many times.
  void AskFor(const std::wstring& eis, int times) {
    for (int i = 0; i < times; ++i) {
      Run(L"list(\"" + eis + L"\",\"1\",\"9\",\"ascending\",\"a\",\"on\")");
    }
  }

  std::wstring SearchText() const {
    const MonkeySearch search = monkey_.search.Copy();
    return search.searchPath + L"|" + search.spellTerm + L"|" + search.lastSelection;
  }

  StandardInput input_;
};

TEST_F(StallTest, TwentyEqualListsGoThrough) {
  AskFor(L"<CTY><*>", 20);
  EXPECT_EQ(Printed(), L"");
  EXPECT_EQ(SearchText(), L"path|term|selection");
  EXPECT_EQ(app_.listRepeatCount, 20);
}

TEST_F(StallTest, TwentyFirstWaitsForTheKeyAndForgetsTheSearch) {
  input_.Type("c");
  AskFor(L"<CTY><*>", 21);
  EXPECT_EQ(console_.TakeTexts(), Texts{kPress});
  EXPECT_EQ(SearchText(), L"||");
  EXPECT_EQ(app_.listRepeatCount, 1);
  EXPECT_EQ(server_.TakeEvents().size(), 21u);
}

TEST_F(StallTest, CountBeginsAnewAfterTheKey) {
  input_.Type("cc");
  AskFor(L"<CTY><*>", 40);
  EXPECT_EQ(console_.TakeTexts(), Texts{kPress});
  AskFor(L"<CTY><*>", 1);
  EXPECT_EQ(console_.TakeTexts(), Texts{kPress});
}

TEST_F(StallTest, OtherKeysAreSwallowedAndLaterOnesLeft) {
  input_.Type(
      "ab\nC \x03"
      "cd");
  AskFor(L"<CTY><*>", 21);
  EXPECT_EQ(input_.Left(), "d");
}

TEST_F(StallTest, AnotherListInBetweenKeepsItMoving) {
  AskFor(L"<CTY><*>", 20);
  AskFor(L"<STR><*>", 20);
  AskFor(L"<CTY><*>", 20);
  EXPECT_EQ(Printed(), L"");
}

TEST_F(StallTest, WithoutTheMonkeyListsMayBeRepeated) {
  monkey_.monkeyRunning = 0;
  AskFor(L"<CTY><*>", 50);
  EXPECT_EQ(Printed(), L"");
  EXPECT_EQ(app_.listRepeatCount, 50);
}

TEST_F(StallTest, MonkeyWaitsForTheKeyUnderTheLock) {
  const std::wstring list = L"list(\"<CTY>\",\"1\",\"9\",\"ascending\",\"a\",\"on\")";
  Configure("[verd]\ndefault=1\n");
  monkey_.queuedCommands.assign(21, list);
  Run(L"monkey(\"22\")");
  ASSERT_TRUE(console_.WaitFor(kPress));
  EXPECT_FALSE(LockIsFree());
  input_.Type("c");
  const Texts texts = AwaitTheEnd();
  EXPECT_EQ(Texts(texts.end() - 3, texts.end()), (Texts{kPress, Sent(L"verd"), kFinished}));
  EXPECT_TRUE(LockIsFree());
}

TEST_F(StallTest, MonkeyThatWaitsForTheKeyCanBeCancelled) {
  monkey_.queuedCommands.assign(21, L"list(\"<CTY>\",\"1\",\"9\",\"ascending\",\"a\",\"on\")");
  Run(L"monkey");
  ASSERT_TRUE(console_.WaitFor(kPress));
  CancelTheThread();
  EXPECT_TRUE(LockIsFree());
}

// With nobody there to type, it waits on.
TEST_F(StallTest, MonkeyAtTheEndOfTheInputCanBeCancelled) {
  input_.End();
  monkey_.queuedCommands.assign(21, L"list(\"<CTY>\",\"1\",\"9\",\"ascending\",\"a\",\"on\")");
  Run(L"monkey");
  ASSERT_TRUE(console_.WaitFor(kPress));
  CancelTheThread();
  EXPECT_EQ(AwaitTheEnd().back(), kPress);
  EXPECT_TRUE(LockIsFree());
}

}  // namespace
}  // namespace ventrik::tests
