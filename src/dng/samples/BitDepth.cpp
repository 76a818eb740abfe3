#include "dng/samples/BitDepth.h"

#include "dng/DNGError.h"

#include <fmt/format.h>

namespace tessaly {

void throwUnsupportedBitDepth(std::int64_t bits) {
  throw DNGError::unsupported(fmt::format("Raw bit depth {}", bits));
}

}  // namespace tessaly
