#include "dng/copy/VerifyingThread.h"

#include <utility>

namespace tessaly {

VerifyingThread::VerifyingThread(StretchVerifier& verifier)
    : result_(std::async(std::launch::async, [this, &verifier] { return verify(verifier); })) {}

VerifyingThread::~VerifyingThread() {
  close(true);
  if (result_.valid()) result_.wait();
}

void VerifyingThread::add(CopiedStretch stretch) {
  const std::lock_guard guard(lock_);
  pending_.push_back(std::move(stretch));
  changed_.notify_one();
}

bool VerifyingThread::finish() {
  close(false);
  return result_.get();
}

void VerifyingThread::close(bool dropsTheRest) {
  const std::lock_guard guard(lock_);
  if (dropsTheRest) pending_.clear();
  closed_ = true;
  changed_.notify_one();
}

// A copy that differs once need not be looked at any more.
bool VerifyingThread::verify(StretchVerifier& verifier) {
  while (std::optional<CopiedStretch> stretch = take()) {
    if (!verifier.matches(*std::move(stretch))) return false;
  }
  return true;
}

std::optional<CopiedStretch> VerifyingThread::take() {
  std::unique_lock guard(lock_);
  changed_.wait(guard, [this] { return closed_ || !pending_.empty(); });
  if (pending_.empty()) return std::nullopt;
  std::optional<CopiedStretch> stretch(std::move(pending_.front()));
  pending_.pop_front();
  return stretch;
}

}  // namespace tessaly
