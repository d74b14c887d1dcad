// SPDX-License-Identifier: MIT
#pragma once

#include "Tolvane.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

class QIODevice;

/**
 * Writes balloon data files: the exact inverse of what SourcePointDescriptor reads from
 * ":/Resources/<file>" (a 194-byte little-endian header, the frequency vector, the level offsets
 * and F x NH x NV magnitude/phase pairs).
 *
 * Angles. theta is the angle from the on-axis direction, 0 to 180 degrees; phi turns around the
 * on-axis direction, 0 to 360 degrees, with 0 pointing up and 90 to the loudspeaker's left, so a
 * direction is (cos theta, sin theta sin phi, sin theta cos phi) in (front, left, up). Value
 * (f, t, p) belongs to frequency f, theta t * thetaStepWidth and stored phi column
 * p * phiStepWidth; the symmetry says which part of the phi circle the columns cover (full circle;
 * 0..180 for a left/right symmetric source; 0..90 when it is also up/down symmetric; a single
 * column for a rotationally symmetric one).
 *
 * The phi seam. The lookup takes the phi neighbour of a cell without wrapping: in the last phi
 * column it interpolates towards the first value of the next theta row (for theta near 180, the
 * next frequency's data). A NoSymmetry balloon whose phi runs 0 .. 360 - step is therefore wrong
 * between 360 - step and 360 (by over 20 dB on a measured 5-degree monitor balloon). Store one more
 * column at phi 360 that repeats phi 0 (NV = 360 / step + 1); then the error everywhere is only the
 * grid's own interpolation error. BalloonCsvPacker adds that column by default.
 *
 * Value formats. Double stores each value as given. ByteScaled stores one byte per value over a
 * range [min, max]: the value is rounded to the nearest of the 256 steps and clamped to the range,
 * so a value inside the range reads back within half a step, (max - min) / 510. The ranges default
 * to the data's own minimum and maximum (magnitudes without the level offsets).
 *
 * Not thread-safe; independent writers may run on different threads.
 */
class NVLPS_EXPORT BalloonFileWriter
{
public:
    /// The six flush-mount parameters of the file, in file order.
    struct FlushMount {
        double cutOnFrequency = 0.0; ///< Hz; the attenuation applies above it
        double unused = 0.0;         ///< stored, never read
        double attenuation = 1.0;    ///< linear factor beyond the aperture angle
        double aperture = 0.0;       ///< metres, used with the speed of sound
        double angleNumerator = 0.0; ///< dimensionless numerator of the aperture angle
        double angleOffset = 0.0;    ///< degrees added to the aperture angle
    };

    /// What a balloon file holds. Importers (the CSV packer, other formats) produce this.
    struct Data {
        QList<double> frequencies;  ///< Hz, one per frequency
        QList<double> levelOffsets; ///< dB added to every magnitude of a frequency; empty means all 0
        int nh = 0;                 ///< theta angles
        int nv = 0;                 ///< stored phi columns
        double thetaStepWidth = 0.0; ///< degrees
        double phiStepWidth = 0.0;   ///< degrees
        Tolvane::LoudspeakerSymmetry symmetry = Tolvane::NoSymmetry;
        QList<double> magnitudes; ///< dB, F x NH x NV, at (f * NH + t) * NV + p
        QList<double> phases;     ///< degrees, same layout; empty means all 0
        std::optional<FlushMount> flushMount;
    };

    explicit BalloonFileWriter(Tolvane::LoudspeakerDataFormat magnitudeFormat = Tolvane::Double,
                               Tolvane::LoudspeakerDataFormat phaseFormat = Tolvane::Double);

    /// Fixes the ByteScaled range of the magnitudes (dB) instead of the data's own.
    void setMagnitudeRange(double min, double max);
    /// Fixes the ByteScaled range of the phases (degrees) instead of the data's own.
    void setPhaseRange(double min, double max);

    /// The file's bytes, or an empty array with errorString() set when the data is invalid.
    QByteArray toByteArray(const Data &data);
    /// Writes the file to an open device. On invalid data nothing is written.
    bool write(const Data &data, QIODevice *device);
    /// Writes the file atomically (a file that exists stays as it was on any error).
    bool write(const Data &data, const QString &fileName);

    /// Why the last call failed, naming the offending index; empty after a success.
    QString errorString() const { return m_error; }

private:
    Tolvane::LoudspeakerDataFormat m_magnitudeFormat;
    Tolvane::LoudspeakerDataFormat m_phaseFormat;
    std::optional<std::pair<double, double>> m_magnitudeRange;
    std::optional<std::pair<double, double>> m_phaseRange;
    QString m_error;

    bool Validate(const Data &data);
};
