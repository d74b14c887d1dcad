// SPDX-License-Identifier: MIT
#pragma once

#include "BalloonFileWriter.h"

#include <QList>
#include <QString>

#include <array>
#include <complex>
#include <optional>
#include <vector>

/**
 * Complex directivity on a regular theta/phi grid over the whole phi circle, in balloon angles:
 * theta (degrees) is the angle from the source's view direction, phi (degrees) turns around it
 * from the source's up direction (0) towards its left (90). Column p holds phi = p * phiStep for
 * p < columns; the seam column at 360 is not stored here.
 */
class DirectivityGrid
{
public:
    using Vector = std::array<double, 3>;

    QList<double> frequencies;
    double thetaStep = 0.0;
    double phiStep = 0.0;
    int rows = 0;    ///< theta = 0, thetaStep, ... (rows - 1) * thetaStep
    int columns = 0; ///< 360 / phiStep
    std::vector<std::complex<double>> values; ///< (f * rows + t) * columns + p

    std::complex<double> Value(int f, int t, int p) const { return values[(size_t(f) * rows + t) * columns + p]; }

    /// Balloon angles (theta, phi), in degrees, of the direction `d` seen from a source looking along `view`
    /// with `up` as its top; phi is in [0, 360) and 0 on the axis.
    static std::array<double, 2> BalloonAngles(const Vector &d, const Vector &view, const Vector &up);

    /**
     * Places receivers (any radius, cartesian) onto the grid their balloon angles form. `values` is
     * receiver-major, `frequencies.size()` values per receiver. Receivers on the axis (theta 0 or
     * 180) fill every phi column of their row. Refuses, naming the first offending direction, sets
     * that are not a complete regular grid, and views/ups that are parallel or zero.
     */
    static std::optional<DirectivityGrid> FromReceivers(const std::vector<Vector> &receivers, const Vector &view,
                                                        const Vector &up, const std::vector<std::complex<double>> &values,
                                                        const QList<double> &frequencies, QString *error);

    /**
     * The balloon writer's input: magnitudes in dB (floored at -200 dB), phases in degrees, the
     * phi columns that `symmetry` stores, and for NoSymmetry with `closeSeam` the closing column
     * at phi 360 that repeats phi 0, as the CSV packer adds it. Nothing, with `error` set, when
     * the stored phi range is not a whole number of phi steps.
     */
    std::optional<BalloonFileWriter::Data> ToBalloon(Tolvane::LoudspeakerSymmetry symmetry, bool closeSeam, QString *error) const;

    /// The largest level difference (dB) between a direction and its mirror under a balloon symmetry.
    struct SymmetryMismatch {
        double levelDb = 0.0;
        double frequency = 0.0;
        double theta = 0.0;
        double phi = 0.0;
        double mirrorPhi = 0.0;
    };
    /// `symmetry` is the balloon file's symmetry code: 0 none, 1 half, 2 half rotated, 3 quarter, 4 rotational.
    /// Nothing when the directions that symmetry stores do not fall on this grid's phi columns.
    std::optional<SymmetryMismatch> CheckSymmetry(int symmetry) const;
};
