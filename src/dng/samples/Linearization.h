// Stored codes to linear samples through a LinearizationTable.
//
// Stateless.
#pragma once

#include <cstdint>
#include <span>

namespace tessaly {

/// Replaces each code by its entry of the table; an empty table leaves the codes as they are. Throws
/// invalid("Sample exceeds LinearizationTable") for a code beyond the table, when some codes may be replaced already.
void linearize(std::span<const std::uint16_t> table, std::span<std::uint16_t> codes);

}  // namespace tessaly
