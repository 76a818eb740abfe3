// An alert in parts, laid out for reading, and the one at the end of a batch.
//
// Pure apart from reading the interface's language; safe from any thread.
#pragma once

#include "batch/BatchRecords.h"

#include <string>

namespace tessaly {

/// From top to bottom; what is empty is left out.
struct AlertPage {
  std::string first;
  std::string emphasis;  ///< bold
  std::string details;   ///< scrolls where it is long
  std::string note;      ///< in the secondary colour
  std::string last;      ///< always in view

  bool operator==(const AlertPage&) const = default;
};

/// What `BatchTexts::alertText` says, each thing once: files that failed for one reason stand together, and where to
/// ask for help follows all of them.
[[nodiscard]] AlertPage batchEndPage(const BatchSummary& summary);

}  // namespace tessaly
