// tessaly-fuzz-seeds FOLDER: small valid files of every depth, byte order, bit order and layout, for the fuzzers to
// start from.
#include "tools/DNGBuilder.h"

#include <filesystem>
#include <string>
#include <vector>

namespace {

using tessaly::tools::DNGBuilder;

std::vector<std::uint16_t> ramp(std::int64_t count, int bits) {
  std::vector<std::uint16_t> values;
  for (std::int64_t i = 0; i < count; ++i)
    values.push_back(static_cast<std::uint16_t>((i * 37) % (1 << bits)));
  return values;
}

DNGBuilder seed(int bits, bool little, int fillOrder, int layout) {
  constexpr std::int64_t width = 13, height = 9;
  DNGBuilder builder;
  builder.size(width, height).bits(bits).fillOrder(fillOrder).samples(ramp(width * height, bits)).serial("17");
  builder.exif(100, std::pair<std::int64_t, std::int64_t>{1, 125}).activeArea(1, 2, 9, 12).black(3);
  if (!little) builder.bigEndian();
  if (layout == 1) builder.strips(4).inSubIFD();
  if (layout == 2) builder.tiles(8, 4);
  if (layout == 3) {
    std::vector<std::uint16_t> table;
    for (int i = 0; i < 1 << bits; ++i)
      table.push_back(static_cast<std::uint16_t>(i >> (bits - 8)));
    if (bits <= 10) builder.linearization(table);
  }
  return builder;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  for (const int bits : {8, 10, 12, 14, 16}) {
    for (const int fillOrder : {1, 2}) {
      for (int variant = 0; variant < 8; ++variant) {
        const std::string name = std::to_string(bits) + "-" + std::to_string(fillOrder) + "-" + std::to_string(variant);
        seed(bits, variant % 2 == 0, fillOrder, variant / 2).write(folder / (name + ".dng"));
      }
    }
  }
  return 0;
}
