// The engine speaks English, to users through its progress messages and the reasons of its candidates. These are stored
// as they are and translated where they are shown.
#pragma once

#include <string>
#include <string_view>

namespace tessaly {

/// A text of the engine in the interface's language, its names and numbers as they are; a text that is not one of the
/// engine's is looked up as it stands.
[[nodiscard]] std::string translatedEngineText(std::string_view english);

}  // namespace tessaly
