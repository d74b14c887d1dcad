// SPDX-License-Identifier: MIT
#pragma once

#include "nvloudspeakerpluginsdk_export.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

/**
 * Snaps a frequency to an index of a balloon's frequency vector: the first index holding
 * exactly that frequency, else the first index of the smallest distance below 1e10, else -1
 * (also for an empty vector). Ascending vectors are searched with exactly that outcome, ties and
 * duplicates included; others are scanned. Allocation-free.
 *
 * An instance prepared with Reset() finds the place of a frequency in constant time: for
 * non-negative doubles the bit pattern grows with the value, so its upper bits pick a bucket of
 * a guide table, which holds the first index of each bucket. A lookup then starts the table read
 * after a few instructions instead of a chain of dependent comparisons.
 */
class NVLPS_AUTOTEST_EXPORT BalloonFrequencyIndex
{
public:
    /// Prepares Find() for `v`, which must stay unchanged until the next Reset().
    void Reset(const double *v, qsizetype n)
    {
        m_bisectable = IsBisectable(v, n);
        m_guide.clear();
        m_buckets = 0;
        // Sorted values may still hold a -0 among zeros, whose bits would break the order.
        if (!m_bisectable || n < 2 || std::any_of(v, v + n, [](double f) { return std::signbit(f); }))
            return;
        // The finest buckets that stay within four per frequency.
        const quint64 first = bits(v[0]);
        const quint64 last = bits(v[n - 1]);
        const quint64 limit = quint64(std::max<qsizetype>(64, 4 * n));
        m_shift = 0;
        while ((last >> m_shift) - (first >> m_shift) >= limit)
            ++m_shift;
        m_firstKey = first >> m_shift;
        const quint64 buckets = (last >> m_shift) - m_firstKey + 1;
        m_guide.resize(buckets + 1);
        m_buckets = buckets;
        qsizetype i = 0;
        for (quint64 b = 0; b <= buckets; ++b) {
            while (i < n && (bits(v[i]) >> m_shift) - m_firstKey < b)
                ++i;
            m_guide[b] = int(i);
        }
    }

    int Find(const double *v, qsizetype n, double frequency) const
    {
        const int onGrid = FindOnGrid(v, n, frequency);
        if (onGrid >= 0)
            return onGrid;
        if (!m_bisectable)
            return Scan(v, n, frequency);
        if (n == 0 || std::isnan(frequency))
            return -1;
        return Snap(v, n, GuidedLowerBound(v, n, frequency), frequency);
    }

    /// Find() of the frequencies that most lookups ask for, those of the grid that are the first
    /// or second value of their bucket; -1 for any other. Any earlier equal value would lie in
    /// the same bucket before it. Negative values wrap past the last bucket, and NaN equals nothing.
    int FindOnGrid(const double *v, qsizetype n, double frequency) const
    {
        const quint64 bucket = (bits(frequency) >> m_shift) - m_firstKey;
        if (Q_LIKELY(bucket < m_buckets)) {
            const qsizetype lo = m_guide[bucket]; // below n: the last value lies in the last bucket
            if (Q_LIKELY(v[lo] == frequency))
                return int(lo);
            if (lo + 1 < n && v[lo + 1] == frequency)
                return int(lo + 1);
        }
        return -1;
    }

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
        return Snap(v, n, LowerBound(v, n, frequency), frequency);
    }

    /// std::lower_bound without data-dependent branches (random queries mispredict less).
    static const double *LowerBound(const double *v, qsizetype n, double value)
    {
        const double *base = v;
        while (n > 1) {
            const qsizetype half = n / 2;
            base = base[half] < value ? base + half : base;
            n -= half;
        }
        return base + (*base < value);
    }

private:
    static constexpr double InitialDistance = 1e10;

    static quint64 bits(double value)
    {
        quint64 b;
        std::memcpy(&b, &value, sizeof b);
        return b;
    }

    const double *GuidedLowerBound(const double *v, qsizetype n, double frequency) const
    {
        const quint64 b = bits(frequency);
        // Negative values (and -0) do not order by their bits; they take the bisection.
        if (m_guide.empty() || b >> 63)
            return LowerBound(v, n, frequency);
        const quint64 bucket = (b >> m_shift) - m_firstKey;
        if ((b >> m_shift) < m_firstKey)
            return v;
        if (bucket >= m_guide.size() - 1)
            return v + n;
        // Values of earlier buckets lie below the frequency, of later ones above it.
        const qsizetype lo = m_guide[bucket];
        const qsizetype hi = m_guide[bucket + 1];
        if (hi - lo > 2)
            return LowerBound(v + lo, hi - lo, frequency);
        // A bucket holds at most two values on the usual grids: step over them without branches,
        // which random frequencies would mispredict.
        qsizetype i = lo;
        i += qsizetype((i < hi) & (v[std::min(i, n - 1)] < frequency));
        i += qsizetype((i < hi) & (v[std::min(i, n - 1)] < frequency));
        return v + i;
    }

    /// The snapped index, given the first element not below the frequency.
    static int Snap(const double *v, qsizetype n, const double *above, double frequency)
    {
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
                const double *first = above - 1;
                if (first != v && frequency - first[-1] <= distance)
                    first = std::partition_point(v, first, [&](double f) { return frequency - f > distance; });
                index = int(first - v);
            }
        }
        if (above != v + n && *above - frequency < best)
            index = int(above - v);
        return index;
    }

    bool m_bisectable = false;
    int m_shift = 0;
    quint64 m_firstKey = 0;
    quint64 m_buckets = 0; // 0 without a guide
    std::vector<int> m_guide; // first index of each bucket, and n at the end
};
