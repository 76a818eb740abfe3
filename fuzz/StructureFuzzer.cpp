// Bytes that choose the shape of a DNG and what is wrong with it: files that get past the first checks far more often
// than any bytes do. The decoder and the bit-by-bit reader give the same samples or the same refusal.
#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "fuzz/FuzzFile.h"
#include "tests/support/NaiveRawReader.h"

#include <array>
#include <string>

namespace {

using namespace tessaly;

/// The choices, one byte after the other; zeros when there are no more.
class Choices {
 public:
  Choices(const std::uint8_t* data, std::size_t size) : data_(data), left_(size) {}

  [[nodiscard]] bool isEmpty() const { return left_ == 0; }

  int upTo(int last) {
    if (left_ == 0) return 0;
    --left_;
    return *data_++ % (last + 1);
  }

 private:
  const std::uint8_t* data_;
  std::size_t left_;
};

constexpr std::array depths{8, 10, 12, 14, 16};
constexpr std::array oddValues{std::int64_t{0},       std::int64_t{1},          std::int64_t{2},
                               std::int64_t{65'535},  std::int64_t{65'536},     std::int64_t{100'000},
                               std::int64_t{100'001}, std::int64_t{0x7FFFFFFF}, std::int64_t{0xFFFFFFFF}};
constexpr std::array tags{254,   256,   257,   258,   259,   262,   266,   273,   277,   278,
                          279,   284,   322,   323,   324,   325,   330,   33421, 33422, 50710,
                          50712, 50713, 50714, 50715, 50716, 50717, 50719, 50720, 50829, 50830};

tools::DNGBuilder shape(Choices& choices) {
  const int bits = depths[static_cast<std::size_t>(choices.upTo(4))];
  const std::int64_t width = 2 + choices.upTo(40);
  const std::int64_t height = 2 + choices.upTo(30);
  std::vector<std::uint16_t> samples;
  for (std::int64_t i = 0; i < width * height; ++i)
    samples.push_back(static_cast<std::uint16_t>((i * 41) % (1 << bits)));
  tools::DNGBuilder builder;
  builder.size(width, height).bits(bits).samples(std::move(samples)).fillOrder(1 + choices.upTo(1));
  if (choices.upTo(1) == 1) builder.bigEndian();
  if (choices.upTo(1) == 1) builder.inSubIFD();
  if (choices.upTo(3) == 1) builder.linear();
  if (choices.upTo(3) == 1) builder.segmentsInReverseOrder();
  if (choices.upTo(3) == 1) builder.gapBetweenSegments(choices.upTo(9));
  switch (choices.upTo(2)) {
    case 1:
      builder.strips(1 + choices.upTo(30));
      break;
    case 2:
      builder.tiles(1 + choices.upTo(31), 1 + choices.upTo(31));
      break;
    default:
      break;
  }
  if (choices.upTo(3) == 1) {
    std::vector<std::uint16_t> table(static_cast<std::size_t>(2 + choices.upTo(200)));
    const int step = choices.upTo(255);
    for (std::size_t i = 0; i < table.size(); ++i)
      table[i] = static_cast<std::uint16_t>(static_cast<int>(i) * step);
    builder.linearization(table);
  }
  return builder;
}

void spoilTags(tools::DNGBuilder& builder, Choices& choices) {
  for (int i = choices.upTo(3); i > 0; --i) {
    const int tag = tags[static_cast<std::size_t>(choices.upTo(static_cast<int>(tags.size()) - 1))];
    const std::int64_t value =
        oddValues[static_cast<std::size_t>(choices.upTo(static_cast<int>(oddValues.size()) - 1))];
    if (choices.upTo(4) == 1) {
      builder.withoutRawTag(tag);
    } else {
      builder.rawTag(tag, {4, {value}});
    }
  }
}

void spoilBytes(std::vector<std::byte>& bytes, Choices& choices) {
  while (!choices.isEmpty()) {
    const auto at = static_cast<std::size_t>(choices.upTo(255)) * 256 + static_cast<std::size_t>(choices.upTo(255));
    bytes[at % bytes.size()] = static_cast<std::byte>(choices.upTo(255));
  }
}

template <typename Read>
std::string outcomeOf(std::vector<std::uint16_t>& samples, Read read) {
  try {
    const auto plane = read();
    samples.assign(plane.begin(), plane.end());
    return "";
  } catch (const DNGError& error) {
    return error.innermost().what();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Choices choices(data, size);
  tools::DNGBuilder builder = shape(choices);
  spoilTags(builder, choices);
  std::vector<std::byte> bytes = builder.build();
  spoilBytes(bytes, choices);
  const auto path = fuzz::writeInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  DNGMetadata metadata;
  try {
    metadata = DNGReader::readMetadata(path);
  } catch (const DNGError&) {
    return 0;
  }
  if (metadata.pixelCount() > fuzz::maximumSamples || DNGReader::supportReason(metadata)) return 0;
  std::vector<std::uint16_t> fast, naive;
  const std::string fastError = outcomeOf(fast, [&] { return DNGReader::readRaw(path, metadata); });
  const std::string naiveError = outcomeOf(naive, [&] { return tests::NaiveRawReader(bytes, metadata).readPlane(); });
  fuzz::require(fastError == naiveError && fast == naive);
  return 0;
}
