// SPDX-License-Identifier: Apache-2.0
// The name service: attaching, opening, stale and live names, and what can't be a name.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "tests/platform/channel_fixture.h"

namespace ventrik::tests {
namespace {

class NamesTest : public ChannelTest {
 protected:
  static name_attach_t* Attach(const char* name) {
    dispatch_t* dispatch = dispatch_create_channel(ChannelCreate(0), 0);
    name_attach_t* attach = name_attach(dispatch, name, 0);
    const int error = errno;
    if (attach == nullptr) dispatch_destroy(dispatch);
    errno = error;
    return attach;
  }

  // A process that answers under `name` until it is killed.
  std::unique_ptr<ChildProcess> StartServer(const char* name) {
    auto server = std::make_unique<ChildProcess>([this, name] {
      const name_attach_t* attach = Attach(name);
      ready_.Notify(attach != nullptr);
      return attach == nullptr ? 1 : AnswerLengths(attach->chid);
    });
    EXPECT_EQ(ready_.Await(), 1);
    return server;
  }
};

TEST_F(NamesTest, OpenedNameLeadsToTheAttachedChannel) {
  const auto server = StartServer("navigation");
  const int coid = name_open("navigation", 0);
  ASSERT_NE(coid, -1);
  EXPECT_EQ(SendText(coid, "hello"), 5);
}

TEST_F(NamesTest, NameThatNobodyAttachedIsNotThere) {
  EXPECT_EQ(name_open("navigation", 0), -1);
  EXPECT_EQ(errno, ENOENT);
  const auto server = StartServer("other");
  EXPECT_EQ(name_open("navigation", 0), -1);
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(NamesTest, NameOfADeadProcessIsNotThereAndCanBeTakenOver) {
  StartServer("navigation")->Kill();
  EXPECT_EQ(name_open("navigation", 0), -1);
  EXPECT_EQ(errno, ENOENT);
  const auto server = StartServer("navigation");
  EXPECT_EQ(SendText(name_open("navigation", 0), "again"), 5);
}

TEST_F(NamesTest, LiveNameIsNotStolen) {
  const auto server = StartServer("navigation");
  EXPECT_EQ(Attach("navigation"), nullptr);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(SendText(name_open("navigation", 0), "still"), 5);
}

TEST_F(NamesTest, ConnectionStaysWithItsProcessWhenTheNameMoves) {
  const auto first = StartServer("navigation");
  const int coid = name_open("navigation", 0);
  first->Kill();
  const auto second = StartServer("navigation");
  EXPECT_EQ(SendText(coid, "to the first"), -1);
  EXPECT_EQ(errno, ESRCH);
}

TEST_F(NamesTest, DetachedNameIsGoneAndNothingIsLeft) {
  name_attach_t* attach = Attach("navigation");
  ASSERT_NE(attach, nullptr);
  EXPECT_EQ(name_detach(attach, 0), 0);
  EXPECT_EQ(name_open("navigation", 0), -1);
  EXPECT_TRUE(std::filesystem::is_empty(directory_.path()));
}

TEST_F(NamesTest, WhatCannotBeANameIsRefused) {
  struct Row {
    std::string name;
    int error;
  };
  const Row rows[] = {
      {"", EINVAL},
      {"a/b", EINVAL},
      {"/absolute", EINVAL},
      {"..", EINVAL},
      {"up/../up", EINVAL},
      {"x..y", EINVAL},
      {std::string(300, 'n'), ENAMETOOLONG},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Attach(row.name.c_str()), nullptr) << row.name;
    EXPECT_EQ(errno, row.error) << row.name;
    EXPECT_EQ(name_open(row.name.c_str(), 0), -1) << row.name;
    EXPECT_EQ(errno, row.error) << row.name;
  }
}

TEST_F(NamesTest, LongNamesThatAreStillNamesWork) {
  const std::string name(200, 'n');  // longer than a socket address, which the name never is
  const auto server = StartServer(name.c_str());
  EXPECT_EQ(SendText(name_open(name.c_str(), 0), "long"), 4);
}

TEST_F(NamesTest, LongestNameHas253BytesAndOneMoreIsRefused) {
  const std::string longest(253, 'n');
  const auto server = StartServer(longest.c_str());
  EXPECT_EQ(SendText(name_open(longest.c_str(), 0), "long"), 4);
  EXPECT_EQ(Attach((longest + "n").c_str()), nullptr);
  EXPECT_EQ(errno, ENAMETOOLONG);
}

TEST_F(NamesTest, AttachingOneNameLeavesItsNeighboursAlone) {
  const auto neighbour = StartServer("navigation~");
  const auto server = StartServer("navigation");
  EXPECT_EQ(SendText(name_open("navigation~", 0), "still"), 5);
}

TEST(RuntimeDirectoryTest, PathThatNoSocketAddressHoldsIsAnErrorAndIsNotCutShort) {
  const TemporaryDirectory base;
  const std::string deep = base.path() + "/" + std::string(120, 'd');
  std::filesystem::create_directory(deep);
  setenv("XDG_RUNTIME_DIR", deep.c_str(), 1);
  EXPECT_EQ(ChannelCreate(0), -1);
  EXPECT_EQ(errno, ENAMETOOLONG);
  EXPECT_TRUE(std::filesystem::is_empty(deep + "/ventrik"));
  unsetenv("XDG_RUNTIME_DIR");
}

TEST(RuntimeDirectoryTest, DirectoryThatOthersMayEnterIsRefused) {
  const TemporaryRuntimeDirectory directory;
  std::filesystem::create_directory(directory.path());
  std::filesystem::permissions(directory.path(), std::filesystem::perms(0755));
  EXPECT_EQ(ChannelCreate(0), -1);
  EXPECT_EQ(errno, EPERM);
}

TEST(RuntimeDirectoryTest, PlantedLinkIsNotFollowed) {
  const TemporaryRuntimeDirectory directory;
  const TemporaryDirectory elsewhere;
  std::filesystem::permissions(elsewhere.path(), std::filesystem::perms(0700));
  std::filesystem::create_directory_symlink(elsewhere.path(), directory.path());
  EXPECT_EQ(ChannelCreate(0), -1);
  EXPECT_EQ(errno, EPERM);
  EXPECT_TRUE(std::filesystem::is_empty(elsewhere.path()));
}

TEST(RuntimeDirectoryTest, DirectoryAndSocketsAreForTheUserAlone) {
  const TemporaryRuntimeDirectory directory;
  const int chid = ChannelCreate(0);
  ASSERT_GT(chid, 0);
  const auto mode = [](const std::string& path) {
    return static_cast<unsigned>(std::filesystem::status(path).permissions()) & 0777u;
  };
  EXPECT_EQ(mode(directory.path()), 0700u);
  for (const auto& entry : std::filesystem::directory_iterator(directory.path())) {
    EXPECT_EQ(mode(entry.path()), 0600u) << entry.path();
  }
  ChannelDestroy(chid);
}

}  // namespace
}  // namespace ventrik::tests
