// SPDX-License-Identifier: MIT
// libFuzzer harness for the JSON loader with line comments: any bytes give a map, and loading
// never crashes, recurses without bound or allocates out of proportion to the input.
#include "FuzzSupport.h"
#include "JsonFileLoader.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    quietWarnings();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QVariantMap map = LoadJsonData(fuzzBytes(data, size), QStringLiteral("fuzz"));
    // An empty map is the only answer to a failed parse; a parsed one must survive a round trip.
    if (!map.isEmpty() && QVariant(map).toMap() != map)
        std::abort();
    return 0;
}
