// SPDX-License-Identifier: MIT
#pragma once

#include "BalloonTable.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

// The nearest frequency by its definition: the first equal one, else the first of the smallest
// distance below 1e10.
inline int definedFrequencyIndex(const QList<double> &v, double frequency)
{
    for (qsizetype i = 0; i < v.size(); ++i) {
        if (v[i] == frequency)
            return int(i);
    }
    int index = -1;
    double best = 1e10;
    for (qsizetype i = 0; i < v.size(); ++i) {
        if (std::abs(v[i] - frequency) < best) {
            best = std::abs(v[i] - frequency);
            index = int(i);
        }
    }
    return index;
}

// Looks a table up in a few directions (grid edges, past them, and one taken from the input's
// last bytes) at its first, last, a searched and no frequency. A lookup may only answer or throw
// std::out_of_range, the same with and without a precomputed cell.
inline void lookUpBalloon(const BalloonTable &table, const uint8_t *data, size_t size)
{
    double tail[2] = {0.0, 0.0};
    if (size >= 16)
        std::memcpy(tail, data + size - 16, 16);
    const QList<double> &frequencies = table.GetFrequencies();
    if (table.FindFrequencyIndex(tail[0]) != definedFrequencyIndex(frequencies, tail[0]))
        std::abort();
    const double step = table.GetThetaStepWidth();
    const double thetas[] = {0.0, 180.0, -step / 2, 180.0 + step, step * table.GetNH(), tail[0], NAN};
    const double phis[] = {0.0, 90.0, 270.0, 359.99, 360.0, -90.0, tail[1], INFINITY};
    const int indexes[] = {0, int(frequencies.size()) - 1, table.FindFrequencyIndex(tail[1]), -1};
    for (double theta : thetas) {
        for (double phi : phis) {
            for (bool flushMount : {false, true}) {
                const BalloonCell cell = table.GetCell(theta, phi, flushMount);
                for (int f : indexes) {
                    Complex direct;
                    Complex viaCell;
                    bool directThrew = false;
                    bool cellThrew = false;
                    try {
                        direct = table.GetValue(f, theta, phi, flushMount);
                    } catch (const std::out_of_range &) {
                        directThrew = true;
                    }
                    try {
                        viaCell = table.GetValue(f, cell);
                    } catch (const std::out_of_range &) {
                        cellThrew = true;
                    }
                    if (directThrew != cellThrew || (!directThrew && std::memcmp(&direct, &viaCell, sizeof direct) != 0))
                        std::abort();
                    // The same through the frequency search in one call, for one direction only:
                    // unordered frequencies are scanned, and a file may hold millions.
                    if (f == indexes[2] && theta == thetas[0] && phi == phis[0]) {
                        bool searchThrew = false;
                        Complex searched;
                        try {
                            searched = table.GetValueAtFrequency(tail[1], theta, phi, flushMount);
                        } catch (const std::out_of_range &) {
                            searchThrew = true;
                        }
                        if (searchThrew != directThrew || (!directThrew && std::memcmp(&direct, &searched, sizeof direct) != 0))
                            std::abort();
                    }
                }
            }
        }
    }
}
