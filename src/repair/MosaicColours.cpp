#include "repair/MosaicColours.h"

#include <utility>

namespace tessaly {
namespace {

/// For each of `count` places the place in a pattern of `period` that is anchored at `origin`, times `step`.
std::vector<std::uint32_t> repeated(std::int64_t count, std::int64_t period, std::int64_t origin, std::int64_t step) {
  std::vector<std::uint32_t> places(static_cast<std::size_t>(count));
  std::int64_t place = (period - origin % period) % period;
  for (std::uint32_t& of : places) {
    of = static_cast<std::uint32_t>(place * step);
    place = place + 1 == period ? 0 : place + 1;
  }
  return places;
}

CFALayout layoutOrOneColour(const DNGMetadata& metadata) {
  return metadata.cfaLayout.value_or(CFALayout{1, 1, {0}});
}

}  // namespace

MosaicColours::MosaicColours(const DNGMetadata& metadata) : hasColours_(metadata.cfaLayout.has_value()) {
  CFALayout layout = layoutOrOneColour(metadata);
  period_ = layout.width > 1 ? layout.width : 1;
  columns_ = repeated(metadata.rawWidth, layout.width, metadata.activeX, 1);
  rowStarts_ = repeated(metadata.rawHeight, layout.height, metadata.activeY, layout.width);
  pattern_ = std::move(layout.pattern);
}

}  // namespace tessaly
