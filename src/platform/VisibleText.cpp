#include "platform/VisibleText.h"

#include "platform/Text.h"

#include <algorithm>
#include <string>

namespace tessaly {
namespace {

/// Characters that are shown by their number: in UTF-8 those of one row differ in their last byte alone.
struct HiddenCharacters {
  std::string_view lead;
  unsigned char first;
  unsigned char last;
  unsigned number;  ///< of the first
};

constexpr HiddenCharacters hidden[] = {
    {"\xC2", 0x80, 0x9F, 0x0080},      // control characters that some terminals obey
    {"\xD8", 0x9C, 0x9C, 0x061C},      // a mark of Arabic writing
    {"\xE2\x80", 0x8E, 0x8F, 0x200E},  // marks of writing to the right and to the left
    {"\xE2\x80", 0xA8, 0xAE, 0x2028},  // ends of lines and paragraphs; embeddings and overrides
    {"\xE2\x81", 0xA6, 0xA9, 0x2066},  // isolates
};

/// The picture of an ASCII control character, U+2400 … U+2421.
std::string pictureOf(unsigned char control) {
  constexpr unsigned char firstPicture = 0x80;
  constexpr unsigned char pictureOfDelete = 0xA1;
  const unsigned last = control == 0x7F ? pictureOfDelete : static_cast<unsigned>(firstPicture) + control;
  return std::string("\xE2\x90") + static_cast<char>(last);
}

std::string numberOf(unsigned character) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text = "<U+";
  for (const unsigned shift : {12U, 8U, 4U, 0U})
    text += digits[character >> shift & 0xFU];
  return text + ">";
}

const HiddenCharacters* hiddenAt(std::string_view text) {
  const auto* const found = std::ranges::find_if(hidden, [text](const HiddenCharacters& block) {
    if (!text.starts_with(block.lead) || text.size() == block.lead.size()) return false;
    const auto last = static_cast<unsigned char>(text[block.lead.size()]);
    return last >= block.first && last <= block.last;
  });
  return found == std::end(hidden) ? nullptr : found;
}

bool isASCIIControl(char byte) {
  return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
}

std::string withoutHidden(std::string_view text, std::string_view kept) {
  const std::string valid = displayText(text);
  std::string shown;
  for (std::string_view rest = valid; !rest.empty();) {
    std::size_t length = 1;
    if (const HiddenCharacters* block = hiddenAt(rest)) {
      length = block->lead.size() + 1;
      shown += numberOf(block->number + static_cast<unsigned char>(rest[length - 1]) - block->first);
    } else if (isASCIIControl(rest.front()) && kept.find(rest.front()) == std::string_view::npos) {
      shown += pictureOf(static_cast<unsigned char>(rest.front()));
    } else {
      shown += rest.front();
    }
    rest.remove_prefix(length);
  }
  return shown;
}

}  // namespace

std::string visibleText(std::string_view text) {
  return withoutHidden(text, "");
}

std::string visibleLines(std::string_view text) {
  return withoutHidden(text, "\n\t");
}

}  // namespace tessaly
