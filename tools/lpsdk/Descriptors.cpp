// SPDX-License-Identifier: MIT
#include "Descriptors.h"

#include "Arguments.h"
#include "CommandContext.h"
#include "Vocabulary.h"
#include "Output.h"

#include <QJsonArray>

namespace Descriptors {

LoudspeakerDescriptor *findLoudspeaker(const QString &name)
{
    return PluginProvider::GetInstance().GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptor(name);
}

RiggingHardwareDescriptor *findRigging(const QString &name)
{
    return PluginProvider::GetInstance().GetRiggingHardwareDescriptorProvider()->GetRiggingHardwareDescriptor(name);
}

LoudspeakerDescriptor *loudspeaker(const QString &name)
{
    if (LoudspeakerDescriptor *found = findLoudspeaker(name))
        return found;
    QStringList names;
    for (LoudspeakerDescriptor *known : PluginProvider::GetInstance().GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptors())
        names.append(known->GetName());
    dataError(QStringLiteral("no loudspeaker named \"%1\" (registered: %2)").arg(name, names.isEmpty() ? QStringLiteral("none") : names.join(QStringLiteral(", "))));
}

SourcePointDescriptor *sourcePoint(LoudspeakerDescriptor *loudspeaker, const QString &index)
{
    const QList<SourcePointDescriptor *> points = loudspeaker->GetSourcePointDescriptors();
    if (points.isEmpty())
        dataError(QStringLiteral("%1 has no source points").arg(loudspeaker->GetName()));
    bool ok = false;
    const int n = index.toInt(&ok);
    if (!ok || n < 0 || n >= points.size())
        usageError(QStringLiteral("--source-point must be 0 ... %1 for %2, not \"%3\"").arg(points.size() - 1).arg(loudspeaker->GetName(), index));
    return points.at(n);
}

QString typeText(Tolvane::LoudspeakerTypeFlags type)
{
    QStringList bits;
    const std::pair<Tolvane::LoudspeakerTypeFlag, const char *> names[] = {{Tolvane::NarrowDispersion, "narrow dispersion"},
        {Tolvane::WideDispersion, "wide dispersion"}, {Tolvane::Sub, "sub"}, {Tolvane::Top, "top"}, {Tolvane::PointSource, "point source"}};
    for (const auto &[flag, name] : names) {
        if (type.testFlag(flag))
            bits.append(QLatin1String(name));
    }
    return bits.isEmpty() ? QStringLiteral("unknown") : bits.join(QStringLiteral(", "));
}

void sizeField(Output &output, const Size &size)
{
    if (output.mode() == Output::Json) {
        output.beginObject(QStringLiteral("size_m"));
        output.field(QStringLiteral("width"), {}, size.width());
        output.field(QStringLiteral("height"), {}, size.height());
        output.field(QStringLiteral("depth"), {}, size.depth());
        output.endObject();
    } else {
        output.field(QStringLiteral("size_m"), QStringLiteral("size"), QStringLiteral("%1 x %2 x %3 m (w x h x d)").arg(size.width()).arg(size.height()).arg(size.depth()));
    }
}

static QJsonArray coordinates(const Point &point)
{
    return {point.x(), point.y(), point.z()};
}

void pointField(Output &output, const QString &key, const QString &label, const Point &point)
{
    if (output.mode() == Output::Json)
        output.field(key, label, coordinates(point));
    else
        output.field(key, label, QStringLiteral("(%1, %2, %3) m").arg(point.x()).arg(point.y()).arg(point.z()));
}

void outlineField(Output &output, const QString &key, const QString &label, const QList<Point> &points)
{
    if (output.mode() != Output::Json) {
        output.field(key, label, QStringLiteral("%1 points").arg(points.size()));
        return;
    }
    QJsonArray array;
    for (const Point &point : points)
        array.append(coordinates(point));
    output.field(key, label, array);
}

QMap<QString, QList<Point>> riggingViews(RiggingHardwareDescriptor *rigging)
{
    return rigging->GetViews().value<QMap<QString, QList<Point>>>();
}

// Coupling switches left out sit at their 0 dB position rather than at position 0.
QMap<int, int> switchSettings(const QStringList &texts, LoudspeakerSetup *setup)
{
    QStringList known;
    for (int s = 1; s <= 5; ++s) {
        if (!setup->GetSwitchValues(s).isEmpty())
            known.append(QString::number(s));
    }
    QMap<int, int> settings;
    for (const QString &text : texts) {
        const QStringList parts = text.split(QLatin1Char('='));
        if (parts.size() != 2)
            usageError(QStringLiteral("--switch takes n=value, not \"%1\"").arg(text));
        const int number = Arguments::wholeNumber(parts.at(0), QStringLiteral("a switch number"));
        const QMap<int, QString> values = setup->GetSwitchValues(number);
        if (values.isEmpty())
            usageError(QStringLiteral("setup \"%1\" has no switch %2 (its switches: %3)").arg(setup->GetFullName()).arg(number).arg(known.join(QStringLiteral(", "))));
        const int value = Arguments::wholeNumber(parts.at(1), QStringLiteral("a switch value"));
        if (!values.contains(value)) {
            QStringList accepted;
            for (auto it = values.cbegin(); it != values.cend(); ++it)
                accepted.append(QStringLiteral("%1 (%2)").arg(it.key()).arg(it.value().trimmed()));
            usageError(QStringLiteral("switch %1 has no value %2 (accepted: %3)").arg(number).arg(value).arg(accepted.join(QStringLiteral(", "))));
        }
        settings.insert(number, value);
    }
    return setup->WithCouplingSwitchesAtZero(settings);
}

int setupKey(DspChannelDescriptor *channel, const QCommandLineParser &parser, Tolvane::Mounting mounting, const QString &name)
{
    const QMap<int, LoudspeakerSetup *> setups = channel->GetLoudspeakerSetups();
    const int setupKey = parser.isSet(QStringLiteral("setup")) ? Arguments::wholeNumber(parser.value(QStringLiteral("setup")), QStringLiteral("--setup"))
                                                               : channel->GetDefaultLoudspeakerSetupKey(mounting);
    if (!setups.value(setupKey)) {
        QStringList keys;
        for (int key : setups.keys())
            keys.append(QString::number(key));
        usageError(QStringLiteral("%1 has no controller setup %2 (its setups: %3)").arg(name).arg(setupKey).arg(keys.isEmpty() ? QStringLiteral("none") : keys.join(QStringLiteral(", "))));
    }
    return setupKey;
}

} // namespace Descriptors
