// SPDX-License-Identifier: MIT
#include "Session.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QTemporaryDir>

#include <pybind11/pybind11.h>

namespace nvlps::Session {

namespace {

const QString connectionName = QStringLiteral("nvRemoteDriverDatabase");
const QString probeName = QStringLiteral("nvlps-probe");

// Opens `path` read-only under `name`; true when it holds a CplFilter table. Leaves the connection registered.
bool open(const QString &name, const QString &path)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
    database.setDatabaseName(path);
    database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    const bool ok = database.open() && database.tables().contains(QStringLiteral("CplFilter"));
    if (name == probeName)
        database.close();
    return ok;
}

} // namespace

void ensureApplication()
{
    if (QCoreApplication::instance())
        return;
    // Lives for the rest of the process, like the library's singletons that use it.
    static int argc = 1;
    static char name[] = "nvlps";
    static char *argv[] = {name, nullptr};
    new QCoreApplication(argc, argv);
}

void openCouplingTable(const QString &file)
{
    if (file.isEmpty() && QSqlDatabase::contains(connectionName))
        return;
    QString path = file;
    if (path.isEmpty()) {
        // SQLite needs a file: the built-in table is copied out once for the process.
        static QTemporaryDir copy;
        path = copy.filePath(QStringLiteral("CplFilter.sqlite"));
        if (!copy.isValid() || (!QFileInfo::exists(path) && !QFile::copy(QStringLiteral(":/nvlps/CplFilter.sqlite"), path)))
            throw std::runtime_error("the built-in coupling filter table could not be copied to a temporary folder");
    } else if (!QFileInfo(path).isFile()) {
        throw pybind11::value_error(QStringLiteral("coupling_db: no file \"%1\"").arg(path).toStdString());
    }
    // The table in use stays until the new one has proved to be a coupling table.
    if (!open(probeName, path)) {
        QSqlDatabase::removeDatabase(probeName);
        throw pybind11::value_error(QStringLiteral("coupling_db: \"%1\" is no SQLite file with a CplFilter table").arg(path).toStdString());
    }
    QSqlDatabase::removeDatabase(probeName);
    QSqlDatabase::removeDatabase(connectionName);
    open(connectionName, path);
}

} // namespace nvlps::Session
