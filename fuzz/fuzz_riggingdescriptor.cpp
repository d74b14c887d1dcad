// SPDX-License-Identifier: MIT
// libFuzzer harness for the rigging hardware descriptor reader: any bytes read into an item
// whose outlines, points and balance queries all answer.
#include "FuzzSupport.h"
#include "RiggingHardwareDescriptor.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    quietWarnings();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    RiggingHardwareDescriptor descriptor{QString()};
    descriptor.ReadDescriptorData(fuzzBytes(data, size), QStringLiteral("fuzz.json"));

    descriptor.GetViews();
    descriptor.GetPickPointsMap();
    descriptor.GetLoadBeamTypesMap();
    descriptor.GetOutriggersBoundaryMaxSize();
    descriptor.GetCenterOfGravity();
    for (int m = -1; m <= int(Tolvane::FlownPullback) + 1; ++m) {
        const auto mounting = Tolvane::Mounting(m);
        descriptor.GetMechanicalConnectionPoints(mounting, QStringLiteral("default"));
        descriptor.GetConnectionPoint(mounting, QStringLiteral("default"));
        descriptor.GetMountingPoint(mounting, QStringLiteral("default"));
    }
    for (double value : {0.0, 2.5, -1e300})
        descriptor.GetConnectionPointOffset(value);
    for (int pickPoint : {-1, 0, 1, 7})
        descriptor.GetMountingDirection(pickPoint);
    return 0;
}
