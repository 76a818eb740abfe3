#include "house/HouseRules.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

namespace tessaly::house {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::filesystem::path project = TESSALY_SOURCE_FOLDER;

TEST(House, IncludesOnlyDownwards) {
  EXPECT_THAT(upwardIncludes(project), IsEmpty());
}

TEST(House, EntersNoOtherFoldersRooms) {
  EXPECT_THAT(intrusions(project), IsEmpty());
}

TEST(House, NamesEverySourceAfterAHeader) {
  EXPECT_THAT(sourcesWithoutHeader(project), IsEmpty());
}

TEST(House, KeepsQtInTheWindow) {
  EXPECT_THAT(toolkitIncludes(project), IsEmpty());
}

TEST(House, ReadsCostlyHeadersWhereTheyAreUsed) {
  EXPECT_THAT(costlyIncludes(project), IsEmpty());
}

TEST(House, DependsOnNoLocale) {
  EXPECT_THAT(localeBoundCalls(project), IsEmpty());
}

TEST(House, ListsEachPackageOnceAndAllThatCMakeLooksFor) {
  EXPECT_THAT(packageFaults(project), IsEmpty());
}

TEST(House, BuildsEverySource) {
  EXPECT_THAT(unbuiltSources(project), IsEmpty());
}

TEST(House, HasShortFiles) {
  EXPECT_THAT(longFiles(project), IsEmpty());
}

TEST(House, HasHeadersThatSayWhatTheyAre) {
  EXPECT_THAT(silentHeaders(project), IsEmpty());
}

// A small project with one fault in it, to see that each rule can fail.
class PlantedFault : public testing::Test {
 protected:
  void plant(const std::string& path, const std::string& text) {
    std::filesystem::create_directories((root / path).parent_path());
    tests::writeText(root / path, text);
  }

  tests::TemporaryFolder folder;
  std::filesystem::path root = folder / "project";
};

TEST_F(PlantedFault, OfTheFloorsIsSeen) {
  plant("src/dng/Fine.cpp", "#include \"dng/Fine.h\"\n#include \"platform/UUID.h\"\n#include <vector>\n");
  EXPECT_THAT(upwardIncludes(root), IsEmpty());
  plant("src/dng/Reader.cpp", "// A reader.\n#include \"repair/RepairEngine.h\"\n");
  plant("src/profile/Level.h", "#include \"preferences/Languages.h\"\n");
  plant("src/store/Outside.h", "#include \"tools/DNGBuilder.h\"\n");
  EXPECT_THAT(upwardIncludes(root), ElementsAre("src/dng/Reader.cpp:2: includes repair/RepairEngine.h",
                                                "src/profile/Level.h:1: includes preferences/Languages.h",
                                                "src/store/Outside.h:1: includes tools/DNGBuilder.h"));
}

TEST_F(PlantedFault, OfARoomThatIsEnteredIsSeen) {
  plant("src/dng/tiff/Walk.cpp", "#include \"dng/tiff/Bytes.h\"\n#include \"platform/Text.h\"\n");
  plant("src/store/Store.cpp", "#include \"dng/DNGReader.h\"\n#include <nlohmann/json.hpp>\n");
  plant("src/cli/Calibrate.cpp", "#include \"calibration/review/Preselection.h\"\n");
  plant("src/repair/Copy.cpp", "#include \"dng/copy/SourceImage.h\"\n");
  EXPECT_THAT(intrusions(root), IsEmpty());
  plant("src/cli/Samples.cpp", "\n#include \"dng/samples/RawPlaneSource.h\"\n");
  plant("src/repair/Map.h", "#include \"dng/tiff/Bytes.h\"\n");
  EXPECT_THAT(
      intrusions(root),
      ElementsAre("src/cli/Samples.cpp:2: includes dng/samples/RawPlaneSource.h, which is not in that folder's face",
                  "src/repair/Map.h:1: includes dng/tiff/Bytes.h, which is not in that folder's face"));
}

TEST_F(PlantedFault, OfASourceWithoutAHeaderIsSeen) {
  plant("src/dng/Reader.h", "// A reader.\n");
  plant("src/dng/Reader.cpp", "\n");
  plant("src/dng/ReaderLimits.cpp", "\n");
  plant("src/cli/main.cpp", "\n");
  EXPECT_THAT(sourcesWithoutHeader(root), IsEmpty());
  plant("src/dng/Readership.cpp", "\n");
  plant("src/dng/tiff/Reader.cpp", "\n");
  EXPECT_THAT(sourcesWithoutHeader(root),
              ElementsAre("src/dng/Readership.cpp has no header and is not named after one beside it",
                          "src/dng/tiff/Reader.cpp has no header and is not named after one beside it"));
}

TEST_F(PlantedFault, OfTheToolkitIsSeen) {
  plant("src/app/Window.h", "#include <QWidget>\n");
  EXPECT_THAT(toolkitIncludes(root), IsEmpty());
  plant("src/preferences/Settings.cpp", "#include <QSettings>\n");
  plant("src/repair/Map.cpp", "#include <QtCore/QString>\n");
  EXPECT_THAT(toolkitIncludes(root), ElementsAre("src/preferences/Settings.cpp:1: includes QSettings",
                                                 "src/repair/Map.cpp:1: includes QtCore/QString"));
}

TEST_F(PlantedFault, OfACostlyHeaderIsSeen) {
  plant("src/cli/Grammar.cpp", "#include <CLI/CLI.hpp>\n");
  plant("src/store/Store.cpp", "#include <nlohmann/json.hpp>\n");
  plant("src/store/Store.h", "#include <nlohmann/json_fwd.hpp>\n");
  EXPECT_THAT(costlyIncludes(root), IsEmpty());
  plant("src/cli/Program.h", "#include <CLI/App.hpp>\n");
  plant("src/store/Store.h", "#include <nlohmann/json.hpp>\n");
  EXPECT_THAT(costlyIncludes(root), ElementsAre("src/cli/Program.h:1: includes CLI/App.hpp",
                                                "src/store/Store.h:1: includes nlohmann/json.hpp"));
}

TEST_F(PlantedFault, OfTheLocaleIsSeen) {
  plant("src/batch/Log.cpp", "fmt::print(\"{}\", 1.5);\nstd::snprintf(text, 9, \"%g\", 1.5);\n");
  EXPECT_THAT(localeBoundCalls(root), ElementsAre("src/batch/Log.cpp:2: snprintf depends on the locale"));
}

TEST_F(PlantedFault, OfThePackagesIsSeen) {
  plant("packages.txt", "# What is needed\n\n[build]\ng++\nlibfmt-dev\nqt6-base-dev\n[test]\ng++\n");
  plant("CMakeLists.txt", "find_package(fmt CONFIG REQUIRED)\n  find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Svg)\n");
  plant("cmake/More.cmake", "pkg_check_modules(UUID REQUIRED IMPORTED_TARGET uuid)\nfind_package(Novelty)\n");
  EXPECT_THAT(packageFaults(root),
              ElementsAre("packages.txt: lists g++ twice", "CMakeLists.txt:2: packages.txt lacks qt6-svg-dev for Svg",
                          "cmake/More.cmake:1: packages.txt lacks uuid-dev for uuid",
                          "cmake/More.cmake:2: no package is known here for Novelty"));
}

TEST_F(PlantedFault, OfASourceThatNobodyBuildsIsSeen) {
  plant("tests/dng/CMakeLists.txt", "tessaly_test(t ATest.cpp\n  \"../support/Own.cpp\")\n");
  plant("tests/dng/ATest.cpp", "\n");
  plant("tests/support/Own.cpp", "\n");
  EXPECT_THAT(unbuiltSources(root), IsEmpty());
  plant("tests/dng/LostTest.cpp", "\n");
  plant("tests/platform/ATest.cpp", "\n");
  EXPECT_THAT(unbuiltSources(root),
              ElementsAre("tests/dng/LostTest.cpp is not built", "tests/platform/ATest.cpp is not built"));
}

TEST_F(PlantedFault, OfLengthIsSeen) {
  plant("src/dng/Long.cpp", std::string(400, '\n'));
  EXPECT_THAT(longFiles(root), IsEmpty());
  plant("src/dng/Long.cpp", std::string(401, '\n'));
  EXPECT_THAT(longFiles(root), ElementsAre("src/dng/Long.cpp has 401 lines"));
}

TEST_F(PlantedFault, OfASilentHeaderIsSeen) {
  plant("src/dng/Mute.h", "#pragma once\n");
  EXPECT_THAT(silentHeaders(root), ElementsAre("src/dng/Mute.h does not say what it is"));
}

TEST_F(PlantedFault, InABuildFolderIsNotLookedAt) {
  plant("build/generated/moc_Window.cpp", "\n");
  plant(".git/x.cpp", "\n");
  EXPECT_THAT(unbuiltSources(root), IsEmpty());
}

}  // namespace
}  // namespace tessaly::house
