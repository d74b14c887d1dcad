// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/**
 * The frequency-independent part of one balloon lookup: the cell of a direction in the grid and
 * where the direction lies inside it. BalloonTable::GetCell() computes it once, so that a caller
 * looking up many frequencies of one direction pays for the angles only once.
 *
 * The cell's corners are (theta, phi), (theta, phi + 1), (theta + 1, phi) and (theta + 1, phi + 1)
 * in grid indexes, weighted bilinearly by the fractions. A direction on a grid line above the first
 * is the upper edge (fraction 1) of the cell below it. Indexes are not clamped: a direction outside
 * the grid gives a cell outside it, and the lookup decides what that reads or throws.
 */
struct BalloonCell {
    qint64 theta = 0;           ///< theta row of the first corner
    qint64 phi = 0;             ///< phi column of the first corner (of the flush-mount table when flushMount)
    double thetaFraction = 0.0; ///< weight of the row theta + 1, in [0, 1] for finite directions
    double phiFraction = 0.0;   ///< weight of the column phi + 1
    bool flushMount = false;    ///< the cell indexes the flush-mount table (two columns)
    bool plain = false;         ///< both indexes in [0, 2^31) with finite fractions: the short way may read it
};
