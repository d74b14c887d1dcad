// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class QObject;
class QPluginLoader;
class LoudspeakerSeries_Interface;

/**
 * The host's view of one plugin folder. The library's provider only looks beside the
 * application, so the host loads the folder it was given itself and hands each plugin the
 * provider's registries, as the provider would. It keeps, per library file, why it did not
 * load, which warnings the library gave while the plugin registered, and which resource
 * files the plugin brought, so that validate can tell a plugin author where to look.
 */
class PluginFolder
{
public:
    struct Library
    {
        QString path;
        QString error; // empty when the plugin loaded and registered
        QObject *root = nullptr;
        LoudspeakerSeries_Interface *series = nullptr;
        QStringList warnings;
        QStringList resources; // resource paths that appeared when the library loaded
    };

    /// The folder from --plugins, else LPSDK_PLUGIN_PATH, else "Plugins" beside the program.
    static QString chooseDirectory(const QString &option);

    explicit PluginFolder(const QString &directory);
    ~PluginFolder();

    /// Loads every library file, in name order; progress goes to stderr when it is a terminal.
    void load(bool showProgress);
    QString directory() const { return m_directory; }
    const QList<Library> &libraries() const { return m_libraries; }
    /// Warnings caught outside any library's loading (balloon reads, for example), in order.
    QStringList takeWarnings();
    /// From here on, warnings are kept (takeWarnings) rather than printed.
    void catchWarnings(bool on);

private:
    QString m_directory;
    QList<Library> m_libraries;
    QList<QPluginLoader *> m_loaders;
};
