// Ten thousand small files in one run: every one is repaired, and neither memory nor the number of open files grows
// with them.
#include "batch/BatchProcessor.h"
#include "reliability/RepairScene.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <sstream>

namespace tessaly::tests {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool memoryIsOurs = false;  // a sanitizer keeps its own books in the process
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool memoryIsOurs = false;
#else
constexpr bool memoryIsOurs = true;
#endif
#else
constexpr bool memoryIsOurs = true;
#endif

/// A sanitizer makes each of them slow.
constexpr int fileCount = memoryIsOurs ? 10'000 : 500;

/// The memory that the process occupies now, in bytes.
std::int64_t residentMemory() {
  std::ifstream file("/proc/self/statm");
  std::int64_t pages = 0;
  file >> pages >> pages;
  return pages * ::sysconf(_SC_PAGESIZE);
}

std::int64_t openFiles() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

/// Where so many flushed files cost no minute.
std::filesystem::path fastFolder() {
  return std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : std::filesystem::temp_directory_path();
}

class ManyFiles : public testing::Test {
 protected:
  /// Many names of a few photographs: links, for they are only read.
  void SetUp() override {
    std::filesystem::create_directory(input);
    for (int number = 0; number < fileCount; ++number) {
      const std::string original = "L" + std::to_string(1000 + number % 6) + ".dng";
      std::filesystem::create_hard_link(scene.input() / original, input / nameOf(number));
    }
  }

  static std::string nameOf(int number) { return "P" + std::to_string(10'000 + number) + ".dng"; }

  [[nodiscard]] const Bytes& copyOf(int number) const {
    return scene.copies().at("L" + std::to_string(1000 + number % 6) + ".dng");
  }

  const TemporaryFolder folder{fastFolder()};
  const RepairScene scene{folder.path(), SceneSize{6, 64, 48}};
  const std::filesystem::path input = folder / "many";
  const std::filesystem::path output = folder / "output";
};

TEST_F(ManyFiles, AreAllRepairedByFourWorkersInFlatMemory) {
  std::atomic<std::int64_t> early = 0;
  std::atomic<std::int64_t> late = 0;
  std::atomic<std::int64_t> mostOpen = 0;
  const std::int64_t openBefore = openFiles();
  BatchProcessor processor;
  BatchOrder order{.outputFolder = output, .profile = scene.profile(), .workers = 4};
  order.progress = [&](const BatchProgress& progress) {
    if (progress.completed == fileCount / 10) early = residentMemory();
    if (progress.completed == fileCount) late = residentMemory();
    if (progress.completed % 100 == 0) mostOpen = std::max(mostOpen.load(), openFiles());
  };
  const BatchSummary summary = processor.processFolder(input, order);
  EXPECT_EQ(summary.succeeded, fileCount);
  EXPECT_EQ(summary.failed + summary.skipped, 0);
  expectWholeLog(*summary.logURL, fileCount);
  for (int number = 0; number < fileCount; ++number)
    EXPECT_EQ(readBytes(output / nameOf(number)), copyOf(number)) << nameOf(number);
  EXPECT_LE(mostOpen, openBefore + 20) << "a few a worker";
  EXPECT_EQ(openFiles(), openBefore);
  // A plane of 6 KB left behind by each file would be 55 MB.
  const std::int64_t growth = late - early;
  EXPECT_GT(early, 0);
  RecordProperty("growthInBytes", std::to_string(growth));
  if (memoryIsOurs) {
    EXPECT_LT(growth, 8'000'000) << "the lines of the log, and nothing else";
  }
}

}  // namespace
}  // namespace tessaly::tests
