// SPDX-License-Identifier: MIT
#pragma once

#include "CabinetShapeBasic_p.h"

/// A cuboid whose rear bottom edge is chamfered; lengths in metres.
struct CabinetShapeCuboidChamfered : CabinetShapeBasic {
    double chamferDepth = 0.0;  ///< how far the bottom stops short of the rear
    double chamferHeight = 0.0; ///< how far above the bottom the rear face stops
};
