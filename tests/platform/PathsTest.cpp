#include "platform/Paths.h"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

TEST(Paths, LoseTheSlashAtTheEnd) {
  EXPECT_EQ(withoutTrailingSlash("/out/a.dng/").native(), "/out/a.dng");
  EXPECT_EQ(withoutTrailingSlash("/out/a.dng").native(), "/out/a.dng");
  EXPECT_EQ(withoutTrailingSlash("a/").native(), "a");
  EXPECT_EQ(withoutTrailingSlash("/").native(), "/");
  EXPECT_EQ(withoutTrailingSlash("").native(), "");
}

TEST(Paths, HaveOneStandardizedSpelling) {
  EXPECT_EQ(standardizedSpelling("/a/b/../b").native(), "/a/b");
  EXPECT_EQ(standardizedSpelling("/a//b/./c/").native(), "/a/b/c");
  EXPECT_EQ(standardizedSpelling("/a/b/c/..").native(), "/a/b");
  EXPECT_EQ(standardizedSpelling("/..").native(), "/");
}

}  // namespace
}  // namespace tessaly
