// SPDX-License-Identifier: MIT
// libFuzzer harness for balloon files as source points load them: any bytes must decode or be
// refused with std::length_error, within the size rule, and every lookup on what was built must
// answer or throw std::out_of_range.
#include "BalloonFile.h"
#include "BalloonFileReader_p.h"
#include "BalloonLookups.h"

#include <stdexcept>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    std::shared_ptr<const BalloonTable> table;
    try {
        table = BalloonFile::Decode(QByteArrayView(reinterpret_cast<const char *>(data), qsizetype(size)));
    } catch (const std::length_error &) {
        return 0;
    }
    // Nothing larger than the file plus the allowance may be built.
    if (table->GetValueCount() > qint64(size) + BalloonFileReader::MaxUnbackedValues)
        std::abort();
    lookUpBalloon(*table, data, size);
    return 0;
}
