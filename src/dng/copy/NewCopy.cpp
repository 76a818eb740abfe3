#include "dng/copy/NewCopy.h"

#include "dng/DNGError.h"
#include "platform/DestinationError.h"
#include "platform/ExtendedAttributes.h"
#include "platform/Paths.h"
#include "platform/SystemCall.h"

#include <cerrno>

namespace tessaly {
namespace {

std::filesystem::path standardized(const std::filesystem::path& path) {
  return standardizedSpelling(std::filesystem::absolute(path));
}

// Links are not followed: a dangling one bears the name too. What cannot be looked at shows its error when it is made.
bool isTaken(const std::filesystem::path& path) {
  std::error_code ignored;
  const auto type = std::filesystem::symlink_status(path, ignored).type();
  return type != std::filesystem::file_type::not_found && type != std::filesystem::file_type::none;
}

void copyAttributes(const InputFile& source, PartialFile& copy) {
  for (const ExtendedAttribute& attribute : userAttributes(source.descriptor()))
    copy.setAttribute(attribute.name, attribute.value);
}

}  // namespace

void requireFreeDestination(const std::filesystem::path& source, const std::filesystem::path& destination) {
  const bool isSource = standardized(source) == standardized(destination);
  // A destination that is the source under another name, a hard link for example, exists and is refused as well.
  if (isSource || isTaken(withoutTrailingSlash(destination))) {
    const DestinationError taken(EEXIST, folderOf(withoutTrailingSlash(destination)));
    throw DNGError::invalid("Output exists or equals source").at(taken);
  }
}

void makeCopy(const NewCopy& copy, const std::function<void(PartialFile&)>& write,
              const std::function<void(const PartialFile&)>& verify) {
  const InputFile& source = copy.source.container().file();
  const std::filesystem::path destination = withoutTrailingSlash(copy.destination);
  const std::filesystem::path folder = folderOf(destination);
  atDestination(folder, [&] { callSystem([&] { return copy.system.createFolders(folder); }); });
  PartialFile file(copy.system, folder, Access::ownerOnly);
  write(file);
  copyAttributes(source, file);
  // Before it is read back, so that the medium answers and not the memory that was just filled.
  file.synchronizeAndDropCache();
  verify(file);
  // Last, because a copy that its owner may not read could not be read back.
  file.setMode(source.permissions());
  file.moveTo(destination);
}

}  // namespace tessaly
