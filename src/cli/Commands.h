// The commands, one source file each.
#pragma once

#include "cli/Program.h"

namespace tessaly::cli {

void addInspect(Program& program);
void addSamples(Program& program);
void addCalibrate(Program& program);
void addRepair(Program& program);
void addRepairFile(Program& program);
void addProfiles(Program& program);
void addHelp(Program& program);

}  // namespace tessaly::cli
