// SPDX-License-Identifier: MIT
// A complete series plugin: registers one loudspeaker and one rigging descriptor.
#include "LoudspeakerDescriptor.h"
#include "LoudspeakerDescriptorProvider.h"
#include "LoudspeakerSeries_Interface.h"
#include "Plugin_Interface.h"
#include "RiggingHardwareDescriptor.h"
#include "RiggingHardwareDescriptorProvider.h"

#include <QObject>

class FullSeries : public QObject, public LoudspeakerSeries_Interface, public Plugin_Interface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID LoudspeakerSeries_Interface_iid)
    Q_INTERFACES(LoudspeakerSeries_Interface Plugin_Interface)
public:
    QString GetName() const override { return QStringLiteral("Full Series"); }
    // Before the equal-order series in group 1, after them in the other groups.
    int GetSourceGroupOrder(Tolvane::SourceGroupType group) const override { return group == Tolvane::LineArraySources ? 10 : 30; }
    void SetLoudspeakerDescriptorProvider(LoudspeakerDescriptorProvider *provider) override
    {
        provider->AddLoudspeakerDescriptor(new LoudspeakerDescriptor(QStringLiteral(":/fullseries/data/loudspeaker.json"), this));
    }
    void SetRiggingHardwareDescriptorProvider(RiggingHardwareDescriptorProvider *provider) override
    {
        provider->AddRiggingHardwareDescriptor(new RiggingHardwareDescriptor(QStringLiteral(":/fullseries/data/frame.json"), this));
    }
};

#include "fullseries.moc"
