// SPDX-License-Identifier: MIT
#pragma once

#include "Tolvane.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QByteArrayView>
#include <QList>

#include <cmath>
#include <complex>
#include <vector>

class QDataStream;

/**
 * Decodes a balloon data file held in memory: the 194-byte little-endian header, the
 * frequency vector, the level offsets and the F x NH x NV magnitude/phase pairs.
 *
 * Reads behave like a little-endian QDataStream over the bytes: a value the data does not
 * hold in full reads as zero and moves to the end, so truncated files decode without error.
 * Decoding happens in three steps (header in the constructor, then ReadFrequencies(), then
 * ReadTable()) so that a caller can store each part as it arrives.
 *
 * Size rule: the file bounds what it can make the reader allocate. A list (frequencies,
 * level offsets, table, flush-mount table) may hold at most MaxUnbackedValues entries more
 * than the bytes left in the file could fill; anything larger, and a negative count product,
 * throws std::length_error before any allocation. Time and memory are thus linear in the file
 * size plus a fixed allowance, whatever the header declares.
 *
 * Not thread-safe; the data must outlive the reader.
 */
class NVLPS_AUTOTEST_EXPORT BalloonFileReader
{
public:
    /// The header fields, in file order.
    struct Header {
        qint32 frequencyCount = 0;
        qint32 nh = 0;
        qint32 nv = 0;
        double thetaStepWidth = 0.0;
        double phiStepWidth = 0.0;
        qint32 symmetry = 0;
        double magnitudeMin = 0.0;
        double magnitudeMax = 0.0;
        double phaseMin = 0.0;
        double phaseMax = 0.0;
        quint8 magnitudeFormat = 0;
        quint8 phaseFormat = 0;
        quint8 hasFlushMount = 0;
        double flushMount[6] = {};
    };

    static constexpr qsizetype HeaderSize = 194;
    /// How many entries a list may hold beyond what the file's remaining bytes can fill
    /// (2^21: a realistic balloon truncated anywhere still loads, with zeros past the end).
    static constexpr qint64 MaxUnbackedValues = qint64(1) << 21;

    /// Decodes the header (never fails: missing bytes read as zero).
    explicit BalloonFileReader(QByteArrayView data);

    const Header &header() const { return m_header; }

    /// Reads the frequency vector (Hz) and the level offsets (dB). Throws std::length_error
    /// when the declared count breaks the size rule.
    void ReadFrequencies(QList<double> &frequencies, std::vector<double> &levelOffsets);

    /**
     * Reads the value pairs after ReadFrequencies() into a zeroed table of F x NH x NV complex
     * values at (f * NH + t) * NV + p. Byte-scaled values go through per-frequency tables of the
     * 256 possible magnitudes and phases, which give exactly the per-value decode.
     * Throws std::length_error for a negative product or one that breaks the size rule.
     */
    std::vector<std::complex<float>> ReadTable(const std::vector<double> &levelOffsets);

    /**
     * The flush-mount table of F x NH x 2 values (phi columns 90 and 270 degrees), attenuated by
     * flushMount[2] where theta lies beyond the aperture angle. A source index outside `table`
     * contributes zero. Throws std::length_error like ReadTable().
     */
    std::vector<std::complex<float>> BuildFlushMountTable(const QList<double> &frequencies,
                                                          const std::vector<std::complex<float>> &table) const;

    /// The reference decoder: one value of `format` from `stream` (0 and nothing consumed for
    /// unknown formats). Byte-scaled: min + (max - min) * b / 255, evaluated left to right.
    static double ReadValue(QDataStream &stream, Tolvane::LoudspeakerDataFormat format, double min, double max);
    /// Bytes a value of `format` takes in the file: 1, 8, or 0 for unknown codes.
    static int BytesPerValue(int format);

    /// Phi (degrees) reduced to [0, 360), folded by `symmetry` and divided by the step:
    /// the fractional phi index of the stored grid (0 for rotational symmetry).
    static double PhiIndex(double phi, int symmetry, double phiStepWidth)
    {
        // fmod is exact, but a call; most directions already lie in [0, 360).
        double p = phi >= 0.0 && phi < 360.0 ? phi : std::fmod(phi, 360.0);
        if (p < 0)
            p += 360.0;
        return TurnPhiIndex(p, symmetry, phiStepWidth);
    }
    /// PhiIndex() of a phi in [0, 360).
    static double TurnPhiIndex(double p, int symmetry, double phiStepWidth)
    {
        switch (symmetry) {
        case Tolvane::HalfSymmetry:
            if (p > 180.0)
                p = 360.0 - p;
            break;
        case Tolvane::HalfSymmetryRotated:
            if (p >= 270.0)
                p -= 270.0;
            else if (p <= 90.0)
                p += 90.0;
            else
                p = 270.0 - p;
            break;
        case Tolvane::QuarterSymmetry:
            if (p > 180.0)
                p = 360.0 - p;
            if (p > 90.0)
                p = 180.0 - p;
            break;
        case Tolvane::RotationalSymmetry:
            return 0.0;
        default:
            break;
        }
        return p / phiStepWidth;
    }
    /// |asin(x)| of the complex arc sine of a real x, in radians.
    static double ArcSineModulus(double x);

private:
    const uchar *m_data;
    qsizetype m_size;
    qsizetype m_pos = 0;
    Header m_header;
    mutable qint64 m_tableAllowance = -1; // entries a table may have, fixed where the value pairs start

    qint32 ReadInt32();
    double ReadDouble();
    quint8 ReadByte();
    qint64 TableAllowance() const;
};
