// SPDX-License-Identifier: MIT
#pragma once

#include "PredictionArray.h"
#include "PredictionSource.h"

#include <QList>

#include <array>
#include <vector>

/// What a prediction computes: sources and arrays, receivers, bands and the air.
struct PredictionScene {
    QList<PredictionSource> sources;
    QList<PredictionArray> arrays;
    std::vector<std::array<double, 3>> receivers; ///< metres, world frame
    int planeColumns = 0;                        ///< receivers form rows of this many points on a plane; 0 for a list
    QList<int> bandIndexes;                      ///< indexes into the 1/24-octave frequency grid
    double speedOfSound = 343.0;                 ///< m/s
    bool hasAir = false;                         ///< absorb in air (ISO 9613-1) with the values below
    double temperatureC = 20.0;
    double relativeHumidityPercent = 50.0;
    double pressureKpa = 101.325;
};
