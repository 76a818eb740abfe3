#include "localization/DestinationMessages.h"

#include "localization/Localization.h"
#include "platform/Text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

namespace tessaly::Localization {
namespace {

struct Reason {
  int errorNumber;
  std::string_view format;
};

constexpr std::string_view noPermission =
    "Tessaly couldn't write to the folder “%@”: permission denied. Choose a folder that you may write to, then retry.";
constexpr std::string_view nameNotAllowed =
    "Tessaly couldn't write to the folder “%@”: the file's name is not allowed there. Change it or choose another "
    "folder, then retry.";

constexpr std::array reasons{
    Reason{ENOSPC,
           "Tessaly couldn't write to the folder “%@”: no space left on its disk. Free some space or choose another "
           "folder, then retry."},
    Reason{EDQUOT,
           "Tessaly couldn't write to the folder “%@”: your disk quota is used up. Free some space or choose another "
           "folder, then retry."},
    Reason{EACCES, noPermission},
    Reason{EPERM, noPermission},
    Reason{EROFS, "Tessaly couldn't write to the folder “%@”: it is read-only. Choose another folder, then retry."},
    Reason{ENAMETOOLONG,
           "Tessaly couldn't write to the folder “%@”: the file's name is too long there. Shorten it or choose another "
           "folder, then retry."},
    // What file systems of other kinds answer to characters that they do not know.
    Reason{EINVAL, nameNotAllowed},
    Reason{EILSEQ, nameNotAllowed},
    Reason{EFBIG,
           "Tessaly couldn't write to the folder “%@”: the file is too large for it. Choose another folder, then "
           "retry."},
    Reason{EEXIST,
           "Tessaly couldn't write to the folder “%@”: a file of that name already exists there and was left as it "
           "is."},
};

const Reason* reasonOf(int errorNumber) {
  const auto* const found = std::ranges::find(reasons, errorNumber, &Reason::errorNumber);
  return found == reasons.end() ? nullptr : found;
}

// In full: "." says nothing, and every folder of results has the same name.
std::string shown(const std::filesystem::path& folder) {
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(folder, error).lexically_normal();
  if (error) return displayText(folder.native());
  return displayText((absolute.has_filename() ? absolute : absolute.parent_path()).native());
}

}  // namespace

bool hasDestinationMessage(int errorNumber) {
  return reasonOf(errorNumber) != nullptr;
}

std::string destinationMessage(const DestinationError& error, std::optional<AppLanguage> language) {
  const int errorNumber = error.code().value();
  const std::string folder = shown(error.folder());
  if (const Reason* reason = reasonOf(errorNumber)) return format(text(reason->format, language), {folder});
  return format(text("Tessaly couldn't write to the folder “%@”: %@", language),
                {folder, text(systemMessage(errorNumber), language)});
}

}  // namespace tessaly::Localization
