// SPDX-License-Identifier: MIT
#pragma once

#include "CabinetShapeBasic_p.h"

/**
 * An arc array element: the basic measures, a rigging pocket cut into the rear and a front
 * grill bent into an arc that bulges grillFrontOffset ahead of the front edges.
 * Lengths in metres, angles in degrees.
 */
struct CabinetShapeArcArray : CabinetShapeBasic {
    double depthPocket = 0.0;
    double widthPocket = 0.0;
    double widthPocketInner = 0.0; ///< pocket width at its bottom, from the wall angle
    double anglePocket = 0.0;      ///< 90 = walls square to the rear face
    double trapInsetPocket = 0.0;  ///< side-wall inset at the depth of the pocket bottom
    int grillArcSections = 0;
    double grillFrontOffset = 0.0;
};
