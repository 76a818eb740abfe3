// The mosaics that the reconstruction rules are compiled for.
#pragma once

#include "dng/PlaneView.h"
#include "repair/Mosaic.h"
#include "repair/SampleMask.h"

namespace tessaly {

/// A whole plane in memory.
using PlaneMosaic = Mosaic<PlaneView, SampleMask>;

}  // namespace tessaly
