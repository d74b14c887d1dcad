// SPDX-License-Identifier: MIT
#pragma once

#include "CabinetShapeBasic_p.h"

/**
 * A line array element: the basic measures, a rigging section at the front, a transition
 * section behind it in which the side walls step in by widthReduction, and a rigging pocket
 * cut into the rear. Lengths in metres, angles in degrees.
 */
struct CabinetShapeLineArray : CabinetShapeBasic {
    double depthPocket = 0.0;
    double widthPocket = 0.0;
    double widthPocketInner = 0.0;
    double anglePocket = 0.0;
    double depthRigging = 0.0;
    double depthTransition = 0.0;
    double widthReduction = 0.0;
    double trapInsetRigging = 0.0;    ///< side-wall inset at the end of the rigging section
    double trapInsetTransition = 0.0; ///< side-wall inset at the end of the transition
    double trapInsetPocket = 0.0;     ///< side-wall inset at the depth of the pocket bottom
};
