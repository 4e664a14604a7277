// SPDX-License-Identifier: Apache-2.0
// GetChannelName, in a file system of its own.
#include <sched.h>
#include <unistd.h>

#include <filesystem>

#include "ipc/client_communication_layer_posix.h"
#include "tests/ipc/ipc_fixture.h"

namespace ventrik::tests {
namespace {

constexpr const char* kNotAllowed = "(not allowed)";

class ChannelNameTest : public IpcTest {
 protected:
  // The name found, and the text printed, by a process whose root is an empty directory, with the
  // server link in it pointing to `target` unless that is null.
  void LookUp(const char* target) {
    const TemporaryDirectory root;
    if (target != nullptr) {
      const std::string directory = root.path() + "/QXpersistence";
      std::filesystem::create_directory(directory);
      std::filesystem::create_symlink(target, directory + "/kelmora_dul_channel");
    }
    ChildProcess process([this, &root] {
      if (geteuid() != 0) unshare(CLONE_NEWUSER);
      const bool inside = chroot(root.path().c_str()) == 0;
      const char* name = inside ? GetChannelName() : kNotAllowed;
      fromChild_.Put(name);
      const std::wstring text = console_.TakeText();
      fromChild_.Put(std::string(text.begin(), text.end()));
      return 0;
    });
    EXPECT_EQ(process.Wait(), 0);
    name_ = fromChild_.Take();
    printed_ = fromChild_.Take();
    if (name_ == kNotAllowed) GTEST_SKIP() << "needs a root directory of its own";
  }

  std::string name_;
  std::string printed_;
};

TEST_F(ChannelNameTest, IsNavigationWithoutTheLink) {
  LookUp(nullptr);
  if (IsSkipped()) return;
  EXPECT_EQ(name_, "navigation");
  EXPECT_EQ(printed_, "get_kelmora_dul_channel:navigation\n");
}

TEST_F(ChannelNameTest, IsTheTargetOfTheLink) {
  LookUp("synctool");
  if (IsSkipped()) return;
  EXPECT_EQ(name_, "synctool");
  EXPECT_EQ(printed_, "get_kelmora_dul_channel:synctool\n");
}

TEST_F(ChannelNameTest, OddityTakesFiftyBytesOfTheTarget) {
  LookUp(std::string(60, 'n').c_str());
  if (IsSkipped()) return;
  EXPECT_EQ(name_, std::string(50, 'n'));
}

TEST_F(ChannelNameTest, TargetOfExactlyFiftyBytesIsEnded) {
  LookUp(std::string(50, 'n').c_str());
  if (IsSkipped()) return;
  EXPECT_EQ(name_, std::string(50, 'n'));
}

}  // namespace
}  // namespace ventrik::tests
