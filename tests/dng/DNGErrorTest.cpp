#include "dng/DNGError.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <new>
#include <stdexcept>
#include <system_error>

namespace tessaly::tests {
namespace {

TEST(DNGError, DescribesEachCaseWithItsPrefix) {
  EXPECT_STREQ(DNGError::unreadable("words").what(), "Unable to read: words");
  EXPECT_STREQ(DNGError::truncated("words").what(), "Incomplete DNG file: words");
  EXPECT_STREQ(DNGError::unsupported("words").what(), "Unsupported DNG: words");
  EXPECT_STREQ(DNGError::invalid("words").what(), "Invalid DNG structure: words");
  EXPECT_STREQ(DNGError::profileMismatch("words").what(), "Camera profile mismatch: words");
}

TEST(DNGError, OfAFileNamesTheFileAndTheUnderlyingError) {
  const DNGError error = DNGError::file("a.dng", DNGError::invalid("Raw dimensions"));
  EXPECT_STREQ(error.what(), "a.dng: Invalid DNG structure: Raw dimensions");
  EXPECT_EQ(error.message(), "a.dng");
  ASSERT_NE(error.underlying(), nullptr);
  EXPECT_EQ(error.underlying()->message(), "Raw dimensions");
}

TEST(DNGError, HasAnUnderlyingErrorOnlyAsFile) {
  EXPECT_EQ(DNGError::invalid("words").underlying(), nullptr);
  EXPECT_EQ(DNGError::invalid("words").kind(), DNGError::Case::invalid);
}

TEST(DNGError, FindsTheInnermostError) {
  const DNGError nested = DNGError::file("outer", DNGError::file("inner", DNGError::truncated("TIFF header")));
  EXPECT_EQ(nested.innermost().kind(), DNGError::Case::truncated);
  EXPECT_EQ(DNGError::invalid("words").innermost().message(), "words");
}

TEST(DNGError, StaysItselfWhenCopied) {
  const DNGError original = DNGError::file("a.dng", DNGError::invalid("words"));
  const DNGError copy = original;
  EXPECT_STREQ(copy.what(), original.what());
  EXPECT_EQ(copy.underlying()->message(), "words");
}

TEST(Contextualize, LeavesAFileErrorUnchanged) {
  const DNGError inner = DNGError::file("first.dng", DNGError::invalid("words"));
  EXPECT_STREQ(DNGError::contextualize(inner, "/photos/second.dng").what(), inner.what());
}

TEST(Contextualize, WrapsAnyOtherDNGErrorWithTheLastComponent) {
  const DNGError error = DNGError::contextualize(DNGError::truncated("Raw segment 0"), "/photos/a.dng");
  EXPECT_EQ(error.kind(), DNGError::Case::file);
  EXPECT_EQ(error.message(), "a.dng");
  EXPECT_EQ(error.underlying()->kind(), DNGError::Case::truncated);
}

TEST(Contextualize, TakesTheSystemsWords) {
  const std::system_error missing(ENOENT, std::generic_category(), "open");
  EXPECT_STREQ(DNGError::contextualize(missing, "/photos/a.dng").what(),
               "a.dng: Unable to read: No such file or directory");
}

TEST(Contextualize, KnowsMissingMemory) {
  EXPECT_STREQ(DNGError::contextualize(std::bad_alloc(), "a.dng").what(),
               "a.dng: Unable to read: Cannot allocate memory");
}

TEST(Contextualize, TakesTheWordsOfAnythingElse) {
  EXPECT_STREQ(DNGError::contextualize(std::runtime_error("words"), "a.dng").what(), "a.dng: Unable to read: words");
}

TEST(Contextualize, ShowsNamesThatAreNotUTF8) {
  EXPECT_EQ(DNGError::contextualize(DNGError::invalid("x"), "/p/\xE9t\xE9.dng").message(), "\uFFFDt\uFFFD.dng");
}

struct Rejection {
  std::string message;
  RejectionReason reason;
};

void PrintTo(const Rejection& rejection, std::ostream* out) {
  *out << rejection.message;
}

class UnsupportedReason : public testing::TestWithParam<Rejection> {};

TEST_P(UnsupportedReason, FollowsFromAPhrase) {
  EXPECT_EQ(DNGError::unsupported(GetParam().message).rejectionReason(), GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    OfAMessage, UnsupportedReason,
    testing::Values(Rejection{"Proprietary RAW", RejectionReason::proprietaryRAW},
                    Rejection{"Compressed (lossless JPEG) DNG is not supported yet", RejectionReason::losslessJPEG},
                    Rejection{"Lossy JPEG DNG is not supported", RejectionReason::lossyJPEG},
                    Rejection{"JPEG XL DNG is not supported", RejectionReason::jpegXL},
                    Rejection{"DNG compression 8 is not supported", RejectionReason::unsupported},
                    Rejection{"Only 2×2 Bayer CFA is supported (X-Trans is not supported)", RejectionReason::nonBayer},
                    Rejection{"Invalid Bayer CFA plane", RejectionReason::nonBayer},
                    Rejection{"Invalid Bayer arrangement", RejectionReason::nonBayer},
                    Rejection{"Multiple raw samples per pixel", RejectionReason::linear},
                    Rejection{"One BitsPerSample value is required", RejectionReason::linear},
                    Rejection{"Raw photometric 2", RejectionReason::linear},
                    Rejection{"Planar raw", RejectionReason::linear},
                    Rejection{"Classic TIFF required", RejectionReason::container},
                    Rejection{"DNGVersion [2.0, 0.0, 0.0, 0.0]", RejectionReason::container},
                    Rejection{"Raw bit depth 11", RejectionReason::bitDepth},
                    Rejection{"Fractional DefaultCrop is not supported yet", RejectionReason::fractionalCrop},
                    Rejection{"FillOrder 3", RejectionReason::fillOrder},
                    Rejection{"WhiteLevel outside UInt16 domain", RejectionReason::sampleRange},
                    Rejection{"Numeric TIFF type 11", RejectionReason::numericType},
                    Rejection{"Calibration requires more", RejectionReason::calibrationSize},
                    Rejection{"Inverse nonmonotonic LinearizationTable", RejectionReason::unsupported},
                    Rejection{"", RejectionReason::unsupported}));

INSTANTIATE_TEST_SUITE_P(TheOrderOfPhrasesCounts, UnsupportedReason,
                         testing::Values(Rejection{"CFA with lossless JPEG", RejectionReason::losslessJPEG},
                                         Rejection{"Proprietary RAW with lossless JPEG", RejectionReason::losslessJPEG},
                                         Rejection{"UInt16 FillOrder", RejectionReason::fillOrder},
                                         Rejection{"bit depth in DNGVersion", RejectionReason::container},
                                         Rejection{"Planar Bayer", RejectionReason::nonBayer}));

INSTANTIATE_TEST_SUITE_P(LettersCountToo, UnsupportedReason,
                         testing::Values(Rejection{"Lossless JPEG", RejectionReason::unsupported},
                                         Rejection{"lossy JPEG", RejectionReason::unsupported},
                                         Rejection{"Photometric", RejectionReason::unsupported},
                                         Rejection{"planar", RejectionReason::unsupported},
                                         Rejection{"A Proprietary RAW", RejectionReason::unsupported},
                                         Rejection{"Proprietary RAW of a newer body", RejectionReason::unsupported}));

TEST(RejectionReason, OfMostCasesIsTheCase) {
  EXPECT_EQ(DNGError::unreadable("lossless JPEG").rejectionReason(), RejectionReason::unreadable);
  EXPECT_EQ(DNGError::truncated("CFA").rejectionReason(), RejectionReason::damaged);
  EXPECT_EQ(DNGError::profileMismatch("CFA").rejectionReason(), RejectionReason::mismatch);
  EXPECT_EQ(DNGError::invalid("CFA").rejectionReason(), RejectionReason::damaged);
}

TEST(RejectionReason, OfMissingCalibrationFramesIsTheirOwn) {
  EXPECT_EQ(DNGError::invalid("No calibration DNG here").rejectionReason(), RejectionReason::calibrationFrames);
  EXPECT_EQ(DNGError::invalid("three bright-field frames").rejectionReason(), RejectionReason::calibrationFrames);
  EXPECT_EQ(DNGError::invalid("Bright-field").rejectionReason(), RejectionReason::damaged);
}

TEST(RejectionReason, OfAFileIsThatOfTheInnermostError) {
  const DNGError file = DNGError::file("CFA.dng", DNGError::unsupported("Raw bit depth 9"));
  EXPECT_EQ(file.rejectionReason(), RejectionReason::bitDepth);
  EXPECT_EQ(DNGError::file("outer", file).rejectionReason(), RejectionReason::bitDepth);
}

}  // namespace
}  // namespace tessaly::tests
