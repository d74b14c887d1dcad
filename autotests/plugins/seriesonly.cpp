// SPDX-License-Identifier: MIT
// A root object that is a series but no plugin: the provider must delete it unregistered.
#include "LoudspeakerSeries_Interface.h"

#include <QObject>

class SeriesOnly : public QObject, public LoudspeakerSeries_Interface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID LoudspeakerSeries_Interface_iid)
    Q_INTERFACES(LoudspeakerSeries_Interface)
public:
    // Counts destructions where the test can see them.
    ~SeriesOnly() override
    {
        qputenv("LPSDK_SERIESONLY_DESTROYED", QByteArray::number(qEnvironmentVariableIntValue("LPSDK_SERIESONLY_DESTROYED") + 1));
    }
    QString GetName() const override { return QStringLiteral("Series Only"); }
};

#include "seriesonly.moc"
