// SPDX-License-Identifier: MIT
#pragma once

#include "DirectivityPlane.h"
#include "nvloudspeakerpluginsdkanalysis_export.h"

#include <functional>
#include <vector>

/**
 * The standard family of loudspeaker curves taken from the horizontal and vertical orbits at
 * 10-degree steps, one level per frequency, in dB of the balloon's own scale:
 *
 * - on-axis;
 * - listening window: power mean of on-axis, +-10 vertical and +-10, +-20, +-30 horizontal;
 * - early reflections: power mean of five bounce groups (floor: -20, -30, -40 vertical; ceiling:
 *   40, 50, 60 vertical; front wall: 0, +-10, +-20, +-30 horizontal; side wall: +-40 ... +-80
 *   horizontal; rear wall: 180 and +-90 horizontal), each group the power mean of its angles;
 * - sound power: the weighted power mean of the 70 distinct points of both orbits, each point
 *   weighted by the standard weight of its angle from the axis;
 * - sound-power DI (listening window - sound power), early-reflections DI (listening window -
 *   early reflections);
 * - estimated in-room response: 0.12 listening window + 0.44 early reflections + 0.44 sound
 *   power, added as powers.
 *
 * The five bounce groups are kept as curves of their own. A level is -inf where every value it
 * averages is 0.
 */
struct NVLPS_ANALYSIS_EXPORT SpinoramaCurves {
    std::vector<double> onAxis;
    std::vector<double> listeningWindow;
    std::vector<double> earlyReflections;
    std::vector<double> soundPower;
    std::vector<double> soundPowerDi;
    std::vector<double> earlyReflectionsDi;
    std::vector<double> estimatedInRoom;
    /// The five bounce groups that early reflections average.
    std::vector<double> floorBounce;
    std::vector<double> ceilingBounce;
    std::vector<double> frontWallBounce;
    std::vector<double> sideWallBounce;
    std::vector<double> rearWallBounce;

    /// The power |value|^2 at a frequency index and a plane angle (a multiple of 10 degrees).
    using PowerAt = std::function<double(int frequencyIndex, DirectivityPlane plane, int angle)>;
    /// The curves of `frequencyCount` frequencies from the orbit points' powers.
    static SpinoramaCurves Compute(int frequencyCount, const PowerAt &power);
};
