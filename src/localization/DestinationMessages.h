// What the user is told when the place that a file is written to refuses it: the folder, the reason and what helps.
//
// Pure apart from reading the interface's language; safe from any thread.
#pragma once

#include "platform/DestinationError.h"
#include "preferences/AppLanguage.h"

#include <optional>
#include <string>

namespace tessaly::Localization {

/// Names the folder and the reason in the given language (absent: the interface's). A reason without a sentence of its
/// own is told in the system's words.
[[nodiscard]] std::string destinationMessage(const DestinationError& error,
                                             std::optional<AppLanguage> language = std::nullopt);

/// Whether the reason has a sentence of its own.
[[nodiscard]] bool hasDestinationMessage(int errorNumber);

}  // namespace tessaly::Localization
