// SPDX-License-Identifier: MIT
// libFuzzer harness for the loudspeaker descriptor reader and the chain below it: cabinet
// shape, source points, DSP channels and the controller setups they name (a few test setups
// are compiled in as resources). Every query a host makes after reading must answer.
#include "DspChannelDescriptor.h"
#include "FuzzSupport.h"
#include "LoudspeakerDescriptor.h"
#include "SourcePointDescriptor.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    quietWarnings();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    LoudspeakerDescriptor descriptor{QString()};
    descriptor.ReadDescriptorData(fuzzBytes(data, size), QStringLiteral("fuzz.json"));

    for (int m = -1; m <= int(Tolvane::FlownPullback) + 1; ++m) {
        const auto mounting = Tolvane::Mounting(m);
        descriptor.Get3dView(mounting);
        descriptor.GetSideView(mounting);
        descriptor.GetCenterOfAudio(mounting);
        descriptor.GetCenterOfAudioVerticalAngle(mounting);
        descriptor.GetSwitchDescription(1, mounting);
        descriptor.SupportsContourCpl(mounting);
    }
    descriptor.GetTopView();
    descriptor.GetMechanicalConnectionPoints(2.5, -2.5);
    descriptor.GetSpeakerIds();

    for (SourcePointDescriptor *point : descriptor.GetSourcePointDescriptors()) {
        point->GetCenter(Tolvane::Flown);
        point->GetOrigin(Tolvane::Stacked);
        point->GetVerticalAngles(Tolvane::Flown);
        point->GetPhiWithNormalAngle(90.0);
        DspChannelDescriptor *channel = point->GetDspChannelDescriptor(QStringLiteral("D80"));
        if (!channel)
            continue;
        const QMap<int, LoudspeakerSetup *> setups = channel->GetLoudspeakerSetups();
        for (auto it = setups.cbegin(); it != setups.cend(); ++it) {
            const QMap<int, int> switches{{1, 1}, {4, 1}, {5, 2}};
            channel->GetTransferFunction(Tolvane::LogarithmicFrequencies, 100, it.key(), switches, Tolvane::SensitivityWithArrayEq, true);
            channel->GetBalloonDataKey(it.key(), switches);
        }
    }
    return 0;
}
