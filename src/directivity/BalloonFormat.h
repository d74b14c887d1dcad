// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/**
 * The layout of a balloon data file in one place. All numbers are little-endian: integers 32-bit
 * signed, reals 64-bit IEEE doubles, flags and format codes single bytes. The header is followed
 * by F doubles of frequencies (Hz), F doubles of level offsets (dB) and F x NH x NV pairs of one
 * magnitude (dB) and one phase (degrees), frequency outermost, then theta, then phi.
 */
class BalloonFormat
{
public:
    struct Field {
        const char *name;
        qint64 offset;
        int width;
    };

    static constexpr Field FrequencyCount{"frequencyCount", 0, 4};
    static constexpr Field NH{"NH", 4, 4};
    static constexpr Field NV{"NV", 8, 4};
    static constexpr Field ThetaStepWidth{"thetaStepWidth", 12, 8};
    static constexpr Field PhiStepWidth{"phiStepWidth", 20, 8};
    static constexpr Field Symmetry{"symmetry", 28, 4};
    static constexpr Field MagnitudeMin{"magnitudeMin", 32, 8};
    static constexpr Field MagnitudeMax{"magnitudeMax", 40, 8};
    static constexpr Field PhaseMin{"phaseMin", 48, 8};
    static constexpr Field PhaseMax{"phaseMax", 56, 8};
    static constexpr Field MagnitudeFormat{"magnitudeFormat", 64, 1};
    static constexpr Field PhaseFormat{"phaseFormat", 65, 1};
    static constexpr Field HasFlushMount{"hasFlushMount", 66, 1};
    static constexpr qint64 FlushMountOffset = 67; ///< six doubles, present whatever hasFlushMount says
    static constexpr int FlushMountCount = 6;
    static constexpr qint64 ReservedOffset = 115;
    static constexpr int ReservedBytes = 79; ///< contents ignored
    static constexpr qint64 HeaderSize = 194;

    /// Format codes of the magnitude and phase values.
    static constexpr int ByteScaled = 2; ///< one byte b: min + (max - min) * b / 255
    static constexpr int Double = 20;    ///< the double as stored
    /// Bytes a value of `format` takes: 1, 8, or 0 for unknown codes (which decode to 0).
    static constexpr int BytesPerValue(int format) { return format == ByteScaled ? 1 : format == Double ? 8 : 0; }

    /// Symmetry codes run from 0 (none) to 4 (rotational).
    static constexpr int LastSymmetry = 4;
};
