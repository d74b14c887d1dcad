// SPDX-License-Identifier: MIT
// A series that registers nothing and has order number 20 in every group.
#include "LoudspeakerSeries_Interface.h"
#include "Plugin_Interface.h"

#include <QObject>

class EqualOrderSeries : public QObject, public LoudspeakerSeries_Interface, public Plugin_Interface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID LoudspeakerSeries_Interface_iid)
    Q_INTERFACES(LoudspeakerSeries_Interface Plugin_Interface)
public:
    QString GetName() const override { return QStringLiteral(EQUAL_ORDER_SERIES_NAME); }
    int GetSourceGroupOrder(Tolvane::SourceGroupType) const override { return 20; }
    void SetLoudspeakerDescriptorProvider(LoudspeakerDescriptorProvider *) override { }
    void SetRiggingHardwareDescriptorProvider(RiggingHardwareDescriptorProvider *) override { }
};

#include "equalorderseries.moc"
