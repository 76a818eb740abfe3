// tessaly-fault-runner PROGRAM INJECTOR calls|memory [RUNS]: runs every command of the command line with one fault at
// every call that it makes (or every allocation), or, with RUNS, about so many of these runs, spread evenly. Prints a
// line a command and what broke a rule; ends with 0 when nothing did.
#include "reliability/faults/FaultRules.h"
#include "support/TemporaryFolder.h"

#include <fmt/format.h>

#include <atomic>
#include <cerrno>
#include <charconv>
#include <iostream>
#include <mutex>
#include <string_view>
#include <thread>

namespace tessaly::faults {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostComplaints = 60;

struct Sort {
  std::string name;
  Kind kind = Kind::none;
  int error = 0;
};

std::vector<Sort> sortsOf(std::string_view what) {
  if (what == "memory") return {{"once", Kind::noMemory, 0}, {"from then on", Kind::noMemoryAnyMore, 0}};
  return {{"EIO", Kind::error, EIO},       {"ENOSPC", Kind::error, ENOSPC}, {"EINTR", Kind::error, EINTR},
          {"EACCES", Kind::error, EACCES}, {"ESTALE", Kind::error, ESTALE}, {"short", Kind::shortCount, 0},
          {"SIGKILL", Kind::kill, 0}};
}

struct Order {
  const Command* command = nullptr;
  const Reference* reference = nullptr;
  Sort sort;
  std::int64_t at = 0;
};

/// Where the runs of each thread work: in memory where the system has a file system there.
fs::path fastFolder() {
  return fs::is_directory("/dev/shm") ? "/dev/shm" : fs::temp_directory_path();
}

class Runner {
 public:
  Runner(fs::path program, fs::path injector, std::string what, std::int64_t most)
      : program_(std::move(program)), injector_(std::move(injector)), what_(std::move(what)), most_(most) {}

  int run() {
    for (const Command& command : commands_)
      references_.push_back(reference(command));
    plan();
    perform();
    report();
    return violations_ == 0 && notHit_ < orders_.size() ? 0 : 1;
  }

 private:
  [[nodiscard]] FaultedProgram place(std::size_t number) const {
    return {program_, injector_, folder_ / std::to_string(number)};
  }

  [[nodiscard]] Reference reference(const Command& command) const {
    const FaultedProgram program = place(0);
    restore(program.work(), scene_);
    Outcome outcome = program.run(command, {});
    if (outcome.status != 0) throw std::runtime_error(command.name + " fails without a fault: " + outcome.errors);
    return {scene_, treeOf(program.work()), std::move(outcome)};
  }

  void plan() {
    for (std::size_t i = 0; i < commands_.size(); ++i) {
      const Outcome& whole = references_[i].outcome;
      const std::int64_t count = what_ == "memory" ? whole.allocations : whole.calls;
      for (const Sort& sort : sortsOf(what_))
        for (std::int64_t at = 1; at <= count; ++at)
          orders_.push_back({&commands_[i], &references_[i], sort, at});
    }
    const auto all = static_cast<std::int64_t>(orders_.size());
    if (most_ <= 0 || most_ >= all) return;
    std::vector<Order> sample;
    for (std::int64_t i = 0; i < most_; ++i)
      sample.push_back(orders_[static_cast<std::size_t>(i * all / most_)]);
    orders_ = std::move(sample);
  }

  void perform() {
    std::vector<std::jthread> threads;
    for (std::size_t number = 0; number < std::max(std::thread::hardware_concurrency(), 1U); ++number) {
      threads.emplace_back([this, number] {
        const FaultedProgram program = place(number);
        for (std::size_t next = next_++; next < orders_.size(); next = next_++)
          disturb(program, orders_[next]);
      });
    }
  }

  void disturb(const FaultedProgram& program, const Order& order) {
    restore(program.work(), scene_);
    const Fault fault{order.sort.kind, order.sort.error, order.at};
    const Outcome outcome = program.run(*order.command, fault);
    const std::vector<std::string> found = violations(*order.reference, fault, outcome, treeOf(program.work()));
    const std::lock_guard guard(lock_);
    notHit_ += outcome.hits == 0 ? 1U : 0U;
    ++byStatus_[outcome.hits > 0 && fault.kind == Kind::kill ? "killed" : std::to_string(outcome.status)];
    hits_[order.command->name] += outcome.hits > 0 ? 1 : 0;
    for (const std::string& complaint : found) {
      if (++violations_ <= mostComplaints) {
        std::cout << fmt::format("{}, {} at {} ({}): {}\n", order.command->name, order.sort.name, order.at,
                                 outcome.call, complaint);
      }
    }
  }

  void report() const {
    std::int64_t injected = 0;
    for (std::size_t i = 0; i < commands_.size(); ++i) {
      const auto found = hits_.find(commands_[i].name);
      const std::int64_t hits = found == hits_.end() ? 0 : found->second;
      injected += hits;
      std::cout << fmt::format("{:22} {:6} calls {:7} allocations {:6} faults\n", commands_[i].name,
                               references_[i].outcome.calls, references_[i].outcome.allocations, hits);
    }
    for (const auto& [status, count] : byStatus_)
      std::cout << fmt::format("ended with {:7} {:7}\n", status, count);
    std::cout << fmt::format("{} runs, {} faults injected, {} rules broken\n", orders_.size(), injected, violations_);
  }

  const tests::TemporaryFolder folder_{fastFolder()};
  const fs::path program_;
  const fs::path injector_;
  const std::string what_;
  const std::int64_t most_;
  const Tree scene_ = sceneTree();
  const std::vector<Command> commands_ = commands();
  std::vector<Reference> references_;
  std::vector<Order> orders_;
  std::atomic<std::size_t> next_ = 0;
  std::mutex lock_;
  std::map<std::string, std::int64_t> hits_;      ///< by command
  std::map<std::string, std::int64_t> byStatus_;  ///< how runs ended
  std::size_t violations_ = 0;
  std::size_t notHit_ = 0;
};

}  // namespace
}  // namespace tessaly::faults

int main(int count, char** arguments) {
  if (count != 4 && count != 5) return 2;
  std::int64_t most = 0;
  if (count == 5) {
    const std::string_view text = arguments[4];
    std::from_chars(text.data(), text.data() + text.size(), most);
  }
  return tessaly::faults::Runner(std::filesystem::absolute(arguments[1]), std::filesystem::absolute(arguments[2]),
                                 arguments[3], most)
      .run();
}
