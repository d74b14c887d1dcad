// SPDX-License-Identifier: MIT
#include "SpinoramaCurves.h"

#include <cmath>
#include <initializer_list>

namespace {

using Plane = DirectivityPlane;

struct OrbitPoint {
    Plane plane;
    int angle; // degrees
};
using AngleSet = std::initializer_list<OrbitPoint>;

const AngleSet ListeningWindow = {{Plane::Horizontal, 0}, {Plane::Vertical, 10}, {Plane::Vertical, -10},
                                  {Plane::Horizontal, 10}, {Plane::Horizontal, -10}, {Plane::Horizontal, 20},
                                  {Plane::Horizontal, -20}, {Plane::Horizontal, 30}, {Plane::Horizontal, -30}};
const AngleSet FloorBounce = {{Plane::Vertical, -20}, {Plane::Vertical, -30}, {Plane::Vertical, -40}};
const AngleSet CeilingBounce = {{Plane::Vertical, 40}, {Plane::Vertical, 50}, {Plane::Vertical, 60}};
const AngleSet FrontWallBounce = {{Plane::Horizontal, 0}, {Plane::Horizontal, 10}, {Plane::Horizontal, -10},
                                  {Plane::Horizontal, 20}, {Plane::Horizontal, -20}, {Plane::Horizontal, 30},
                                  {Plane::Horizontal, -30}};
const AngleSet SideWallBounce = {{Plane::Horizontal, 40}, {Plane::Horizontal, -40}, {Plane::Horizontal, 50},
                                 {Plane::Horizontal, -50}, {Plane::Horizontal, 60}, {Plane::Horizontal, -60},
                                 {Plane::Horizontal, 70}, {Plane::Horizontal, -70}, {Plane::Horizontal, 80},
                                 {Plane::Horizontal, -80}};
const AngleSet RearWallBounce = {{Plane::Horizontal, 180}, {Plane::Horizontal, 90}, {Plane::Horizontal, -90}};

// The standard's sound-power weight of a point by its angle from the axis, 0 ... 90 degrees in
// 10-degree steps; an angle a beyond 90 weighs as 180 - a.
constexpr double SoundPowerWeights[10] = {0.000604486, 0.004730189, 0.008955027, 0.012387354, 0.014989611,
                                          0.016868154, 0.018165962, 0.019006744, 0.019473159, 0.019622269};

double powerMean(int f, const SpinoramaCurves::PowerAt &power, const AngleSet &points)
{
    double sum = 0.0;
    for (const OrbitPoint &point : points)
        sum += power(f, point.plane, point.angle);
    return sum / double(points.size());
}

// The 70 distinct points: the whole horizontal orbit, and the vertical one without on-axis and 180.
double weightedSoundPower(int f, const SpinoramaCurves::PowerAt &power)
{
    double sum = 0.0;
    double weights = 0.0;
    for (int angle = -170; angle <= 180; angle += 10) {
        const int fromAxis = std::abs(angle) > 90 ? 180 - std::abs(angle) : std::abs(angle);
        const double w = SoundPowerWeights[fromAxis / 10];
        sum += w * power(f, Plane::Horizontal, angle);
        weights += w;
        if (angle != 0 && angle != 180) {
            sum += w * power(f, Plane::Vertical, angle);
            weights += w;
        }
    }
    return sum / weights;
}

double decibels(double power)
{
    return 10.0 * std::log10(power);
}

} // namespace

SpinoramaCurves SpinoramaCurves::Compute(int frequencyCount, const PowerAt &power)
{
    SpinoramaCurves curves;
    for (int f = 0; f < frequencyCount; ++f) {
        const double lw = powerMean(f, power, ListeningWindow);
        const double bounces[] = {powerMean(f, power, FloorBounce), powerMean(f, power, CeilingBounce), powerMean(f, power, FrontWallBounce),
                                  powerMean(f, power, SideWallBounce), powerMean(f, power, RearWallBounce)};
        const double er = (bounces[0] + bounces[1] + bounces[2] + bounces[3] + bounces[4]) / 5.0;
        const double sp = weightedSoundPower(f, power);
        curves.onAxis.push_back(decibels(power(f, Plane::Horizontal, 0)));
        curves.listeningWindow.push_back(decibels(lw));
        curves.earlyReflections.push_back(decibels(er));
        curves.soundPower.push_back(decibels(sp));
        curves.soundPowerDi.push_back(decibels(lw) - decibels(sp));
        curves.earlyReflectionsDi.push_back(decibels(lw) - decibels(er));
        curves.estimatedInRoom.push_back(decibels(0.12 * lw + 0.44 * er + 0.44 * sp));
        curves.floorBounce.push_back(decibels(bounces[0]));
        curves.ceilingBounce.push_back(decibels(bounces[1]));
        curves.frontWallBounce.push_back(decibels(bounces[2]));
        curves.sideWallBounce.push_back(decibels(bounces[3]));
        curves.rearWallBounce.push_back(decibels(bounces[4]));
    }
    return curves;
}
