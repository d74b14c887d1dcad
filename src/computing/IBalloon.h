// SPDX-License-Identifier: MIT
#pragma once

#include "nvcomputinglibrary_export.h"

#include <complex>

namespace nvScientificComputing {

/**
 * Read access to one measured directivity balloon: a table of complex pressures over a
 * theta/phi grid for each frequency, laid out as (f * NH + t) * NV + p.
 * The table is owned elsewhere and outlives the balloon object.
 *
 * Angles are degrees, frequencies Hz. Immutable: read from any thread. An empty table gives
 * 0 Hz as first and last frequency.
 */
class NVCOMPUTING_EXPORT IBalloon
{
public:
    virtual ~IBalloon();

    /// Grid step of theta (polar angle), whole degrees.
    virtual int getThetaStepWidth() const = 0;
    /// Grid step of phi (azimuth), whole degrees.
    virtual int getPhiStepWidth() const = 0;
    /// Which part of the sphere is stored (0 none … 4 rotational).
    virtual int getSymmetry() const = 0;
    /// Number of theta angles.
    virtual int getNH() const = 0;
    /// Number of phi angles.
    virtual int getNV() const = 0;
    /// First and last frequency of the table, Hz.
    virtual double getFirstFrequency() const = 0;
    virtual double getLastFrequency() const = 0;
    /// First element of the table; null for an empty table.
    virtual const std::complex<float> *getData() const = 0;
    /// Flush-mount angle offset, degrees.
    virtual double getFlushMountAngleOffset() const = 0;
    /// Flush-mount aperture length, metres.
    virtual double getFlushMountAperture() const = 0;
};

} // namespace nvScientificComputing
