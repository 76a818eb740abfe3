// `repair` over several files and folders, lists and trees of them, and in parts for several machines.
#include "cli/RepairScene.h"

#include <sys/stat.h>

namespace tessaly::tests {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

class SelectionTest : public RepairScene {};

TEST_F(SelectionTest, RepairsFilesAndFoldersInOneRunWithOneLog) {
  photographs({"more/L2.DNG", "single.dng", "left.dng"});
  const ProgramResult result = repair({"photos", "more", "single.dng", "--output", "out"});
  EXPECT_EQ(result.status, 0) << result.errors;
  for (const char* name : {"out/L1.DNG", "out/L2.DNG", "out/single.dng"})
    EXPECT_TRUE(isRepaired(name)) << name;
  EXPECT_THAT(filesBelow("out"), SizeIs(4)) << "three copies and one log";
  EXPECT_THAT(result.output, HasSubstr("Success: 3\nFailed: 0\nSkipped: 0"));
}

TEST_F(SelectionTest, OfMoreThanOneSourceNeedsAnOutputFolder) {
  photographs({"single.dng"});
  const ProgramResult result = repair({"photos", "single.dng"});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.errors, HasSubstr("tessaly-cli: More than one SOURCE needs --output\n"));
  EXPECT_THAT(filesBelow("."), UnorderedElementsAre("photos/L1.DNG", "single.dng", "p.json"));
}

TEST_F(SelectionTest, RefusesSourcesThatWouldMeetBeforeAnythingIsWritten) {
  photographs({"more/l1.dng"});
  const ProgramResult result = repair({"photos", "more", "--output", "out"});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.errors, HasSubstr("photos/L1.DNG and "));
  EXPECT_THAT(result.errors, HasSubstr("more/l1.dng\n"));
  EXPECT_FALSE(fs::exists(folder / "out"));
  EXPECT_EQ(repair({"photos", "more", "--output", "out", "--existing", "numberedCopy", "--no-log"}).status, 0);
  EXPECT_THAT(filesBelow("out"), UnorderedElementsAre("L1.DNG", "l1-2.dng"));
}

TEST_F(SelectionTest, TakesAFileThatIsNamedTwiceOnce) {
  EXPECT_EQ(repair({"photos", "photos/L1.DNG", "--output", "out", "--no-log"}).status, 0);
  EXPECT_THAT(filesBelow("out"), ElementsAre("L1.DNG"));
}

TEST_F(SelectionTest, CountsAMissingSourceAsFailedAndGoesOn) {
  const ProgramResult result = repair({"photos", "missing.dng", "--output", "out"});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(isRepaired("out/L1.DNG"));
  EXPECT_THAT(result.errors, HasSubstr("missing.dng: "));
  EXPECT_THAT(result.output, HasSubstr("Success: 1\nFailed: 1\n"));
}

TEST_F(SelectionTest, ReadsItsSourcesFromAList) {
  photographs({"a name.dng", "other.dng"});
  writeText(folder / "list", "a name.dng\n\nother.dng");
  EXPECT_EQ(repair({"--files-from", "list", "--output", "out", "--no-log"}).status, 0);
  EXPECT_THAT(filesBelow("out"), UnorderedElementsAre("a name.dng", "other.dng"));
  EXPECT_EQ(repair({"photos", "--files-from", "missing", "--output", "out"}).status, 1);
}

TEST_F(SelectionTest, ReadsNamesThatEndInZeroBytesFromStandardInput) {
  photographs({"line\nbreak.dng", "other.dng"});
  writeText(scratch / "list", std::string("line\nbreak.dng\0other.dng\0", 24));
  const ProgramResult result =
      run({"repair", "--files-from", "-", "-0", "--output", "out", "--no-log", "--profile", "p.json"},
          [list = scratch / "list"] { dup2(open(list.c_str(), O_RDONLY), STDIN_FILENO); });
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_THAT(filesBelow("out"), UnorderedElementsAre("line\nbreak.dng", "other.dng"));
}

TEST_F(SelectionTest, MirrorsATreeAndLeavesOutResultsLinksAndHiddenFolders) {
  photographs({"photos/day 2/L1.DNG", "photos/day 2/deep/x.dng", "photos/Tessaly Results/old.dng",
               "photos/.trash/gone.dng", "elsewhere/e.dng"});
  fs::create_directory_symlink(folder / "elsewhere", folder / "photos/link");
  for (int i = 0; i < 2; ++i)  // the second finds the first one's copies inside the tree
    EXPECT_EQ(repair({"photos", "--recursive", "--output", "photos/out", "--no-log"}).status, 0);
  EXPECT_THAT(filesBelow("photos/out"), UnorderedElementsAre("L1.DNG", "day 2/L1.DNG", "day 2/deep/x.dng"));
  EXPECT_TRUE(isRepaired("photos/out/day 2/deep/x.dng"));
}

TEST_F(SelectionTest, TakesEveryNthFileAndNamesItsLogAfterThePart) {
  photographs({"photos/L2.DNG", "photos/L3.DNG", "photos/L10.DNG"});
  EXPECT_EQ(repair({"photos", "--output", "out", "--shard", "2/3"}).status, 0);
  EXPECT_TRUE(isRepaired("out/L2.DNG"));
  const std::vector<std::string> files = filesBelow("out");
  ASSERT_THAT(files, SizeIs(2));
  EXPECT_THAT(files, testing::Contains(testing::MatchesRegex("Repair Log-.*Z 2 of 3\\.csv")));
  EXPECT_EQ(repair({"photos", "--output", "out", "--shard", "1/3", "--no-log"}).status, 0);
  EXPECT_EQ(repair({"photos", "--output", "out", "--shard", "3/3", "--no-log"}).status, 0);
  EXPECT_THAT(filesBelow("out"), SizeIs(5)) << "each file once, and one log";
}

TEST_F(SelectionTest, OfAPartWithoutAFileHasNothingToDo) {
  EXPECT_EQ(repair({"photos", "--output", "out", "--shard", "7/9", "--no-log"}).status, 0);
  EXPECT_THAT(filesBelow("out"), IsEmpty());
}

TEST_F(SelectionTest, RefusesAPartThatIsNone) {
  for (const char* part : {"0/3", "4/3", "1", "1/", "/2", "a/b", "1/2/3", "-1/2", "1/2 "})
    EXPECT_EQ(repair({"photos", "--shard", part}).status, 2) << part;
}

TEST_F(SelectionTest, ByFourProcessesOnOneFolderCopiesEachFileOnce) {
  constexpr int count = 12;
  for (int i = 0; i < count; ++i)
    photographs({"many/f" + std::to_string(i) + ".dng"});
  std::vector<pid_t> processes;
  for (int i = 0; i < 4; ++i) {
    const fs::path told = scratch / ("summary" + std::to_string(i));
    processes.push_back(
        start({"repair", "many", "--profile", "p.json", "--output", "out", "--no-log", "--summary", told}));
  }
  for (const pid_t process : processes)
    EXPECT_EQ(finish(process).status, 0);
  int succeeded = 0;
  int skipped = 0;
  for (int i = 0; i < 4; ++i) {
    const auto summary = nlohmann::json::parse(readText(scratch / ("summary" + std::to_string(i))));
    succeeded += summary["succeeded"].get<int>();
    skipped += summary["skipped"].get<int>();
  }
  EXPECT_EQ(succeeded, count);
  EXPECT_EQ(skipped, 3 * count);
  EXPECT_THAT(filesBelow("out"), SizeIs(count));
  for (int i = 0; i < count; ++i)
    EXPECT_TRUE(isRepaired("out/f" + std::to_string(i) + ".dng"));
}

class CompanionsTest : public RepairScene {};

TEST_F(CompanionsTest, LeavesDatesAndSidecarsAloneUnlessAsked) {
  writeText(folder / "photos/L1.xmp", "mine");
  const timespec old[] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, (folder / "photos/L1.DNG").c_str(), old, 0), 0);
  EXPECT_EQ(repair({"photos", "--output", "out", "--no-log"}).status, 0);
  EXPECT_THAT(filesBelow("out"), ElementsAre("L1.DNG"));
  EXPECT_NE(fs::last_write_time(folder / "out/L1.DNG"), fs::last_write_time(folder / "photos/L1.DNG"));
}

TEST_F(CompanionsTest, KeepsTheDateOfTheOriginal) {
  const timespec old[] = {{1'000'000'000, 123'456'789}, {1'000'000'000, 123'456'789}};
  ASSERT_EQ(utimensat(AT_FDCWD, (folder / "photos/L1.DNG").c_str(), old, 0), 0);
  EXPECT_EQ(repair({"photos", "--output", "out", "--keep-dates"}).status, 0);
  EXPECT_EQ(fs::last_write_time(folder / "out/L1.DNG"), fs::last_write_time(folder / "photos/L1.DNG"));
}

TEST_F(CompanionsTest, CopiesSidecarsUnderTheNameOfTheCopy) {
  for (const char* name : {"L1.xmp", "L1.DNG.xmp", "L1.DNG.pp3", "L1.txt"})
    writeText(folder / "photos" / name, name);
  EXPECT_EQ(repair({"photos", "--output", "out", "--no-log"}).status, 0);
  EXPECT_EQ(repair({"photos", "--output", "out", "--no-log", "--sidecars", "--existing", "numberedCopy"}).status, 0);
  EXPECT_THAT(filesBelow("out"),
              UnorderedElementsAre("L1.DNG", "L1-2.DNG", "L1-2.xmp", "L1-2.DNG.xmp", "L1-2.DNG.pp3"));
  EXPECT_EQ(readText(folder / "out/L1-2.DNG.pp3"), "L1.DNG.pp3");
}

TEST_F(CompanionsTest, NeverReplacesASidecarAndSaysSo) {
  writeText(folder / "photos/L1.xmp", "new");
  fs::create_directory(folder / "out");
  writeText(folder / "out/L1.xmp", "old");
  const ProgramResult result = repair({"photos", "--output", "out", "--sidecars"});
  EXPECT_EQ(result.status, 0) << "the photograph's copy stands";
  EXPECT_TRUE(isRepaired("out/L1.DNG"));
  EXPECT_EQ(readText(folder / "out/L1.xmp"), "old");
  EXPECT_THAT(result.errors, HasSubstr("L1.xmp: File exists\nCause: File exists\n"));
}

class ToldTest : public RepairScene {};

TEST_F(ToldTest, QuietlyNothingButWhatWentWrong) {
  const ProgramResult well = repair({"photos", "--output", "out", "-q"});
  EXPECT_EQ(well.status, 0);
  EXPECT_EQ(well.output + well.errors, "");
  writeText(folder / "photos/L2.DNG", "none");
  const ProgramResult failing = repair({"photos", "--output", "out", "--quiet"});
  EXPECT_EQ(failing.status, 1);
  EXPECT_EQ(failing.output, "");
  EXPECT_THAT(linesOf(failing.errors), SizeIs(2));
}

TEST_F(ToldTest, VerboselyWhereEachCopyIs) {
  const std::string original = fs::canonical(folder / "photos") / "L1.DNG";
  const std::string copy = fs::canonical(folder.path()) / "out" / "L1.DNG";
  EXPECT_THAT(repair({"photos", "--output", "out", "-v", "--no-log"}).errors,
              HasSubstr("\n  " + original + " → " + copy + "  1\n"));
  EXPECT_THAT(repair({"photos", "--output", "out", "-v", "--no-log"}).errors,
              HasSubstr("\n  " + original + " = " + copy + "\n"));
  EXPECT_EQ(repair({"photos", "-q", "-v"}).status, 2);
}

TEST_F(ToldTest, ByMetadataAloneWhatWouldHappen) {
  photographs({"photos/L2.DNG"});
  writeText(folder / "photos/x.NEF", "");
  fs::create_directory(folder / "out");
  writeText(folder / "out/L2.DNG", "taken");
  const ProgramResult result = repair({"photos", "--output", "out", "--dry-run", "--language", "en"});
  EXPECT_EQ(result.status, 1);
  const std::vector<std::string> lines = linesOf(result.output);
  ASSERT_THAT(lines, SizeIs(4));
  EXPECT_THAT(lines[0], testing::MatchesRegex("Fits: .*/photos/L1\\.DNG"));
  EXPECT_THAT(lines[1], testing::MatchesRegex("Skipped: .*/photos/L2\\.DNG"));
  EXPECT_THAT(lines[2], HasSubstr("Refused: x.NEF: This camera RAW format"));
  EXPECT_EQ(lines[3], "Nothing was written: 1 fit, 1 skipped, 1 refused");
  EXPECT_THAT(filesBelow("out"), ElementsAre("L2.DNG"));
  EXPECT_EQ(repair({"photos", "--output", "nowhere/out", "--dry-run"}).status, 1);
  EXPECT_FALSE(fs::exists(folder / "nowhere"));
}

}  // namespace
}  // namespace tessaly::tests
