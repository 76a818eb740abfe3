#include "dng/DNGError.h"

#include "platform/Text.h"

#include <cassert>
#include <string_view>
#include <utility>

namespace tessaly {
namespace {

std::string_view prefix(DNGError::Case kind) {
  switch (kind) {
    case DNGError::Case::unreadable:
      return "Unable to read: ";
    case DNGError::Case::truncated:
      return "Incomplete DNG file: ";
    case DNGError::Case::unsupported:
      return "Unsupported DNG: ";
    case DNGError::Case::invalid:
      return "Invalid DNG structure: ";
    case DNGError::Case::profileMismatch:
      return "Camera profile mismatch: ";
    case DNGError::Case::file:
      break;
  }
  return "";
}

std::string describe(DNGError::Case kind, const std::string& message, const DNGError* underlying) {
  if (underlying != nullptr) return message + ": " + underlying->what();
  return std::string(prefix(kind)) + message;
}

DNGError systemFailure(const std::exception& error) {
  const DNGError failure = DNGError::unreadable(exceptionMessage(error));
  const auto* destination = dynamic_cast<const DestinationError*>(&error);
  return destination != nullptr ? failure.at(*destination) : failure;
}

}  // namespace

DNGError::DNGError(Case kind, std::string message, std::shared_ptr<const DNGError> underlying) {
  assert((kind == Case::file) == (underlying != nullptr));
  std::string description = describe(kind, message, underlying.get());
  payload_ = std::make_shared<const Payload>(
      Payload{kind, std::move(message), std::move(description), std::move(underlying), nullptr});
}

DNGError DNGError::file(std::string fileName, DNGError underlying) {
  return {Case::file, std::move(fileName), std::make_shared<const DNGError>(std::move(underlying))};
}

DNGError DNGError::unreadable(std::string message) {
  return {Case::unreadable, std::move(message), nullptr};
}

DNGError DNGError::truncated(std::string message) {
  return {Case::truncated, std::move(message), nullptr};
}

DNGError DNGError::unsupported(std::string message) {
  return {Case::unsupported, std::move(message), nullptr};
}

DNGError DNGError::invalid(std::string message) {
  return {Case::invalid, std::move(message), nullptr};
}

DNGError DNGError::profileMismatch(std::string message) {
  return {Case::profileMismatch, std::move(message), nullptr};
}

DNGError DNGError::contextualize(const std::exception& error, const std::filesystem::path& url) {
  const auto* own = dynamic_cast<const DNGError*>(&error);
  if (own == nullptr) return file(displayName(url), systemFailure(error));
  return own->kind() == Case::file ? *own : file(displayName(url), *own);
}

DNGError DNGError::at(const DestinationError& destination) const {
  assert(kind() != Case::file);
  Payload payload = *payload_;
  payload.destination = std::make_shared<const DestinationError>(destination);
  DNGError error = *this;
  error.payload_ = std::make_shared<const Payload>(std::move(payload));
  return error;
}

const DNGError& DNGError::innermost() const {
  const DNGError* error = this;
  while (error->underlying() != nullptr)
    error = error->underlying();
  return *error;
}

}  // namespace tessaly
