// SPDX-License-Identifier: MIT
#pragma once

#include "BalloonProblem.h"
#include "nvloudspeakerpluginsdk_export.h"

class BalloonTable;

/**
 * What a well-formed balloon file can still get wrong, checked on its table: the theta rows
 * run from 0 to 180 degrees; the phi columns cover what the symmetry stores, a full circle with
 * its closing 360-degree column (the lookup interpolates towards the next row after the last
 * column); the value count agrees with the grid; no value is NaN or infinite; and the levels
 * lie in a plausible range. Problems name the header field they concern.
 */
class NVLPS_EXPORT BalloonCheck
{
public:
    /// Levels (dB re 1) outside this range are reported as implausible.
    static constexpr double LowestPlausibleLevel = -200.0;
    static constexpr double HighestPlausibleLevel = 200.0;

    static QList<BalloonProblem> Check(const BalloonTable &table);
    /// Every problem of a balloon file (a path or ":/..." resource): what BalloonFile::Read()
    /// finds, or else what Check() finds in its table.
    static QList<BalloonProblem> CheckFile(const QString &fileName);
};
