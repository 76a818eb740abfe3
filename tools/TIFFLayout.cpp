#include "tools/TIFFLayout.h"

namespace tessaly::tools {
namespace {

constexpr std::int64_t inlineBytes = 4;

bool isRational(int type) {
  return type == 5 || type == 10;
}

int numberSize(int type) {
  switch (type) {
    case 3:
    case 8:
      return 2;
    case 4:
    case 5:
    case 9:
    case 10:
    case 11:
    case 13:
      return 4;
    case 12:
    case 16:
    case 17:
    case 18:
      return 8;
    default:
      return 1;
  }
}

std::int64_t valueBytes(const TIFFValues& values) {
  return static_cast<std::int64_t>(values.numbers.size()) * numberSize(values.type);
}

std::int64_t valueCount(const TIFFValues& values) {
  const auto numbers = static_cast<std::int64_t>(values.numbers.size());
  return values.claimedCount.value_or(isRational(values.type) ? numbers / 2 : numbers);
}

std::int64_t evenBytes(std::int64_t bytes) {
  return bytes + (bytes & 1);
}

std::int64_t tableSize(const TIFFEntries& entries) {
  return 2 + 12 * static_cast<std::int64_t>(entries.size()) + 4;
}

Bytes packedValues(const TIFFValues& values, bool littleEndian) {
  Bytes bytes;
  for (const std::int64_t number : values.numbers)
    appendNumber(bytes, number, numberSize(values.type), littleEndian);
  return bytes;
}

}  // namespace

TIFFValues asciiValues(const std::string& text) {
  TIFFValues values{2, {}};
  for (const char letter : text)
    values.numbers.push_back(static_cast<unsigned char>(letter));
  values.numbers.push_back(0);
  return values;
}

std::int64_t directorySize(const TIFFEntries& entries) {
  std::int64_t bytes = tableSize(entries);
  for (const auto& [tag, values] : entries) {
    if (valueBytes(values) > inlineBytes) bytes += evenBytes(valueBytes(values));
  }
  return evenBytes(bytes);
}

void appendDirectory(Bytes& file, const TIFFEntries& entries, std::int64_t next, bool littleEndian) {
  std::int64_t valueOffset = static_cast<std::int64_t>(file.size()) + tableSize(entries);
  Bytes outOfLine;
  appendNumber(file, static_cast<std::int64_t>(entries.size()), 2, littleEndian);
  for (const auto& [tag, values] : entries) {
    appendNumber(file, tag, 2, littleEndian);
    appendNumber(file, values.type, 2, littleEndian);
    appendNumber(file, valueCount(values), 4, littleEndian);
    Bytes bytes = packedValues(values, littleEndian);
    if (valueBytes(values) <= inlineBytes) {
      bytes.resize(inlineBytes);
      file.insert(file.end(), bytes.begin(), bytes.end());
    } else {
      appendNumber(file, values.claimedOffset.value_or(valueOffset), 4, littleEndian);
      bytes.resize(static_cast<std::size_t>(evenBytes(valueBytes(values))));
      outOfLine.insert(outOfLine.end(), bytes.begin(), bytes.end());
      valueOffset += static_cast<std::int64_t>(bytes.size());
    }
  }
  appendNumber(file, next, 4, littleEndian);
  file.insert(file.end(), outOfLine.begin(), outOfLine.end());
}

void appendNumber(Bytes& file, std::int64_t number, int size, bool littleEndian) {
  for (int i = 0; i < size; ++i) {
    const int shift = 8 * (littleEndian ? i : size - 1 - i);
    file.push_back(static_cast<std::byte>((static_cast<std::uint64_t>(number) >> shift) & 0xFF));
  }
}

}  // namespace tessaly::tools
