// Text as it is shown to a person, who must see what it holds: a file's name can neither steer a terminal, nor break a
// line, nor turn the direction in which the rest is read. Files and pipes get the exact text instead.
//
// Stateless.
#pragma once

#include <string>
#include <string_view>

namespace tessaly {

/// A name. Control characters and line breaks become their pictures ("␛") or their numbers ("<U+0085>"), as do the
/// marks that turn the direction of writing ("<U+202E>"); what is not UTF-8 becomes U+FFFD.
[[nodiscard]] std::string visibleText(std::string_view text);

/// A text of several lines: line feeds and tabs stay.
[[nodiscard]] std::string visibleLines(std::string_view text);

}  // namespace tessaly
