// SPDX-License-Identifier: MIT
#pragma once

#include "BalloonCell.h"
#include "Complex.h"
#include "Tolvane.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QList>

#include <array>
#include <complex>
#include <memory>
#include <optional>
#include <vector>

/**
 * One balloon: the complex directivity of a source point per frequency and direction, on a
 * theta/phi grid, with its optional flush-mount table. Immutable once built, so it may be read
 * from any number of threads and is shared as std::shared_ptr<const BalloonTable>.
 *
 * Angles are degrees (theta from the on-axis direction, phi around it), frequencies Hz. Values are
 * stored at (f * NH + t) * NV + p; the flush-mount table holds the phi columns 90 and 270 degrees
 * at (f * NH + t) * 2 + s. A table read by the library's lenient loading may hold a grid that its
 * values do not fill (a hostile or truncated file); lookups check the flat index only.
 */
class NVLPS_EXPORT BalloonTable
{
public:
    /// The grid as a file declares it; nothing is validated here.
    struct Grid {
        qint32 nh = 0;              ///< theta rows
        qint32 nv = 0;              ///< phi columns
        double thetaStepWidth = 0.0; ///< degrees
        double phiStepWidth = 0.0;   ///< degrees
        qint32 symmetry = 0;         ///< Tolvane::LoudspeakerSymmetry, as stored (any value)
    };
    using FlushMountParameters = std::array<double, 6>;

    /**
     * A table of `values` at the grid's layout. `flushMountValues` is only kept with
     * `flushMount` parameters (in file order: cut-on Hz, unused, attenuation, aperture m,
     * angle numerator, angle offset degrees).
     */
    BalloonTable(const Grid &grid, QList<double> frequencies, std::vector<std::complex<float>> values,
                 std::optional<FlushMountParameters> flushMount = std::nullopt,
                 std::vector<std::complex<float>> flushMountValues = {});
    ~BalloonTable();
    BalloonTable(const BalloonTable &) = delete;
    BalloonTable &operator=(const BalloonTable &) = delete;

    /**
     * The values of `values` looked up with the grid and frequencies of `grid`, and with the
     * flush-mount data of `flushMount` (none when null or without). A source point whose files
     * hold different grids looks every key up with the grid of the last file read; this is that
     * table. The values are shared, not copied.
     */
    static std::shared_ptr<const BalloonTable> WithGridOf(const BalloonTable &grid, const BalloonTable &values,
                                                          const BalloonTable *flushMount);

    const QList<double> &GetFrequencies() const; ///< Hz, as stored
    int GetNH() const { return m_grid.nh; }
    int GetNV() const { return m_grid.nv; }
    double GetThetaStepWidth() const { return m_grid.thetaStepWidth; }
    double GetPhiStepWidth() const { return m_grid.phiStepWidth; }
    const Grid &GetGrid() const { return m_grid; }
    /// As stored in the file (any 32-bit value).
    int GetSymmetryCode() const { return m_grid.symmetry; }
    Tolvane::LoudspeakerSymmetry GetSymmetry() const { return Tolvane::LoudspeakerSymmetry(m_grid.symmetry); }

    /// F x NH x NV values at (f * NH + t) * NV + p; null for an empty table.
    const std::complex<float> *GetValues() const;
    qsizetype GetValueCount() const;

    bool HasFlushMount() const { return m_flushMount.has_value(); }
    /// The six flush-mount parameters; all zero without flush-mount data.
    FlushMountParameters GetFlushMountParameters() const;
    /// F x NH x 2 values (phi 90 and 270 degrees) at (f * NH + t) * 2 + s, or null.
    const std::complex<float> *GetFlushMountValues() const;
    qsizetype GetFlushMountValueCount() const;

    /**
     * The index of the balloon frequency nearest `frequency` (Hz): the first exactly equal one,
     * else the first of the smallest distance below 1e10; -1 when there is none (no frequencies,
     * NaN, or every frequency 1e10 Hz or more away). Allocation-free.
     */
    int FindFrequencyIndex(double frequency) const;

    /**
     * The cell of theta and phi (degrees). Phi is reduced to one turn and folded by the symmetry;
     * with `flushMount` and flush-mount data it picks column 1 within 0.1 degree of 270, else 0.
     * Theta is neither folded nor clamped.
     */
    BalloonCell GetCell(double theta, double phi, bool flushMount = false) const;

    /**
     * The bilinear interpolation of the cell's corners of positive weight at frequency index
     * `frequencyIndex`. When the corners' phases cancel (|sum| < 0.99 x the weighted sum of
     * moduli), the weighted modulus with the phase of the nearest corner.
     *
     * Throws std::out_of_range when a corner to be read has a flat index (f * NH + t) * S + p
     * (S = NV, or 2 in the flush-mount table) outside the table, and for frequency index -1.
     * Rows and columns are not checked on their own: a theta row past the grid reads the next
     * frequency's first rows, and the phi column after the last reads the next theta row.
     * Allocation-free.
     */
    Complex GetValue(int frequencyIndex, const BalloonCell &cell) const;
    /// GetValue(frequencyIndex, GetCell(theta, phi, flushMount)).
    Complex GetValue(int frequencyIndex, double theta, double phi, bool flushMount = false) const
    {
        return GetValue(frequencyIndex, GetCell(theta, phi, flushMount));
    }

private:
    struct Frequencies;
    using Values = std::vector<std::complex<float>>;

    BalloonTable() = default;
    Complex GetCheckedValue(int frequencyIndex, const BalloonCell &cell) const;

    Grid m_grid;
    bool m_compactGrid = false; // NH, NV >= 0 and F * NH < 2^31: no index product overflows
    std::optional<FlushMountParameters> m_flushMount;
    std::shared_ptr<const Frequencies> m_frequencies;
    std::shared_ptr<const Values> m_values;
    std::shared_ptr<const Values> m_flushMountValues;
};
