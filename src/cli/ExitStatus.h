// How the program ends.
#pragma once

namespace tessaly::cli {

enum class ExitStatus {
  done = 0,
  failed = 1,         ///< at least one file failed, or the work could not be done
  usage = 2,          ///< the command line itself is wrong
  interrupted = 130,  ///< stopped by Ctrl-C, as a shell counts it
};

}  // namespace tessaly::cli
