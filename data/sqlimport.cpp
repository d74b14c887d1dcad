// SPDX-License-Identifier: MIT
// Build tool: runs an SQL script against a fresh SQLite file, so that databases live in the
// repository as reviewable SQL text. Usage: lpsdk_sqlimport <script.sql> <output.sqlite>

#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QTextStream>

#include <cstdio>

namespace {

// Statements end with ';' outside single-quoted literals; "--" starts a comment to the line end.
QStringList SplitStatements(const QString &script)
{
    QStringList statements;
    QString current;
    bool inLiteral = false;
    for (qsizetype i = 0; i < script.size(); ++i) {
        const QChar c = script.at(i);
        if (!inLiteral && c == QLatin1Char('-') && i + 1 < script.size() && script.at(i + 1) == QLatin1Char('-')) {
            while (i < script.size() && script.at(i) != QLatin1Char('\n'))
                ++i;
            current += QLatin1Char('\n');
            continue;
        }
        if (c == QLatin1Char('\''))
            inLiteral = !inLiteral;
        if (!inLiteral && c == QLatin1Char(';')) {
            if (!current.trimmed().isEmpty())
                statements.append(current.trimmed());
            current.clear();
            continue;
        }
        current += c;
    }
    if (!current.trimmed().isEmpty())
        statements.append(current.trimmed());
    return statements;
}

int Fail(const QString &message)
{
    std::fprintf(stderr, "lpsdk_sqlimport: %s\n", qPrintable(message));
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.size() != 3)
        return Fail(QStringLiteral("usage: lpsdk_sqlimport <script.sql> <output.sqlite>"));

    QFile script(arguments.at(1));
    if (!script.open(QIODevice::ReadOnly | QIODevice::Text))
        return Fail(QStringLiteral("cannot read %1").arg(arguments.at(1)));
    const QStringList statements = SplitStatements(QTextStream(&script).readAll());

    const QString outputPath = arguments.at(2);
    if (QFile::exists(outputPath) && !QFile::remove(outputPath))
        return Fail(QStringLiteral("cannot replace %1").arg(outputPath));

    int result = 0;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("import"));
        database.setDatabaseName(outputPath);
        if (!database.open()) {
            result = Fail(database.lastError().text());
        } else {
            QSqlQuery query(database);
            for (const QString &statement : statements) {
                if (!query.exec(statement)) {
                    result = Fail(QStringLiteral("%1\n  in: %2").arg(query.lastError().text(), statement));
                    break;
                }
            }
        }
        database.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("import"));
    if (result != 0)
        QFile::remove(outputPath);
    return result;
}
