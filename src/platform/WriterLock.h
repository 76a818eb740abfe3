// The lock by which a process shows that it is still writing a temporary file. It ends with the process, however that
// ends, so that what a killed one has left can be told from what a living one needs.
//
// An open-file-description lock: it is another's also inside one process.
#pragma once

namespace tessaly {

/// Takes the lock of a file that is open for writing; -1 with the reason in errno where it cannot be had.
int lockAsWriter(int descriptor);

/// Whether nobody holds the writer's lock of a file that is open for reading. False also where the file system knows no
/// locks.
[[nodiscard]] bool hasNoWriter(int descriptor);

}  // namespace tessaly
