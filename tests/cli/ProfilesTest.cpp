#include "cli/ProgramTest.h"
#include "dng/DNGReader.h"
#include "profile/CameraProfileJSON.h"
#include "tools/DNGBuilder.h"

namespace tessaly::tests {
namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;
using tools::DNGBuilder;

class ProfilesTest : public ProgramTest {
 protected:
  void SetUp() override {
    DNGBuilder().size(64, 48).uniqueModel("Body").serial("SN-1").write(folder / "a.dng");
    profile = CameraProfile::empty("Body 2", DNGReader::readMetadata(folder / "a.dng"));
    profile.pixels = {{1, 2, 1.0, "hot"}, {3, 4, 1.0, "hot"}};
    profile.lines = {{5, 0, 47, 1, 1.0, "column"}};
    save("p.json", profile);
  }

  void save(const std::string& name, const CameraProfile& saved) { writeText(folder / name, encodeProfile(saved)); }

  /// Puts it into the store as it is.
  void store(const CameraProfile& stored) {
    fs::create_directories(folderOfStore);
    writeText(folderOfStore / (stored.id.text() + ".json"), encodeProfile(stored));
  }

  static std::string id(const CameraProfile& of) { return of.id.text(); }

  CameraProfile profile;
  fs::path folderOfStore = home / "Tessaly" / "Profiles";
};

TEST_F(ProfilesTest, OfAnEmptyStoreAreNone) {
  const ProgramResult result = run({"profiles", "list"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "");
}

TEST_F(ProfilesTest, AreListedOneALineInNaturalOrder) {
  store(profile);
  CameraProfile other = profile;
  other.id = UUID::random();
  other.name = "body 10\twith\na\u2028break";
  other.cameraSerial.reset();
  other.spots.reset();
  other.pixels.clear();
  store(other);
  EXPECT_EQ(run({"profiles", "list"}).output,
            id(profile) + "\tBody 2\tBody\tSN-1\t2\t1\t0\n" + id(other) + "\tbody 10 with a break\tBody\t-\t0\t1\t0\n");
}

TEST_F(ProfilesTest, AreShownByPathIdOrName) {
  store(profile);
  for (const std::string& argument : {std::string("p.json"), id(profile), std::string("Body 2")}) {
    const ProgramResult result = run({"profiles", "show", argument});
    EXPECT_EQ(result.status, 0) << argument;
    EXPECT_EQ(result.output, encodeProfile(profile)) << argument;
  }
  std::string lower = id(profile);
  for (char& character : lower)
    character = static_cast<char>(std::tolower(character));
  EXPECT_EQ(run({"profiles", "show", lower}).status, 0);
}

TEST_F(ProfilesTest, OfAPathLeaveTheStoreAlone) {
  EXPECT_EQ(run({"profiles", "show", "p.json"}).status, 0);
  EXPECT_EQ(run({"profiles", "validate", "p.json", "a.dng"}).status, 0);
  EXPECT_FALSE(fs::exists(home));
  fs::create_directories(folderOfStore);
  writeText(folderOfStore / "broken.json", "{");
  EXPECT_EQ(run({"profiles", "show", "p.json"}).status, 0) << "a broken store does not matter";
}

TEST_F(ProfilesTest, GivenByAPathAreTriedFirst) {
  store(profile);
  CameraProfile named = profile;
  named.id = UUID::random();
  save("Body 2", named);
  EXPECT_EQ(run({"profiles", "show", "Body 2"}).output, encodeProfile(named));
}

TEST_F(ProfilesTest, MayHaveTheNameOfAFolder) {
  store(profile);
  fs::create_directory(folder / "Body 2");
  EXPECT_EQ(run({"profiles", "show", "Body 2"}).output, encodeProfile(profile));
}

TEST_F(ProfilesTest, OfOneNameNeedTheirId) {
  store(profile);
  CameraProfile twin = profile;
  twin.id = UUID::random();
  store(twin);
  const ProgramResult result = run({"profiles", "show", "Body 2"});
  EXPECT_EQ(result.status, 1);
  ASSERT_THAT(linesOf(result.errors), SizeIs(2));
  EXPECT_THAT(result.errors, StartsWith("Body 2: "));
  EXPECT_EQ(run({"profiles", "show", id(twin)}).status, 0);
}

TEST_F(ProfilesTest, ThatAreMissingOrUnreadableAreTwoLines) {
  EXPECT_EQ(run({"profiles", "show", "nobody.json"}).errors,
            "nobody.json: No such file or directory\nCause: No such file or directory\n");
  writeText(folder / "broken.json", "{\"version\": 4");
  const ProgramResult broken = run({"profiles", "show", "broken.json"});
  EXPECT_EQ(broken.status, 1);
  ASSERT_THAT(linesOf(broken.errors), SizeIs(2));
  EXPECT_EQ(linesOf(broken.errors)[0], "broken.json: This profile is invalid or uses an unsupported version.");
  EXPECT_THAT(linesOf(broken.errors)[1], StartsWith("Cause: "));
  fs::create_symlink("nowhere", folder / "dangling.json");
  EXPECT_EQ(run({"profiles", "show", "dangling.json"}).errors,
            "dangling.json: No such file or directory\nCause: No such file or directory\n");
}

TEST_F(ProfilesTest, OfAnUnknownNameAreNotThere) {
  EXPECT_EQ(run({"profiles", "show", "My Bdy"}).errors,
            "My Bdy: No stored profile has this name\nCause: No stored profile has this name\n"
            "No camera profile is stored.\n");
  store(profile);
  CameraProfile other = profile;
  other.id = UUID::random();
  other.name = "My Body";
  store(other);
  const ProgramResult result = run({"repair", "a.dng", "--profile", "My Bdy", "--language", "fr"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors,
            "My Bdy: Aucun profil enregistré ne porte ce nom\nCause: No stored profile has this name\n"
            "Profils enregistrés\u00a0: Body 2, My Body\n");
}

TEST_F(ProfilesTest, OfAStoreThatCannotBeReadNameTheFile) {
  store(profile);
  writeText(folderOfStore / "broken.json", "[]");
  const ProgramResult result = run({"profiles", "list"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.errors, StartsWith((folderOfStore / "broken.json").string() + ": "));
  EXPECT_THAT(linesOf(result.errors), SizeIs(2));
}

TEST_F(ProfilesTest, ThatFitAFileAreSilent) {
  const ProgramResult result = run({"profiles", "validate", "p.json", "a.dng"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "");
}

TEST_F(ProfilesTest, ThatDoNotFitAFileSayWhy) {
  DNGBuilder().size(64, 48).uniqueModel("Body").serial("SN-2").write(folder / "b.dng");
  const ProgramResult result = run({"profiles", "validate", "p.json", "b.dng"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.errors, StartsWith("b.dng: This file doesn't match the camera profile"));
  EXPECT_THAT(result.errors, HasSubstr("\nCause: Camera profile mismatch: Camera serial differs or is missing\n"));
}

TEST_F(ProfilesTest, AreDecodedNotHeldToTheImportRules) {
  profile.version = 2;
  profile.name = "";
  save("old.json", profile);
  EXPECT_EQ(run({"profiles", "validate", "old.json", "a.dng"}).status, 0);
  EXPECT_EQ(run({"profiles", "import", "old.json"}).status, 1);
}

TEST_F(ProfilesTest, AreImportedAsNewCopies) {
  for (int i = 0; i < 2; ++i) {
    const ProgramResult result = run({"profiles", "import", "p.json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("\tBody 2\tBody\tSN-1\t2\t1\t0\n"));
    EXPECT_EQ(result.errors, "Imported profile saved as a new copy.\n");
  }
  EXPECT_THAT(linesOf(run({"profiles", "list"}).output), SizeIs(2));
}

TEST_F(ProfilesTest, AreNotImportedWhenTheyAreInvalid) {
  writeText(folder / "empty.json", "");
  EXPECT_EQ(run({"profiles", "import", "empty.json", "--language", "fr"}).errors,
            "empty.json: Ce profil n’est pas valide ou utilise une version non prise en charge.\n"
            "Cause: Profile file size\n");
  EXPECT_EQ(run({"profiles", "import", "missing.json"}).errors,
            "missing.json: No such file or directory\nCause: No such file or directory\n");
}

TEST_F(ProfilesTest, AreExportedOverAnEarlierFile) {
  store(profile);
  writeText(folder / "out.json", "earlier");
  const ProgramResult result = run({"profiles", "export", "Body 2", "out.json"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "Profile exported.\n");
  EXPECT_EQ(readText(folder / "out.json"), encodeProfile(profile));
}

TEST_F(ProfilesTest, AreNeverExportedOverAFileThatIsRead) {
  store(profile);
  const fs::path stored = folderOfStore / (id(profile) + ".json");
  EXPECT_EQ(run({"profiles", "export", "p.json", "./p.json"}).status, 2);
  EXPECT_EQ(run({"profiles", "export", "Body 2", stored.string()}).status, 2);
  EXPECT_EQ(readText(stored), encodeProfile(profile));
}

TEST_F(ProfilesTest, AreNeverExportedOverAPhotograph) {
  const std::string photograph = readText(folder / "a.dng");
  const ProgramResult result = run({"profiles", "export", "p.json", "a.dng"});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.errors, HasSubstr("a.dng: Output exists\n"));
  EXPECT_EQ(readText(folder / "a.dng"), photograph);
}

TEST_F(ProfilesTest, AreExportedToStandardOutput) {
  const ProgramResult result = run({"profiles", "export", "p.json", "-"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, encodeProfile(profile));
  EXPECT_FALSE(fs::exists(folder / "-"));
}

TEST_F(ProfilesTest, SayWhyTheyCannotBeExported) {
  const ProgramResult result = run({"profiles", "export", "p.json", "nowhere/out.json"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors, "out.json: No such file or directory\nCause: No such file or directory\n");
}

TEST_F(ProfilesTest, AreDeletedFromTheStore) {
  store(profile);
  EXPECT_EQ(run({"profiles", "delete", "Body 2"}).status, 0);
  EXPECT_EQ(run({"profiles", "list"}).output, "");
  EXPECT_EQ(run({"profiles", "delete", "Body 2"}).status, 1);
}

TEST_F(ProfilesTest, AreDeletedByTheirFileInTheStore) {
  store(profile);
  writeText(folderOfStore / "broken.json", "{");
  writeText(folderOfStore / "other.json.unreadable", "{");
  fs::create_directory(folderOfStore / "folder");
  EXPECT_EQ(run({"profiles", "delete", "broken.json"}).status, 0);
  EXPECT_EQ(run({"profiles", "delete", (folderOfStore / "other.json.unreadable").string()}).status, 0);
  EXPECT_EQ(run({"profiles", "delete", "folder"}).status, 1);
  EXPECT_FALSE(fs::exists(folderOfStore / "broken.json"));
  EXPECT_FALSE(fs::exists(folderOfStore / "other.json.unreadable"));
  EXPECT_TRUE(fs::exists(folderOfStore / "folder"));
  EXPECT_THAT(run({"profiles", "list"}).output, StartsWith(id(profile))) << "nothing else is gone";
}

TEST_F(ProfilesTest, GivenByAPathElsewhereAreNotTakenForAFileOfTheStore) {
  store(profile);
  writeText(folderOfStore / "p.json", "{");
  EXPECT_EQ(run({"profiles", "delete", "p.json"}).status, 0);
  EXPECT_TRUE(fs::exists(folderOfStore / "p.json"));
  EXPECT_FALSE(fs::exists(folderOfStore / (id(profile) + ".json")));
}

TEST_F(ProfilesTest, OfTheEarlierApplicationComeBackWhenTheyAreDeleted) {
  const fs::path earlier = home / "Orvendel" / "Profiles" / (id(profile) + ".json");
  fs::create_directories(earlier.parent_path());
  writeText(earlier, encodeProfile(profile));
  const ProgramResult result = run({"profiles", "delete", "Body 2"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.errors, "This profile comes back: it also lies in " + earlier.string() + "\n");
  EXPECT_TRUE(fs::exists(earlier));
  const std::string aside = earlier.filename().string() + ".unreadable";
  store(profile);
  writeText(folderOfStore / aside, "{");
  EXPECT_EQ(run({"profiles", "delete", "Body 2"}).errors, "") << "what was set aside is not copied again";
  EXPECT_THAT(run({"profiles", "delete", aside}).errors, StartsWith("This profile comes back: "));
  fs::remove(earlier);
  store(profile);
  EXPECT_EQ(run({"profiles", "delete", "Body 2"}).errors, "");
}

TEST_F(ProfilesTest, GivenByAPathAreDeletedFromTheStoreOnly) {
  store(profile);
  EXPECT_EQ(run({"profiles", "delete", "p.json"}).status, 0);
  EXPECT_TRUE(fs::exists(folder / "p.json"));
  EXPECT_EQ(run({"profiles", "list"}).output, "");
  const ProgramResult again = run({"profiles", "delete", "p.json"});
  EXPECT_EQ(again.status, 1) << "it is not in the store";
  EXPECT_EQ(again.errors, "p.json: No such file or directory\nCause: No such file or directory\n");
}

TEST_F(ProfilesTest, OfTheEarlierApplicationAreListed) {
  fs::create_directories(home / "Orvendel" / "Profiles");
  writeText(home / "Orvendel" / "Profiles" / "old.json", encodeProfile(profile));
  EXPECT_THAT(run({"profiles", "list"}).output, StartsWith(id(profile)));
  EXPECT_TRUE(fs::exists(folderOfStore / "old.json"));
}

}  // namespace
}  // namespace tessaly::tests
