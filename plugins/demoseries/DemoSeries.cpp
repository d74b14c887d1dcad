// SPDX-License-Identifier: MIT
// The demo loudspeaker series: a line array with its flying frame, a subwoofer with a
// ground-stack plate, a point source, a stage monitor and a measured compact monitor, described
// by the JSON files compiled into this plugin, with their balloon files generated at build time.
#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QObject>

class DemoSeries : public QObject, public LoudspeakerSeries_Interface, public Plugin_Interface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID LoudspeakerSeries_Interface_iid)
    Q_INTERFACES(LoudspeakerSeries_Interface Plugin_Interface)
public:
    QString GetName() const override { return QStringLiteral("Demo Series"); }

    int GetSourceGroupOrder(Tolvane::SourceGroupType group) const override
    {
        // The series leads the line-array group and follows other series elsewhere.
        return group == Tolvane::LineArraySources ? 0 : 100;
    }

    void SetLoudspeakerDescriptorProvider(LoudspeakerDescriptorProvider *provider) override
    {
        for (const char *file : {"DS-L12", "DS-S18", "DS-P8", "DS-M12", "DS-C5"})
            provider->AddLoudspeakerDescriptor(new LoudspeakerDescriptor(QStringLiteral(":/demoseries/data/%1.json").arg(QLatin1String(file)), this));
    }

    void SetRiggingHardwareDescriptorProvider(RiggingHardwareDescriptorProvider *provider) override
    {
        for (const char *file : {"DS-L12-Frame", "DS-GroundPlate"})
            provider->AddRiggingHardwareDescriptor(new RiggingHardwareDescriptor(QStringLiteral(":/demoseries/data/%1.json").arg(QLatin1String(file)), this));
    }
};

#include "DemoSeries.moc"
