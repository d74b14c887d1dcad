// SPDX-License-Identifier: MIT
#pragma once

/**
 * The two planes of a balloon that plane curves, beamwidths and isobars are taken in. A plane angle
 * is degrees in [-180, 180]: in the horizontal plane positive angles lie to the loudspeaker's left
 * (phi 90) and negative ones to its right (phi 270); in the vertical plane positive angles lie above
 * (phi 0) and negative ones below (phi 180). The magnitude of a plane angle is theta.
 */
enum class DirectivityPlane { Horizontal, Vertical };
