// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include <vector>

/**
 * Levels relative to on-axis over angle and frequency in one plane: what an isobar map shows.
 * Angles in degrees from -180 to 180 (positive to the left in the horizontal plane, upwards in the
 * vertical plane), levels in dB at (f * angles.size() + a). A level is -inf where the value is 0,
 * and NaN at a frequency whose on-axis value is 0.
 */
struct IsobarMap {
    QList<double> frequencies; ///< Hz, the balloon's
    std::vector<double> angles; ///< degrees
    std::vector<double> levels; ///< dB relative to on-axis

    double Level(int frequencyIndex, int angleIndex) const { return levels[size_t(frequencyIndex) * angles.size() + size_t(angleIndex)]; }
};
