// SPDX-License-Identifier: Apache-2.0
#include "platform/shared_memory.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <limits>
#include <string>

namespace ventrik::tests {
namespace {

// One object of the test's own, which is gone at the end.
class SharedMemoryTest : public testing::Test {
 protected:
  ~SharedMemoryTest() override {
    close(descriptor_);
    shm_unlink(name_.c_str());
  }

  // The object's size in bytes, by any of its descriptors.
  static off_t SizeOf(int descriptor) {
    struct stat status = {};
    EXPECT_EQ(fstat(descriptor, &status), 0);
    return status.st_size;
  }

  // The kinds of memory that the program asks for.
  static int Resize(int descriptor, std::uint64_t size) {
    return shm_ctl_special(descriptor, 3, 0, size, 9);
  }

  // Asks for a size under a limit of 1 MiB for each file.
  int ResizeInLittleRoom(std::uint64_t size) const {
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit little = {1 << 20, before.rlim_max};
    void (*const handler)(int) = signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &little);
    const int result = Resize(descriptor_, size);
    const int error = errno;
    setrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, handler);
    errno = error;
    return result;
  }

  const std::string name_ = "/ventrik-test-" + std::to_string(getpid()) + "-platform";
  const int descriptor_ = shm_open(name_.c_str(), O_RDWR | O_CREAT, 0700);
};

TEST_F(SharedMemoryTest, DescriptorsAreClosedOnExec) {
  ASSERT_NE(descriptor_, -1);
  EXPECT_EQ(fcntl(descriptor_, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST_F(SharedMemoryTest, ObjectGetsItsSizeAndItsMemory) {
  EXPECT_EQ(Resize(descriptor_, 1228800), 0);
  struct stat status = {};
  ASSERT_EQ(fstat(descriptor_, &status), 0);
  EXPECT_EQ(status.st_size, 1228800);
  EXPECT_GE(status.st_blocks * 512, 1228800) << "all of it is there before it is touched";
}

TEST_F(SharedMemoryTest, SizeCanChangeAndWhatIsInsideStays) {
  ASSERT_EQ(Resize(descriptor_, 100), 0);
  ASSERT_EQ(pwrite(descriptor_, "kept", 4, 0), 4);
  EXPECT_EQ(Resize(descriptor_, 100000), 0);
  EXPECT_EQ(SizeOf(descriptor_), 100000);
  EXPECT_EQ(Resize(descriptor_, 3), 0);
  EXPECT_EQ(SizeOf(descriptor_), 3);
  char text[4] = {};
  EXPECT_EQ(pread(descriptor_, text, 3, 0), 3);
  EXPECT_STREQ(text, "kep");
  EXPECT_EQ(Resize(descriptor_, 0), 0);
  EXPECT_EQ(SizeOf(descriptor_), 0);
}

TEST_F(SharedMemoryTest, WithoutRoomTheObjectIsLeftEmpty) {
  ASSERT_EQ(Resize(descriptor_, 100), 0);
  EXPECT_EQ(ResizeInLittleRoom(2 << 20), -1);
  EXPECT_EQ(errno, EFBIG);
  // The file system's own end: more than this machine has.
  EXPECT_EQ(Resize(descriptor_, std::uint64_t{1} << 50), -1);
  EXPECT_TRUE(errno == ENOSPC || errno == EFBIG) << std::strerror(errno);
  EXPECT_EQ(SizeOf(descriptor_), 0);
}

TEST_F(SharedMemoryTest, SizeBeyondAllFilesIsRefused) {
  ASSERT_EQ(Resize(descriptor_, 100), 0);
  for (const std::uint64_t size :
       {std::uint64_t{1} << 63, std::numeric_limits<std::uint64_t>::max()}) {
    errno = 0;
    EXPECT_EQ(Resize(descriptor_, size), -1);
    EXPECT_EQ(errno, EINVAL);
  }
  EXPECT_EQ(SizeOf(descriptor_), 100);
}

TEST_F(SharedMemoryTest, DescriptorThatIsNoObject) {
  EXPECT_EQ(Resize(-1, 100), -1);
  EXPECT_EQ(errno, EBADF);
  const int readOnly = shm_open(name_.c_str(), O_RDONLY, 0);
  EXPECT_EQ(Resize(readOnly, 100), -1);
  EXPECT_EQ(errno, EINVAL);
  close(readOnly);
}

TEST_F(SharedMemoryTest, MappingIsSharedWithAllWhoMapIt) {
  ASSERT_EQ(Resize(descriptor_, 5000), 0);
  const int other = shm_open(name_.c_str(), O_RDWR, 0);
  auto* const mine = static_cast<char*>(platform::MapObject(descriptor_, 5000));
  auto* const theirs = static_cast<char*>(platform::MapObject(other, 4000));
  ASSERT_NE(mine, nullptr);
  ASSERT_NE(theirs, nullptr);
  mine[3999] = 'm';
  theirs[0] = 't';
  EXPECT_EQ(theirs[3999], 'm');
  EXPECT_EQ(mine[0], 't');
  munmap(theirs, 4000);
  close(other);
  munmap(mine, 5000);
}

TEST_F(SharedMemoryTest, MappingOutlivesTheNameAndTheDescriptor) {
  const int other = shm_open(name_.c_str(), O_RDWR, 0);
  ASSERT_EQ(Resize(other, 100), 0);
  auto* const memory = static_cast<char*>(platform::MapObject(other, 100));
  close(other);
  shm_unlink(name_.c_str());
  ASSERT_NE(memory, nullptr);
  memory[99] = 'x';
  EXPECT_EQ(memory[99], 'x');
  munmap(memory, 100);
}

TEST_F(SharedMemoryTest, ObjectThatIsSmallerIsNotMapped) {
  EXPECT_EQ(platform::MapObject(descriptor_, 1), nullptr);
  EXPECT_EQ(errno, ENXIO);
  ASSERT_EQ(Resize(descriptor_, 1228799), 0);
  errno = 0;
  EXPECT_EQ(platform::MapObject(descriptor_, 1228800), nullptr);
  EXPECT_EQ(errno, ENXIO);
}

TEST_F(SharedMemoryTest, MappingFailsAsMmapDoes) {
  EXPECT_EQ(platform::MapObject(-1, 1), nullptr);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(platform::MapObject(descriptor_, 0), nullptr);
  EXPECT_EQ(errno, EINVAL);
  ASSERT_EQ(Resize(descriptor_, 100), 0);
  const int readOnly = shm_open(name_.c_str(), O_RDONLY, 0);
  EXPECT_EQ(platform::MapObject(readOnly, 100), nullptr);
  EXPECT_EQ(errno, EACCES);
  close(readOnly);
}

TEST_F(SharedMemoryTest, NoPhysicalAddressIsTold) {
  off64_t address = 7;
  std::size_t contiguous = 8;
  EXPECT_EQ(mem_offset64(&address, NOFD, 1, &address, &contiguous), -1);
  EXPECT_EQ(errno, ENOSYS);
  EXPECT_EQ(address, 7);
  EXPECT_EQ(contiguous, 8u);
}

}  // namespace
}  // namespace ventrik::tests
