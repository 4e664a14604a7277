// SPDX-License-Identifier: Apache-2.0
// What the calls do without descriptors, without the run-time directory, and with arguments that
// nobody should hand them: each fails with its error, and nothing is left of it.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/graphics.h"
#include "tests/platform/channel_fixture.h"

namespace ventrik::tests {
namespace {

constexpr rlim_t kLimit = 128;
constexpr int kEnough = 24;  // descriptors for any of the calls

// All descriptors of the process but some, for a scope.
class FewDescriptors {
 public:
  explicit FewDescriptors(int left) {
    getrlimit(RLIMIT_NOFILE, &before_);
    rlimit fewer = before_;
    fewer.rlim_cur = kLimit;
    setrlimit(RLIMIT_NOFILE, &fewer);
    for (int taken = open("/dev/null", O_RDONLY); taken >= 0; taken = dup(taken)) {
      taken_.push_back(taken);
    }
    for (; left > 0 && !taken_.empty(); --left) GiveOneBack();
  }
  ~FewDescriptors() {
    while (!taken_.empty()) GiveOneBack();
    setrlimit(RLIMIT_NOFILE, &before_);
  }
  FewDescriptors(const FewDescriptors&) = delete;
  FewDescriptors& operator=(const FewDescriptors&) = delete;

 private:
  void GiveOneBack() {
    close(taken_.back());
    taken_.pop_back();
  }

  rlimit before_ = {};
  std::vector<int> taken_;
};

// Calls it with no descriptor left, one, and so on. It is to fail until it has enough, and then to
// work. Returns its result; `failures` is how often it failed.
int CallWithMoreAndMore(
    const std::function<int()>& call, int& failures,
    const std::function<void()>& afterFailure = [] {}) {
  for (failures = 0; failures < kEnough; ++failures) {
    const int before = CountDescriptors();
    {
      const FewDescriptors few(failures);
      const int result = call();
      if (result >= 0) return result;
      EXPECT_EQ(errno, EMFILE) << failures;
    }
    EXPECT_EQ(CountDescriptors(), before) << failures;
    afterFailure();
  }
  return -1;
}

class ScarcityTest : public ChannelTest {
 protected:
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    if (!std::filesystem::exists(directory_.path())) return names;
    for (const auto& entry : std::filesystem::directory_iterator(directory_.path())) {
      names.push_back(entry.path().filename());
    }
    return names;
  }
};

TEST_F(ScarcityTest, ChannelIsMadeWholeOrNotAtAll) {
  ASSERT_EQ(ChannelDestroy(ChannelCreate(0)), 0);  // what is made once
  int failures = 0;
  const int chid = CallWithMoreAndMore([] { return ChannelCreate(0); }, failures,
                                       [this] { EXPECT_TRUE(Files().empty()); });
  ASSERT_GE(chid, 0);
  EXPECT_GE(failures, 3);
  EXPECT_EQ(ChannelDestroy(chid), 0);
}

TEST_F(ScarcityTest, ConnectionIsMadeWholeOrNotAtAll) {
  ConnectToReceiver(0, AnswerLengths);
  int failures = 0;
  const int coid = CallWithMoreAndMore(
      [this] { return ConnectAttach(0, receiver_->pid(), receiverChannel_, 0, 0); }, failures);
  ASSERT_GE(coid, 0);
  EXPECT_GE(failures, 1);
  EXPECT_EQ(SendText(coid, "hello"), 5);
}

TEST_F(ScarcityTest, SendWithoutDescriptorsIsSaidToHaveFailed) {
  const int coid = ConnectToReceiver(0, AnswerLengths);
  ASSERT_EQ(SendText(coid, "hello"), 5);
  const FewDescriptors none(0);
  EXPECT_EQ(SendText(coid, "has its socket"), 14);
}

TEST_F(ScarcityTest, NameIsAttachedWholeOrNotAtAll) {
  dispatch_t* const dispatch = dispatch_create_channel(ChannelCreate(0), 0);
  ASSERT_NE(dispatch, nullptr);
  int failures = 0;
  name_attach_t* attach = nullptr;
  CallWithMoreAndMore(
      [&] {
        attach = name_attach(dispatch, "navigation", 0);
        return attach == nullptr ? -1 : 0;
      },
      failures);
  EXPECT_GE(failures, 1);
  ASSERT_NE(attach, nullptr);
  EXPECT_EQ(name_detach(attach, 0), 0);
}

TEST_F(ScarcityTest, ProcessIsNotTakenForGoneWithoutDescriptors) {
  const FewDescriptors none(0);
  EXPECT_FALSE(platform::ProcessIsGone(getpid()));
}

TEST_F(ScarcityTest, ProcessThatCantBeIsGone) {
  EXPECT_TRUE(platform::ProcessIsGone(-1));
  EXPECT_FALSE(platform::ProcessIsGone(getpid()));
}

TEST_F(ScarcityTest, WrongArgumentsOfTheNameServiceAreRefused) {
  const auto fails = [](bool failed) { return failed && errno == EINVAL; };
  EXPECT_TRUE(fails(dispatch_create_channel(-1, 0) == nullptr));
  EXPECT_TRUE(fails(dispatch_create_channel(1, 1) == nullptr));
  EXPECT_TRUE(fails(dispatch_destroy(nullptr) == -1));
  EXPECT_TRUE(fails(name_attach(nullptr, "navigation", 0) == nullptr));
  EXPECT_TRUE(fails(name_detach(nullptr, 0) == -1));
  EXPECT_TRUE(fails(name_open(nullptr, 0) == -1));
  dispatch_t* const dispatch = dispatch_create_channel(ChannelCreate(0), 0);
  EXPECT_TRUE(fails(name_attach(dispatch, nullptr, 0) == nullptr));
  EXPECT_TRUE(fails(name_attach(dispatch, "navigation", 1) == nullptr));
  name_attach_t* const attach = name_attach(dispatch, "navigation", 0);
  ASSERT_NE(attach, nullptr);
  EXPECT_TRUE(fails(name_detach(attach, 1) == -1));
  EXPECT_EQ(name_detach(attach, 0), 0);
}

TEST_F(ScarcityTest, ChannelsThatNobodyMadeAreRefused) {
  EXPECT_EQ(ChannelDestroy(4711), -1);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(MsgReceive(4711, nullptr, 0, nullptr), -1);
  EXPECT_EQ(errno, ESRCH);
  EXPECT_EQ(MsgRead(4711, nullptr, 0, 0), -1);
  EXPECT_EQ(errno, ESRCH);
  EXPECT_EQ(MsgReply(4711, 0, nullptr, 0), -1);
  EXPECT_EQ(errno, ESRCH);
  EXPECT_EQ(ConnectAttach(1, 0, 1, 0, 0), -1);  // another machine
  EXPECT_EQ(errno, ESRCH);
}

TEST_F(ScarcityTest, WhatStandsUnderANameAndIsNoneOfOursLeadsNowhere) {
  ASSERT_EQ(ChannelDestroy(ChannelCreate(0)), 0);  // makes the directory
  const std::filesystem::path place = directory_.path();
  std::filesystem::create_symlink("c.1/../../elsewhere", place / "n.climbs");
  std::filesystem::create_symlink("/dev/null", place / "n.away");
  std::filesystem::create_symlink("c", place / "n.short");
  std::ofstream(place / "n.file") << "no link";
  // One on which somebody even listens, but not as one of our channels.
  const int chid = ChannelCreate(0);
  const std::string channel = "c." + std::to_string(getpid()) + "." + std::to_string(chid);
  std::filesystem::rename(place / channel, place / "other");
  std::filesystem::create_symlink("other", place / "n.other");
  for (const char* name : {"climbs", "away", "short", "file", "other"}) {
    EXPECT_EQ(name_open(name, 0), -1) << name;
    EXPECT_EQ(errno, ENOENT) << name;
  }
  EXPECT_EQ(ChannelDestroy(chid), 0);
}

TEST_F(ScarcityTest, NameThatAFolderStandsInTheWayOfIsNotAttachedAndNoLinkIsLeft) {
  dispatch_t* const dispatch = dispatch_create_channel(ChannelCreate(0), 0);
  std::filesystem::create_directory(std::filesystem::path(directory_.path()) / "n.navigation");
  EXPECT_EQ(name_attach(dispatch, "navigation", 0), nullptr);
  EXPECT_EQ(dispatch_destroy(dispatch), 0);
  EXPECT_EQ(Files(), std::vector<std::string>{"n.navigation"});
}

TEST_F(ScarcityTest, NameIsDetachedWithoutTheDirectoryAndLeftToOneThatTookItOver) {
  dispatch_t* first = dispatch_create_channel(ChannelCreate(0), 0);
  name_attach_t* attach = name_attach(first, "navigation", 0);
  ASSERT_NE(attach, nullptr);
  const auto link = std::filesystem::path(directory_.path()) / "n.navigation";
  std::filesystem::remove(link);
  std::filesystem::create_symlink("c.1.1", link);
  EXPECT_EQ(name_detach(attach, 0), 0);
  EXPECT_TRUE(std::filesystem::is_symlink(link));

  dispatch_t* second = dispatch_create_channel(ChannelCreate(0), 0);
  attach = name_attach(second, "other", 0);
  ASSERT_NE(attach, nullptr);
  std::filesystem::remove_all(directory_.path());
  EXPECT_EQ(name_detach(attach, 0), 0);
  EXPECT_EQ(name_open("other", 0), -1);
}

TEST_F(ScarcityTest, DirectoryThatCantBeMadeIsAnError) {
  const std::string before = std::getenv("XDG_RUNTIME_DIR");
  setenv("XDG_RUNTIME_DIR", "/dev/null", 1);
  EXPECT_EQ(ChannelCreate(0), -1);
  EXPECT_EQ(errno, ENOTDIR);
  EXPECT_EQ(name_open("navigation", 0), -1);
  setenv("XDG_RUNTIME_DIR", before.c_str(), 1);
}

TEST_F(ScarcityTest, WithoutADisplayDrawingIsOffScreenUnlessTheUserSaysOtherwise) {
  const auto chosen = [] {
    const char* value = std::getenv("EGL_PLATFORM");
    return std::string(value == nullptr ? "" : value);
  };
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "EGL_PLATFORM"}) unsetenv(name);
  setenv("DISPLAY", ":0", 1);
  platform::PrepareGraphics();
  EXPECT_EQ(chosen(), "");
  unsetenv("DISPLAY");
  setenv("WAYLAND_DISPLAY", "wayland-0", 1);
  platform::PrepareGraphics();
  EXPECT_EQ(chosen(), "");
  unsetenv("WAYLAND_DISPLAY");
  platform::PrepareGraphics();
  EXPECT_EQ(chosen(), "surfaceless");
  setenv("EGL_PLATFORM", "device", 1);
  platform::PrepareGraphics();
  EXPECT_EQ(chosen(), "device");
}

}  // namespace
}  // namespace ventrik::tests
