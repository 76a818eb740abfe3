// The values of a field: the second half of DNGContainer.
#include "dng/DNGError.h"
#include "dng/tiff/DNGContainer.h"
#include "dng/tiff/TIFFTypes.h"
#include "platform/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cassert>
#include <iterator>

namespace tessaly {
namespace {

constexpr std::int64_t rationalSize = 8;

bool isRational(std::int64_t type) {
  return type == TIFFType::rational || type == TIFFType::signedRational;
}

bool isUnsignedInteger(std::int64_t type) {
  return type == TIFFType::byte || type == TIFFType::shortInteger || type == TIFFType::longInteger ||
         type == TIFFType::undefined || type == TIFFType::directory;
}

// Signed integers and floating point are no numbers anywhere in this system.
void requireNumericType(std::int64_t type) {
  if (isRational(type) || isUnsignedInteger(type)) return;
  throw DNGError::unsupported(fmt::format("Numeric TIFF type {}", type));
}

DNGError zeroDenominator() {
  return DNGError::invalid("Zero rational denominator");
}

double rational(const TIFFBytes& bytes, std::span<const std::byte> value, bool isSigned) {
  const auto numerator = static_cast<std::uint32_t>(bytes.integer(value.first(4)));
  const auto denominator = static_cast<std::uint32_t>(bytes.integer(value.subspan(4, 4)));
  if (denominator == 0) throw zeroDenominator();
  if (!isSigned) return static_cast<double>(numerator) / static_cast<double>(denominator);
  return static_cast<double>(static_cast<std::int32_t>(numerator)) /
         static_cast<double>(static_cast<std::int32_t>(denominator));
}

// `value` holds the bytes of one value of a numeric type.
double number(const TIFFBytes& bytes, std::span<const std::byte> value, std::int64_t type) {
  if (isRational(type)) return rational(bytes, value, type == TIFFType::signedRational);
  return static_cast<double>(bytes.integer(value));
}

// `rationals` holds whole rationals.
void requireDenominators(std::span<const std::byte> rationals) {
  for (std::size_t i = 0; i < rationals.size(); i += rationalSize) {
    const auto denominator = rationals.subspan(i + 4, 4);
    const bool isZero =
        std::all_of(denominator.begin(), denominator.end(), [](std::byte value) { return value == std::byte{}; });
    if (isZero) throw zeroDenominator();
  }
}

// Calls visit(bytes of one value) for each value.
template <typename Visitor>
void forEachValue(const TIFFBytes& bytes, const TIFFField& field, Visitor visit) {
  const std::int64_t valueSize = TIFFType::valueSize(field.type);
  const std::int64_t end = field.location + field.size;
  const std::int64_t viewSize = TIFFBytes::longestView / valueSize * valueSize;
  for (std::int64_t at = field.location; at < end; at += viewSize) {
    const std::span<const std::byte> view = bytes.view(at, std::min(viewSize, end - at));
    for (std::size_t i = 0; i < view.size(); i += static_cast<std::size_t>(valueSize)) {
      visit(view.subspan(i, static_cast<std::size_t>(valueSize)));
    }
  }
}

template <typename Number>
std::vector<Number> collect(const DNGContainer& container, const TIFFField* field) {
  std::vector<Number> values;
  container.checkNumbers(field);
  if (field != nullptr) values.reserve(static_cast<std::size_t>(field->count));
  container.forEachNumber(field, [&](double value) { values.push_back(static_cast<Number>(value)); });
  return values;
}

}  // namespace

std::vector<double> DNGContainer::numbers(const TIFFField* field) const {
  return collect<double>(*this, field);
}

// Every number of the accepted types lies within 32 bits and a sign, so the conversion is always defined.
std::vector<std::int64_t> DNGContainer::ints(const TIFFField* field) const {
  return collect<std::int64_t>(*this, field);
}

void DNGContainer::checkNumbers(const TIFFField* field) const {
  if (field == nullptr) return;
  requireNumericType(field->type);
  if (isRational(field->type)) checkDenominators(*field);
}

void DNGContainer::checkDenominators(const TIFFField& field) const {
  ByteRangeSet& checked = checkedRationals_[static_cast<std::size_t>(field.location % rationalSize)];
  const std::int64_t end = field.location + field.size;
  std::int64_t at = checked.endOfStretch(field.location);
  while (at < end) {
    const std::int64_t length = std::min(TIFFBytes::longestView, end - at);
    requireDenominators(bytes_.view(at, length));
    checked.insert(at, at + length);
    at = checked.endOfStretch(at);
  }
}

void DNGContainer::forEachNumber(const TIFFField* field, const std::function<void(double)>& visit) const {
  checkNumbers(field);
  if (field == nullptr) return;
  forEachValue(bytes_, *field, [&](std::span<const std::byte> value) { visit(number(bytes_, value, field->type)); });
}

double DNGContainer::numberAt(const TIFFField& field, std::int64_t index) const {
  assert(index >= 0 && index < field.count);
  checkNumbers(&field);
  const std::int64_t valueSize = TIFFType::valueSize(field.type);
  return number(bytes_, bytes_.view(field.location + index * valueSize, valueSize), field.type);
}

std::int64_t DNGContainer::intAt(const TIFFField& field, std::int64_t index) const {
  return static_cast<std::int64_t>(numberAt(field, index));
}

std::optional<double> DNGContainer::firstNumber(const TIFFField* field) const {
  checkNumbers(field);
  if (field == nullptr || field->count == 0) return std::nullopt;
  return numberAt(*field, 0);
}

std::optional<std::int64_t> DNGContainer::firstInt(const TIFFField* field) const {
  const std::optional<double> first = firstNumber(field);
  if (!first) return std::nullopt;
  return static_cast<std::int64_t>(*first);
}

std::optional<std::string> DNGContainer::string(const TIFFField* field) const {
  if (field == nullptr || field->type != TIFFType::ascii) return std::nullopt;
  std::string text;
  const std::int64_t end = field->location + field->size;
  for (std::int64_t at = field->location; at < end; at += TIFFBytes::longestView) {
    const std::span<const std::byte> view = bytes_.view(at, std::min(TIFFBytes::longestView, end - at));
    const auto zero = std::find(view.begin(), view.end(), std::byte{});
    std::transform(view.begin(), zero, std::back_inserter(text),
                   [](std::byte value) { return static_cast<char>(value); });
    if (zero != view.end()) break;
  }
  if (!isValidUTF8(text)) return std::nullopt;
  return text;
}

}  // namespace tessaly
