// SPDX-License-Identifier: MIT
#include "PluginProvider.h"

#include "LoudspeakerDescriptorProvider.h"
#include "LoudspeakerSeries_Interface.h"
#include "Plugin_Interface.h"
#include "RiggingHardwareDescriptorProvider.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QFuture>
#include <QLibrary>
#include <QMutexLocker>
#include <QPluginLoader>
#include <QThread>
#include <QThreadPool>
#include <QtConcurrent/QtConcurrentRun>

#include <algorithm>
#include <atomic>
#include <iterator>

namespace {
// Qt's futures order each root object's creation before its registration, but through locks
// that race detectors cannot see; this release/acquire pair makes the order visible to them.
std::atomic<int> rootHandOver{0};

template<typename Descriptor>
QStringList RegisteredNames(const QList<Descriptor *> &descriptors)
{
    QStringList names;
    for (Descriptor *descriptor : descriptors)
        names.append(descriptor->GetName());
    return names;
}

// Both lists are in name order, as the registries give them.
QStringList Added(const QStringList &before, const QStringList &after)
{
    QStringList added;
    std::set_difference(after.cbegin(), after.cend(), before.cbegin(), before.cend(), std::back_inserter(added));
    return added;
}
} // namespace

PluginProvider *PluginProvider::m_instance = nullptr;
QMutex PluginProvider::m_instanceAccessSynchronisation;

PluginProvider &PluginProvider::GetInstance()
{
    QMutexLocker locker(&m_instanceAccessSynchronisation);
    if (!m_instance)
        m_instance = new PluginProvider;
    return *m_instance;
}

PluginProvider::PluginProvider()
    : m_loudspeakerDescriptorProvider(new LoudspeakerDescriptorProvider(this))
    , m_riggingHardwareDescriptorProvider(new RiggingHardwareDescriptorProvider(this))
{
}

PluginProvider::~PluginProvider() = default;

void PluginProvider::LoadPlugins()
{
    LoadPlugins(QString());
}

void PluginProvider::LoadPlugins(const QString &directory)
{
    m_pluginDirectory = directory.isEmpty() ? QString() : QDir(directory).absolutePath();
    m_lastLoadFiles.clear();
    const QStringList entries = ListPluginDirectory();
    const qsizetype entryCount = entries.size();
    const qsizetype firstNewLoader = m_pluginLoaders.size();
    QThread *const registrationThread = QThread::currentThread();
    QList<QFuture<void>> futures;
    QStringList newPaths;

    for (qsizetype i = 0; i < entryCount; ++i) {
        const QString &path = entries.at(i);
        const QString baseName = QFileInfo(path).baseName();
        if (!IsLibraryFile(path))
            continue;
        m_lastLoadFiles.append(path);
        if (m_loadedPluginFileNames.contains(baseName)) {
            if (!m_loadResults.contains(path)) // a namesake from another folder came first
                m_loadResults.insert(path, {path, false, QStringLiteral("a plugin library with the base name \"%1\" was loaded before").arg(baseName), {}, {}, {}});
            continue;
        }
        newPaths.append(path);

        auto *loader = new QPluginLoader(path, this);
        m_pluginLoaders.append(loader);
        // A root object created on a pool thread would belong to it, and the descriptors a
        // plugin creates later (with the root as parent) must live on the registering thread.
        const auto createRoot = [loader, registrationThread] {
            QObject *root = loader->instance();
            if (root && root->thread() == QThread::currentThread())
                root->moveToThread(registrationThread);
            rootHandOver.fetch_add(1, std::memory_order_release);
        };
        QThreadPool *pool = QThreadPool::globalInstance();
        futures.append(pool ? QtConcurrent::run(pool, createRoot) : QFuture<void>());

        emit PluginLoadingProgressChanged(qRound(100.0 / entryCount * (i + 1)));
        m_loadedPluginFileNames.append(baseName);
    }

    // Registration runs here, in listing order, as each root object becomes ready.
    for (qsizetype j = 0; j < futures.size(); ++j) {
        futures[j].waitForFinished();
        rootHandOver.load(std::memory_order_acquire);
        LoadPluginData(m_pluginLoaders.at(firstNewLoader + j), newPaths.at(j));
    }
}

void PluginProvider::LoadPlugin(const QString &fileName)
{
    if (m_loadedPluginFileNames.contains(fileName))
        return;
    const QStringList entries = ListPluginDirectory();
    for (const QString &path : entries) {
        if (IsLibraryFile(path) && QFileInfo(path).baseName() == fileName) {
            LoadPluginData(path);
            m_lastLoadFiles = {path};
            return;
        }
    }
}

void PluginProvider::LoadPluginData(const QString &path)
{
    auto *loader = new QPluginLoader(path, this);
    m_pluginLoaders.append(loader);
    LoadPluginData(loader, path);
    if (loader->isLoaded())
        m_loadedPluginFileNames.append(QFileInfo(path).baseName());
}

void PluginProvider::LoadPluginData(QPluginLoader *loader, const QString &path)
{
    PluginLoadResult &result = m_loadResults[path];
    result = {path, false, {}, {}, {}, {}};
    QObject *root = loader->instance();
    if (!root) {
        result.errorString = loader->errorString();
        return;
    }

    auto *series = qobject_cast<LoudspeakerSeries_Interface *>(root);
    auto *plugin = qobject_cast<Plugin_Interface *>(root);
    if (!series || !plugin) {
        result.errorString = QStringLiteral("its root object %1 does not implement %2")
                                 .arg(QLatin1String(root->metaObject()->className()), QLatin1String(series ? Plugin_Interface_iid : LoudspeakerSeries_Interface_iid));
        delete root; // the loader is kept until Clear()
        return;
    }

    const QStringList loudspeakersBefore = RegisteredNames(m_loudspeakerDescriptorProvider->GetLoudspeakerDescriptors());
    const QStringList riggingsBefore = RegisteredNames(m_riggingHardwareDescriptorProvider->GetRiggingHardwareDescriptors());
    plugin->SetLoudspeakerDescriptorProvider(m_loudspeakerDescriptorProvider);
    plugin->SetRiggingHardwareDescriptorProvider(m_riggingHardwareDescriptorProvider);
    result.loaded = true;
    result.series = QStringList{series->GetName()};
    result.loudspeakers = Added(loudspeakersBefore, RegisteredNames(m_loudspeakerDescriptorProvider->GetLoudspeakerDescriptors()));
    result.riggings = Added(riggingsBefore, RegisteredNames(m_riggingHardwareDescriptorProvider->GetRiggingHardwareDescriptors()));

    for (int g = Tolvane::LineArraySources; g <= Tolvane::AllSources; ++g) {
        const auto group = static_cast<Tolvane::SourceGroupType>(g);
        // QMultiMap::insert places the pair before equal keys: the later plugin comes first.
        m_pluginsBySourceGroup[group].insert(plugin->GetSourceGroupOrder(group), series);
    }
}

QList<PluginLoadResult> PluginProvider::GetPluginLoadResults() const
{
    QList<PluginLoadResult> results;
    for (const QString &path : m_lastLoadFiles)
        results.append(m_loadResults.value(path));
    return results;
}

QList<LoudspeakerSeries_Interface *> PluginProvider::GetPlugins(Tolvane::SourceGroupType type) const
{
    Tolvane::SourceGroupType group = Tolvane::AllSources;
    if (type != Tolvane::UndefinedSources && type != Tolvane::OtherSources && m_pluginsBySourceGroup.contains(type))
        group = type;
    return m_pluginsBySourceGroup.value(group).values();
}

LoudspeakerSeries_Interface *PluginProvider::GetPlugin(const QString &name) const
{
    const auto group = m_pluginsBySourceGroup.constFind(Tolvane::AllSources);
    if (group == m_pluginsBySourceGroup.cend())
        return nullptr;
    for (LoudspeakerSeries_Interface *series : group.value()) {
        if (series->GetName() == name)
            return series;
    }
    return nullptr;
}

LoudspeakerDescriptorProvider *PluginProvider::GetLoudspeakerDescriptorProvider() const
{
    return m_loudspeakerDescriptorProvider;
}

RiggingHardwareDescriptorProvider *PluginProvider::GetRiggingHardwareDescriptorProvider() const
{
    return m_riggingHardwareDescriptorProvider;
}

void PluginProvider::Clear()
{
    m_loadedPluginFileNames.clear();
    m_pluginDirectory.clear();
    m_loadResults.clear();
    m_lastLoadFiles.clear();
    for (QPluginLoader *loader : std::as_const(m_pluginLoaders))
        loader->unload();
    qDeleteAll(m_pluginLoaders);
    m_pluginLoaders.clear();
    m_pluginsBySourceGroup.clear(); // its pointers died with the unloaded root objects
    m_balloonDataReadMode = SourcePointDescriptor_Interface::Asynchronous;
}

void PluginProvider::SetBalloonDataReadMode(SourcePointDescriptor_Interface::ReadBalloonDataMode mode)
{
    m_balloonDataReadMode = mode;
}

QString PluginProvider::ConvertPluginFileNameToPlatform(const QString &fileName)
{
    return fileName;
}

QString PluginProvider::ConvertPlatformPluginFileNameToGeneric(const QString &fileName)
{
    return ConvertPluginFileNameToPlatform(fileName);
}

QString PluginProvider::GetPluginDirectory() const
{
    if (!m_pluginDirectory.isEmpty())
        return m_pluginDirectory;
    return QDir(QCoreApplication::applicationDirPath() + QStringLiteral("/Plugins")).absolutePath();
}

QStringList PluginProvider::ListPluginDirectory() const
{
    const QDir directory(GetPluginDirectory());
    QStringList paths = directory.entryList(QDir::Files, QDir::NoSort);
    for (QString &path : paths)
        path = directory.absoluteFilePath(path);
    return paths;
}

bool PluginProvider::IsLibraryFile(const QString &path) const
{
    return QLibrary::isLibrary(path);
}
