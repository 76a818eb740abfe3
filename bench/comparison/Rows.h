// What is compared: the rows of the table, in groups that make their files and remove them again.
#pragma once

#include "comparison/Comparison.h"
#include "comparison/Material.h"

#include <functional>
#include <string>

namespace tessaly::bench {

/// How much is measured.
struct Extent {
  bool isQuick = false;

  [[nodiscard]] int rounds(int usual) const { return isQuick ? (usual + 4) / 5 : usual; }
};

using Report = std::function<void(const Comparison&)>;

void compareRepairInMemory(const Extent& extent, const Report& report);
void compareRepairOnDisk(const Extent& extent, const Report& report);
void compareStart(const Extent& extent, const Report& report);
void compareProfiles(const Extent& extent, const Report& report);
void compareBatch(const Extent& extent, const Report& report);
void compareCalibration(const Extent& extent, const Report& report);

/// In this process, and after everything else: the memory of the programs that it starts would count its own.
void compareDecoding(const Extent& extent, const Report& report);

/// The folder in memory, and the one on a disk: TESSALY_BENCH_FOLDER, or the system's temporary one.
[[nodiscard]] Path folderInMemory();
[[nodiscard]] Path folderOnDisk();

/// The repair of one file by the command line, and the same copy without a repair.
[[nodiscard]] Command repair(const Path& source, const Path& copy, const Path& profile);
[[nodiscard]] std::vector<Command> copyAndCompare(const Path& source, const Path& copy);

}  // namespace tessaly::bench
