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
