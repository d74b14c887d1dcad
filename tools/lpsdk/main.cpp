// SPDX-License-Identifier: MIT
// lpsdk: loads the loudspeaker-series plugins from the "Plugins" folder beside it, with a
// progress bar, and lists what they registered.
#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

namespace {

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

// Redraws one terminal line: [##########..........]  50 %
void drawProgress(int percentage)
{
    constexpr int width = 30;
    const int filled = qBound(0, percentage, 100) * width / 100;
    std::fprintf(stderr, "\rLoading plugins [%s%s] %3d %%", QByteArray(filled, '#').constData(), QByteArray(width - filled, '.').constData(), percentage);
    std::fflush(stderr);
}

QString groupName(Tolvane::SourceGroupType group)
{
    switch (group) {
    case Tolvane::LineArraySources:
        return QStringLiteral("line arrays");
    case Tolvane::PointSources:
        return QStringLiteral("point sources");
    case Tolvane::SubwooferSources:
        return QStringLiteral("subwoofers");
    default:
        return QStringLiteral("all");
    }
}

void listRegistrations(const PluginProvider &provider)
{
    for (int g = Tolvane::LineArraySources; g <= Tolvane::AllSources; ++g) {
        const auto group = static_cast<Tolvane::SourceGroupType>(g);
        QStringList names;
        for (const LoudspeakerSeries_Interface *series : provider.GetPlugins(group))
            names.append(series->GetName());
        out() << "Series, " << groupName(group) << ": " << (names.isEmpty() ? QStringLiteral("(none)") : names.join(QStringLiteral(", "))) << '\n';
    }

    const QList<LoudspeakerDescriptor *> loudspeakers = provider.GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptors();
    out() << "Loudspeakers (" << loudspeakers.size() << "):\n";
    for (LoudspeakerDescriptor *loudspeaker : loudspeakers) {
        const LoudspeakerSeries_Interface *series = loudspeaker->GetLoudspeakerSeries();
        out() << "  " << loudspeaker->GetName() << "  [" << (series ? series->GetName() : QStringLiteral("no series")) << "]\n";
    }

    const QList<RiggingHardwareDescriptor *> frames = provider.GetRiggingHardwareDescriptorProvider()->GetRiggingHardwareDescriptors();
    out() << "Rigging hardware (" << frames.size() << "):\n";
    for (RiggingHardwareDescriptor *frame : frames)
        out() << "  " << frame->GetName() << '\n';
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lpsdk"));
    QCoreApplication::setApplicationVersion(norvik::LoudspeakerPluginSdk::libVersionString());

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Loads the loudspeaker-series plugins from the Plugins folder beside this program and lists what they registered."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption expectLoudspeaker(QStringLiteral("expect-loudspeaker"), QStringLiteral("Fail unless a loudspeaker of this name is registered."), QStringLiteral("name"));
    const QCommandLineOption expectRigging(QStringLiteral("expect-rigging"), QStringLiteral("Fail unless rigging hardware of this name is registered."), QStringLiteral("name"));
    parser.addOption(expectLoudspeaker);
    parser.addOption(expectRigging);
    parser.process(app);

    PluginProvider &provider = PluginProvider::GetInstance();
    bool progressShown = false;
    QObject::connect(&provider, &PluginProvider::PluginLoadingProgressChanged, [&progressShown](int percentage) {
        drawProgress(percentage);
        progressShown = true;
    });
    provider.LoadPlugins();
    if (progressShown)
        std::fputc('\n', stderr);
    else
        std::fprintf(stderr, "No plugins found in %s/Plugins\n", qPrintable(QCoreApplication::applicationDirPath()));

    out() << "nvLoudspeakerPluginSdk " << norvik::LoudspeakerPluginSdk::libVersionString() << '\n';
    listRegistrations(provider);
    out().flush();

    int missing = 0;
    for (const QString &name : parser.values(expectLoudspeaker)) {
        if (!provider.GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptor(name)) {
            std::fprintf(stderr, "Missing loudspeaker: %s\n", qPrintable(name));
            ++missing;
        }
    }
    for (const QString &name : parser.values(expectRigging)) {
        if (!provider.GetRiggingHardwareDescriptorProvider()->GetRiggingHardwareDescriptor(name)) {
            std::fprintf(stderr, "Missing rigging hardware: %s\n", qPrintable(name));
            ++missing;
        }
    }
    return missing == 0 ? 0 : 1;
}
