#include "calibration/CalibrationAnalysis.h"
#include "calibration/CalibrationEngine.h"
#include "calibration/FrameFolder.h"
#include "calibration/RawPreview.h"
#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "support/FileBytes.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace tessaly {
namespace {

using CalibrationEngine::analyze;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::FrameExposure;
using tests::FrameFolder;
using Case = DNGError::Case;
using Kind = CalibrationCandidate::Kind;
using Progress = std::vector<CalibrationProgress>;

const FrameExposure slow{100, std::pair{1, 30}};
const FrameExposure middle{100, std::pair{1, 60}};
const FrameExposure fastShutter{100, std::pair{1, 125}};
constexpr std::uint16_t bright = FrameFolder::brightLevel;
constexpr std::uint16_t dark = FrameFolder::darkLevel;

void ignore(const CalibrationProgress&) {}

/// The reports of an analysis, whether it succeeds or not.
Progress reports(const std::vector<std::filesystem::path>& urls) {
  Progress all;
  try {
    (void)analyze(urls, [&all](const CalibrationProgress& progress) { all.push_back(progress); });
  } catch (const DNGError&) {
  }
  return all;
}

DNGError failure(const std::vector<std::filesystem::path>& urls) {
  try {
    (void)analyze(urls, ignore);
  } catch (const DNGError& error) {
    return error;
  }
  throw std::logic_error("The analysis succeeded");
}

FrameFolder threeBrightFrames() {
  FrameFolder folder;
  folder.addSeries("bright", 3, bright, fastShutter);
  return folder;
}

TEST(CalibrationEngine, RefusesTwoFilesBeforeItOpensAny) {
  const DNGError error = failure({"/nowhere/1.dng", "/nowhere/2.dng"});
  EXPECT_EQ(error.kind(), Case::invalid);
  EXPECT_STREQ(error.what(), "Invalid DNG structure: At least three calibration DNG files are required");
  EXPECT_THAT(reports({"/nowhere/1.dng", "/nowhere/2.dng"}), IsEmpty());
  EXPECT_EQ(failure({}).kind(), Case::invalid);
}

TEST(CalibrationEngine, NamesAFileThatCannotBeRead) {
  FrameFolder folder = threeBrightFrames();
  auto urls = folder.urls();
  urls.push_back(folder.path("zzz.dng"));
  const DNGError error = failure(urls);
  EXPECT_EQ(error.kind(), Case::file);
  EXPECT_EQ(error.message(), "zzz.dng");
  EXPECT_EQ(error.underlying()->kind(), Case::unreadable);
}

TEST(CalibrationEngine, NamesAFileOfAnotherCamera) {
  FrameFolder folder = threeBrightFrames();
  folder.addAs("zzz.dng", folder.builder(bright, fastShutter).serial("S2"));
  folder.addAs("zzzz.dng", folder.builder(bright, fastShutter).serial("S3"));
  const DNGError error = failure(folder.urls());
  EXPECT_EQ(error.kind(), Case::file);
  EXPECT_EQ(error.message(), "zzz.dng") << "the first one that does not match";
  EXPECT_EQ(error.underlying()->kind(), Case::profileMismatch);
  EXPECT_EQ(error.underlying()->message(), "Calibration files contain different cameras or DNG layouts");
  EXPECT_EQ(reports(folder.urls()).size(), 4U) << "nothing is read after it";
}

TEST(CalibrationEngine, ComparesWithTheFirstFileInNaturalOrder) {
  FrameFolder folder;
  folder.add("IMG_10.dng", bright, fastShutter).add("IMG_11.dng", bright, fastShutter);
  folder.addAs("img_9.dng", folder.builder(bright, fastShutter).serial("S2"));
  EXPECT_EQ(failure(folder.urls()).message(), "IMG_10.dng");
}

TEST(CalibrationEngine, NeedsAnActiveAreaOf257By65Samples) {
  const auto reason = [](std::int64_t width, std::int64_t height) -> std::string {
    FrameFolder folder(width, height);
    folder.addSeries("bright", 3, bright, fastShutter);
    try {
      (void)analyze(folder.urls(), ignore);
      return "accepted";
    } catch (const DNGError& error) {
      return error.what();
    }
  };
  EXPECT_EQ(reason(257, 65), "accepted");
  EXPECT_EQ(reason(256, 65), "Unsupported DNG: Calibration requires an active image of at least 257×65 samples");
  EXPECT_EQ(reason(257, 64), "Unsupported DNG: Calibration requires an active image of at least 257×65 samples");
}

TEST(CalibrationEngine, ChecksTheCameraBeforeTheSize) {
  FrameFolder folder(100, 100);
  folder.addSeries("bright", 3, bright, fastShutter);
  folder.addAs("zzz.dng", folder.builder(bright, fastShutter).serial("S2"));
  EXPECT_EQ(failure(folder.urls()).kind(), Case::file);
}

TEST(CalibrationEngine, NeedsThreeBrightFrames) {
  FrameFolder folder;
  folder.addSeries("bright", 2, bright, fastShutter).addSeries("dark", 5, dark, slow);
  const DNGError error = failure(folder.urls());
  EXPECT_EQ(error.kind(), Case::invalid);
  EXPECT_STREQ(error.what(), "Invalid DNG structure: Not enough bright-field frames were detected");
  folder.add("one-more.dng", bright, middle);
  const CalibrationResult result = analyze(folder.urls(), ignore);
  EXPECT_EQ(result.brightFrameCount, 3);
  EXPECT_EQ(result.darkFrameCount, 5);
}

TEST(CalibrationEngine, ClassifiesAGroupByItsFirstFile) {
  FrameFolder folder;
  folder.addSeries("bright", 3, bright, fastShutter);
  folder.add("a-1.dng", dark, slow).add("a-2.dng", bright, slow).add("a-3.dng", bright, slow);
  const CalibrationResult result = analyze(folder.urls(), ignore);
  EXPECT_EQ(result.brightFrameCount, 3);
  EXPECT_EQ(result.darkFrameCount, 3);
}

TEST(CalibrationEngine, NamesACompressedFileWhenItsSamplesAreNeeded) {
  FrameFolder folder;
  const auto compressed = [&](const FrameExposure& exposure) {
    return folder.builder(bright, exposure).rawTag(259, {3, {7}});
  };
  folder.addAs("a.dng", compressed(slow)).addAs("b.dng", compressed(slow)).addAs("c.dng", compressed(slow));
  const DNGError error = failure(folder.urls());
  EXPECT_EQ(error.kind(), Case::file);
  EXPECT_EQ(error.message(), "a.dng");
  EXPECT_EQ(error.underlying()->message(), "Compressed (lossless JPEG) DNG is not supported yet");
}

TEST(CalibrationEngine, RefusesAProprietaryFileWithItsName) {
  FrameFolder folder = threeBrightFrames();
  folder.addAs("zzz.nef", folder.builder(bright, fastShutter));
  const DNGError error = failure(folder.urls());
  EXPECT_STREQ(error.what(), "zzz.nef: Unsupported DNG: Proprietary RAW");
}

TEST(CalibrationEngine, ReportsEachStepOfTheWork) {
  FrameFolder folder;
  folder.addSeries("bright", 3, bright, fastShutter).add("dark-9.dng", dark, slow).add("dark-10.dng", dark, slow);
  EXPECT_THAT(
      reports(folder.urls()),
      ElementsAre(CalibrationProgress{0, 5, "Reading bright-1.dng"}, CalibrationProgress{0, 5, "Reading bright-2.dng"},
                  CalibrationProgress{0, 5, "Reading bright-3.dng"}, CalibrationProgress{0, 5, "Reading dark-9.dng"},
                  CalibrationProgress{0, 5, "Reading dark-10.dng"}, CalibrationProgress{1, 5, "Analyzing bright-1.dng"},
                  CalibrationProgress{2, 5, "Analyzing bright-2.dng"},
                  CalibrationProgress{3, 5, "Analyzing bright-3.dng"},
                  CalibrationProgress{3, 5, "Checking partial defective column in bright-1.dng"},
                  CalibrationProgress{3, 5, "Checking partial defective column in bright-2.dng"},
                  CalibrationProgress{3, 5, "Checking partial defective column in bright-3.dng"}));
}

TEST(CalibrationEngine, WorksThroughTheGroupsByTheirKeysAsTexts) {
  FrameFolder folder;
  folder.addSeries("a", 3, bright, {100, std::pair{1, 125}});      // 100-8000
  folder.addSeries("b", 3, bright, {100, std::pair{1, 10}});       // 100-100000
  folder.addSeries("c", 3, bright, {std::nullopt, std::nullopt});  // 0-0
  folder.addSeries("d", 3, bright, {1600, std::pair{1, 125}});     // 1600-8000
  std::vector<std::string> firstFiles;
  for (const CalibrationProgress& report : reports(folder.urls())) {
    if (report.message.starts_with("Analyzing") && report.message.ends_with("-1.dng"))
      firstFiles.push_back(report.message.substr(10, 1));
  }
  EXPECT_THAT(firstFiles, ElementsAre("c", "b", "a", "d"));
}

TEST(CalibrationEngine, WorksWithoutSomebodyToReportTo) {
  EXPECT_EQ(analyze(threeBrightFrames().urls(), nullptr).brightFrameCount, 3);
}

struct Cancelled {};

TEST(CalibrationEngine, EndsAtOnceWhenTheCallbackThrows) {
  const FrameFolder folder = threeBrightFrames();
  for (const std::size_t stopAt : {1U, 4U, 8U}) {
    std::size_t count = 0;
    EXPECT_THROW((void)analyze(folder.urls(),
                               [&](const CalibrationProgress&) {
                                 if (++count == stopAt) throw Cancelled();
                               }),
                 Cancelled);
    EXPECT_EQ(count, stopAt);
  }
}

TEST(CalibrationEngine, LetsErrorsOfTheCallbackThroughUnchanged) {
  const FrameFolder folder = threeBrightFrames();
  try {
    (void)analyze(folder.urls(), [](const CalibrationProgress&) { throw DNGError::invalid("stop"); });
    FAIL();
  } catch (const DNGError& error) {
    EXPECT_EQ(error.kind(), Case::invalid);
    EXPECT_EQ(error.message(), "stop");
  }
}

TEST(CalibrationEngine, DescribesTheFirstFileInNaturalOrder) {
  FrameFolder folder;
  folder.addAs("IMG_10.dng", folder.builder(bright, fastShutter).make("ten"));
  folder.addAs("IMG_9.dng", folder.builder(bright, fastShutter).make("nine"));
  folder.addAs("IMG_11.dng", folder.builder(bright, fastShutter).make("eleven"));
  EXPECT_EQ(analyze(folder.urls(), ignore).metadata.make, "nine");
}

TEST(CalibrationEngine, PreviewsTheFirstFileOfTheFirstBrightGroup) {
  FrameFolder folder;
  folder.addSeries("a-dark", 3, dark, {100, std::pair{1, 1}});
  const auto marked = [](const FrameFolder::Sample& sample) {
    for (std::int64_t y = 0; y < 65; ++y) {
      for (std::int64_t x = 0; x < 100; ++x)
        sample(x, y) = 9000;
    }
  };
  folder.addSeries("b-later-key", 3, bright, {200, std::pair{1, 125}});
  folder.add("c-1.dng", bright, fastShutter, marked).add("c-2.dng", bright, fastShutter);
  const CalibrationResult result = analyze(folder.urls(), ignore);
  const RawPlane plane = DNGReader::readPlane(folder.path("c-1.dng"));
  EXPECT_EQ(result.preview, CalibrationEngine::makePreview(plane.samples, plane.metadata, 1500));
  EXPECT_EQ(result.preview.width, 257);
  EXPECT_EQ(result.preview.pixels[0], 255);
}

TEST(CalibrationEngine, MeasuresLevelsOfTheFrameButDefectsByTheFirstFile) {
  FrameFolder folder;
  folder.addAs("a.dng", folder.builder(700, fastShutter).white(60000));
  folder.addAs("b.dng", folder.builder(700, fastShutter));
  folder.addAs("c.dng", folder.builder(700, fastShutter));
  // 700 is dark on a range of 60000 and bright on one of 16163.
  EXPECT_EQ(failure(folder.urls()).message(), "Not enough bright-field frames were detected");
  folder.addSeries("d", 3, 700, slow);
  EXPECT_EQ(analyze(folder.urls(), ignore).brightFrameCount, 3);
}

/// Frames of one exposure with a hot pixel and a square pattern of dust.
void damage(const FrameFolder::Sample& sample) {
  sample(50, 20) = 12000;
  for (std::int64_t y = 30; y < 36; y += 2) {
    for (std::int64_t x = 100; x < 106; x += 2)
      sample(x, y) = 4000;
  }
}

std::vector<CalibrationCandidate> ofKind(Kind kind, const CalibrationResult& result) {
  std::vector<CalibrationCandidate> found;
  std::copy_if(result.candidates.begin(), result.candidates.end(), std::back_inserter(found),
               [kind](const CalibrationCandidate& candidate) { return candidate.kind == kind; });
  return found;
}

TEST(CalibrationEngine, NeverReportsPixelsAndSpotsOfOneExposureOnly) {
  FrameFolder folder;
  folder.addSeries("bright", 6, bright, fastShutter, damage);
  EXPECT_THAT(analyze(folder.urls(), ignore).candidates, IsEmpty());
}

TEST(CalibrationEngine, ReportsPixelsAndSpotsOfTwoExposures) {
  FrameFolder folder;
  folder.addSeries("bright", 3, bright, fastShutter, damage).addSeries("slow", 3, bright, slow, damage);
  const CalibrationResult result = analyze(folder.urls(), ignore);
  const auto pixels = ofKind(Kind::pixel, result);
  const auto isThePixel = [](const CalibrationCandidate& pixel) { return pixel.x == 54 && pixel.yStart == 22; };
  EXPECT_EQ(std::ranges::count_if(pixels, isThePixel), 1) << "in raw coordinates";
  EXPECT_THAT(pixels, Each(testing::Field(&CalibrationCandidate::reason, "Repeated in 2 independent exposure groups")));
  const auto spots = ofKind(Kind::spot, result);
  ASSERT_THAT(spots, SizeIs(1));
  EXPECT_EQ(spots[0].x, 106);
  EXPECT_EQ(spots[0].yStart, 34);
  EXPECT_EQ(spots[0].reason, "Fixed sensor spot repeated in 2 bright-field exposure groups");
  EXPECT_EQ(result.candidates.front().kind, Kind::spot) << "spots before pixels";
}

TEST(CalibrationEngine, JoinsPixelsOfBrightAndDarkGroups) {
  FrameFolder folder;
  folder.addSeries("bright", 3, bright, fastShutter, damage);
  folder.addSeries("dark", 3, dark, slow, [](const FrameFolder::Sample& sample) { sample(50, 20) = 900; });
  const auto pixels = ofKind(Kind::pixel, analyze(folder.urls(), ignore));
  ASSERT_THAT(pixels, SizeIs(1));
  EXPECT_EQ(pixels[0].x, 54);
}

TEST(CalibrationEngine, CountsButDoesNotMeasureGroupsOfTwoFiles) {
  FrameFolder folder;
  folder.addSeries("bright", 3, bright, fastShutter, damage).addSeries("slow", 2, bright, slow, damage);
  folder.add("none.dng", bright, {std::nullopt, std::nullopt}, damage);
  const CalibrationResult result = analyze(folder.urls(), ignore);
  EXPECT_EQ(result.brightFrameCount, 6);
  EXPECT_EQ(result.lineEvidenceFrameCount, 3);
  EXPECT_EQ(result.lineExposureGroupCount, 1);
  EXPECT_THAT(result.candidates, IsEmpty());
}

TEST(CalibrationEngine, TakesFilesWithoutExposureForOneGroup) {
  FrameFolder folder;
  folder.addSeries("bright", 3, bright, {std::nullopt, std::nullopt});
  EXPECT_EQ(analyze(folder.urls(), ignore).lineExposureGroupCount, 1);
}

// Noise, or the spread of the columns is too small for any test.
FrameFolder::Change noisyFrame(std::uint32_t seed, const FrameFolder::Change& change) {
  return [seed, change](const FrameFolder::Sample& sample) {
    std::uint32_t state = seed;
    for (std::int64_t y = 0; y < 220; ++y) {
      for (std::int64_t x = 0; x < 400; ++x) {
        state = state * 1664525U + 1013904223U;
        sample(x, y) = static_cast<std::uint16_t>(sample(x, y) + (state >> 29U));
      }
    }
    change(sample);
  };
}

// A column, and a pixel of which a trail hangs.
FrameFolder::Change columnDefects(int trail) {
  return [trail](const FrameFolder::Sample& sample) {
    for (std::int64_t y = 0; y < 220; ++y)
      sample(180, y) = static_cast<std::uint16_t>(sample(180, y) + 40);
    sample(240, 90) = 12000;
    for (std::int64_t y = 91; y < 220; ++y)
      sample(240, y) = static_cast<std::uint16_t>(sample(240, y) + trail);
  };
}

// Three frames of each exposure, which may be the same one.
FrameFolder columnFrames(const FrameExposure& laterExposure = slow, int laterTrail = -30) {
  FrameFolder folder(400, 220);
  for (std::uint32_t frame = 0; frame < 6; ++frame) {
    const bool isLater = frame >= 3;
    folder.add("frame-" + std::to_string(frame) + ".dng", bright, isLater ? laterExposure : fastShutter,
               noisyFrame(frame, columnDefects(isLater ? laterTrail : -30)));
  }
  return folder;
}

TEST(CalibrationEngine, ReportsColumnsThenPartialColumnsThenPixels) {
  const CalibrationResult result = analyze(columnFrames().urls(), ignore);
  EXPECT_EQ(result.lineEvidenceFrameCount, 6);
  EXPECT_EQ(result.lineExposureGroupCount, 2);
  const auto lines = ofKind(Kind::line, result);
  ASSERT_THAT(lines, SizeIs(2));
  const bool fullFirst = lines[0].x == 184;
  const CalibrationCandidate& full = lines[fullFirst ? 0 : 1];
  const CalibrationCandidate& partial = lines[fullFirst ? 1 : 0];
  EXPECT_EQ(full.yStart, 2);
  EXPECT_EQ(full.yEnd, 221);
  EXPECT_EQ(full.exposureGroupCount, 2);
  EXPECT_TRUE(full.evidenceSigma.has_value());
  EXPECT_EQ(partial.x, 244);
  EXPECT_EQ(partial.yStart, 92);
  EXPECT_EQ(partial.yEnd, 221);
  EXPECT_FALSE(partial.evidenceSigma.has_value());
  const auto pixels = ofKind(Kind::pixel, result);
  ASSERT_FALSE(pixels.empty());
  EXPECT_EQ(pixels[0].x, 244) << "the seed of the partial column stays a candidate";
}

TEST(CalibrationEngine, ReportsColumnsButNoPartialOnesAndNoPixelsOfOneExposure) {
  const CalibrationResult result = analyze(columnFrames(fastShutter).urls(), ignore);
  EXPECT_EQ(result.lineEvidenceFrameCount, 6);
  EXPECT_EQ(result.lineExposureGroupCount, 1);
  ASSERT_THAT(result.candidates, SizeIs(1));
  EXPECT_EQ(result.candidates[0].kind, Kind::line);
  EXPECT_EQ(result.candidates[0].x, 184);
  EXPECT_EQ(result.candidates[0].exposureGroupCount, 1);
  EXPECT_TRUE(result.candidates[0].evidenceSigma.has_value());
}

TEST(CalibrationEngine, KeepsThePixelOfATrailThatOneExposureShows) {
  const CalibrationResult result = analyze(columnFrames(slow, 0).urls(), ignore);
  const auto at = [](Kind kind) {
    return [kind](const CalibrationCandidate& candidate) { return candidate.kind == kind && candidate.x == 244; };
  };
  EXPECT_EQ(std::ranges::count_if(result.candidates, at(Kind::pixel)), 1);
  EXPECT_EQ(std::ranges::count_if(result.candidates, at(Kind::line)), 0);
}

TEST(CalibrationEngine, ChecksPartialColumnsInEveryMeasuredGroup) {
  Progress all = reports(columnFrames().urls());
  std::erase_if(all, [](const CalibrationProgress& report) { return !report.message.starts_with("Checking"); });
  ASSERT_THAT(all, SizeIs(6));
  EXPECT_EQ(all.front(), (CalibrationProgress{6, 6, "Checking partial defective column in frame-3.dng"}));
  EXPECT_EQ(all.back(), (CalibrationProgress{6, 6, "Checking partial defective column in frame-2.dng"}))
      << "by exposure key: 100-33333, then 100-8000";
}

std::vector<CalibrationCandidate> withoutIds(std::vector<CalibrationCandidate> candidates) {
  for (CalibrationCandidate& candidate : candidates)
    candidate.id = {};
  return candidates;
}

TEST(CalibrationEngine, FindsTheSameOnAnyNumberOfThreads) {
  const FrameFolder folder = columnFrames();
  const auto on = [&](int threads) { return CalibrationEngine::analyzeOnThreads(folder.urls(), ignore, threads); };
  const CalibrationResult expected = on(1);
  ASSERT_FALSE(expected.candidates.empty());
  for (const int threads : {2, 3, 8}) {
    EXPECT_EQ(withoutIds(on(threads).candidates), withoutIds(expected.candidates)) << threads << " threads";
    EXPECT_EQ(on(threads).preview, expected.preview);
  }
}

TEST(CalibrationEngine, GivesEveryCandidateItsOwnIdentity) {
  const CalibrationResult result = analyze(columnFrames().urls(), ignore);
  std::set<UUID> ids;
  for (const CalibrationCandidate& candidate : result.candidates)
    ids.insert(candidate.id);
  EXPECT_EQ(ids.size(), result.candidates.size());
}

TEST(CalibrationEngine, TakesTheSameFileSeveralTimes) {
  const FrameFolder folder = threeBrightFrames();
  const auto url = folder.urls().front();
  EXPECT_EQ(analyze({url, url, url}, ignore).brightFrameCount, 3);
}

TEST(CalibrationEngine, ReportsANameThatIsNotUTF8WithReplacements) {
  FrameFolder folder = threeBrightFrames();
  folder.add("z\xFF.dng", bright, fastShutter);
  EXPECT_EQ(reports(folder.urls())[3].message, "Reading z\xEF\xBF\xBD.dng");
}

TEST(CalibrationEngine, NeverChangesAFile) {
  const FrameFolder folder = threeBrightFrames();
  const auto before = tests::readBytes(folder.urls()[0]);
  (void)analyze(folder.urls(), ignore);
  EXPECT_EQ(tests::readBytes(folder.urls()[0]), before);
}

TEST(InspectionPreviewOfAFile, ComesWithItsMetadata) {
  const FrameFolder folder = threeBrightFrames();
  const auto [metadata, preview] = CalibrationEngine::makeInspectionPreview(folder.urls()[0]);
  const RawPlane plane = DNGReader::readPlane(folder.urls()[0]);
  EXPECT_EQ(metadata, plane.metadata);
  EXPECT_EQ(preview, CalibrationEngine::inspectionPreview(plane.samples, plane.metadata));
}

TEST(InspectionPreviewOfAFile, NamesAFileThatCannotBeRead) {
  try {
    (void)CalibrationEngine::makeInspectionPreview("/nowhere/photo.dng");
    FAIL();
  } catch (const DNGError& error) {
    EXPECT_EQ(error.kind(), Case::file);
    EXPECT_EQ(error.message(), "photo.dng");
  }
}

}  // namespace
}  // namespace tessaly
