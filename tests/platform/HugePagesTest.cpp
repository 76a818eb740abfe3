#include "platform/HugePages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace tessaly {
namespace {

constexpr std::size_t hugePage = 2 * 1024 * 1024;

TEST(HugePages, LeaveTheContentsOfTheirMemoryAlone) {
  std::vector<std::byte> memory(3 * hugePage + 5, std::byte{7});
  preferHugePages(std::span(memory).subspan(3));
  preferHugePages(std::span(memory).first(100));
  preferHugePages({});
  EXPECT_EQ(std::count(memory.begin(), memory.end(), std::byte{7}), std::ssize(memory));
}

TEST(HugePages, AreFilledByLargeSizesOnly) {
  EXPECT_EQ(wholeHugePages(0), 0U);
  EXPECT_EQ(wholeHugePages(hugePage - 1), hugePage - 1);
  EXPECT_EQ(wholeHugePages(hugePage), hugePage);
  EXPECT_EQ(wholeHugePages(hugePage + 1), 2 * hugePage);
}

}  // namespace
}  // namespace tessaly
