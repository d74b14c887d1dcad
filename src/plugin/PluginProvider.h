// SPDX-License-Identifier: MIT
#pragma once

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
 * plugins found in the "Plugins" folder beside the application, hands each of them the two
 * descriptor registries, and lists the loaded series per source group.
 *
 * Typical use: GetInstance(), optionally SetBalloonDataReadMode(), LoadPlugins() (or
 * LoadPlugin() by name), then GetPlugins()/GetPlugin() and the registries.
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
     * Loads the one plugin library whose base name (no folder, no suffixes) is `fileName`,
     * synchronously. Does nothing if that name was taken in already; a file that failed
     * to load may be tried again.
     */
    void LoadPlugin(const QString &fileName);

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
     * Unloads and forgets every plugin and resets the balloon read mode. The registries are
     * not emptied, but descriptors owned by an unloaded plugin are destroyed with its root
     * object: their entries then read as null, and a reloaded plugin can register again.
     */
    void Clear();

    /// The balloon read mode kept for the host; the SDK only stores it. Starts as Asynchronous.
    SourcePointDescriptor_Interface::ReadBalloonDataMode GetBalloonDataReadMode() const;
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

    QString GetPluginDirectory();
    QStringList ListPluginDirectory();
    bool IsLibraryFile(const QString &path) const;
    void LoadPluginData(const QString &path);
    void LoadPluginData(QPluginLoader *loader);

    static PluginProvider *m_instance;
    static QMutex m_instanceAccessSynchronisation;

    QList<QString> m_loadedPluginFileNames;
    QMap<Tolvane::SourceGroupType, QMultiMap<int, LoudspeakerSeries_Interface *>> m_pluginsBySourceGroup;
    QList<QPluginLoader *> m_pluginLoaders;
    SourcePointDescriptor_Interface::ReadBalloonDataMode m_balloonDataReadMode = SourcePointDescriptor_Interface::Asynchronous;
    LoudspeakerDescriptorProvider *m_loudspeakerDescriptorProvider = nullptr;
    RiggingHardwareDescriptorProvider *m_riggingHardwareDescriptorProvider = nullptr;
};
