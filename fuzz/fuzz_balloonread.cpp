// SPDX-License-Identifier: MIT
// libFuzzer harness for strict balloon reading: any bytes give a table or located problems,
// never both; an accepted file decodes exactly as the lenient reader decodes it, and its table
// can be checked and looked up.
#include "BalloonCheck.h"
#include "BalloonFile.h"
#include "BalloonLookups.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const BalloonReadResult result = BalloonFile::Read(bytes);
    if (!result.table) {
        if (result.problems.isEmpty())
            std::abort();
        for (const BalloonProblem &problem : result.problems) {
            if (problem.field.isEmpty() || problem.offset < -1 || problem.offset > qint64(size))
                std::abort();
        }
        return 0;
    }
    if (!result.problems.isEmpty())
        std::abort();
    const auto lenient = BalloonFile::Decode(bytes);
    const qsizetype count = result.table->GetValueCount();
    if (lenient->GetValueCount() != count
        || (count && std::memcmp(lenient->GetValues(), result.table->GetValues(), count * sizeof(std::complex<float>)) != 0))
        std::abort();
    BalloonCheck::Check(*result.table);
    lookUpBalloon(*result.table, data, size);
    return 0;
}
