// SPDX-License-Identifier: MIT
#include "DirectivitySource.h"

#include "Arguments.h"
#include "CommandContext.h"
#include "Descriptors.h"

#include <QFileInfo>

namespace {

DirectivitySource openFile(const CommandContext &context, const QString &path)
{
    for (const char *option : {"source-point", "key", "setup", "switch"}) {
        if (context.parser.isSet(QLatin1String(option)))
            usageError(QStringLiteral("--%1 applies to a loudspeaker, not to a balloon file").arg(QLatin1String(option)));
    }
    DirectivitySource source;
    source.title = QFileInfo(path).fileName();
    source.table = DirectivitySource::readFile(path);
    return source;
}

DirectivitySource openLoudspeaker(const CommandContext &context, const QString &name)
{
    const QCommandLineParser &parser = context.parser;
    context.plugins();
    LoudspeakerDescriptor *loudspeaker = Descriptors::loudspeaker(name);
    SourcePointDescriptor *sourcePoint = Descriptors::sourcePoint(loudspeaker, parser.value(QStringLiteral("source-point")));
    DirectivitySource source;
    source.channel = sourcePoint->GetDspChannelDescriptor(sourcePoint->GetDefaultAmplifier());
    QString key = parser.value(QStringLiteral("key"));
    if (source.channel && !source.channel->GetLoudspeakerSetups().isEmpty()) {
        source.setupKey = Descriptors::setupKey(source.channel, parser, Arguments::mounting(parser), name);
        source.switches = Descriptors::switchSettings(parser.values(QStringLiteral("switch")), source.channel->GetLoudspeakerSetups().value(source.setupKey));
        // The switches choose the balloon unless a key is asked for.
        if (!parser.isSet(QStringLiteral("key")))
            key = source.channel->GetBalloonDataKey(source.setupKey, source.switches);
    } else {
        source.channel = nullptr;
    }
    sourcePoint->ReadBalloonData(SourcePointDescriptor_Interface::Synchronous);
    source.table = sourcePoint->GetBalloonTable(key);
    if (!source.table) {
        const QStringList keys = sourcePoint->GetBalloonKeys();
        dataError(QStringLiteral("source point \"%1\" of %2 has no balloon \"%3\" (its balloons: %4)")
                      .arg(sourcePoint->GetName(), name, key, keys.isEmpty() ? QStringLiteral("none") : keys.join(QStringLiteral(", "))));
    }
    source.title = QStringLiteral("%1, source point \"%2\", balloon \"%3\"").arg(name, sourcePoint->GetName(), key);
    if (source.channel)
        source.title += QStringLiteral(", setup %1").arg(source.setupKey);
    return source;
}

} // namespace

std::shared_ptr<const BalloonTable> DirectivitySource::readFile(const QString &path)
{
    const BalloonReadResult result = BalloonFile::Read(path);
    if (!result.table) {
        QStringList problems;
        for (const BalloonProblem &problem : result.problems)
            problems.append(problem.ToString());
        dataError(QStringLiteral("%1: %2").arg(path, problems.join(QStringLiteral("; "))));
    }
    return result.table;
}

DirectivitySource DirectivitySource::open(const CommandContext &context)
{
    const QString name = context.name();
    DirectivitySource source = name.endsWith(QLatin1String(".bin"), Qt::CaseInsensitive) ? openFile(context, name) : openLoudspeaker(context, name);
    source.flushMount = context.parser.isSet(QStringLiteral("flush-mount"));
    if (source.flushMount && !source.table->HasFlushMount())
        usageError(QStringLiteral("%1 has no flush-mount variant").arg(source.title));
    if (source.flushMount)
        source.title += QStringLiteral(", flush-mounted");
    return source;
}
