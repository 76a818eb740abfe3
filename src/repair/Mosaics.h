// The mosaics that the reconstruction rules are compiled for.
#pragma once

#include "dng/PlaneView.h"
#include "dng/copy/SampleWindow.h"
#include "repair/DefectRows.h"
#include "repair/Mosaic.h"
#include "repair/SampleMask.h"

namespace tessaly {

/// A whole plane in memory.
using PlaneMosaic = Mosaic<PlaneView, SampleMask>;

/// The rows that are at hand while a file streams by.
using SliceMosaic = Mosaic<SampleWindow, DefectRows>;

}  // namespace tessaly
