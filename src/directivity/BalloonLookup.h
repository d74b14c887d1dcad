// SPDX-License-Identifier: MIT
#pragma once

// Internal to the library (not installed): the balloon lookup as inline steps.

#include "BalloonFrequencyIndex.h"
#include "BalloonKernel.h"
#include "BalloonTable.h"

// The frequencies with the index that snaps lookups to them, shared by the tables of one grid.
struct BalloonTable::Frequencies {
    QList<double> values;
    BalloonFrequencyIndex index;
};

// The steps of a lookup, inlined into the table's public entries and into the source point's
// lookup: exported members would call each other through the procedure linkage table.
struct BalloonLookup {
    // The frequencies of the grid are found inline; any other is searched out of line, so that
    // the usual way saves no registers for the search.
    Q_ALWAYS_INLINE static int Frequency(const BalloonTable &table, double frequency)
    {
        const int onGrid = table.m_frequencyIndex->FindOnGrid(table.m_frequencyData, table.m_frequencyCount, frequency);
        return Q_LIKELY(onGrid >= 0) ? onGrid : SearchedFrequency(table, frequency);
    }

    Q_NEVER_INLINE static int SearchedFrequency(const BalloonTable &table, double frequency)
    {
        return table.m_frequencyIndex->Find(table.m_frequencyData, table.m_frequencyCount, frequency);
    }

    Q_ALWAYS_INLINE static BalloonCell Cell(const BalloonTable &table, double theta, double phi, bool flushMount)
    {
        const BalloonTable::Grid &grid = table.m_grid;
        BalloonCell cell;
        cell.flushMount = flushMount && table.m_flushMount;
        const double t = theta / grid.thetaStepWidth;
        const double p = cell.flushMount ? BalloonKernel::flushMountColumn(phi)
                                         : BalloonKernel::phiIndex(phi, grid.symmetry, grid.phiStepWidth);
        constexpr double Limit = 2147483648.0; // with a compact grid, no index product overflows
        if (Q_LIKELY(!cell.flushMount && t >= 0 && t < Limit && p >= 0 && p < Limit)) {
            // interpolationIndex() of indexes in [0, 2^31), whose fractions are not negative
            cell.theta = qint64(t);
            cell.phi = qint64(p);
            cell.thetaFraction = t - double(cell.theta);
            cell.phiFraction = p - double(cell.phi);
            if (cell.theta > 0 && cell.thetaFraction <= 0.0) {
                cell.thetaFraction = 1.0;
                --cell.theta;
            }
            if (cell.phi > 0 && cell.phiFraction <= 0.0) {
                cell.phiFraction = 1.0;
                --cell.phi;
            }
            cell.plain = true;
            return cell;
        }
        cell.theta = BalloonKernel::interpolationIndex(t, cell.thetaFraction);
        cell.phi = BalloonKernel::interpolationIndex(p, cell.phiFraction);
        return cell;
    }

    // The short way: a plain cell inside the table, with no overflow or per-corner checks and no
    // roots unless the phases nearly cancel. Everything else takes the checked way, with the same
    // results where both go.
    Q_ALWAYS_INLINE static Complex Value(const BalloonTable &table, int frequencyIndex, const BalloonCell &cell)
    {
        if (Q_LIKELY(cell.plain && table.m_compactGrid && frequencyIndex >= 0
                     && frequencyIndex < table.m_frequencyCount)) {
            const qint64 stride = table.m_grid.nv;
            const qint64 first = (frequencyIndex * qint64(table.m_grid.nh) + cell.theta) * stride + cell.phi;
            if (Q_LIKELY(first < table.m_valueCount - stride - 1)) {
                const std::complex<float> *values = table.m_valueData + first;
                const BalloonKernel::WeightedSum sum = BalloonKernel::weightedSum(values, stride, cell.thetaFraction, cell.phiFraction);
                return Q_LIKELY(sum.keepsPhases) ? sum.value
                                                 : BalloonKernel::exactCell(values, stride, cell.thetaFraction, cell.phiFraction);
            }
        }
        return table.GetCheckedValue(frequencyIndex, cell);
    }

    /// GetValueAtFrequency().
    Q_ALWAYS_INLINE static Complex ValueAtFrequency(const BalloonTable &table, double frequency, double theta, double phi,
                                                    bool flushMount)
    {
        return Value(table, Frequency(table, frequency), Cell(table, theta, phi, flushMount));
    }
};
