// SPDX-License-Identifier: MIT
#pragma once

#include "BiquadData.h"
#include "Complex.h"
#include "CouplingTableProblem.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QList>
#include <QMutex>
#include <QObject>

#include <memory>
#include <utility>

class CouplingFilterProviderPrivate;

/**
 * The process-wide owner of the coupling (CPL) filters: for each pair of a low and a mid
 * coupling position, the list of biquads the controller applies. They come from the table
 * CplFilter of the SQL connection "nvRemoteDriverDatabase", which the host must have added.
 *
 * The table is read on Initialize() or on the first query; while nothing has been read,
 * every query tries again, except that a table whose rows were all skipped is read once per
 * connection. A failed read produces no message, only empty results; a stored row whose
 * type, frequency or Q does not read as a number logs one warning per read (category
 * nvlps.coupling). GetTableProblems() lists every problem of the table.
 *
 * Only the creation of the instance is synchronised: initialise it (or make a first query)
 * before using it from several threads; afterwards it is read-only.
 *
 * Frequencies are Hz and gains dB; positions are half-dB steps (low position 11 and mid
 * position 1 are 0 dB).
 */
class NVLPS_EXPORT CouplingFilterProvider : public QObject
{
    Q_OBJECT
public:
    static CouplingFilterProvider &GetInstance();

    /// Reads the table now; false when the connection or the query fails.
    bool Initialize();

    /// The biquads of a position pair in table row order; empty when the pair is unknown.
    QList<Tolvane::BiquadData> GetFilter(int lowPosition, int midPosition);
    /// The distinct low (mid) positions of the table, ascending.
    QList<int> GetLowPositions();
    QList<int> GetMidPositions();
    /// (minimum, maximum) of the positions read; (0, 0) when the table cannot be read.
    std::pair<int, int> GetLowRange();
    std::pair<int, int> GetMidRange();

    /// dB value of a low position: half-dB steps, position 11 is 0 dB.
    static double ConvertFromLowIndex(int index);
    /// dB value of a mid position: half-dB steps falling with the position, position 1 is -0 dB.
    static double ConvertFromMidIndex(int index);
    static int ConvertToLowIndex(double value);
    static int ConvertToMidIndex(double value);
    /// Position of a value of the older coupling scales.
    static int ConvertToLowIndexFromOldCpl(int value);
    static int ConvertToMidIndexFromOldCpl(int value);

    /**
     * The pair's response on an FFT grid for FIR design: fftLength / 2 + 1 frequencies from
     * 0 Hz to the Nyquist frequency (both included), each with the product of the pair's
     * biquads; the Nyquist value is made real. Empty when sampleRate is not positive.
     */
    QList<std::pair<double, Complex>> CalculateFIRFilters(int lowPosition, int midPosition, double sampleRate, int fftLength);

    /**
     * The product of the pair's biquad responses at one frequency (Hz); 1 for an unknown
     * pair. Allocation-free: this is what transfer-function queries use.
     */
    Complex CalculateCouplingResponse(int lowPosition, int midPosition, double frequency);

    /**
     * What is wrong with the table as last read: columns that do not read as numbers, rows
     * skipped for their gain, filter types outside 0 … 15, frequencies or Q that leave a filter
     * undefined (in row order), then the pairs of the table's grid (every low with every mid
     * position) that have no filters. Reads the table first if need be; empty when it cannot.
     */
    QList<CouplingTableProblem> GetTableProblems();
    /// The problems of GetTableProblems() that concern one pair, or that it has no row at all.
    QList<CouplingTableProblem> GetPairProblems(int lowPosition, int midPosition);

private:
    CouplingFilterProvider();
    ~CouplingFilterProvider() override;

    bool ReadCplFiltersFromNvRemLib();
    /// True when filters are present, reading the table if the store is still empty.
    bool EnsureRead();

    std::unique_ptr<CouplingFilterProviderPrivate> d;
    std::pair<int, int> m_lowRange {99, -99};
    std::pair<int, int> m_midRange {99, -99};

    static CouplingFilterProvider *m_instance;
    static QMutex m_instanceAccessSynchronisation;
};
