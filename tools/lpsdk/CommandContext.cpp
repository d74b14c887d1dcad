// SPDX-License-Identifier: MIT
#include "CommandContext.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace {
// Redraws one terminal line: Loading plugins [###############...............]  50 %
void drawProgress(int percentage)
{
    constexpr int width = 30;
    const int filled = qBound(0, percentage, 100) * width / 100;
    std::fprintf(stderr, "\rLoading plugins [%s%s] %3d %%", QByteArray(filled, '#').constData(), QByteArray(width - filled, '.').constData(), percentage);
    std::fflush(stderr);
}
} // namespace

const QList<PluginLoadResult> &CommandContext::plugins(bool reportsLibraries) const
{
    if (m_plugins)
        return *m_plugins;
    PluginProvider &provider = PluginProvider::GetInstance();
    QString directory = parser.value(QStringLiteral("plugins"));
    if (directory.isEmpty())
        directory = qEnvironmentVariable("LPSDK_PLUGIN_PATH");
    const QString folder = directory.isEmpty() ? provider.GetPluginDirectory() : QDir(directory).absolutePath();
    if (!QFileInfo(folder).isDir())
        usageError(QStringLiteral("the plugin folder %1 does not exist (give one with --plugins DIR)").arg(folder));

    const bool progress = !parser.isSet(QStringLiteral("quiet")) && isatty(fileno(stderr));
    const QMetaObject::Connection connection = progress ? QObject::connect(&provider, &PluginProvider::PluginLoadingProgressChanged, drawProgress) : QMetaObject::Connection();
    provider.LoadPlugins(folder);
    QObject::disconnect(connection);
    m_plugins = provider.GetPluginLoadResults();
    if (progress && !m_plugins->isEmpty())
        std::fputc('\n', stderr);

    if (!reportsLibraries && !parser.isSet(QStringLiteral("quiet"))) {
        for (const PluginLoadResult &library : std::as_const(*m_plugins)) {
            if (!library.loaded)
                std::fprintf(stderr, "lpsdk: %s does not load: %s\n", qPrintable(library.fileName), qPrintable(library.errorString));
        }
        if (std::none_of(m_plugins->cbegin(), m_plugins->cend(), [](const PluginLoadResult &library) { return library.loaded; }))
            std::fprintf(stderr, "lpsdk: no plugin loaded from %s\n", qPrintable(folder));
    }
    return *m_plugins;
}

QString CommandContext::name() const
{
    if (arguments.isEmpty())
        usageError(QStringLiteral("this command needs the name of a loudspeaker or rigging item (see lpsdk list)"));
    if (arguments.size() > 1)
        usageError(QStringLiteral("one name only, not \"%1\" (quote names with spaces)").arg(arguments.join(QLatin1Char(' '))));
    return arguments.first();
}
