// SPDX-License-Identifier: MIT
// libFuzzer harness for the controller setup reader: any bytes read into a setup whose every
// query answers with a number, whatever switches and grid indexes it is asked for.
#include "FuzzSupport.h"
#include "LoudspeakerSetup.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    quietWarnings();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    LoudspeakerSetup setup;
    setup.ReadData(fuzzBytes(data, size), QStringLiteral("fuzz.json"));

    QMap<int, int> switches;
    for (int id = 1; id <= 3; ++id) {
        const QMap<int, QString> values = setup.GetSwitchValues(id);
        if (!values.isEmpty())
            switches.insert(id, values.lastKey());
    }
    for (Tolvane::FrequencyRange range : {Tolvane::LogarithmicFrequencies, Tolvane::LinearFrequencies}) {
        const int count = int(setup.GetFrequencies(range).size());
        for (int index : {-1, 0, count / 2, count - 1, count})
            setup.GetTransferFunction(range, index, switches, Tolvane::SensitivityWithArrayEq, true);
    }
    setup.GetMaxLink(QStringLiteral("D80"));
    setup.GetControllerBalloonDataKey(switches);
    return 0;
}
