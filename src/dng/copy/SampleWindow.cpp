#include "dng/copy/SampleWindow.h"

#include "dng/DNGError.h"
#include "dng/copy/BytePart.h"
#include "dng/samples/StoredRows.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace tessaly {

SampleWindow::SampleWindow(const SourceImage& source, std::int64_t reach, std::int64_t sliceBytes)
    : source_(source),
      reach_(reach),
      layout_(source.metadata(), sliceBytes),
      format_(SampleFormat::of(source.metadata())),
      table_(source.encoding().linearization) {
  if (!table_.empty()) inverse_.emplace(table_, source.metadata().bitsPerSample);
}

void SampleWindow::rewind() {
  dropSlotsAbove(source_.metadata().rawHeight);
  patches_.clear();
}

// Slices are moved to one below the other, so that each row is read once.
void SampleWindow::moveTo(const SliceRows& slice) {
  dropSlotsAbove(slice.first - reach_);
  const std::int64_t end = std::min(slice.last + reach_, source_.metadata().rawHeight);
  while (slots_.empty() || slots_.back().rows.last < end)
    loadSlotFrom(slots_.empty() ? slice.first : slots_.back().rows.last);
  const auto isCurrent = [&](const Slot& slot) { return slot.rows == slice; };
  current_ = &*std::find_if(slots_.begin(), slots_.end(), isCurrent);  // one of them is
}

void SampleWindow::dropSlotsAbove(std::int64_t row) {
  while (!slots_.empty() && slots_.front().rows.last <= row) {
    spare_.push_back(std::move(slots_.front().bytes));
    slots_.pop_front();
  }
}

void SampleWindow::loadSlotFrom(std::int64_t row) {
  if (spare_.empty()) spare_.emplace_back(static_cast<std::size_t>(layout_.byteCount()));
  Slot slot{layout_.sliceFrom(row), std::move(spare_.back())};
  spare_.pop_back();
  for (const SlicePiece& piece : layout_.pieces(slot.rows))
    readPiece(piece, part(slot.bytes, piece.place, piece.length));
  slots_.push_back(std::move(slot));
}

void SampleWindow::readPiece(const SlicePiece& piece, std::span<std::byte> into) const {
  const std::size_t got = source_.container().file().readAt(piece.offset, into);
  if (got < into.size()) throwTruncated(piece, static_cast<std::int64_t>(got));
}

// Several segments may have been read at once.
void SampleWindow::throwTruncated(const SlicePiece& piece, std::int64_t got) const {
  const SegmentLayout segments = SegmentLayout::of(source_.metadata());
  std::int64_t index = piece.segment;
  const auto endOf = [&](std::int64_t segment) {
    return source_.encoding().offsets[static_cast<std::size_t>(segment)] + segments.byteCount(segment);
  };
  while (endOf(index) <= piece.offset + got)
    ++index;
  throwSegmentTruncated(index);
}

const SampleWindow::Slot& SampleWindow::slotAround(std::int64_t y) const {
  const auto next =
      std::partition_point(slots_.begin(), slots_.end(), [&](const Slot& slot) { return slot.rows.last <= y; });
  assert(next != slots_.end() && next->rows.first <= y);
  return *next;
}

// The source may have changed since its codes were looked at.
std::uint16_t SampleWindow::linear(std::uint16_t code) const {
  if (code >= table_.size()) throw DNGError::invalid("Sample exceeds LinearizationTable");
  return table_[code];
}

void SampleWindow::replace(std::int64_t x, std::int64_t y, std::uint16_t sample) {
  Slot& slot = *current_;
  assert(y >= slot.rows.first && y < slot.rows.last);
  const std::uint16_t before = codeAt(x, y);
  const std::uint16_t code = inverse_ ? inverse_->code(sample, before) : sample;
  if (code >> format_.bits != 0) throw DNGError::invalid("Sample exceeds source bit depth");
  if (code == before) return;
  storeCode(format_, slot.bytes.data(), layout_.bitInSlice(x, y, slot.rows.first), code);
  patches_.emplace_back(layout_.bitInFile(x, y), code);
}

std::span<const std::byte> SampleWindow::bytes(const SlicePiece& piece) const {
  return std::span(current_->bytes)
      .subspan(static_cast<std::size_t>(piece.place), static_cast<std::size_t>(piece.length));
}

std::vector<StoredPatch> SampleWindow::takePatches() {
  return std::exchange(patches_, {});
}

}  // namespace tessaly
