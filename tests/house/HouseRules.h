// The rules of CONTRIBUTING.md that a machine can hold: who may include whom, what is listed where.
// Each takes the project's root folder and gives one line for each place where it is broken.
//
// Stateless; safe from several threads.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tessaly::house {

using Complaints = std::vector<std::string>;

/// A folder of src/ includes only folders of lower floors, and nothing outside src/.
[[nodiscard]] Complaints upwardIncludes(const std::filesystem::path& root);

/// Other folders include only the face of a folder of src/: the headers that lie directly in it. What is open to guests
/// beyond that is listed with the rule.
[[nodiscard]] Complaints intrusions(const std::filesystem::path& root);

/// A source of src/ (other than main.cpp) has a header of its own, or its name begins with that of one beside it.
[[nodiscard]] Complaints sourcesWithoutHeader(const std::filesystem::path& root);

/// Qt is included by the window alone.
[[nodiscard]] Complaints toolkitIncludes(const std::filesystem::path& root);

/// Headers that take seconds to read: CLI11 is included by one file of each program, and headers of src/ include only
/// the declarations of the JSON library.
[[nodiscard]] Complaints costlyIncludes(const std::filesystem::path& root);

/// No function of the standard library whose result depends on the process locale, in src/.
[[nodiscard]] Complaints localeBoundCalls(const std::filesystem::path& root);

/// packages.txt lists each package once, and the package of every library that CMake looks for.
[[nodiscard]] Complaints packageFaults(const std::filesystem::path& root);

/// Every .cpp file is named by a CMakeLists.txt.
[[nodiscard]] Complaints unbuiltSources(const std::filesystem::path& root);

/// C++ files are short; tests may be longer, and tables and second implementations are listed with the rule.
[[nodiscard]] Complaints longFiles(const std::filesystem::path& root);

/// Headers open with a comment that says what they are.
[[nodiscard]] Complaints silentHeaders(const std::filesystem::path& root);

}  // namespace tessaly::house
