// The kinds of candidates, in one list.
//
// The enumeration, the list of its cases and their names are made of it. What else differs from kind to kind is a
// switch without a default, so that a new kind does not compile before everything knows it.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

/// A pixel is one photosite, a line one column or several side by side, a spot a shadow.
#define TESSALY_CANDIDATE_KINDS(make) make(pixel) make(line) make(spot)

namespace tessaly {

#define TESSALY_CASE(kind) kind,
enum class CandidateKind { TESSALY_CANDIDATE_KINDS(TESSALY_CASE) };
#undef TESSALY_CASE

struct NamedCandidateKind {
  CandidateKind kind;
  std::string_view name;  ///< as it is stored
};

#define TESSALY_NAMED(kind) NamedCandidateKind{CandidateKind::kind, #kind},
inline constexpr std::array candidateKinds{TESSALY_CANDIDATE_KINDS(TESSALY_NAMED)};
#undef TESSALY_NAMED

[[nodiscard]] constexpr std::string_view nameOf(CandidateKind kind) {
  return candidateKinds[static_cast<std::size_t>(kind)].name;
}

/// Where the kind stands in a report: lines, spots, pixels.
[[nodiscard]] constexpr int reportRank(CandidateKind kind) {
  switch (kind) {
    case CandidateKind::line:
      return 0;
    case CandidateKind::spot:
      return 1;
    case CandidateKind::pixel:
      break;
  }
  return 2;
}

}  // namespace tessaly
