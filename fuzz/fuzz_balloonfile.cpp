// SPDX-License-Identifier: MIT
// libFuzzer harness for the balloon file reader: any bytes must decode or be refused with
// std::length_error, within the size rule, and the frequency bisection must agree with the scan.
#include "BalloonFileReader_p.h"
#include "BalloonFrequencyIndex_p.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    BalloonFileReader reader(bytes);
    QList<double> frequencies;
    std::vector<double> levels;
    try {
        reader.ReadFrequencies(frequencies, levels);
        const std::vector<std::complex<float>> table = reader.ReadTable(levels);
        // Nothing larger than the file plus the allowance may be built.
        if (qint64(table.size()) > qint64(size) + BalloonFileReader::MaxUnbackedValues)
            std::abort();
        if (reader.header().hasFlushMount)
            reader.BuildFlushMountTable(frequencies, table);
    } catch (const std::length_error &) {
        return 0;
    }

    // Query the decoded frequency vector with the last eight bytes of the input.
    double query = 0.0;
    if (size >= 8)
        std::memcpy(&query, data + size - 8, 8);
    const double *v = frequencies.constData();
    const qsizetype n = frequencies.size();
    if (BalloonFrequencyIndex::IsBisectable(v, n)) {
        BalloonFrequencyIndex guided;
        guided.Reset(v, n);
        for (double q : {query, n ? v[n / 2] + query * 1e-9 : query}) {
            const int scanned = BalloonFrequencyIndex::Scan(v, n, q);
            if (BalloonFrequencyIndex::Bisect(v, n, q) != scanned || guided.Find(v, n, q) != scanned)
                std::abort();
        }
    }
    return 0;
}
