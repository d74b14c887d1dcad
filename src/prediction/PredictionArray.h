// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <array>

/**
 * A column of `count` identical cabinets hung below a rigging frame. `splayDeg[i]` is the angle
 * between cabinet i and cabinet i + 1 (each turns further down), `topPitchDeg` the first
 * cabinet's pitch (positive aims up). The frame's origin sits at `position`, turned by `yawDeg`.
 */
struct PredictionArray {
    QString rigging;
    QString loudspeaker;
    int count = 0;
    std::array<double, 3> position{};
    double yawDeg = 0.0;
    double topPitchDeg = 0.0;
    QList<double> splayDeg;
    double gainDb = 0.0;
    double delayMs = 0.0;
};
