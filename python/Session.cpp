// SPDX-License-Identifier: MIT
#include "Session.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QTemporaryDir>

#include <pybind11/pybind11.h>

#include <memory>

namespace nvlps::Session {

namespace {
const QString connectionName = QStringLiteral("nvRemoteDriverDatabase");
}

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
        static std::unique_ptr<QTemporaryDir> copy;
        copy = std::make_unique<QTemporaryDir>();
        path = copy->filePath(QStringLiteral("CplFilter.sqlite"));
        if (!copy->isValid() || !QFile::copy(QStringLiteral(":/nvlps/CplFilter.sqlite"), path))
            throw std::runtime_error("the built-in coupling filter table could not be copied to a temporary folder");
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    } else if (!QFileInfo(path).isFile()) {
        throw pybind11::value_error(QStringLiteral("coupling_db: no file \"%1\"").arg(path).toStdString());
    }
    if (QSqlDatabase::contains(connectionName)) {
        QSqlDatabase::database(connectionName, false).close();
        QSqlDatabase::removeDatabase(connectionName);
    }
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
    database.setDatabaseName(path);
    database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    if (!database.open() || !database.tables().contains(QStringLiteral("CplFilter"))) {
        database.close();
        database = QSqlDatabase();
        QSqlDatabase::removeDatabase(connectionName);
        throw pybind11::value_error(QStringLiteral("coupling_db: \"%1\" is no SQLite file with a CplFilter table").arg(path).toStdString());
    }
}

} // namespace nvlps::Session
