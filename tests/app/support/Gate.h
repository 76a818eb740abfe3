// Holds every worker where its new file has all its bytes and not yet its name, until the gate is opened.
//
// One at a time; made and opened by the user-interface thread, which itself is never held. Gone before what the workers
// belong to, which waits for them.
#pragma once

namespace tessaly::tests {

class Gate {
 public:
  Gate();
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;
  ~Gate() { open(); }

  /// Lets the held workers go on, and all that come after them.
  void open();
};

}  // namespace tessaly::tests
