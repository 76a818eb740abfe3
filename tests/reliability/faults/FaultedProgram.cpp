#include "reliability/faults/FaultedProgram.h"

#include "support/FileBytes.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <new>
#include <utility>

namespace tessaly::faults {
namespace {

namespace fs = std::filesystem;

constexpr rlim_t mostSeconds = 10;
constexpr unsigned mostSecondsInAll = 120;

/// The plan in a file, as the injector maps it.
class SharedPlan {
 public:
  SharedPlan(const fs::path& file, const Fault& fault) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (::ftruncate(descriptor, sizeof(FaultPlan)) != 0) throw std::runtime_error("No room for the plan");
    void* const memory = ::mmap(nullptr, sizeof(FaultPlan), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    ::close(descriptor);
    if (memory == MAP_FAILED) throw std::bad_alloc();
    plan_ = new (memory) FaultPlan{fault.kind, fault.error, fault.at, {}, {}, {}, {}};
  }
  SharedPlan(const SharedPlan&) = delete;
  SharedPlan& operator=(const SharedPlan&) = delete;
  ~SharedPlan() { ::munmap(plan_, sizeof(FaultPlan)); }

  [[nodiscard]] const FaultPlan& plan() const { return *plan_; }

 private:
  FaultPlan* plan_ = nullptr;
};

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> list;
  for (std::string& text : texts)
    list.push_back(text.data());
  list.push_back(nullptr);
  return list;
}

void redirect(int descriptor, const char* file) {
  ::dup2(::open(file, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666), descriptor);
}

/// Waits for the end: the status, and whether it had to be killed. The alarm is the process's own.
std::pair<int, bool> wait(pid_t process) {
  int status = 0;
  while (::waitpid(process, &status, 0) < 0) {
  }
  if (WIFEXITED(status)) return {WEXITSTATUS(status), false};
  const int signal = WTERMSIG(status);
  return {128 + signal, signal == SIGALRM || signal == SIGXCPU};
}

}  // namespace

FaultedProgram::FaultedProgram(fs::path program, fs::path injector, fs::path folder)
    : program_(std::move(program)), injector_(std::move(injector)), folder_(std::move(folder)) {
  fs::create_directories(folder_);
}

Outcome FaultedProgram::run(const Command& command, const Fault& fault) const {
  const SharedPlan shared(folder_ / "plan", fault);
  std::vector<std::string> arguments{program_};
  arguments.insert(arguments.end(), command.arguments.begin(), command.arguments.end());
  std::vector<std::string> environment{"LD_PRELOAD=" + injector_.native(),
                                       std::string(planVariable) + "=" + (folder_ / "plan").native(),
                                       "TESSALY_HOME=" + (work() / "home").native(), "LC_ALL=C"};
  const std::vector<char*> argumentList = pointers(arguments);
  const std::vector<char*> environmentList = pointers(environment);
  const std::string output = folder_ / "output";
  const std::string errors = folder_ / "errors";
  const std::string place = work();
  const pid_t process = ::fork();
  if (process == 0) {  // only calls of the system from here on: there are other threads
    redirect(STDOUT_FILENO, output.c_str());
    redirect(STDERR_FILENO, errors.c_str());
    const rlimit time{mostSeconds, mostSeconds + 1};
    ::setrlimit(RLIMIT_CPU, &time);
    ::alarm(mostSecondsInAll);
    if (::chdir(place.c_str()) != 0) ::_exit(126);
    ::execve(argumentList.front(), argumentList.data(), environmentList.data());
    ::_exit(127);
  }
  const auto [status, hung] = wait(process);
  const FaultPlan& plan = shared.plan();
  return {status,
          hung,
          plan.calls,
          plan.allocations,
          plan.hits,
          plan.call,
          tests::readText(output),
          tests::readText(errors)};
}

}  // namespace tessaly::faults
