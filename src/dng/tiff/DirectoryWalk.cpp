#include "dng/tiff/DirectoryWalk.h"

#include "dng/DNGError.h"
#include "dng/tiff/ByteRangeSet.h"
#include "dng/tiff/TIFFEntries.h"
#include "dng/tiff/TIFFTags.h"
#include "dng/tiff/TIFFTypes.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

namespace tessaly {
namespace {

constexpr std::size_t maximumDirectories = 256;
constexpr std::int64_t firstDirectoryPointer = 4;
constexpr std::int64_t wordSize = 4;

// Consecutive 32-bit words that point to directories; the last one is followed first.
struct Pointers {
  std::int64_t location = 0;
  std::int64_t count = 0;

  [[nodiscard]] std::int64_t end() const { return location + wordSize * count; }
};

struct Link {
  std::int64_t offset = 0;   // of the directory
  std::int64_t pointer = 0;  // of the word that says so
};

// A stack of pointers, last in, first out. A SubIFDs entry may list 16 million of them while the walk ends after 256
// directories, so its words stay in the file until they are popped: what is popped, and in which order, is the same as
// if each word had been pushed. Zero words lead nowhere and are skipped; they are searched once however many entries
// share them.
class PointerStack {
 public:
  explicit PointerStack(const TIFFBytes& bytes) : bytes_(bytes) {}

  void push(const Pointers& pointers) { pending_.push_back(pointers); }

  std::optional<Link> pop() {
    while (!pending_.empty()) {
      Pointers& top = pending_.back();
      dropTrailingZeros(top);
      if (top.count > 0) return takeLast(top);
      pending_.pop_back();
    }
    return std::nullopt;
  }

 private:
  Link takeLast(Pointers& pointers) const {
    --pointers.count;
    return {bytes_.uint(pointers.end(), wordSize), pointers.end()};
  }

  void dropTrailingZeros(Pointers& pointers) {
    bool foundLink = false;
    while (pointers.count > 0 && !foundLink) {
      dropKnownZeros(pointers);
      foundLink = dropZerosOfOneView(pointers);
    }
  }

  void dropKnownZeros(Pointers& pointers) const {
    const std::int64_t known = std::max(zeros_.beginOfStretch(pointers.end()), pointers.location);
    pointers.count -= (pointers.end() - known) / wordSize;
  }

  // Whether a word that is not zero was found; it is the last one then.
  bool dropZerosOfOneView(Pointers& pointers) {
    const std::int64_t words = std::min(pointers.count, TIFFBytes::longestView / wordSize);
    const auto view = bytes_.view(pointers.end() - wordSize * words, wordSize * words);
    const auto lastByte =
        std::find_if(view.rbegin(), view.rend(), [](std::byte value) { return value != std::byte{}; });
    const std::int64_t zeroWords = (lastByte - view.rbegin()) / wordSize;
    zeros_.insert(pointers.end() - wordSize * zeroWords, pointers.end());
    pointers.count -= zeroWords;
    return lastByte != view.rend();
  }

  const TIFFBytes& bytes_;
  std::vector<Pointers> pending_;
  ByteRangeSet zeros_;
};

class DirectoryWalk {
 public:
  explicit DirectoryWalk(const TIFFBytes& bytes) : bytes_(bytes), pending_(bytes) {}

  std::vector<TIFFDirectory> run() {
    pending_.push({firstDirectoryPointer, 1});
    while (const std::optional<Link> link = pending_.pop())
      visit(*link);
    return std::move(directories_);
  }

 private:
  void visit(const Link& link) {
    const bool isNew = visited_.insert(link.offset).second;
    if (!isNew || visited_.size() > maximumDirectories) throw DNGError::invalid("Cyclic or excessive IFD chain");
    directories_.push_back(readDirectory(link));
    pushSuccessors(directories_.back());
  }

  [[nodiscard]] TIFFDirectory readDirectory(const Link& link) const {
    const std::int64_t count = bytes_.uint(link.offset, 2);
    if (count > maximumEntries) throw DNGError::invalid("Too many IFD entries");
    TIFFDirectory directory;
    directory.offset = link.offset;
    directory.pointer = link.pointer;
    directory.nextPointer = link.offset + 2 + entryBlockSize(count) - wordSize;
    forEachEntry(bytes_, link.offset, count, [&](const TIFFField& field) { addField(directory, field); });
    return directory;
  }

  void addField(TIFFDirectory& directory, const TIFFField& field) const {
    if (!hasKnownTypeAndCount(field)) {
      throw DNGError::invalid(fmt::format("TIFF type/count limit for tag {}", field.tag));
    }
    bytes_.check(field.location, field.size);
    const bool isNew = directory.fields.emplace(field.tag, field).second;
    if (!isNew) throw DNGError::invalid(fmt::format("Duplicate TIFF tag {}", field.tag));
  }

  // The next directory first, so that the sub-directories come before it.
  void pushSuccessors(const TIFFDirectory& directory) {
    pending_.push({directory.nextPointer, 1});
    const TIFFField* const subIFDs = directory.field(TIFFTag::subIFDs);
    if (subIFDs == nullptr) return;
    const bool arePointers = subIFDs->type == TIFFType::longInteger || subIFDs->type == TIFFType::directory;
    if (!arePointers) throw DNGError::invalid("SubIFDs type");
    pending_.push({subIFDs->location, subIFDs->count});
  }

  const TIFFBytes& bytes_;
  PointerStack pending_;
  std::set<std::int64_t> visited_;
  std::vector<TIFFDirectory> directories_;
};

}  // namespace

std::vector<TIFFDirectory> walkDirectories(const TIFFBytes& bytes) {
  return DirectoryWalk(bytes).run();
}

}  // namespace tessaly
