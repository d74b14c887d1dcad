// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace Tolvane {

/**
 * One coupling filter as served by CouplingFilterProvider::GetFilter(). It is evaluated
 * exactly like a filter entry { "type", "fp", "Q", "G" } with the same four values.
 *
 * Frequency in Hz, gain in dB. Plain value; any thread.
 */
struct BiquadData
{
    int type = 0;           ///< filter type, 0 … 15 (numbering of the setup files)
    double frequency = 0.0; ///< characteristic frequency, Hz
    double q = 0.0;         ///< quality factor
    double gain = 0.0;      ///< gain, dB

    friend bool operator==(const BiquadData &a, const BiquadData &b)
    {
        return a.type == b.type && a.frequency == b.frequency && a.q == b.q && a.gain == b.gain;
    }
    friend bool operator!=(const BiquadData &a, const BiquadData &b) { return !(a == b); }
};

} // namespace Tolvane

Q_DECLARE_TYPEINFO(Tolvane::BiquadData, Q_PRIMITIVE_TYPE);
