#include "platform/FileLock.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace tessaly {
namespace {

/// Whether somebody who opens the file himself could have its lock now.
bool isFree(const std::filesystem::path& path) {
  const int descriptor = open(path.c_str(), O_RDWR | O_CLOEXEC);
  struct flock whole {};
  whole.l_type = F_WRLCK;
  const bool had = fcntl(descriptor, F_OFD_SETLK, &whole) == 0;
  close(descriptor);
  return had;
}

TEST(FileLock, IsHeldAsLongAsItLives) {
  const tests::TemporaryFolder folder;
  {
    const FileLock lock(folder / "lock");
    EXPECT_FALSE(isFree(folder / "lock"));
  }
  EXPECT_TRUE(isFree(folder / "lock"));
}

TEST(FileLock, LetsOneAfterTheOtherIn) {
  const tests::TemporaryFolder folder;
  const std::filesystem::path counter = folder / "counter";
  tests::writeText(counter, "0");
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 50; ++round) {
        const FileLock lock(folder / "lock");
        tests::writeText(counter, std::to_string(std::stoi(tests::readText(counter)) + 1));
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(tests::readText(counter), "200");
}

TEST(FileLock, SaysThatItsFolderIsMissing) {
  const tests::TemporaryFolder folder;
  EXPECT_THROW(FileLock(folder / "none" / "lock"), std::system_error);
}

}  // namespace
}  // namespace tessaly
