// SPDX-License-Identifier: MIT
#pragma once

#include "PluginLoadResult.h"
#include "SourcePointDescriptor_Interface.h"
#include "Tolvane.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QList>
#include <QMap>
#include <QMultiMap>
#include <QMutex>
#include <QObject>
#include <QString>

class LoudspeakerDescriptorProvider;
class LoudspeakerSeries_Interface;
class QPluginLoader;
class RiggingHardwareDescriptorProvider;

/**
 * The entry point of the SDK: a process-wide singleton that loads the loudspeaker-series
 * plugins of a folder (by default "Plugins" beside the application), hands each of them the
 * two descriptor registries, lists the loaded series per source group, and keeps what became
 * of each library file.
 *
 * Typical use: GetInstance(), optionally SetBalloonDataReadMode(), LoadPlugins() or
 * LoadPlugins(folder) (or LoadPlugin() by name), then GetPluginLoadResults(),
 * GetPlugins()/GetPlugin() and the registries.
 *
 * Use from one thread at a time; only GetInstance() may be called from any thread.
 * LoadPlugins() creates the plugins' root objects in parallel on the global thread pool,
 * then moves them to the calling thread and registers them there, one by one.
 */
class NVLPS_EXPORT PluginProvider : public QObject
{
    Q_OBJECT
public:
    static PluginProvider &GetInstance();

    /**
     * Loads every plugin library of the plugin folder that was not taken in before, in
     * parallel, and registers them in folder-listing order. Emits
     * PluginLoadingProgressChanged() once per plugin file started, with the position of
     * that file among all files of the folder. A file tried here is not tried again by a
     * later LoadPlugins(), even if it failed to load. Meant for a fresh or cleared provider.
     */
    void LoadPlugins();
    /**
     * The same as LoadPlugins(), for the folder `directory` of the host's choice (an empty
     * string names the default folder). It becomes the plugin folder of later LoadPlugin()
     * calls and of GetPluginDirectory().
     *
     * Calling it again is safe, for the same or another folder: files whose base name was
     * taken in before are not loaded twice (their result is the earlier one, or, for a file
     * of another folder, not loaded with the reason), and what the earlier loads registered
     * stays registered. A missing folder lists no files and gives no results.
     */
    void LoadPlugins(const QString &directory);
    /**
     * Loads the one plugin library of the plugin folder whose base name (no folder, no
     * suffixes) is `fileName`, synchronously. Does nothing if that name was taken in already;
     * a file that failed to load may be tried again.
     */
    void LoadPlugin(const QString &fileName);

    /**
     * One result per library file of the last LoadPlugins() (in the folder's listing order),
     * or the one file of the last LoadPlugin() that found its file. Files that are no
     * libraries have no result. Empty before the first load and after Clear().
     */
    QList<PluginLoadResult> GetPluginLoadResults() const;
    /// Absolute path of the folder last loaded, or of the default folder before any load.
    QString GetPluginDirectory() const;

    /// The series of a source group, lowest order number first (later registrations first among equals).
    /// Groups 0 and 5, and groups that never received a plugin, are served from group 4.
    QList<LoudspeakerSeries_Interface *> GetPlugins(Tolvane::SourceGroupType type) const;
    /// The first series of group 4 whose GetName() equals `name` exactly, or null.
    LoudspeakerSeries_Interface *GetPlugin(const QString &name) const;

    /// The loudspeaker registry; never null, never emptied by Clear().
    LoudspeakerDescriptorProvider *GetLoudspeakerDescriptorProvider() const;
    /// The rigging hardware registry; never null, never emptied by Clear().
    RiggingHardwareDescriptorProvider *GetRiggingHardwareDescriptorProvider() const;

    /**
     * Unloads and forgets every plugin and its load result, and resets the plugin folder to
     * the default and the balloon read mode. The registries are
     * not emptied, but descriptors owned by an unloaded plugin are destroyed with its root
     * object: their entries then read as null, and a reloaded plugin can register again.
     */
    void Clear();

    /// The balloon read mode kept for the host; the SDK only stores it. Starts as Asynchronous.
    SourcePointDescriptor_Interface::ReadBalloonDataMode GetBalloonDataReadMode() const { return m_balloonDataReadMode; }
    void SetBalloonDataReadMode(SourcePointDescriptor_Interface::ReadBalloonDataMode mode);

    /// Generic plugin name to platform file name; the identity on this platform.
    static QString ConvertPluginFileNameToPlatform(const QString &fileName);
    /// Platform file name to generic plugin name; the identity on this platform.
    static QString ConvertPlatformPluginFileNameToGeneric(const QString &fileName);

Q_SIGNALS:
    /// Percentage of the plugin folder's files passed, 0 to 100 (may jump).
    void PluginLoadingProgressChanged(int percentage);

private:
    PluginProvider();
    ~PluginProvider() override;

    QStringList ListPluginDirectory() const;
    bool IsLibraryFile(const QString &path) const;
    void LoadPluginData(const QString &path);
    void LoadPluginData(QPluginLoader *loader, const QString &path);

    static PluginProvider *m_instance;
    static QMutex m_instanceAccessSynchronisation;

    QList<QString> m_loadedPluginFileNames;
    QMap<Tolvane::SourceGroupType, QMultiMap<int, LoudspeakerSeries_Interface *>> m_pluginsBySourceGroup;
    QList<QPluginLoader *> m_pluginLoaders;
    QString m_pluginDirectory; // empty: the default folder
    QMap<QString, PluginLoadResult> m_loadResults; // by absolute path, every file tried since Clear()
    QStringList m_lastLoadFiles;
    SourcePointDescriptor_Interface::ReadBalloonDataMode m_balloonDataReadMode = SourcePointDescriptor_Interface::Asynchronous;
    LoudspeakerDescriptorProvider *m_loudspeakerDescriptorProvider = nullptr;
    RiggingHardwareDescriptorProvider *m_riggingHardwareDescriptorProvider = nullptr;
};
