// SPDX-License-Identifier: MIT
#include "CouplingDatabase.h"

#include "CommandContext.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>

#include <cstdio>

namespace {
const QString connectionName = QStringLiteral("nvRemoteDriverDatabase");
}

CouplingDatabase::~CouplingDatabase()
{
    if (QSqlDatabase::contains(connectionName)) {
        QSqlDatabase::database(connectionName, false).close();
        QSqlDatabase::removeDatabase(connectionName);
    }
}

void CouplingDatabase::open(const QString &file)
{
    QString path = file;
    if (path.isEmpty()) {
        const QString installed = QCoreApplication::applicationDirPath() + QStringLiteral("/../share/nvLoudspeakerPluginSdk/CplFilter.sqlite");
        if (QFileInfo::exists(installed)) {
            path = installed;
        } else {
            // SQLite needs a file; the compiled-in table is copied out for this run.
            m_copy = std::make_unique<QTemporaryDir>();
            path = m_copy->filePath(QStringLiteral("CplFilter.sqlite"));
            if (!m_copy->isValid() || !QFile::copy(QStringLiteral(":/lpsdk/CplFilter.sqlite"), path)) {
                std::fprintf(stderr, "lpsdk: the bundled coupling filter table could not be opened; coupling filters are not applied\n");
                return;
            }
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
        }
    } else if (!QFileInfo(path).isFile()) {
        usageError(QStringLiteral("--cpl-db: no file \"%1\"").arg(path));
    }
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
    database.setDatabaseName(path);
    database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    if (!database.open() || !database.tables().contains(QStringLiteral("CplFilter")))
        usageError(QStringLiteral("%1\"%2\" is no SQLite file with a CplFilter table").arg(file.isEmpty() ? QStringLiteral("the installed coupling filter table ") : QStringLiteral("--cpl-db: "), path));
}
