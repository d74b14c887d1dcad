// SPDX-License-Identifier: MIT
#include "PluginFolder.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QLibrary>
#include <QPluginLoader>
#include <QSet>

#include <cstdio>
#include <unistd.h>

namespace {

QStringList *g_caught = nullptr;
bool g_catching = false;
QtMessageHandler g_previousHandler = nullptr;

void catchMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (g_caught && type != QtDebugMsg && type != QtInfoMsg)
        g_caught->append(message);
    if (!g_catching && g_previousHandler)
        g_previousHandler(type, context, message);
}

QSet<QString> resourceFiles()
{
    QSet<QString> files;
    QDirIterator it(QStringLiteral(":/"), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        files.insert(it.next());
    return files;
}

// Redraws one terminal line: Loading plugins [###############...............]  50 %
void drawProgress(int percentage)
{
    constexpr int width = 30;
    const int filled = qBound(0, percentage, 100) * width / 100;
    std::fprintf(stderr, "\rLoading plugins [%s%s] %3d %%", QByteArray(filled, '#').constData(), QByteArray(width - filled, '.').constData(), percentage);
    std::fflush(stderr);
}

QStringList g_sink;

} // namespace

QString PluginFolder::chooseDirectory(const QString &option)
{
    if (!option.isEmpty())
        return option;
    const QString fromEnvironment = qEnvironmentVariable("LPSDK_PLUGIN_PATH");
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    return QCoreApplication::applicationDirPath() + QStringLiteral("/Plugins");
}

PluginFolder::PluginFolder(const QString &directory)
    : m_directory(QDir(directory).absolutePath())
{
    g_caught = &g_sink;
    g_previousHandler = qInstallMessageHandler(catchMessage);
}

PluginFolder::~PluginFolder()
{
    qInstallMessageHandler(g_previousHandler);
    g_caught = nullptr;
    qDeleteAll(m_loaders); // deleting a loader leaves its plugin loaded
}

void PluginFolder::catchWarnings(bool on)
{
    g_catching = on;
}

QStringList PluginFolder::takeWarnings()
{
    return std::exchange(g_sink, {});
}

void PluginFolder::load(bool showProgress)
{
    const bool terminal = showProgress && isatty(fileno(stderr));
    const QDir folder(m_directory);
    const QStringList entries = folder.entryList(QDir::Files, QDir::Name);
    QStringList paths;
    for (const QString &entry : entries) {
        if (QLibrary::isLibrary(folder.filePath(entry)))
            paths.append(folder.filePath(entry));
    }
    PluginProvider &provider = PluginProvider::GetInstance();
    QSet<QString> knownResources = resourceFiles();

    for (qsizetype i = 0; i < paths.size(); ++i) {
        Library library;
        library.path = paths.at(i);
        g_caught = &library.warnings;
        auto *loader = new QPluginLoader(library.path);
        m_loaders.append(loader);
        library.root = loader->instance();
        auto *plugin = qobject_cast<Plugin_Interface *>(library.root);
        library.series = qobject_cast<LoudspeakerSeries_Interface *>(library.root);
        if (!library.root) {
            library.error = loader->errorString();
        } else if (!plugin || !library.series) {
            library.error = QStringLiteral("its root object %1 does not implement %2").arg(QLatin1String(library.root->metaObject()->className()),
                !library.series ? QStringLiteral("LoudspeakerSeries_Interface") : QStringLiteral("Plugin_Interface"));
            library.series = nullptr;
        } else {
            plugin->SetLoudspeakerDescriptorProvider(provider.GetLoudspeakerDescriptorProvider());
            plugin->SetRiggingHardwareDescriptorProvider(provider.GetRiggingHardwareDescriptorProvider());
        }
        const QSet<QString> resources = resourceFiles();
        for (const QString &resource : resources) {
            if (!knownResources.contains(resource))
                library.resources.append(resource);
        }
        library.resources.sort();
        knownResources = resources;
        g_caught = &g_sink;
        m_libraries.append(library);
        if (terminal)
            drawProgress(int((i + 1) * 100 / paths.size()));
    }
    if (terminal && !paths.isEmpty())
        std::fputc('\n', stderr);
}
