// Every step of a copy made to fail: nothing stands at the destination, no temporary file is left, the source is what
// it was.
#include "dng/WriterFixture.h"
#include "dng/copy/CopyWriter.h"

#include <sys/stat.h>

#include <algorithm>
#include <functional>

namespace tessaly {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using tests::Call;
using tests::noise;
using tests::readBytes;
using tests::readText;
using tests::Samples;
using tests::writeText;
using tools::DNGBuilder;

constexpr auto verificationFailed = "Invalid DNG structure: Writer re-read verification failed";

enum class Form { source, reencoded };

class Faults : public tests::WriterFixture, public testing::WithParamInterface<Form> {
 protected:
  Faults() {
    makeSource(builder());
    sourceBytes = readBytes(source);
  }

  [[nodiscard]] static DNGBuilder builder() {
    DNGBuilder builder;
    builder.size(64, 48).bits(12).samples(noise(64 * 48, 8)).trailingBytes(1);
    if (GetParam() == Form::reencoded) {
      Samples table;
      for (int code = 0; code < 256; ++code)
        table.push_back(static_cast<std::uint16_t>(code * 257 % 4001));
      builder.linearization(table).white(60000);
    }
    return builder;
  }

  std::string failure() {
    return failureOf([this] { copyChanged({destination, samples, {}, false, std::nullopt}); });
  }

  void expectNothingLeft() {
    EXPECT_THAT(namesBesideTheCopy(), IsEmpty());
    EXPECT_TRUE(readBytes(source) == sourceBytes);
  }

  void expectComplete() {
    EXPECT_EQ(samplesOf(destination), samples);
    EXPECT_THAT(namesBesideTheCopy(), ElementsAre("copy.dng"));
    EXPECT_TRUE(readBytes(source) == sourceBytes);
  }

  void refuse(std::initializer_list<Call> calls, int error) {
    for (const Call call : calls)
      system.fail(call, error);
  }

  // What stands in the temporary file once it has been written and its pages were dropped.
  void whenItIsOnTheMedium(std::function<void(const std::filesystem::path&)> action) {
    system.before(Call::dropCache, std::move(action));
  }

  Samples samples = noise(64 * 48, 12, 2);
  std::vector<std::byte> sourceBytes;
};

TEST_P(Faults, DoNotHappenOnAGoodDay) {
  EXPECT_EQ(failure(), "");
  expectComplete();
}

TEST_P(Faults, ComeInTheOrderInWhichACopyIsMade) {
  EXPECT_EQ(failure(), "");
  std::vector<Call> steps;
  for (const Call call : system.calls()) {
    if (call != Call::writeAt && call != Call::copyRange) steps.push_back(call);
  }
  EXPECT_THAT(steps, ElementsAre(Call::createFolders, Call::createNew, Call::lock, Call::clone, Call::reserve,
                                 Call::synchronize, Call::dropCache, Call::setMode, Call::renameWithoutReplacing,
                                 Call::synchronizeFolder));
}

// "Never more" holds also while it grows.
TEST_P(Faults, NeverLetOthersReadACopyThatGrows) {
  const mode_t old = umask(0);
  mode_t mode = 0;
  system.before(Call::dropCache, [&mode](const std::filesystem::path& copy) {
    struct stat status {};
    if (stat(copy.c_str(), &status) == 0) mode = status.st_mode & 07777;
  });
  EXPECT_EQ(failure(), "");
  umask(old);
  EXPECT_EQ(mode, 0600U);
}

TEST_P(Faults, OfTheDestinationSayThatTheyAre) {
  for (const Call call :
       {Call::createFolders, Call::createNew, Call::writeAt, Call::synchronize, Call::renameWithoutReplacing}) {
    tests::FailingFileSystem broken;
    broken.fail(call, EROFS);
    const CheckedCopyRequest request(source, {folder / "other" / "copy.dng", samples, {}, false, std::nullopt});
    std::vector<std::byte> buffer(copyBufferSize);
    try {
      writeCopy(SourceImage(source), request, buffer, broken);
      ADD_FAILURE() << "nothing thrown";
    } catch (const std::exception& error) {
      const DNGError told = DNGError::contextualize(error, source);
      EXPECT_STREQ(told.what(), "source.dng: Unable to read: Read-only file system");
      ASSERT_NE(told.destination(), nullptr);
      EXPECT_EQ(told.destination()->folder(), folder / "other");
    }
  }
}

TEST_P(Faults, OfTheFolder) {
  system.fail(Call::createFolders, EACCES);
  EXPECT_EQ(failure(), "Permission denied");
  expectNothingLeft();
}

TEST_P(Faults, OfMakingTheTemporaryFile) {
  system.fail(Call::createNew, EROFS);
  EXPECT_EQ(failure(), "Read-only file system");
  expectNothingLeft();
}

TEST_P(Faults, OfAFullDiskAtAnyWrite) {
  EXPECT_EQ(failure(), "");
  const long writes = system.count(Call::writeAt);
  ASSERT_GT(writes, 0);
  for (int after = 0; after < writes; ++after) {
    tests::FailingFileSystem full;
    full.fail(Call::writeAt, ENOSPC, tests::FailingFileSystem::always, after);
    full.fail(Call::copyRange, ENOSPC);
    full.fail(Call::reserve, ENOSPC);
    const std::filesystem::path other = folder / "full" / "copy.dng";
    const CheckedCopyRequest request(source, {other, samples, {}, false, std::nullopt});
    std::vector<std::byte> buffer(copyBufferSize);
    EXPECT_EQ(failureOf([&] { writeCopy(SourceImage(source), request, buffer, full); }), "No space left on device");
    EXPECT_TRUE(is_empty(folder / "full"));
  }
}

TEST_P(Faults, OfAFileSizeLimit) {
  system.fail(Call::writeAt, EFBIG);
  EXPECT_EQ(failure(), "File too large");
  expectNothingLeft();
}

TEST_P(Faults, OfShortAndInterruptedWritesAreOvercome) {
  system.writeAtMost(1000);
  for (const Call call : {Call::createNew, Call::reserve, Call::writeAt, Call::copyRange, Call::clone,
                          Call::synchronize, Call::renameWithoutReplacing})
    system.fail(call, EINTR, 3);
  EXPECT_EQ(failure(), "");
  expectComplete();
}

TEST_P(Faults, OfTheMediumAtTheEnd) {
  system.fail(Call::synchronize, EIO);
  EXPECT_EQ(failure(), "Input/output error");
  expectNothingLeft();
}

TEST_P(Faults, OfHintsAreNone) {
  for (const Call call : {Call::reserve, Call::startWriting, Call::dropCache})
    system.fail(call, EINVAL);
  EXPECT_EQ(failure(), "");
  expectComplete();
}

// Any sample, the first and the last included.
TEST_P(Faults, OfAMediumThatReturnsOtherSamples) {
  const auto segments = [this](const std::filesystem::path& copy) {
    const DNGMetadata metadata = DNGReader::readMetadata(copy);
    return std::pair(static_cast<std::int64_t>(metadata.rawOffset), metadata.rawByteCount);
  };
  for (const int place : {0, 1, 2}) {
    whenItIsOnTheMedium([&](const auto& copy) {
      const auto [offset, length] = segments(copy);
      std::vector<std::byte> bytes = readBytes(copy);
      bytes[static_cast<std::size_t>(offset + place * (length - 1) / 2)] ^= std::byte{0x10};
      tools::writeBytes(copy, bytes);
    });
    EXPECT_EQ(failure(), verificationFailed);
    expectNothingLeft();
  }
}

// Of tags, names, gaps and appended blocks as well, whatever they mean.
TEST_P(Faults, OfAMediumThatReturnsAnyOtherByte) {
  std::size_t length = 0;
  whenItIsOnTheMedium([&](const auto& copy) { length = file_size(copy); });
  EXPECT_EQ(failure(), "");
  remove(destination);
  for (std::size_t place = 0; place < length; place += place < 600 || place > length - 600 ? 1 : 61) {
    whenItIsOnTheMedium([&](const auto& copy) {
      std::vector<std::byte> bytes = readBytes(copy);
      bytes[place] ^= std::byte{1} << (place % 8);
      tools::writeBytes(copy, bytes);
    });
    EXPECT_NE(failure(), "") << place;
    expectNothingLeft();
  }
}

TEST_P(Faults, OfAMediumThatReturnsAnotherLength) {
  for (const int difference : {-1, 1, 5, 5000}) {
    whenItIsOnTheMedium([&](const auto& copy) {
      const auto length = static_cast<std::intmax_t>(file_size(copy)) + difference;
      resize_file(copy, static_cast<std::uintmax_t>(length));
    });
    const std::string failed = failure();
    // Without its last byte the directory of the re-encoded form is no longer readable.
    const bool isDamaged = difference < 0 && GetParam() == Form::reencoded;
    EXPECT_EQ(failed == verificationFailed, !isDamaged) << failed;
    expectNothingLeft();
  }
}

TEST_P(Faults, OfAMediumThatReturnsAnotherName) {
  whenItIsOnTheMedium([](const auto& copy) {
    std::string text = readText(copy);
    text[text.find("Tessaly Test Camera")] = 'U';
    writeText(copy, text);
  });
  EXPECT_EQ(failure(), verificationFailed);
  expectNothingLeft();
}

TEST_P(Faults, OfAMediumThatReturnsAnotherImage) {
  whenItIsOnTheMedium([](const auto& copy) { DNGBuilder().size(63, 48).write(copy); });
  EXPECT_EQ(failure(), verificationFailed);
  whenItIsOnTheMedium([](const auto& copy) { DNGBuilder().size(48, 64).write(copy); });
  EXPECT_EQ(failure(), verificationFailed);
  expectNothingLeft();
}

TEST_P(Faults, OfAMediumThatReturnsAnotherMosaic) {
  whenItIsOnTheMedium([this](const auto& copy) { DNGBuilder().size(64, 48).cfa("BGGR").samples(samples).write(copy); });
  EXPECT_EQ(failure(), verificationFailed);
  whenItIsOnTheMedium([this](const auto& copy) { DNGBuilder().size(64, 48).linear().samples(samples).write(copy); });
  EXPECT_EQ(failure(), verificationFailed);
  expectNothingLeft();
}

TEST_P(Faults, OfReadingBackArePassedOnWithTheTemporaryFilesName) {
  const auto expectFailure = [this](const std::string& message) {
    const std::string failed = failure();
    EXPECT_EQ(failed, system.created().filename().string() + ": " + message);
    expectNothingLeft();
  };
  whenItIsOnTheMedium([](const auto& copy) { resize_file(copy, 4); });
  expectFailure("Invalid DNG structure: DNG size limit (2 GB)");
  whenItIsOnTheMedium([](const auto& copy) { remove(copy); });
  expectFailure("Unable to read: No such file or directory");
  whenItIsOnTheMedium([](const auto& copy) { DNGBuilder().size(64, 48).rawTag(259, {3, {7}}).write(copy); });
  expectFailure("Unsupported DNG: Compressed (lossless JPEG) DNG is not supported yet");
}

TEST_P(Faults, OfTheMoveArePassedOn) {
  system.fail(Call::renameWithoutReplacing, EIO);
  EXPECT_EQ(failure(), "Input/output error");
  expectNothingLeft();
}

TEST_P(Faults, OfARefusedRenameAreOvercomeByALink) {
  refuse({Call::renameWithoutReplacing}, EINVAL);
  EXPECT_EQ(failure(), "");
  expectComplete();
}

TEST_P(Faults, OfARefusedLinkAreOvercomeByAPlaceholder) {
  refuse({Call::renameWithoutReplacing, Call::link}, ENOSYS);
  EXPECT_EQ(failure(), "");
  expectComplete();
}

TEST_P(Faults, OfEveryWayToMoveLeaveNothing) {
  refuse({Call::renameWithoutReplacing, Call::link}, EOPNOTSUPP);
  system.fail(Call::renameReplacing, EIO);
  EXPECT_EQ(failure(), "Input/output error");
  expectNothingLeft();
}

// However late the other file appears and whichever way the copy would take its name.
TEST_P(Faults, OfADestinationThatAppearsMeanwhile) {
  for (const Call call : {Call::renameWithoutReplacing, Call::link, Call::createNew}) {
    tests::FailingFileSystem late;
    if (call != Call::renameWithoutReplacing) late.fail(Call::renameWithoutReplacing, EINVAL);
    if (call == Call::createNew) late.fail(Call::link, EPERM);
    late.before(call, [this](const auto& path) {
      if (path == destination) writeText(destination, "somebody else's");
    });
    const CheckedCopyRequest request(source, {destination, samples, {}, false, std::nullopt});
    std::vector<std::byte> buffer(copyBufferSize);
    EXPECT_EQ(failureOf([&] { writeCopy(SourceImage(source), request, buffer, late); }), "File exists");
    EXPECT_EQ(readText(destination), "somebody else's");
    EXPECT_THAT(namesBesideTheCopy(), ElementsAre("copy.dng"));
    remove(destination);
  }
}

TEST_P(Faults, OfTheFolderAfterTheMoveDoNotFailTheCopy) {
  system.fail(Call::synchronizeFolder, EIO);
  EXPECT_EQ(failure(), "");
  expectComplete();
}

TEST_P(Faults, OfRemovingTheTemporaryFileDoNotHideTheFirst) {
  system.fail(Call::unlink, EACCES);
  system.fail(Call::synchronize, EIO);
  EXPECT_EQ(failure(), "Input/output error");
  EXPECT_FALSE(exists(destination));
  EXPECT_THAT(namesBesideTheCopy(), ElementsAre(StartsWith(".")));
}

TEST_P(Faults, OfRemovingTheTemporaryFileAfterTheMoveDoNotFailTheCopy) {
  refuse({Call::renameWithoutReplacing}, EINVAL);
  system.fail(Call::unlink, EACCES);
  EXPECT_EQ(failure(), "");
  EXPECT_EQ(samplesOf(destination), samples);
}

// The source is open by then; bytes that it no longer has cannot be copied.
TEST_P(Faults, OfASourceThatShrinksWhileItIsCopied) {
  system.before(Call::createNew, [this](const auto&) { resize_file(source, 1000); });
  EXPECT_THAT(failure(), StartsWith("Incomplete DNG file: "));
  EXPECT_THAT(namesBesideTheCopy(), IsEmpty());
}

TEST_P(Faults, OfASourceThatDisappearsAreNone) {
  system.before(Call::createNew, [this](const auto&) { remove(source); });
  EXPECT_EQ(failure(), "");
  EXPECT_EQ(samplesOf(destination), samples);
}

TEST_P(Faults, OfASourceThatIsReplacedAreNone) {
  system.before(Call::createNew, [this](const auto&) {
    remove(source);
    DNGBuilder().size(8, 6).write(source);
  });
  EXPECT_EQ(failure(), "");
  EXPECT_EQ(samplesOf(destination), samples);
}

std::string formName(const testing::TestParamInfo<Form>& info) {
  return info.param == Form::source ? "InTheSourceForm" : "InTheReencodedForm";
}

INSTANTIATE_TEST_SUITE_P(All, Faults, testing::Values(Form::source, Form::reencoded), formName);

// Samples that change in the source between the reading and the copy: what was not packed again differs.
TEST(CopyOfKnownChanges, IsCaughtWhenTheSourceIsNoLongerWhatWasRead) {
  const tests::TemporaryFolder folder;
  DNGBuilder builder;
  builder.size(64, 48).samples(noise(64 * 48, 16)).write(folder / "source.dng");
  const SourceImage image(folder / "source.dng");
  const Samples samples = noise(64 * 48, 16);
  const std::vector<SampleRun> runs{{3, 4, 1}};
  std::vector<std::byte> bytes = builder.build();
  bytes[static_cast<std::size_t>(builder.segmentOffsets()[0] + 5000)] ^= std::byte{1};
  tools::writeBytes(folder / "source.dng", bytes);
  std::vector<std::byte> buffer(copyBufferSize);
  const CheckedCopyRequest request(image.url(),
                                   {folder / "copy.dng", samples, ChangedSamples(runs), false, std::nullopt});
  try {
    writeCopy(image, request, buffer, FileSystem::system());
    FAIL() << "A sample differs";
  } catch (const DNGError& error) {
    EXPECT_STREQ(error.what(), verificationFailed);
  }
  EXPECT_FALSE(exists(folder / "copy.dng"));
}

}  // namespace
}  // namespace tessaly
