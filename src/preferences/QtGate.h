// The one lock around everything that this folder asks of Qt.
//
// Qt's settings are thread-safe by themselves, but its libraries are not built for ThreadSanitizer, which therefore
// cannot see Qt's own locks and would report races inside it. Workers enter Qt only through this folder.
#pragma once

#include <mutex>

namespace tessaly {

[[nodiscard]] std::mutex& qtGate();

}  // namespace tessaly
