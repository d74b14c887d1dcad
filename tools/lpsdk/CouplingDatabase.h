// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTemporaryDir>

#include <memory>

/**
 * Opens the SQL connection the library reads coupling filters from. The host supplies it: a
 * file given with --cpl-db, else the table installed beside an installed lpsdk
 * (share/nvLoudspeakerPluginSdk), else the copy compiled into the program.
 */
class CouplingDatabase
{
public:
    CouplingDatabase() = default;
    ~CouplingDatabase();
    /// Opens `file`, or the bundled table when it is empty; a usage error when the file is no coupling table.
    void open(const QString &file);

private:
    std::unique_ptr<QTemporaryDir> m_copy;
};
