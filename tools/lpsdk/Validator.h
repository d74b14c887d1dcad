// SPDX-License-Identifier: MIT
#pragma once

#include "LibraryWarnings.h"

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

class FileKeyTable;
class LoudspeakerDescriptor;
class RiggingHardwareDescriptor;
struct FileKey;

/**
 * The checks of lpsdk validate and the problems they found, each with the plugin (library or
 * file) it concerns, the descriptor, the file and the key. Checks that need a library's
 * verdict on something it only warns about take its warnings from `warnings`.
 */
class Validator
{
public:
    struct Problem
    {
        QString plugin;
        QString descriptor;
        QString file;
        QString key;
        QString message;
    };

    explicit Validator(LibraryWarnings &warnings) : m_warnings(warnings) { }

    void setPlugin(const QString &plugin) { m_plugin = plugin; }
    /// Whether the setup and balloon files a descriptor names are looked for in the resources
    /// (true by default; a lone data file has no plugin to bring them).
    void setCheckResources(bool on) { m_checkResources = on; }
    void add(const QString &descriptor, const QString &file, const QString &key, const QString &message);
    /// Library warnings, one problem per distinct text with how often it came.
    void addWarnings(const QString &descriptor, const QString &file, const QList<LibraryWarnings::Warning> &warnings);
    const QList<Problem> &problems() const { return m_problems; }

    /// The file's top-level object, or nothing after one problem that says why (with the line
    /// and column of a syntax error): the file's other checks would only follow from it.
    std::optional<QVariantMap> readJson(const QString &file, const QString &descriptor = QString());
    /// Whether `text` names a file that readJson() found unreadable: it then follows from that problem.
    bool followsFromUnreadableFile(const QString &text) const;

    void checkLoudspeaker(LoudspeakerDescriptor *loudspeaker, const QString &file, const QVariantMap &map);
    void checkRigging(RiggingHardwareDescriptor *item, const QString &file, const QVariantMap &map);
    void checkSetup(const QString &descriptor, const QString &file, const QVariantMap &setup);

private:
    void checkSizes(const QString &descriptor, const QString &file, const QVariantMap &cabinet);
    void checkKeys(const QString &descriptor, const QString &file, const FileKeyTable &table, const QJsonObject &object, const QString &path);
    void checkValue(const QString &descriptor, const QString &file, const FileKey &row, const QJsonValue &value, const QString &key);
    void checkOutlines(const QString &descriptor, const QString &file, LoudspeakerDescriptor *loudspeaker);
    void checkResourceFile(const QString &descriptor, const QString &file, const QString &key, const QString &name, const QString &what);
    void checkSetupFile(const QString &descriptor, const QString &file, const QString &key, const QString &name);
    void checkBalloonFile(const QString &descriptor, const QString &file, const QString &key, const QString &name);
    void checkDefaultSetups(const QString &descriptor, const QString &file, const QString &prefix, const QVariantMap &entry);

    LibraryWarnings &m_warnings;
    QString m_plugin;
    bool m_checkResources = true;
    QStringList m_unreadableFiles;
    QList<Problem> m_problems;
};
