// SPDX-License-Identifier: MIT
#pragma once

/**
 * The measures every parametric cabinet shape is built from. Lengths in metres, angles in
 * degrees. trapAngle is the full angle between the two side walls, so each wall moves in by
 * trapInset = depth * tan(trapAngle / 2) from front to rear.
 */
struct CabinetShapeBasic {
    double width = 0.0;
    double height = 0.0;
    double depth = 0.0;
    double trapInset = 0.0;
    double trapAngle = 0.0;
};

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

/// A cuboid whose rear bottom edge is chamfered; lengths in metres.
struct CabinetShapeCuboidChamfered : CabinetShapeBasic {
    double chamferDepth = 0.0;  ///< how far the bottom stops short of the rear
    double chamferHeight = 0.0; ///< how far above the bottom the rear face stops
};

/// The rigging pocket cut into the rear of line and arc array elements; lengths in metres, angles in degrees.
struct CabinetShapeArrayPocket : CabinetShapeBasic {
    double depthPocket = 0.0;
    double widthPocket = 0.0;
    double widthPocketInner = 0.0; ///< pocket width at its bottom, from the wall angle
    double anglePocket = 0.0;      ///< 90 = walls square to the rear face
    double trapInsetPocket = 0.0;  ///< side-wall inset at the depth of the pocket bottom
};

/**
 * A line array element: a rigging section at the front and a transition section behind it
 * in which the side walls step in by widthReduction, then the pocket.
 */
struct CabinetShapeLineArray : CabinetShapeArrayPocket {
    double depthRigging = 0.0;
    double depthTransition = 0.0;
    double widthReduction = 0.0;
    double trapInsetRigging = 0.0;    ///< side-wall inset at the end of the rigging section
    double trapInsetTransition = 0.0; ///< side-wall inset at the end of the transition
};

/// An arc array element: the pocket and a front grill bent into an arc that bulges grillFrontOffset ahead of the front edges.
struct CabinetShapeArcArray : CabinetShapeArrayPocket {
    int grillArcSections = 0;
    double grillFrontOffset = 0.0;
};

/// A floor monitor wedge with an arc-shaped grill; lengths in metres, angles in degrees.
struct CabinetShapeMonitor : CabinetShapeBasic {
    int grillArcSections = 0;
    double grillRadius = 0.0;
    double grillStartAngle = 0.0;
    double grillEndAngle = 0.0;
};
