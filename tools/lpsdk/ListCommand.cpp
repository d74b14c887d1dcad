// SPDX-License-Identifier: MIT
// lpsdk list: what the plugins registered.
#include "CommandContext.h"
#include "Descriptors.h"

#include <QFileInfo>

#include <algorithm>
#include <cstdio>

int runList(const CommandContext &context)
{
    if (!context.arguments.isEmpty())
        usageError(QStringLiteral("'list' takes no name, not \"%1\"").arg(context.arguments.join(QLatin1Char(' '))));
    const QList<PluginLoadResult> &libraries = context.plugins(true);
    Output &out = context.output;
    const PluginProvider &provider = PluginProvider::GetInstance();

    out.field(QStringLiteral("sdk_version"), QStringLiteral("nvLoudspeakerPluginSdk"), norvik::LoudspeakerPluginSdk::libVersionString());
    out.field(QStringLiteral("plugin_folder"), QStringLiteral("plugin folder"), provider.GetPluginDirectory());
    out.beginList(QStringLiteral("series"), QStringLiteral("Series:"), {{QStringLiteral("name"), QStringLiteral("name")}, {QStringLiteral("library"), QStringLiteral("library")}});
    for (const PluginLoadResult &library : libraries) {
        for (const QString &series : library.series)
            out.row({series, QFileInfo(library.fileName).fileName()});
    }
    out.endList();

    const int unloaded = int(std::count_if(libraries.cbegin(), libraries.cend(), [](const PluginLoadResult &library) { return !library.loaded; }));
    out.beginList(QStringLiteral("unloaded_libraries"), unloaded > 0 ? QStringLiteral("Libraries that do not load:") : QString(),
        {{QStringLiteral("library"), QStringLiteral("library")}, {QStringLiteral("error"), QStringLiteral("why")}});
    for (const PluginLoadResult &library : libraries) {
        if (!library.loaded)
            out.row({QFileInfo(library.fileName).fileName(), library.errorString});
    }
    out.endList();

    const QList<LoudspeakerDescriptor *> loudspeakers = provider.GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptors();
    out.beginList(QStringLiteral("loudspeakers"), QStringLiteral("Loudspeakers (%1):").arg(loudspeakers.size()),
        {{QStringLiteral("name"), QStringLiteral("name")}, {QStringLiteral("type"), QStringLiteral("type")}, {QStringLiteral("part_number"), QStringLiteral("part")},
         {QStringLiteral("shape"), QStringLiteral("shape")}, {QStringLiteral("width_m"), QStringLiteral("w/m")}, {QStringLiteral("height_m"), QStringLiteral("h/m")},
         {QStringLiteral("depth_m"), QStringLiteral("d/m")}, {QStringLiteral("weight_kg"), QStringLiteral("kg")},
         {QStringLiteral("source_points"), QStringLiteral("sources")}, {QStringLiteral("series"), QStringLiteral("series")}});
    for (LoudspeakerDescriptor *loudspeaker : loudspeakers) {
        const LoudspeakerSeries_Interface *series = loudspeaker->GetLoudspeakerSeries();
        const Size size = loudspeaker->GetSize();
        out.row({loudspeaker->GetName(), Descriptors::typeText(loudspeaker->GetType()), loudspeaker->GetPartNumber(true), loudspeaker->GetCabinetShape(),
                 size.width(), size.height(), size.depth(), loudspeaker->GetWeight(), int(loudspeaker->GetSourcePointDescriptors().size()),
                 series ? QJsonValue(series->GetName()) : QJsonValue()});
    }
    out.endList();

    const QList<RiggingHardwareDescriptor *> items = provider.GetRiggingHardwareDescriptorProvider()->GetRiggingHardwareDescriptors();
    out.beginList(QStringLiteral("rigging"), QStringLiteral("Rigging items (%1):").arg(items.size()),
        {{QStringLiteral("name"), QStringLiteral("name")}, {QStringLiteral("part_number"), QStringLiteral("part")}, {QStringLiteral("weight_kg"), QStringLiteral("kg")},
         {QStringLiteral("load_beam_types"), QStringLiteral("load beam types")}});
    for (RiggingHardwareDescriptor *item : items)
        out.row({item->GetName(), item->GetPartNumber(true), item->GetWeight(), int(item->GetLoadBeamTypesMap().toMap().size())});
    out.endList();

    int missing = 0;
    if (libraries.isEmpty() || unloaded > 0) {
        const QString folder = provider.GetPluginDirectory();
        std::fprintf(stderr, "lpsdk: %s\n", qPrintable(libraries.isEmpty() ? QStringLiteral("no plugin library in %1").arg(folder)
                                                                        : QStringLiteral("%1 of %2 libraries in %3 do not load").arg(unloaded).arg(libraries.size()).arg(folder)));
        ++missing;
    }
    for (const QString &expected : context.parser.values(QStringLiteral("expect-loudspeaker"))) {
        if (!Descriptors::findLoudspeaker(expected)) {
            std::fprintf(stderr, "lpsdk: missing loudspeaker: %s\n", qPrintable(expected));
            ++missing;
        }
    }
    for (const QString &expected : context.parser.values(QStringLiteral("expect-rigging"))) {
        if (!Descriptors::findRigging(expected)) {
            std::fprintf(stderr, "lpsdk: missing rigging item: %s\n", qPrintable(expected));
            ++missing;
        }
    }
    return missing == 0 ? 0 : 1;
}
