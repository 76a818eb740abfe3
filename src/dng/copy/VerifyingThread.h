// Verifies a copy on a thread of its own while it is still being written, behind the writer.
//
// Belongs to the writer's thread. For file systems that keep everything in memory: elsewhere the medium must have the
// bytes before they are read back.
#pragma once

#include "dng/copy/StretchVerifier.h"

#include <condition_variable>
#include <deque>
#include <future>
#include <mutex>
#include <optional>

namespace tessaly {

class VerifyingThread {
 public:
  /// Throws std::system_error where the system refuses a thread. The verifier is used by nobody else from now on.
  explicit VerifyingThread(StretchVerifier& verifier);
  VerifyingThread(const VerifyingThread&) = delete;
  VerifyingThread& operator=(const VerifyingThread&) = delete;
  ~VerifyingThread();  ///< waits for the stretch at hand and leaves the others

  /// This stretch and all before it will not be written to any more.
  void add(CopiedStretch stretch);

  /// Waits until all stretches have been looked at; whether the copy is as it should be. Throws what the verifier
  /// threw. Called once, after which nothing is added.
  [[nodiscard]] bool finish();

 private:
  [[nodiscard]] bool verify(StretchVerifier& verifier);
  [[nodiscard]] std::optional<CopiedStretch> take();
  void close(bool dropsTheRest);

  std::mutex lock_;  ///< guards pending_ and closed_
  std::condition_variable changed_;
  std::deque<CopiedStretch> pending_;
  bool closed_ = false;
  std::future<bool> result_;
};

}  // namespace tessaly
