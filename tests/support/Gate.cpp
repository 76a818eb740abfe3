// Holds a program where a new file has all its bytes and not yet its name, until the test opens the gate: linked into
// the program, or loaded into it before its libraries.
//
// TESSALY_GATE names a folder: the file "reached" appears in it when the program is held, the file "open" lets it go
// on. TESSALY_GATE_CALL=N lets it flush N - 1 times before.
#include <fcntl.h>
#include <stdlib.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <string>

namespace {

std::atomic<int> calls = 0;

bool isBeforeTheGate() {
  const char* const first = getenv("TESSALY_GATE_CALL");
  return first != nullptr && ++calls < atoi(first);
}

void hold(const std::string& gate) {
  close(open((gate + "/reached").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
  while (access((gate + "/open").c_str(), F_OK) != 0)
    usleep(1000);
}

}  // namespace

extern "C" int fsync(int descriptor) {
  const char* const gate = getenv("TESSALY_GATE");
  if (gate != nullptr && !isBeforeTheGate()) hold(gate);
  return static_cast<int>(syscall(SYS_fsync, descriptor));
}
