// SPDX-License-Identifier: MIT
#pragma once

#include "nvloudspeakerpluginsdk_export.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>

/**
 * Snaps a frequency to an index of a balloon's frequency vector: the first index holding
 * exactly that frequency, else the first index of the smallest distance below 1e10, else -1
 * (also for an empty vector). Ascending vectors are bisected with exactly that outcome, ties and
 * duplicates included; others are scanned. Allocation-free.
 */
class NVLPS_AUTOTEST_EXPORT BalloonFrequencyIndex
{
public:
    /// True when the vector is ascending (duplicates allowed) and holds no NaN.
    static bool IsBisectable(const double *v, qsizetype n)
    {
        return std::none_of(v, v + n, [](double f) { return std::isnan(f); }) && std::is_sorted(v, v + n);
    }

    static int Find(const double *v, qsizetype n, bool bisectable, double frequency)
    {
        return bisectable ? Bisect(v, n, frequency) : Scan(v, n, frequency);
    }

    static int Scan(const double *v, qsizetype n, double frequency)
    {
        for (qsizetype i = 0; i < n; ++i) {
            if (v[i] == frequency)
                return int(i);
        }
        int index = -1;
        double best = InitialDistance;
        for (qsizetype i = 0; i < n; ++i) {
            const double distance = std::abs(v[i] - frequency);
            if (distance < best) {
                best = distance;
                index = int(i);
            }
        }
        return index;
    }

    static int Bisect(const double *v, qsizetype n, double frequency)
    {
        if (n == 0 || std::isnan(frequency))
            return -1;
        const double *above = std::lower_bound(v, v + n, frequency);
        if (above != v + n && *above == frequency)
            return int(above - v);
        int index = -1;
        double best = InitialDistance;
        if (above != v) {
            // Distances fall toward `above`, but rounding can make several of them equal; the
            // scan keeps the first of such a run.
            const double distance = frequency - above[-1];
            if (distance < best) {
                best = distance;
                index = int(std::partition_point(v, above, [&](double f) { return frequency - f > distance; }) - v);
            }
        }
        if (above != v + n && *above - frequency < best)
            index = int(above - v);
        return index;
    }

private:
    static constexpr double InitialDistance = 1e10;
};
