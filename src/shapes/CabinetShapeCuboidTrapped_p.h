// SPDX-License-Identifier: MIT
#pragma once

#include "CabinetShapeBasic_p.h"

/**
 * A cuboid whose two rear vertical edges are bevelled. The bevel angles are per side and
 * used whole (unlike the halved basic trapAngle). Lengths in metres, angles in degrees;
 * trapRightX and trapLeftX are the lateral coordinates of the rear corners.
 */
struct CabinetShapeCuboidTrapped : CabinetShapeBasic {
    double trapAngleLeft = 0.0;
    double trapAngleRight = 0.0;
    double depthToTrapLeft = 0.0;
    double depthToTrapRight = 0.0;
    double trapRightX = 0.0;
    double trapLeftX = 0.0;
};
