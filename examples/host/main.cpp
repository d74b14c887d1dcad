// SPDX-License-Identifier: MIT
// The smallest complete host: loads the loudspeaker plugins of a folder, says what became of
// each library, and reads one loudspeaker's directivity on axis.
#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QCoreApplication>

#include <cmath>
#include <cstdio>
#include <stdexcept>

int main(int argc, char *argv[])
{
    // The provider finds its default folder, <application dir>/Plugins, through the application.
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString folder = arguments.value(1);                          // empty: the default folder
    const QString name = arguments.value(2, QStringLiteral("DS-L12"));

    PluginProvider &provider = PluginProvider::GetInstance();
    provider.SetBalloonDataReadMode(SourcePointDescriptor_Interface::Synchronous);
    provider.LoadPlugins(folder);
    for (const PluginLoadResult &library : provider.GetPluginLoadResults()) {
        if (library.loaded)
            std::printf("%s: %s, %d loudspeakers\n", qPrintable(library.fileName), qPrintable(library.series.join(QStringLiteral(", "))), int(library.loudspeakers.size()));
        else
            std::printf("%s does not load: %s\n", qPrintable(library.fileName), qPrintable(library.errorString));
    }

    LoudspeakerDescriptor *loudspeaker = provider.GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptor(name);
    if (!loudspeaker) {
        std::fprintf(stderr, "no loudspeaker named %s in %s\n", qPrintable(name), qPrintable(provider.GetPluginDirectory()));
        return 1;
    }
    const QList<SourcePointDescriptor *> sourcePoints = loudspeaker->GetSourcePointDescriptors();
    if (sourcePoints.isEmpty() || !sourcePoints.first()->HasBalloonFiles()) {
        std::printf("%s has no directivity data\n", qPrintable(name));
        return 0;
    }
    // Balloons are read on request, in the mode the host chose above.
    SourcePointDescriptor *sourcePoint = sourcePoints.first();
    sourcePoint->ReadBalloonData(provider.GetBalloonDataReadMode());
    try {
        const Complex onAxis = sourcePoint->GetBalloonData(QStringLiteral("default"), 1000.0, 0.0, 0.0, false);
        std::printf("%s at 1 kHz on axis: %.2f dB\n", qPrintable(name), 20.0 * std::log10(onAxis.abs()));
    } catch (const std::out_of_range &) {
        std::fprintf(stderr, "%s has no default balloon at 1 kHz\n", qPrintable(name));
        return 1;
    }
    return 0;
}
