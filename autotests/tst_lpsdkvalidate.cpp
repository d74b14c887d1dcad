// SPDX-License-Identifier: MIT
// lpsdk end to end where it reports problems: plugin folders that are missing, empty, broken or
// hold duplicates, single data files, and coupling tables. Its JSON is parsed, so the tests
// pin locations and the problems' texts where a user reads them.
#include "JsonFileLoader.h"
#include "LpsdkRun.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

namespace {

QString demoPlugin()
{
    return QStringLiteral(LPSDK_PLUGIN_DIR "/") + QDir(QStringLiteral(LPSDK_PLUGIN_DIR)).entryList({QStringLiteral("*demoseries*")}, QDir::Files).value(0);
}

} // namespace

class tst_LpsdkValidate : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void validatesTheDemo();
    void validateFindsBrokenFolders_data();
    void validateFindsBrokenFolders();
    void duplicatesNameBothFiles();
    void listNamesLibrariesThatDoNotLoad();
    void validateOneFile_data();
    void validateOneFile();
    void couplingTables_data();
    void couplingTables();
};

void tst_LpsdkValidate::validatesTheDemo()
{
    const Run run = lpsdk({QStringLiteral("validate"), QStringLiteral("--json"), QStringLiteral("--plugins"), QStringLiteral(LPSDK_PLUGIN_DIR)});
    QVERIFY2(problems(run).isEmpty(), run.out.constData());
    QCOMPARE(run.status, 0);
    QVERIFY(run.json().value(QStringLiteral("descriptors")).toInt() >= 5);
}

void tst_LpsdkValidate::validateFindsBrokenFolders_data()
{
    QTest::addColumn<QStringList>("files"); // demo copies by name, or "text:" files
    QTest::addColumn<QString>("message");
    QTest::newRow("text file with a library suffix") << QStringList{QStringLiteral("text:libnotaplugin.so")} << QStringLiteral("the library does not load");
    QTest::newRow("empty folder") << QStringList() << QStringLiteral("the folder holds no plugin library");
    QTest::newRow("no library loads") << QStringList{QStringLiteral("text:libnotaplugin.so"), QStringLiteral("text:readme.txt")}
                                      << QStringLiteral("no library of the folder loads as a plugin");
}

void tst_LpsdkValidate::validateFindsBrokenFolders()
{
    QFETCH(QStringList, files);
    QFETCH(QString, message);
    QTemporaryDir folder;
    for (const QString &name : files) {
        if (name.startsWith(QLatin1String("text:"))) {
            QFile text(folder.filePath(name.mid(5)));
            QVERIFY(text.open(QIODevice::WriteOnly));
            text.write("not a library\n");
        } else {
            QVERIFY(QFile::copy(demoPlugin(), folder.filePath(name)));
        }
    }
    const Run run = lpsdk({QStringLiteral("validate"), QStringLiteral("--json"), QStringLiteral("--plugins"), folder.path()});
    QCOMPARE(run.status, 1);
    bool found = false;
    for (const QJsonValue &problem : problems(run)) {
        QVERIFY(!problem[QStringLiteral("plugin")].toString().isEmpty());
        found = found || problem[QStringLiteral("message")].toString().startsWith(message);
    }
    QVERIFY2(found, run.out.constData());
}

// Two copies of one plugin: each duplicate names the library that registered the name first,
// and it is reported against the copy whose descriptor the registry ignored.
void tst_LpsdkValidate::duplicatesNameBothFiles()
{
    QTemporaryDir folder;
    const QStringList copies{QStringLiteral("libdemo_a.so"), QStringLiteral("libdemo_b.so")};
    for (const QString &name : copies)
        QVERIFY(QFile::copy(demoPlugin(), folder.filePath(name)));
    const Run run = lpsdk({QStringLiteral("validate"), QStringLiteral("--json"), QStringLiteral("--plugins"), folder.path()});
    QCOMPARE(run.status, 1);
    const QJsonArray found = problems(run);
    QCOMPARE(found.size(), 7); // five loudspeakers and two rigging items
    for (const QJsonValue &problem : found) {
        const QString plugin = problem[QStringLiteral("plugin")].toString();
        QVERIFY(copies.contains(plugin));
        const QString first = copies.at(1 - copies.indexOf(plugin));
        QCOMPARE(problem[QStringLiteral("key")].toString(), QStringLiteral("name"));
        QCOMPARE(problem[QStringLiteral("message")].toString(), QStringLiteral("the name is taken by %1 of %2, registered first; the registry keeps only the first")
                                                               .arg(problem[QStringLiteral("file")].toString(), first));
    }
}

void tst_LpsdkValidate::listNamesLibrariesThatDoNotLoad()
{
    QTemporaryDir folder;
    QVERIFY(QFile::copy(demoPlugin(), folder.filePath(QStringLiteral("libdemoseries.so"))));
    QFile broken(folder.filePath(QStringLiteral("libbroken.so")));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("not a library\n");
    broken.close();

    const Run run = lpsdk({QStringLiteral("list"), QStringLiteral("--json"), QStringLiteral("--plugins"), folder.path()});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.contains("1 of 2 libraries"), run.err.constData());
    const QJsonArray unloaded = run.json().value(QStringLiteral("unloaded_libraries")).toArray();
    QCOMPARE(unloaded.size(), 1);
    QCOMPARE(unloaded.at(0)[QStringLiteral("library")].toString(), QStringLiteral("libbroken.so"));
    QVERIFY(unloaded.at(0)[QStringLiteral("error")].toString().contains(QStringLiteral("not a valid ELF")));
    QCOMPARE(run.json().value(QStringLiteral("series")).toArray().size(), 1);
}

void tst_LpsdkValidate::validateOneFile_data()
{
    QTest::addColumn<QString>("file");     // a demo file, or "" for the DS-L12 as changed by `change`
    QTest::addColumn<QString>("change");   // key=JSON for the first source point, or raw file content
    QTest::addColumn<QString>("key");      // of the one problem expected, "" when none
    QTest::addColumn<QString>("message");  // its beginning
    const QString demo = QStringLiteral(DEMOSERIES_DATA_DIR "/");
    QTest::newRow("loudspeaker") << demo + QStringLiteral("DS-L12.json") << QString() << QString() << QString();
    QTest::newRow("rigging item") << demo + QStringLiteral("DS-L12-Frame.json") << QString() << QString() << QString();
    QTest::newRow("controller setup") << demo + QStringLiteral("Resources/DS-L12_Arc.json") << QString() << QString() << QString();
    QTest::newRow("block comment, no follow-on problems") << QString() << QStringLiteral("{\n  \"name\": \"X\",\n  /* no comment */\n  \"type\": \"Sub\"\n}")
                                                          << QString() << QStringLiteral("line 3, column 3: ");
    QTest::newRow("unknown shape") << QString() << QStringLiteral("{\"name\": \"X\", \"type\": \"Sub\", \"cabinet\": {\"cabinetShape\": \"Blob\", \"width\": 400}}")
                                   << QStringLiteral("cabinet/cabinetShape") << QStringLiteral("unknown shape \"Blob\"");
    QTest::newRow("no reader's keys") << QString() << QStringLiteral("{\"colour\": \"red\"}") << QString() << QStringLiteral("no reader knows its keys");
    QTest::newRow("single default names no setup") << QString() << QStringLiteral("defaultControllerSetup=7") << QStringLiteral("sourcePoints/0/defaultControllerSetup")
                                                   << QStringLiteral("names setup 7, which controllerSetups does not list (it lists: 1, 2)");
    QTest::newRow("single default beside the map") << QString() << QStringLiteral("defaultControllerSetup=1") << QStringLiteral("sourcePoints/0/defaultControllerSetup")
                                                   << QStringLiteral("is ignored");
    QTest::newRow("mounting default names no setup") << QString() << QStringLiteral("defaultControllerSetups={\"flown\": 3}")
                                                     << QStringLiteral("sourcePoints/0/defaultControllerSetups/flown") << QStringLiteral("names setup 3");
}

void tst_LpsdkValidate::validateOneFile()
{
    QFETCH(QString, file);
    QFETCH(QString, change);
    QFETCH(QString, key);
    QFETCH(QString, message);
    QTemporaryDir directory;
    if (file.isEmpty()) {
        file = directory.filePath(QStringLiteral("changed.json"));
        QByteArray content = change.toUtf8();
        if (!change.startsWith(QLatin1Char('{'))) {
            QVariantMap loudspeaker = LoadJsonFile(QStringLiteral(DEMOSERIES_DATA_DIR "/DS-L12.json"));
            QVariantList points = loudspeaker.value(QStringLiteral("sourcePoints")).toList();
            QVariantMap point = points.at(0).toMap();
            const qsizetype equals = change.indexOf(QLatin1Char('='));
            if (change.left(equals) == QLatin1String("defaultControllerSetup") && change.mid(equals + 1) != QLatin1String("1"))
                point.remove(QStringLiteral("defaultControllerSetups")); // the single default counts only alone
            point.insert(change.left(equals), QJsonDocument::fromJson("[" + change.mid(equals + 1).toUtf8() + "]").array().at(0).toVariant());
            points[0] = point;
            loudspeaker.insert(QStringLiteral("sourcePoints"), points);
            content = QJsonDocument::fromVariant(loudspeaker).toJson();
        }
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(content);
    }
    // Quiet drops the library's warnings from stderr, not the problems validate finds through them.
    const Run run = lpsdk({QStringLiteral("validate"), file, QStringLiteral("--json"), QStringLiteral("--quiet")});
    const QJsonArray found = problems(run);
    QCOMPARE(run.status, message.isEmpty() ? 0 : 1);
    QCOMPARE(found.size(), message.isEmpty() ? 0 : 1);
    if (!message.isEmpty()) {
        QCOMPARE(found.at(0)[QStringLiteral("key")].toString(), key);
        QCOMPARE(found.at(0)[QStringLiteral("file")].toString(), file);
        QVERIFY2(found.at(0)[QStringLiteral("message")].toString().startsWith(message), qPrintable(found.at(0)[QStringLiteral("message")].toString()));
    }
}

// The bundled table with every gain NULL, or with one frequency that is no number: transfer
// names the pair's problem on stderr and beside the response, validate --cpl-db finds it.
void tst_LpsdkValidate::couplingTables_data()
{
    QTest::addColumn<QString>("change");   // SQL run on a copy of the bundled table
    QTest::addColumn<QString>("problem");  // what transfer names for the pair 14, 1
    QTest::addColumn<int>("validateProblems");
    QTest::newRow("every row skipped") << QStringLiteral("UPDATE CplFilter SET BiquadVdB = NULL")
                                      << QStringLiteral("LowPos 14, MidPos 1: the pair has no filters") << 428 + 160;
    QTest::newRow("a frequency that is no number") << QStringLiteral("UPDATE CplFilter SET BiquadFX = '1 kHz' WHERE LowPos = 14 AND MidPos = 1 AND BiquadType = 8")
                                                   << QStringLiteral("(LowPos 14, MidPos 1), BiquadFX: \"1 kHz\" does not read as a number (read as 0)") << 1;
}

void tst_LpsdkValidate::couplingTables()
{
    QFETCH(QString, change);
    QFETCH(QString, problem);
    QFETCH(int, validateProblems);
    QTemporaryDir directory;
    const QString table = directory.filePath(QStringLiteral("CplFilter.sqlite"));
    {
        // The bundled table declares its columns NOT NULL; a copy without the constraints takes the change.
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("writer"));
        database.setDatabaseName(table);
        QVERIFY(database.open());
        QSqlQuery query(database);
        QVERIFY(query.exec(QStringLiteral("ATTACH DATABASE '%1' AS bundled").arg(QStringLiteral(LPSDK_CPLFILTER_DATABASE))));
        QVERIFY(query.exec(QStringLiteral("CREATE TABLE CplFilter AS SELECT LowPos, MidPos, BiquadType, BiquadFX, BiquadQ, BiquadVdB FROM bundled.CplFilter ORDER BY Id")));
        QVERIFY(query.exec(change));
        database.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("writer"));

    const Run transfer = lpsdk({QStringLiteral("transfer"), QStringLiteral("DS-L12"), QStringLiteral("--switch"), QStringLiteral("4=14"), QStringLiteral("--json"),
                                QStringLiteral("--cpl-db"), table});
    QCOMPARE(transfer.status, 0);
    QVERIFY2(transfer.err.contains(("lpsdk: warning: coupling switches 4=14, 5=1: " + (problem.startsWith(QLatin1Char('(')) ? QStringLiteral("row") : QString())).toUtf8())
             && transfer.err.contains(problem.toUtf8()), transfer.err.constData());
    QCOMPARE(transfer.err.count("CplFilter row"), 0); // the library's warning is not repeated
    const QJsonArray reasons = transfer.json().value(QStringLiteral("coupling_problems")).toArray();
    QVERIFY(std::any_of(reasons.cbegin(), reasons.cend(), [&](const QJsonValue &reason) { return reason.toString().endsWith(problem); }));

    const Run coupling = lpsdk({QStringLiteral("coupling"), QStringLiteral("--low"), QStringLiteral("14"), QStringLiteral("--mid"), QStringLiteral("1"),
                                QStringLiteral("--json"), QStringLiteral("--cpl-db"), table});
    QCOMPARE(coupling.status, 1);
    const QJsonArray pairProblems = coupling.json().value(QStringLiteral("problems")).toArray();
    QVERIFY(std::any_of(pairProblems.cbegin(), pairProblems.cend(), [&](const QJsonValue &row) { return row[QStringLiteral("problem")].toString().endsWith(problem); }));

    const Run validate = lpsdk({QStringLiteral("validate"), QStringLiteral("--json"), QStringLiteral("--cpl-db"), table});
    QCOMPARE(validate.status, 1);
    QCOMPARE(problems(validate).size(), validateProblems);
}

QTEST_GUILESS_MAIN(tst_LpsdkValidate)
#include "tst_lpsdkvalidate.moc"
