#include "preferences/QtGate.h"

namespace tessaly {

std::mutex& qtGate() {
  static std::mutex gate;
  return gate;
}

}  // namespace tessaly
