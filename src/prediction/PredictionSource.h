// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QString>

#include <array>
#include <optional>

/**
 * One loudspeaker placed in a prediction scene. World frame: x forward, y left, z up, metres.
 * With yaw, pitch and roll 0 the source faces +x with its up along +z; yaw turns towards +y,
 * positive pitch aims up, roll turns about the front axis (left side up), applied in that order.
 * The position is the source point's acoustic origin.
 */
struct PredictionSource {
    QString loudspeaker;
    std::array<double, 3> position{};
    double yawDeg = 0.0;
    double pitchDeg = 0.0;
    double rollDeg = 0.0;
    QString mounting = QStringLiteral("flown");
    std::optional<int> setup;  ///< else the mounting's default setup
    QMap<int, int> switches;   ///< coupling switches not given sit at their 0 dB position
    double gainDb = 0.0;
    double delayMs = 0.0;
    int polarity = 1;          ///< +1 or -1
};
