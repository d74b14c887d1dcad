// SPDX-License-Identifier: MIT
#pragma once

#include "PlacedSource.h"
#include "PredictionScene.h"
#include "SoundField.h"
#include "nvloudspeakerpluginsdkprediction_export.h"

#include <QList>

#include <functional>
#include <memory>

/**
 * The sound field of a scene's loudspeakers over its receivers: for band centre f, receiver x and
 * each source at distance r and direction (theta, phi) in its own frame,
 * p = sum g H(f) B(f, theta, phi) exp(-j 2 pi f (r / c + tau)) / r * 10^(-alpha(f) r / 20).
 *
 * The constructor resolves the scene against the registered descriptors (loudspeakers, rigging,
 * setups, switches; balloons are read if needed) and throws std::invalid_argument naming the key
 * and value of anything it cannot resolve. Compute() and ComputeReference() then only read, and
 * give the same pressures: the first hoists the direction and the balloon cell out of the band
 * loop and spreads receiver rows over threads, the second is the plain loop over the public API.
 */
class NVLPS_PREDICTION_EXPORT CoveragePredictor
{
public:
    explicit CoveragePredictor(const PredictionScene &scene);
    ~CoveragePredictor();

    const QList<PlacedSource> &GetSources() const;
    const QList<double> &GetFrequencies() const;
    /// The field, on up to `threads` threads (0: one per core). `progress`, if given, is called
    /// with the fraction done from the calling thread.
    SoundField Compute(int threads = 0, const std::function<void(double)> &progress = {}) const;
    /// The same field from one GetBalloonData() call per source, receiver and band.
    SoundField ComputeReference() const;

    struct Source; // a resolved source point with its per-band factors

private:
    std::vector<Source> m_sources;
    QList<PlacedSource> m_placed;
    QList<double> m_frequencies;
    std::vector<std::array<double, 3>> m_receivers;
    int m_planeColumns = 0;
    double m_speedOfSound = 343.0;
    std::vector<double> m_absorption; // per band: amplitude decay per metre (natural log)
};
