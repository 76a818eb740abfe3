#include "preferences/UserFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace tessaly {
namespace {

namespace fs = std::filesystem;

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

fs::path homeFolder() {
  const std::string home = environment("HOME");
  if (!home.empty()) return home;
  const passwd* user = getpwuid(getuid());
  return user && user->pw_dir ? user->pw_dir : "/";
}

/// A folder of the XDG base directories; a relative one in the environment counts as unset, as XDG demands.
fs::path baseFolder(const char* variable, const char* belowHome) {
  const fs::path given = environment(variable);
  return given.is_absolute() ? given : homeFolder() / belowHome;
}

/// The folder that stands for all user folders, for tests and for portable installations; empty when not set.
fs::path replacement() {
  const std::string folder = environment("TESSALY_HOME");
  return folder.empty() ? fs::path() : fs::absolute(folder);
}

fs::path configurationFolder() {
  const fs::path folder = replacement();
  return (folder.empty() ? baseFolder("XDG_CONFIG_HOME", ".config") : folder) / "Tessaly";
}

}  // namespace

fs::path applicationSupportFolder() {
  const fs::path folder = replacement();
  return folder.empty() ? baseFolder("XDG_DATA_HOME", ".local/share") : folder;
}

fs::path preferencesFile() {
  return configurationFolder() / "Tessaly.json";
}

fs::path earlierPreferencesFile() {
  return configurationFolder() / "Tessaly.ini";
}

}  // namespace tessaly
