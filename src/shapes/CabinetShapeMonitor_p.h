// SPDX-License-Identifier: MIT
#pragma once

#include "CabinetShapeBasic_p.h"

/// A floor monitor wedge with an arc-shaped grill; lengths in metres, angles in degrees.
struct CabinetShapeMonitor : CabinetShapeBasic {
    int grillArcSections = 0;
    double grillRadius = 0.0;
    double grillStartAngle = 0.0;
    double grillEndAngle = 0.0;
};
