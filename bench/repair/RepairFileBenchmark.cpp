// What the road of one file costs, compared with copying the file and comparing the copy by the system's own tools in
// the same run: whole processes, timed from outside, in turn, by their minima, because the machine is never quiet.
//
//   inMemory   `tessaly-cli repair-file` against cp, cmp, rm; no disk in the way   goal 1.05 (16 bits), 2.0 (12 bits)
//   onDisk     the same against dd conv=fsync, dropped pages, cmp, rm              goal 1.0 (16 bits), 1.4 (12 bits)
//   keptMemory DNGWriter::repairCopy file after file in one process, as a batch does it
//
// The folder on a disk is the system's temporary one, or the one that TESSALY_BENCH_FOLDER names.
#include "dng/DNGReader.h"
#include "platform/AtomicFile.h"
#include "profile/CameraProfileJSON.h"
#include "repair/RepairCopy.h"
#include "tools/DNGBuilder.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <random>
#include <string>
#include <system_error>
#include <vector>

namespace {

using namespace tessaly;
using Path = std::filesystem::path;
using Clock = std::chrono::steady_clock;

constexpr std::int64_t width = 6000;
constexpr std::int64_t height = 4000;
constexpr int rounds = 11;
constexpr double never = std::numeric_limits<double>::infinity();

Path diskFolder() {
  const char* const chosen = std::getenv("TESSALY_BENCH_FOLDER");
  return chosen != nullptr ? Path(chosen) : std::filesystem::temp_directory_path();
}

/// A 24-megapixel photograph and a profile with 2000 points and four columns, in a folder of their own.
class Photograph {
 public:
  Photograph(const Path& parent, int bits) : folder_(makeFolder(parent)) {
    std::mt19937 random(1);
    std::vector<std::uint16_t> samples(static_cast<std::size_t>(width * height));
    for (std::uint16_t& sample : samples)
      sample = static_cast<std::uint16_t>(random() >> (32 - bits));
    tools::DNGBuilder().size(width, height).bits(bits).samples(std::move(samples)).inSubIFD().write(source());
    profile_ = CameraProfile::empty("Body", DNGReader::readMetadata(source()));
    addDefects(random);
    replaceFileAtomically(profileFile(), encodeProfile(profile_));
  }

  Photograph(const Photograph&) = delete;
  Photograph& operator=(const Photograph&) = delete;

  ~Photograph() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  [[nodiscard]] Path source() const { return folder_ / "source.dng"; }
  [[nodiscard]] Path copy() const { return folder_ / "copy.dng"; }
  [[nodiscard]] Path profileFile() const { return folder_ / "profile.json"; }
  [[nodiscard]] const CameraProfile& profile() const { return profile_; }

  /// `{s}`, `{c}` and `{p}` in a command stand for source, copy and profile.
  [[nodiscard]] std::string command(const std::string& pattern) const {
    return fmt::format(fmt::runtime(pattern), fmt::arg("s", source().string()), fmt::arg("c", copy().string()),
                       fmt::arg("p", profileFile().string()));
  }

 private:
  static Path makeFolder(const Path& parent) {
    std::string name = parent / "tessaly-bench-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category());
    return name;
  }

  void addDefects(std::mt19937& random) {
    for (int count = 0; count < 2000; ++count) {
      DefectPixel pixel;
      pixel.x = random() % width;
      pixel.y = random() % height;
      profile_.pixels.push_back(pixel);
    }
    for (std::int64_t column = 1; column <= 4; ++column) {
      DefectLine line;
      line.x = column * width / 5;
      line.yEnd = height - 1;
      profile_.lines.push_back(line);
    }
  }

  Path folder_;
  CameraProfile profile_;
};

struct Cost {
  double milliseconds = never;
  double processor = never;  ///< milliseconds of it, which do not count what other programs do meanwhile
  double peakMiB = 0;
  double pageFaults = 0;

  /// The fastest run counts, and the largest.
  void take(const Cost& run) {
    milliseconds = std::min(milliseconds, run.milliseconds);
    processor = std::min(processor, run.processor);
    peakMiB = std::max(peakMiB, run.peakMiB);
    pageFaults = std::max(pageFaults, run.pageFaults);
  }
};

double milliseconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
}

double processorTime(const rusage& usage) {
  return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

/// Runs a command by the shell and waits for it.
Cost costOf(const std::string& command) {
  const Clock::time_point start = Clock::now();
  const pid_t child = ::fork();
  if (child == 0) {
    ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    ::_exit(127);
  }
  int status = 0;
  rusage usage{};
  ::wait4(child, &status, 0, &usage);
  if (status != 0) throw std::runtime_error("Failed: " + command);
  const double elapsed = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
  return {elapsed, processorTime(usage), static_cast<double>(usage.ru_maxrss) / 1024,
          static_cast<double>(usage.ru_minflt)};
}

void report(benchmark::State& state, const Cost& repair, const Cost& floor) {
  const double planeMiB = 2.0 * width * height / (1024 * 1024);
  state.counters["ms"] = repair.milliseconds;
  state.counters["floor_ms"] = floor.milliseconds;
  state.counters["ratio"] = repair.milliseconds / floor.milliseconds;
  state.counters["processor_ratio"] = repair.processor / floor.processor;
  state.counters["faults"] = repair.pageFaults;
  state.counters["peak_MiB"] = repair.peakMiB;
  state.counters["peak_less_16_MiB_per_plane"] = (repair.peakMiB - 16) / planeMiB;
  state.counters["samples_per_second"] = 1000.0 * width * height / repair.milliseconds;
}

/// Repairs by the command line and does the same by hand, in turn.
void compare(benchmark::State& state, const Path& folder, const std::string& byHand) {
  const Photograph photograph(folder, static_cast<int>(state.range(0)));
  const std::string home = "TESSALY_HOME=" + (folder / "none").string();
  const std::string repair = home + " " TESSALY_CLI " repair-file {s} {c} --profile {p} > /dev/null && rm {c}";
  Cost cost;
  Cost floor;
  for (auto _ : state) {
    cost.take(costOf(photograph.command(repair)));
    floor.take(costOf(photograph.command(byHand + " && cmp {s} {c} && rm {c}")));
  }
  report(state, cost, floor);
}

void inMemory(benchmark::State& state) {
  compare(state, "/dev/shm", "cp {s} {c}");
}
BENCHMARK(inMemory)->ArgName("bits")->Arg(16)->Arg(12)->Arg(14)->Iterations(rounds)->Unit(benchmark::kMillisecond);

void onDisk(benchmark::State& state) {
  compare(state, diskFolder(),
          "dd if={s} of={c} bs=4M conv=fsync status=none && "
          "dd of={c} oflag=nocache conv=notrunc,fdatasync count=0 status=none");
}
BENCHMARK(onDisk)->ArgName("bits")->Arg(16)->Arg(12)->Iterations(rounds)->Unit(benchmark::kMillisecond);

Cost costOfRepairing(const Photograph& photograph, RepairWorkspace& workspace) {
  rusage before{};
  ::getrusage(RUSAGE_SELF, &before);
  const Clock::time_point start = Clock::now();
  DNGWriter::repairCopy(photograph.source(), photograph.copy(), photograph.profile(), workspace);
  std::filesystem::remove(photograph.copy());
  const double elapsed = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
  rusage after{};
  ::getrusage(RUSAGE_SELF, &after);
  return {elapsed, processorTime(after) - processorTime(before), static_cast<double>(after.ru_maxrss) / 1024,
          static_cast<double>(after.ru_minflt - before.ru_minflt)};
}

void keptMemory(benchmark::State& state) {
  const Photograph photograph("/dev/shm", static_cast<int>(state.range(0)));
  RepairWorkspace workspace;
  costOfRepairing(photograph, workspace);
  Cost cost;
  Cost floor;
  for (auto _ : state) {
    cost.take(costOfRepairing(photograph, workspace));
    floor.take(costOf(photograph.command("cp {s} {c} && cmp {s} {c} && rm {c}")));
  }
  report(state, cost, floor);
}
BENCHMARK(keptMemory)->ArgName("bits")->Arg(16)->Arg(12)->Arg(14)->Iterations(rounds)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
