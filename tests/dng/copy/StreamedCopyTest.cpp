// A streamed copy whose medium lies, whose source changes, whose disk is full: it never gets its name. The bytes of
// good copies are compared with those of planes by the tests of the repair.
#include "dng/WriterFixture.h"
#include "dng/copy/CopyPlanner.h"
#include "dng/copy/StreamedCopy.h"
#include "dng/copy/VerifyingThread.h"

namespace tessaly {
namespace {

using tests::Call;
using tools::DNGBuilder;

constexpr auto foundOtherBytes = "Invalid DNG structure: Writer re-read verification failed";

/// Keeps what it is given except for one bit.
class LyingFileSystem final : public FileSystem {
 public:
  LyingFileSystem(std::int64_t lie, bool isInMemory) : lie_(lie), isInMemory_(isInMemory) {}

  bool isInMemory(int) override { return isInMemory_; }
  ssize_t copyRange(const FileRange&, int, std::int64_t) override { return 0; }

  ssize_t writeAt(int descriptor, std::int64_t offset, std::span<const std::byte> bytes) override {
    std::vector<std::byte> kept(bytes.begin(), bytes.end());
    if (lie_ >= offset && lie_ < offset + std::ssize(bytes)) {
      kept[static_cast<std::size_t>(lie_ - offset)] ^= std::byte{1} << (lie_ % 8);
    }
    return FileSystem::writeAt(descriptor, offset, kept);
  }

 private:
  std::int64_t lie_;
  bool isInMemory_;
};

class StreamedCopies : public tests::WriterFixture, public testing::WithParamInterface<Verification> {
 protected:
  StreamedCopies() { makeSource(builder()); }

  [[nodiscard]] static DNGBuilder builder() {
    return DNGBuilder().size(31, 40).bits(12).strips(7).gapBetweenSegments(2).trailingBytes(9).samples(
        tests::noise(31 * 40, 12));
  }

  // Replaces a sample of every third row and the whole row 20.
  static void edit(SampleWindow& copied, const SliceRows& slice) {
    for (std::int64_t y = slice.first; y < slice.last; ++y) {
      if (y % 3 == 0) copied.replace(y % 31, y, static_cast<std::uint16_t>(4095 - copied.at(y % 31, y)));
      for (std::int64_t x = 0; y == 20 && x < 31; ++x)
        copied.replace(x, y, static_cast<std::uint16_t>(x));
    }
  }

  [[nodiscard]] StreamedCopyRequest request() const { return {destination, edit, 2, false, GetParam(), 200}; }

  std::string failure(FileSystem& with) {
    return failureOf([&] { streamCopy(SourceImage(source), request(), with); });
  }
};

TEST_P(StreamedCopies, HoldTheReplacedSamplesAndTheRestOfTheSource) {
  ASSERT_EQ(failure(system), "");
  std::vector<std::uint16_t> expected = tests::noise(31 * 40, 12);
  for (std::size_t y = 0; y < 40; y += 3)
    expected[y * 31 + y % 31] = static_cast<std::uint16_t>(4095 - expected[y * 31 + y % 31]);
  for (std::size_t x = 0; x < 31; ++x)
    expected[20 * 31 + x] = static_cast<std::uint16_t>(x);
  EXPECT_TRUE(tests::readBytes(destination) == builder().samples(expected).build());
}

TEST_P(StreamedCopies, OfAMediumThatReturnsAnyOtherByteAreRefused) {
  const auto length = static_cast<std::int64_t>(tests::readBytes(source).size());
  for (const bool isInMemory : {true, false}) {
    for (std::int64_t byte = 0; byte < length; byte += 1 + byte % 5) {
      LyingFileSystem lying(byte, isInMemory);
      EXPECT_NE(failure(lying), "") << byte;
      ASSERT_THAT(namesBesideTheCopy(), testing::IsEmpty());
    }
  }
}

TEST_P(StreamedCopies, OfADiskThatFillsUpAreRefused) {
  ASSERT_EQ(failure(system), "");
  remove(destination);
  for (int after = 0; after < system.count(Call::writeAt); after += 5) {
    tests::FailingFileSystem full;
    full.fail(Call::writeAt, ENOSPC, tests::FailingFileSystem::always, after);
    full.fail(Call::copyRange, ENOSPC);
    EXPECT_EQ(failure(full), "No space left on device");
    EXPECT_THAT(namesBesideTheCopy(), testing::IsEmpty());
  }
}

TEST_P(StreamedCopies, OfASourceThatChangesBeforeTheyAreReadBackAreRefused) {
  system.keepInMemory(false);
  const std::int64_t first = builder().segmentOffsets()[0];
  system.before(Call::synchronize, [&](const auto&) {
    std::vector<std::byte> bytes = tests::readBytes(source);
    bytes[static_cast<std::size_t>(first + 7)] ^= std::byte{1};
    tools::writeBytes(source, bytes);
  });
  EXPECT_EQ(failure(system), foundOtherBytes);
}

TEST_P(StreamedCopies, OfASourceThatShrinksAreRefused) {
  system.before(Call::createNew, [this](const auto&) { resize_file(source, 600); });
  EXPECT_THAT(failure(system), testing::StartsWith("Incomplete DNG file: Raw segment "));
  EXPECT_THAT(namesBesideTheCopy(), testing::IsEmpty());
}

TEST_P(StreamedCopies, AreReadBackFromTheMediumWhereThereIsOne) {
  system.keepInMemory(false);
  system.before(Call::dropCache, [](const auto& copy) {
    std::vector<std::byte> bytes = tests::readBytes(copy);
    bytes.back() ^= std::byte{1};
    tools::writeBytes(copy, bytes);
  });
  EXPECT_EQ(failure(system), foundOtherBytes);
}

INSTANTIATE_TEST_SUITE_P(Both, StreamedCopies,
                         testing::Values(Verification::afterwards, Verification::behindTheWriter));

class VerifierOfStretches : public tests::WriterFixture {
 protected:
  VerifierOfStretches() {
    makeSource(DNGBuilder().size(31, 40).bits(12).samples(tests::noise(31 * 40, 12)));
    std::filesystem::copy_file(source, copyOfIt);
  }

  std::filesystem::path copyOfIt = folder / "copy of it.dng";
};

TEST_F(VerifierOfStretches, IsDoneWithAStretchBeforeTheNextIsThere) {
  const SourceImage image(source);
  const CopyPlan plan = planCopy(image, false, std::nullopt);
  std::filesystem::resize_file(copyOfIt, 500);
  StretchVerifier verifier(copyOfIt, image, plan);
  VerifyingThread thread(verifier);
  thread.add({300, {}});
  thread.add({500, {}});
  EXPECT_TRUE(thread.finish());
  EXPECT_FALSE(verifier.matches({501, {}}));
}

TEST_F(VerifierOfStretches, PassesOnWhatGoesWrongOnItsThread) {
  const SourceImage image(source);
  const CopyPlan plan = planCopy(image, false, std::nullopt);
  StretchVerifier verifier(copyOfIt, image, plan);
  VerifyingThread thread(verifier);
  std::filesystem::resize_file(source, 400);
  thread.add({plan.length, {}});
  EXPECT_THAT(failureOf([&] { static_cast<void>(thread.finish()); }), testing::StartsWith("Incomplete DNG file: "));
}

TEST_F(VerifierOfStretches, ThatIsGivenUpEnds) {
  const SourceImage image(source);
  const CopyPlan plan = planCopy(image, false, std::nullopt);
  StretchVerifier verifier(copyOfIt, image, plan);
  const VerifyingThread thread(verifier);
}

// Neighbouring samples share bytes, and slices of the comparison end anywhere.
TEST_F(VerifierOfStretches, CutsNoPatchInTwo) {
  constexpr std::int64_t wide = 700;
  for (const int bits : {10, 12, 14, 16}) {
    const auto before = tests::noise(wide * 500, bits), after = tests::noise(wide * 500, bits, 2);
    const DNGBuilder large = DNGBuilder().size(wide, 500).bits(bits).samples(before);
    makeSource(large);
    DNGBuilder(large).samples(after).write(copyOfIt);
    const SourceImage image(source);
    const CopyPlan plan = planCopy(image, false, std::nullopt);
    const SliceLayout layout(image.metadata());
    CopiedStretch all{plan.length, {}};
    for (std::size_t i = 0; i < after.size(); ++i) {
      const auto place = static_cast<std::int64_t>(i);
      all.patches.emplace_back(layout.bitInFile(place % wide, place / wide), after[i]);
    }
    std::reverse(all.patches.begin(), all.patches.end());
    EXPECT_TRUE(StretchVerifier(copyOfIt, image, plan).matches(all)) << bits;
    all.patches.erase(all.patches.begin() + 60'000);
    EXPECT_FALSE(StretchVerifier(copyOfIt, image, plan).matches(all)) << bits;
  }
}

}  // namespace
}  // namespace tessaly
