// SPDX-License-Identifier: MIT
#include "Descriptors.h"

#include "CommandContext.h"
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

} // namespace Descriptors
