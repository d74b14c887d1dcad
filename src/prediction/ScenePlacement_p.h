// SPDX-License-Identifier: MIT
#pragma once

#include "PlacedSource.h"
#include "PredictionArray.h"
#include "PredictionSource.h"

#include <QList>

#include <array>

class LoudspeakerDescriptor;

/// Axes and placement of scene sources; the world frame is x forward, y left, z up.
namespace ScenePlacement {
using Vector = std::array<double, 3>;

/// A body frame: where the body's front, left and up axes point in the world.
struct Axes {
    Vector front{1.0, 0.0, 0.0};
    Vector left{0.0, 1.0, 0.0};
    Vector up{0.0, 0.0, 1.0};
    /// The world vector of body coordinates v.
    Vector Apply(const Vector &v) const
    {
        return {v[0] * front[0] + v[1] * left[0] + v[2] * up[0], v[0] * front[1] + v[1] * left[1] + v[2] * up[1],
                v[0] * front[2] + v[1] * left[2] + v[2] * up[2]};
    }
};

/// Yaw towards +y, then pitch up, then roll about the front axis (left side up), in degrees.
Axes Turned(double yawDeg, double pitchDeg, double rollDeg);

/// One cabinet of a scene: the loudspeaker, its mounting, and where its cabinet frame sits.
struct Cabinet {
    LoudspeakerDescriptor *loudspeaker = nullptr;
    QString name;
    Vector origin{}; ///< world position of the cabinet frame's origin
    Axes axes;
};

/// The cabinet of a single source, placed so that its first source point's origin is at the position.
Cabinet PlaceSource(const PredictionSource &source, const QString &where);
/// The cabinets of an array, top first; throws std::invalid_argument naming the key and the allowed values.
QList<Cabinet> HangArray(const PredictionArray &array, const QString &where);
} // namespace ScenePlacement
