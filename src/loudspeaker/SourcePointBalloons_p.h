// SPDX-License-Identifier: MIT
#pragma once

#include "BalloonTable.h"
#include "IBalloon.h"

#include <QMap>
#include <QString>

#include <memory>
#include <vector>

/**
 * Everything a source point has read from its balloon files, as one immutable snapshot: a read
 * builds the next snapshot beside the current one and the point swaps it in, so a failed read
 * leaves the point as it was and a table handed out stays whole.
 *
 * Files of one point may hold different grids; every key is then looked up with the grid and
 * frequencies of the last file read, and the flush-mount data chosen as for the balloon tables.
 */
class SourcePointBalloons
{
public:
    struct Entry {
        QString key;
        std::shared_ptr<const BalloonTable> table;
    };

    /// This snapshot with the table of one more file of `key`.
    SourcePointBalloons With(const QString &key, std::shared_ptr<const BalloonTable> table, const QString &fileName) const;

    /// The table a lookup of `key` reads: with several tables, the first of that key, else the
    /// first table; with one, that table whatever the key. Null before the first file.
    const BalloonTable *Choose(const QString &key) const
    {
        if (m_lookups.size() > 1) {
            for (const Entry &entry : m_lookups) {
                if (entry.key == key)
                    return entry.table.get();
            }
        }
        return m_lookups.empty() ? nullptr : m_lookups.front().table.get();
    }

    /// The last file's table, whose grid every lookup uses; null before the first file.
    const BalloonTable *Grid() const { return m_files.empty() ? nullptr : m_files.back().table.get(); }
    bool HasFlushMount() const { return m_hasFlushMount; }
    std::shared_ptr<const BalloonTable> Table(const QString &key) const;
    QStringList Keys() const;
    std::shared_ptr<const nvScientificComputing::IBalloon> Balloon(const QString &key) const { return m_balloons.value(key); }
    QString FileName(const QString &key) const { return m_fileNames.value(key); }

private:
    std::vector<Entry> m_files;   // one per file read, as read
    std::vector<Entry> m_lookups; // one per key, in order of first reading, with the last grid
    bool m_hasFlushMount = false; // any file had flush-mount data
    BalloonTable::FlushMountParameters m_flushMount = {}; // of the last file that had them
    QMap<QString, std::shared_ptr<const nvScientificComputing::IBalloon>> m_balloons;
    QMap<QString, QString> m_fileNames;
};
