// SPDX-License-Identifier: MIT
// A series plugin whose one loudspeaker names a truncated balloon file.
#include "LoudspeakerDescriptor.h"
#include "LoudspeakerDescriptorProvider.h"
#include "LoudspeakerSeries_Interface.h"
#include "Plugin_Interface.h"

#include <QObject>

class BrokenBalloonSeries : public QObject, public LoudspeakerSeries_Interface, public Plugin_Interface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID LoudspeakerSeries_Interface_iid)
    Q_INTERFACES(LoudspeakerSeries_Interface Plugin_Interface)
public:
    QString GetName() const override { return QStringLiteral("Broken Balloon Series"); }
    int GetSourceGroupOrder(Tolvane::SourceGroupType) const override { return 1; }
    void SetLoudspeakerDescriptorProvider(LoudspeakerDescriptorProvider *provider) override
    {
        provider->AddLoudspeakerDescriptor(new LoudspeakerDescriptor(QStringLiteral(":/brokenballoon/data/brokenballoon.json"), this));
    }
    void SetRiggingHardwareDescriptorProvider(RiggingHardwareDescriptorProvider *) override { }
};

#include "brokenballoon.moc"
