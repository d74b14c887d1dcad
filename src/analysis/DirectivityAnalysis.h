// SPDX-License-Identifier: MIT
#pragma once

#include "BalloonTable.h"
#include "DirectivityPlane.h"
#include "IsobarMap.h"
#include "SpinoramaCurves.h"
#include "nvloudspeakerpluginsdkanalysis_export.h"

#include <QString>

#include <memory>
#include <vector>

/**
 * What an engineer judges a balloon by, computed once per table and frequency: on-axis level,
 * sound power level, directivity index, the -6 dB beamwidths of both planes and the spinorama
 * curves. Levels are 20 log10 |value| in dB of the balloon's own scale, angles in degrees, one entry
 * per frequency of the table's frequency vector.
 *
 * The sound power level is the mean of |value|^2 over the sphere weighted by solid angle, with
 * weights that integrate the grid's bilinear interpolant exactly; a symmetric table stands for its
 * full sphere. DI = on-axis level - sound power level.
 *
 * A beamwidth is the full angle between the two -6 dB points (relative to on-axis) of the plane
 * curve, found on the table's interpolated values; NaN where it does not exist, with the reason in
 * GetBeamwidthNullReason().
 *
 * With `flushMount` the horizontal plane is read from the flush-mount table (where the table has
 * one); the sphere and the vertical plane always come from the balloon table. Phi is the table's
 * own (no normal angle of a source point). Immutable once built: safe to read from any thread.
 */
class NVLPS_ANALYSIS_EXPORT DirectivityAnalysis
{
public:
    /**
     * Analyses `table`. Throws std::invalid_argument (with the reason) when the table cannot stand
     * for a sphere: no frequencies, a grid without rows or columns, a step that is not positive,
     * theta rows that do not reach 180 degrees or values that do not fill the grid.
     */
    explicit DirectivityAnalysis(std::shared_ptr<const BalloonTable> table, bool flushMount = false);

    const BalloonTable &GetTable() const { return *m_table; }
    bool IsFlushMount() const { return m_flushMount; }
    const QList<double> &GetFrequencies() const { return m_table->GetFrequencies(); }

    const std::vector<double> &GetOnAxisLevels() const { return m_onAxis; }      ///< dB
    const std::vector<double> &GetSoundPowerLevels() const { return m_soundPower; } ///< dB
    const std::vector<double> &GetDirectivityIndices() const { return m_directivityIndex; } ///< dB
    /// Degrees; NaN where the beamwidth does not exist.
    const std::vector<double> &GetBeamwidths(DirectivityPlane plane) const;
    /// Why the beamwidth at `frequencyIndex` is NaN; empty where it exists.
    QString GetBeamwidthNullReason(DirectivityPlane plane, int frequencyIndex) const;
    const SpinoramaCurves &GetSpinorama() const { return m_spinorama; }

    /// The complex value at a plane angle (degrees, -180 ... 180).
    Complex GetPlaneValue(int frequencyIndex, DirectivityPlane plane, double angle) const;
    /// Its level in dB (-inf for 0).
    double GetPlaneLevel(int frequencyIndex, DirectivityPlane plane, double angle) const;
    /// Levels relative to on-axis from -180 to 180 degrees in steps of `angleStep` degrees.
    IsobarMap GetIsobarMap(DirectivityPlane plane, double angleStep) const;

private:
    enum class BeamwidthState : unsigned char { Found, SilentOnAxis, NoFall, OneSided };
    struct StepCell {
        double angle;
        BalloonCell cell;
    };
    BalloonCell PlaneCell(DirectivityPlane plane, double angle) const;
    double SideAngle(int frequencyIndex, DirectivityPlane plane, int side, double threshold, const std::vector<StepCell> &steps) const;
    void ComputeSoundPower();
    void ComputeBeamwidths(DirectivityPlane plane);

    std::shared_ptr<const BalloonTable> m_table;
    bool m_flushMount = false;
    std::vector<double> m_onAxis;
    std::vector<double> m_soundPower;
    std::vector<double> m_directivityIndex;
    std::vector<double> m_beamwidth[2];
    std::vector<BeamwidthState> m_beamwidthState[2];
    SpinoramaCurves m_spinorama;
};
