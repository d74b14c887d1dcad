// SPDX-License-Identifier: MIT
// The smallest useful series plugin: one loudspeaker and one flying frame.
#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QObject>

class MinimalSeries : public QObject, public LoudspeakerSeries_Interface, public Plugin_Interface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID LoudspeakerSeries_Interface_iid)
    Q_INTERFACES(LoudspeakerSeries_Interface Plugin_Interface)
public:
    QString GetName() const override { return QStringLiteral("Minimal Series"); }

    int GetSourceGroupOrder(Tolvane::SourceGroupType) const override { return 50; }

    // Descriptors are created with this root object as parent: it owns them, and they
    // find their series through it.
    void SetLoudspeakerDescriptorProvider(LoudspeakerDescriptorProvider *provider) override
    {
        provider->AddLoudspeakerDescriptor(new LoudspeakerDescriptor(QStringLiteral(":/minimalseries/data/loudspeaker.json"), this));
    }

    void SetRiggingHardwareDescriptorProvider(RiggingHardwareDescriptorProvider *provider) override
    {
        provider->AddRiggingHardwareDescriptor(new RiggingHardwareDescriptor(QStringLiteral(":/minimalseries/data/frame.json"), this));
    }
};

#include "MinimalSeries.moc"
