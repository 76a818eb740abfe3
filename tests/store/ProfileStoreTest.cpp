// The profile store in a folder of its own: TESSALY_HOME stands for the user's folders.
#include "localization/Localization.h"
#include "profile/CameraProfileJSON.h"
#include "store/ProfileStore.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <string>
#include <system_error>
#include <thread>

namespace tessaly {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;

class ProfileStoreTest : public testing::Test {
 protected:
  void SetUp() override {
    setenv("TESSALY_HOME", home.path().c_str(), 1);
    Localization::setLanguageOverride(AppLanguage::english);
  }

  void TearDown() override { Localization::setLanguageOverride(std::nullopt); }

  static CameraProfile profileNamed(const std::string& name) {
    CameraProfile profile;
    profile.id = UUID::random();
    profile.name = name;
    profile.cameraModel = "M";
    profile.rawWidth = 100;
    profile.rawHeight = 80;
    profile.activeWidth = 100;
    profile.activeHeight = 80;
    profile.createdAt = *parseISO8601("2026-11-15T20:23:12Z");
    profile.pixels = {{3, 4, 0.99, "hot"}};
    profile.spots.emplace();
    return profile;
  }

  /// A profile file outside the store.
  fs::path fileOf(const CameraProfile& profile) {
    fs::path file = home / "elsewhere.json";
    tests::writeText(file, encodeProfile(profile));
    return file;
  }

  static std::vector<std::string> storedNames() {
    std::vector<std::string> names;
    for (const CameraProfile& profile : ProfileStore::loadAll())
      names.push_back(profile.name);
    return names;
  }

  static std::vector<std::string> entriesOf(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
      names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
  }

  fs::path makeFolder(const fs::path& folder) {
    fs::create_directories(folder);
    return folder;
  }

  tests::TemporaryFolder home;
  fs::path store = home / "Tessaly" / "Profiles";
  fs::path legacy = home / "Orvendel" / "Profiles";
};

TEST_F(ProfileStoreTest, IsNeverWrittenThroughALink) {
  const CameraProfile profile = profileNamed("Body");
  tests::writeText(home / "precious", "untouched");
  fs::create_symlink(home / "precious", makeFolder(store) / (profile.id.text() + ".json"));
  const fs::path file = ProfileStore::save(profile);
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(file)));
  EXPECT_EQ(ProfileStore::loadAll().at(0).name, "Body");
  EXPECT_EQ(tests::readText(home / "precious"), "untouched");
}

TEST_F(ProfileStoreTest, LiesInTheUsersFolderAndIsNotCreatedByAsking) {
  EXPECT_EQ(ProfileStore::directory(), store);
  EXPECT_FALSE(fs::exists(store));
}

TEST_F(ProfileStoreTest, IsEmptyAtFirstAndThenExists) {
  EXPECT_THAT(ProfileStore::loadAll(), IsEmpty());
  EXPECT_TRUE(fs::is_directory(store));
}

TEST_F(ProfileStoreTest, KeepsAProfileInAFileNamedAfterItsId) {
  const CameraProfile profile = profileNamed("Body");
  const fs::path file = ProfileStore::save(profile);
  EXPECT_EQ(file, store / (profile.id.text() + ".json"));
  EXPECT_EQ(file, ProfileStore::fileOf(profile));
  EXPECT_EQ(tests::readText(file), encodeProfile(profile));
  EXPECT_THAT(ProfileStore::loadAll(), ElementsAre(profile));
  EXPECT_THAT(entriesOf(store), ElementsAre(profile.id.text() + ".json")) << "no temporary file stays";
}

TEST_F(ProfileStoreTest, ReplacesAnEarlierVersionOfTheSameProfile) {
  CameraProfile profile = profileNamed("Before");
  ProfileStore::save(profile);
  profile.name = "After";
  ProfileStore::save(profile);
  EXPECT_THAT(storedNames(), ElementsAre("After"));
}

TEST_F(ProfileStoreTest, GoesByTheFilesNameNotItsContent) {
  const CameraProfile profile = profileNamed("Body");
  ProfileStore::save(profile);
  const fs::path renamed = store / "renamed.json";
  fs::rename(ProfileStore::fileOf(profile), renamed);
  ProfileStore::remove(profile);
  EXPECT_TRUE(fs::exists(renamed));
  EXPECT_THAT(storedNames(), ElementsAre("Body"));
}

TEST_F(ProfileStoreTest, SortsNamesAsAFileBrowserDoes) {
  for (const char* name : {"body 10", "Zeta", "alpha", "Body 2", "Äpfel"})
    ProfileStore::save(profileNamed(name));
  EXPECT_THAT(storedNames(), ElementsAre("alpha", "Äpfel", "Body 2", "body 10", "Zeta"));
}

TEST_F(ProfileStoreTest, SortsEqualNamesById) {
  std::vector<std::string> ids;
  for (int i = 0; i < 8; ++i) {
    const CameraProfile profile = profileNamed("Same");
    ids.push_back(profile.id.text());
    ProfileStore::save(profile);
  }
  std::ranges::sort(ids);
  std::vector<std::string> listed;
  for (const CameraProfile& profile : ProfileStore::loadAll())
    listed.push_back(profile.id.text());
  EXPECT_EQ(listed, ids);
}

TEST_F(ProfileStoreTest, SkipsWhatIsNoProfileFile) {
  makeFolder(store);
  for (const char* name : {"notes.txt", "a.JSON", ".hidden.json", ".1234.partial", "json", ".json"})
    tests::writeText(store / name, "no profile");
  fs::create_directory(store / "folder");
  EXPECT_THAT(ProfileStore::loadAll(), IsEmpty());
}

TEST_F(ProfileStoreTest, FailsAsAWholeForOneFileThatIsNoProfile) {
  ProfileStore::save(profileNamed("Good"));
  tests::writeText(store / "broken.json", "{\"version\": 4");
  try {
    static_cast<void>(ProfileStore::loadAll());
    FAIL() << "nothing thrown";
  } catch (const UnreadableProfile& error) {
    EXPECT_EQ(error.what(), (store / "broken.json").string() + ": " + error.reason());
    EXPECT_EQ(error.file(), store / "broken.json");
    EXPECT_FALSE(error.reason().empty());
  }
}

TEST_F(ProfileStoreTest, FailsForAProfileNameThatIsNoRegularFile) {
  fs::create_directories(store / "folder.json");
  EXPECT_THROW(static_cast<void>(ProfileStore::loadAll()), UnreadableProfile);
  fs::remove(store / "folder.json");
  ASSERT_EQ(mkfifo((store / "pipe.json").c_str(), 0600), 0);
  EXPECT_THROW(static_cast<void>(ProfileStore::loadAll()), UnreadableProfile);
  fs::remove(store / "pipe.json");
  fs::create_symlink("nowhere", store / "link.json");
  EXPECT_THROW(static_cast<void>(ProfileStore::loadAll()), UnreadableProfile);
}

TEST_F(ProfileStoreTest, SetsAFileAsideThatCannotBeRead) {
  ProfileStore::save(profileNamed("Good"));
  for (const char* expected : {"broken.json.unreadable", "broken.json.unreadable-2", "broken.json.unreadable-3"}) {
    tests::writeText(store / "broken.json", expected);
    EXPECT_THROW(static_cast<void>(ProfileStore::loadAll()), UnreadableProfile);
    EXPECT_EQ(ProfileStore::setAside(store / "broken.json"), store / expected);
    EXPECT_EQ(tests::readText(store / expected), expected);
    EXPECT_THAT(storedNames(), ElementsAre("Good"));
  }
  EXPECT_EQ(tests::readText(store / "broken.json.unreadable"), "broken.json.unreadable") << "nothing is replaced";
}

TEST_F(ProfileStoreTest, DoesNotCopyAnEarlierFileAgainThatWasSetAside) {
  makeFolder(legacy);
  tests::writeText(legacy / "broken.json", "no profile");
  EXPECT_THROW(static_cast<void>(ProfileStore::loadAll()), UnreadableProfile);
  ProfileStore::setAside(store / "broken.json");
  EXPECT_THAT(ProfileStore::loadAll(), IsEmpty());
  EXPECT_THAT(entriesOf(store), ElementsAre("broken.json.unreadable"));
}

TEST_F(ProfileStoreTest, CannotSetAsideWhatIsNotThere) {
  makeFolder(store);
  EXPECT_THROW(ProfileStore::setAside(store / "gone.json"), std::system_error);
}

/// Waits until a file of the folder is opened; gives its name. The folder itself, opened before, has none.
std::string firstOpenedIn(int watch) {
  alignas(inotify_event) std::array<char, 4096> events{};
  for (ssize_t length = 0; (length = ::read(watch, events.data(), events.size())) > 0;) {
    for (const char* next = events.data(); next < events.data() + length;) {
      const auto* const event = reinterpret_cast<const inotify_event*>(next);
      if (event->len > 0) return event->name;
      next += sizeof(inotify_event) + event->len;
    }
  }
  return "";
}

// They are large, so that reading one leaves the other time to delete the rest.
TEST_F(ProfileStoreTest, DoesNotMissAProfileThatAnotherDeletesWhileTheListIsRead) {
  CameraProfile profile = profileNamed("Body");
  profile.pixels = std::vector<DefectPixel>(20'000, profile.pixels.front());
  for (int number = 0; number < 4; ++number) {
    profile.id = UUID::random();
    ProfileStore::save(profile);
  }
  const int watch = ::inotify_init1(IN_CLOEXEC);
  ASSERT_GE(::inotify_add_watch(watch, store.c_str(), IN_OPEN), 0);
  std::jthread other([&] {
    const std::string first = firstOpenedIn(watch);
    for (const fs::path& file : ProfileStore::files()) {
      if (file.filename() != first) fs::remove(file);
    }
  });
  EXPECT_NO_THROW(EXPECT_THAT(storedNames(), testing::Contains("Body")));
  other.join();
  ::close(watch);
}

TEST_F(ProfileStoreTest, RemovesAProfile) {
  const CameraProfile kept = profileNamed("Kept");
  const CameraProfile removed = profileNamed("Removed");
  ProfileStore::save(kept);
  ProfileStore::save(removed);
  ProfileStore::remove(removed);
  EXPECT_THAT(storedNames(), ElementsAre("Kept"));
}

TEST_F(ProfileStoreTest, RemovesAMissingProfileWithoutAnError) {
  EXPECT_NO_THROW(ProfileStore::remove(profileNamed("Never saved")));
  EXPECT_FALSE(fs::exists(store));
}

TEST_F(ProfileStoreTest, ImportsACopyUnderANewIdEachTime) {
  const CameraProfile original = profileNamed("Body");
  const fs::path file = fileOf(original);
  const CameraProfile first = ProfileStore::importProfile(file);
  const CameraProfile second = ProfileStore::importProfile(file);
  EXPECT_NE(first.id, original.id);
  EXPECT_NE(first.id, second.id);
  EXPECT_THAT(storedNames(), ElementsAre("Body", "Body"));
  CameraProfile copy = first;
  copy.id = original.id;
  EXPECT_EQ(copy, original) << "nothing but the id changes";
}

TEST_F(ProfileStoreTest, ImportsAFileOfOneToFiveMillionBytes) {
  const fs::path file = fileOf(profileNamed("Body"));
  const std::string json = tests::readText(file);
  tests::writeText(file, json + std::string(5'000'000 - json.size(), ' '));
  EXPECT_NO_THROW(ProfileStore::importProfile(file));
  tests::writeText(file, json + std::string(5'000'001 - json.size(), ' '));
  EXPECT_THROW(ProfileStore::importProfile(file), InvalidProfile);
  tests::writeText(file, "");
  EXPECT_THROW(ProfileStore::importProfile(file), InvalidProfile);
  EXPECT_EQ(storedNames().size(), 1U);
}

TEST_F(ProfileStoreTest, ImportsNoFileThatIsNoProfile) {
  const fs::path file = home / "elsewhere.json";
  for (const std::string text : {"x", "[]", "{}", "null", "\xff\xfe"}) {
    tests::writeText(file, text);
    EXPECT_THROW(ProfileStore::importProfile(file), InvalidProfile) << text;
  }
  EXPECT_THROW(ProfileStore::importProfile(home.path()), InvalidProfile) << "a folder";
  EXPECT_FALSE(fs::exists(store)) << "nothing was saved";
}

TEST_F(ProfileStoreTest, PassesOnWhyAFileCannotBeRead) {
  EXPECT_THROW(ProfileStore::importProfile(home / "missing.json"), std::system_error);
}

TEST_F(ProfileStoreTest, TellsTheUserInTheLanguageOfTheInterface) {
  const fs::path file = home / "empty.json";
  tests::writeText(file, "");
  const auto words = [&file](AppLanguage language) {
    Localization::setLanguageOverride(language);
    try {
      ProfileStore::importProfile(file);
    } catch (const InvalidProfile& error) {
      return std::string(error.what());
    }
    return std::string("nothing thrown");
  };
  EXPECT_EQ(words(AppLanguage::english), "This profile is invalid or uses an unsupported version.");
  EXPECT_EQ(words(AppLanguage::chinese), "此配置文件无效或使用了不受支持的版本。");
  EXPECT_EQ(words(AppLanguage::french), "Ce profil n’est pas valide ou utilise une version non prise en charge.");
}

TEST_F(ProfileStoreTest, ExportsTheJSONFormOverAnEarlierFile) {
  const CameraProfile profile = profileNamed("Body");
  const fs::path file = home / "Tessaly-Profile.json";
  tests::writeText(file, "something longer and older");
  ProfileStore::exportProfile(profile, file);
  EXPECT_EQ(tests::readText(file), encodeProfile(profile));
  EXPECT_FALSE(fs::exists(store));
}

TEST_F(ProfileStoreTest, ExportsNothingIntoAFolderThatIsMissing) {
  EXPECT_THROW(ProfileStore::exportProfile(profileNamed("Body"), home / "missing" / "x.json"), std::system_error);
}

TEST_F(ProfileStoreTest, TakesOverTheProfilesOfTheEarlierApplication) {
  makeFolder(legacy);
  const CameraProfile old = profileNamed("Old");
  tests::writeText(legacy / "old.json", encodeProfile(old));
  tests::writeText(legacy / "notes.txt", "not copied");
  tests::writeText(legacy / ".hidden.json", "not copied");
  fs::create_directory(legacy / "folder.json");
  EXPECT_THAT(ProfileStore::loadAll(), ElementsAre(old));
  EXPECT_THAT(entriesOf(store), ElementsAre("old.json"));
  EXPECT_EQ(tests::readText(legacy / "old.json"), encodeProfile(old)) << "the old files stay";
  EXPECT_THAT(ProfileStore::loadAll(), ElementsAre(old)) << "repeating it changes nothing";
}

TEST_F(ProfileStoreTest, DoesNotCopyAnEarlierFileOverAPresentOne) {
  makeFolder(legacy);
  makeFolder(store);
  tests::writeText(legacy / "same.json", encodeProfile(profileNamed("Earlier")));
  tests::writeText(store / "same.json", encodeProfile(profileNamed("Present")));
  EXPECT_THAT(storedNames(), ElementsAre("Present"));
}

TEST_F(ProfileStoreTest, CopiesTheEarlierProfilesBytesUnseen) {
  makeFolder(legacy);
  tests::writeText(legacy / "broken.json", "no profile");
  EXPECT_THROW(static_cast<void>(ProfileStore::loadAll()), UnreadableProfile);
  EXPECT_EQ(tests::readText(store / "broken.json"), "no profile");
}

TEST_F(ProfileStoreTest, PassesOnWhyItsFolderCannotBeMade) {
  tests::writeText(home / "Tessaly", "a file where the folder should be");
  EXPECT_THROW(static_cast<void>(ProfileStore::loadAll()), std::system_error);
  EXPECT_THROW(ProfileStore::save(profileNamed("Body")), std::system_error);
}

}  // namespace
}  // namespace tessaly
