// SPDX-License-Identifier: MIT
// The lpsdk host end to end: it runs on the demo series' plugin folder and its JSON is parsed,
// so the tests pin structure rather than wording.
#include "JsonFileLoader.h"
#include "SourcePointDescriptor.h"

#include "TestHelpers.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QtEndian>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>

namespace {

struct Run
{
    int status = -1;
    QByteArray out;
    QByteArray err;
    QJsonObject json() const { return QJsonDocument::fromJson(out).object(); }
};

Run lpsdk(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(LPSDK_EXECUTABLE), arguments);
    process.waitForFinished(120000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
}

QString demoPlugin()
{
    return QStringLiteral(LPSDK_PLUGIN_DIR "/") + QDir(QStringLiteral(LPSDK_PLUGIN_DIR)).entryList({QStringLiteral("*demoseries*")}, QDir::Files).value(0);
}

QJsonArray problems(const Run &run)
{
    return run.json().value(QStringLiteral("problems")).toArray();
}

} // namespace

class tst_Lpsdk : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void listsTheDemoSeries();
    void transferDefaultsCouplingToZeroDecibels();
    void balloonValueAndPlots();
    void objIsTheClosedCabinet();
    void validatesTheDemo();
    void validateFindsBrokenFolders_data();
    void validateFindsBrokenFolders();
    void duplicatesNameBothFiles();
    void listNamesLibrariesThatDoNotLoad();
    void validateOneFile_data();
    void validateOneFile();
    void couplingTables_data();
    void couplingTables();
    void balloonPackRoundTrip();
    void usageErrors_data();
    void usageErrors();
};

void tst_Lpsdk::listsTheDemoSeries()
{
    const Run run = lpsdk({QStringLiteral("list"), QStringLiteral("--json")});
    QCOMPARE(run.status, 0);
    const QJsonObject list = run.json();
    QCOMPARE(list.value(QStringLiteral("series")).toArray().size(), 1);
    QHash<QString, QJsonObject> loudspeakers;
    for (const QJsonValue &entry : list.value(QStringLiteral("loudspeakers")).toArray())
        loudspeakers.insert(entry[QStringLiteral("name")].toString(), entry.toObject());
    QVERIFY(loudspeakers.contains(QStringLiteral("DS-L12")));
    QCOMPARE(loudspeakers[QStringLiteral("DS-L12")][QStringLiteral("width_m")].toDouble(), 1.053);
    QStringList rigging;
    for (const QJsonValue &entry : list.value(QStringLiteral("rigging")).toArray())
        rigging.append(entry[QStringLiteral("name")].toString());
    QVERIFY(rigging.contains(QStringLiteral("DS-L12 Frame")));
}

// Left out, the coupling switches sit at 0 dB: the same curve as setting them so, and not the
// curve of position 0 (-5.5 dB low).
void tst_Lpsdk::transferDefaultsCouplingToZeroDecibels()
{
    QTemporaryDir directory;
    const QString png = directory.filePath(QStringLiteral("response.png"));
    const Run plain = lpsdk({QStringLiteral("transfer"), QStringLiteral("DS-L12"), QStringLiteral("--json"), QStringLiteral("--plot"), png});
    const Run zero = lpsdk({QStringLiteral("transfer"), QStringLiteral("DS-L12"), QStringLiteral("--json"), QStringLiteral("--switch"), QStringLiteral("4=11"),
                            QStringLiteral("--switch"), QStringLiteral("5=1")});
    const Run lowest = lpsdk({QStringLiteral("transfer"), QStringLiteral("DS-L12"), QStringLiteral("--json"), QStringLiteral("--switch"), QStringLiteral("4=0")});
    QCOMPARE(plain.status, 0);
    const QJsonArray points = plain.json().value(QStringLiteral("points")).toArray();
    QCOMPARE(points.size(), 249);
    QCOMPARE(points, zero.json().value(QStringLiteral("points")).toArray());
    QVERIFY(points != lowest.json().value(QStringLiteral("points")).toArray());
    QFile picture(png);
    QVERIFY(picture.open(QIODevice::ReadOnly));
    const QByteArray header = picture.read(24); // signature, then the IHDR chunk's width and height
    QVERIFY(header.startsWith("\x89PNG"));
    QCOMPARE(qFromBigEndian<quint32>(header.constData() + 16), 1200u);
    QCOMPARE(qFromBigEndian<quint32>(header.constData() + 20), 900u);
}

void tst_Lpsdk::balloonValueAndPlots()
{
    const auto value = [](const char *theta) {
        const Run run = lpsdk({QStringLiteral("balloon"), QStringLiteral("DS-L12"), QStringLiteral("--json"), QStringLiteral("--frequency"), QStringLiteral("4000"),
                               QStringLiteral("--theta"), QLatin1String(theta), QStringLiteral("--phi"), QStringLiteral("90")});
        const QJsonObject json = run.json();
        const Complex c(json.value(QStringLiteral("real")).toDouble(), json.value(QStringLiteral("imaginary")).toDouble());
        // The level and phase fields say the same as the complex value.
        if (std::abs(json.value(QStringLiteral("level_dB")).toDouble() - 20.0 * std::log10(c.abs())) > 1e-9)
            return std::nan("");
        return json.value(QStringLiteral("level_dB")).toDouble();
    };
    // A horn of 90 degrees: well down at the back.
    QVERIFY(value("0") > value("150") + 6.0);

    QTemporaryDir directory;
    const QString svg = directory.filePath(QStringLiteral("polar.svg"));
    QCOMPARE(lpsdk({QStringLiteral("balloon"), QStringLiteral("DS-L12"), QStringLiteral("--plot"), svg, QStringLiteral("--frequencies"), QStringLiteral("500,8000")}).status, 0);
    QFile file(svg);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QVERIFY(text.contains("<svg") && text.contains("8000 Hz"));
}

void tst_Lpsdk::objIsTheClosedCabinet()
{
    QTemporaryDir directory;
    const QString obj = directory.filePath(QStringLiteral("cabinet.obj"));
    const Run run = lpsdk({QStringLiteral("shape"), QStringLiteral("DS-L12"), QStringLiteral("--obj"), obj});
    QCOMPARE(run.status, 0);
    QFile file(obj);
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    QList<Point> vertices;
    QList<QList<int>> faces;
    while (!file.atEnd()) {
        const QList<QByteArray> words = file.readLine().simplified().split(' ');
        if (words.first() == "v")
            vertices.append(Point(words.at(1).toDouble(), words.at(2).toDouble(), words.at(3).toDouble()));
        else if (words.first() == "f")
            faces.append({words.at(1).toInt() - 1, words.at(2).toInt() - 1, words.at(3).toInt() - 1, words.at(4).toInt() - 1});
    }
    // Closed and wound one way: every edge once in each direction; outwards: positive volume.
    QHash<QPair<int, int>, int> edges;
    double volume = 0.0;
    for (const QList<int> &face : faces) {
        for (int i = 0; i < 4; ++i)
            ++edges[{face.at(i), face.at((i + 1) % 4)}];
        const Point &a = vertices.at(face.at(0));
        for (int i = 1; i < 3; ++i) {
            const Point &b = vertices.at(face.at(i));
            const Point &c = vertices.at(face.at(i + 1));
            volume += (a.x() * (b.y() * c.z() - b.z() * c.y()) - a.y() * (b.x() * c.z() - b.z() * c.x()) + a.z() * (b.x() * c.y() - b.y() * c.x())) / 6.0;
        }
    }
    for (auto it = edges.cbegin(); it != edges.cend(); ++it) {
        QCOMPARE(it.value(), 1);
        QCOMPARE(edges.value({it.key().second, it.key().first}), 1);
    }
    QVERIFY(volume > 0.0);
    // Bounding box: depth along x, width along y, height along z.
    double low[3] = {1e9, 1e9, 1e9}, high[3] = {-1e9, -1e9, -1e9};
    for (const Point &v : vertices) {
        const double c[3] = {v.x(), v.y(), v.z()};
        for (int i = 0; i < 3; ++i) {
            low[i] = std::min(low[i], c[i]);
            high[i] = std::max(high[i], c[i]);
        }
    }
    const QJsonObject size = lpsdk({QStringLiteral("show"), QStringLiteral("DS-L12"), QStringLiteral("--json")}).json().value(QStringLiteral("size_m")).toObject();
    QCOMPARE(qRound((high[0] - low[0]) * 1e6), qRound(size.value(QStringLiteral("depth")).toDouble() * 1e6));
    QCOMPARE(qRound((high[1] - low[1]) * 1e6), qRound(size.value(QStringLiteral("width")).toDouble() * 1e6));
    QCOMPARE(qRound((high[2] - low[2]) * 1e6), qRound(size.value(QStringLiteral("height")).toDouble() * 1e6));
}

void tst_Lpsdk::validatesTheDemo()
{
    const Run run = lpsdk({QStringLiteral("validate"), QStringLiteral("--json"), QStringLiteral("--plugins"), QStringLiteral(LPSDK_PLUGIN_DIR)});
    QVERIFY2(problems(run).isEmpty(), run.out.constData());
    QCOMPARE(run.status, 0);
    QVERIFY(run.json().value(QStringLiteral("descriptors")).toInt() >= 5);
}

void tst_Lpsdk::validateFindsBrokenFolders_data()
{
    QTest::addColumn<QStringList>("files"); // demo copies by name, or "text:" files
    QTest::addColumn<QString>("message");
    QTest::newRow("text file with a library suffix") << QStringList{QStringLiteral("text:libnotaplugin.so")} << QStringLiteral("the library does not load");
    QTest::newRow("empty folder") << QStringList() << QStringLiteral("the folder holds no plugin library");
    QTest::newRow("no library loads") << QStringList{QStringLiteral("text:libnotaplugin.so"), QStringLiteral("text:readme.txt")}
                                      << QStringLiteral("no library of the folder loads as a plugin");
}

void tst_Lpsdk::validateFindsBrokenFolders()
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
void tst_Lpsdk::duplicatesNameBothFiles()
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

void tst_Lpsdk::listNamesLibrariesThatDoNotLoad()
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

void tst_Lpsdk::validateOneFile_data()
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
    QTest::newRow("no reader's keys") << QString() << QStringLiteral("{\"colour\": \"red\"}") << QString() << QStringLiteral("no reader knows its keys");
    QTest::newRow("single default names no setup") << QString() << QStringLiteral("defaultControllerSetup=7") << QStringLiteral("sourcePoints/0/defaultControllerSetup")
                                                   << QStringLiteral("names setup 7, which controllerSetups does not list (it lists: 1, 2)");
    QTest::newRow("single default beside the map") << QString() << QStringLiteral("defaultControllerSetup=1") << QStringLiteral("sourcePoints/0/defaultControllerSetup")
                                                   << QStringLiteral("is ignored");
    QTest::newRow("mounting default names no setup") << QString() << QStringLiteral("defaultControllerSetups={\"flown\": 3}")
                                                     << QStringLiteral("sourcePoints/0/defaultControllerSetups/flown") << QStringLiteral("names setup 3");
}

void tst_Lpsdk::validateOneFile()
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
    const Run run = lpsdk({QStringLiteral("validate"), file, QStringLiteral("--json")});
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
void tst_Lpsdk::couplingTables_data()
{
    QTest::addColumn<QString>("change");   // SQL run on a copy of the bundled table
    QTest::addColumn<QString>("problem");  // what transfer names for the pair 14, 1
    QTest::addColumn<int>("validateProblems");
    QTest::newRow("every row skipped") << QStringLiteral("UPDATE CplFilter SET BiquadVdB = NULL")
                                      << QStringLiteral("LowPos 14, MidPos 1: the pair has no filters") << 428 + 160;
    QTest::newRow("a frequency that is no number") << QStringLiteral("UPDATE CplFilter SET BiquadFX = '1 kHz' WHERE LowPos = 14 AND MidPos = 1 AND BiquadType = 8")
                                                   << QStringLiteral("(LowPos 14, MidPos 1), BiquadFX: \"1 kHz\" does not read as a number (read as 0)") << 1;
}

void tst_Lpsdk::couplingTables()
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

    const Run validate = lpsdk({QStringLiteral("validate"), QStringLiteral("--json"), QStringLiteral("--cpl-db"), table});
    QCOMPARE(validate.status, 1);
    QCOMPARE(problems(validate).size(), validateProblems);
}

// Packed at build time by lpsdk from the CSV, read back through a source point.
void tst_Lpsdk::balloonPackRoundTrip()
{
    SourcePointDescriptor point;
    point.Read({{QStringLiteral("balloonData"), QVariantMap{{QStringLiteral("default"), QStringLiteral("lpsdk_packed.bin")}}}});
    point.ReadBalloonData(SourcePointDescriptor::Synchronous);
    QVERIFY(point.IsBalloonDataLoaded());
    QFile csv(QStringLiteral(LPSDK_PACK_CSV));
    QVERIFY(csv.open(QIODevice::ReadOnly | QIODevice::Text));
    csv.readLine();
    int rows = 0;
    while (!csv.atEnd()) {
        const QList<QByteArray> cells = csv.readLine().trimmed().split(',');
        const Complex expected = Complex::fromPolar(std::pow(10.0, cells.at(3).toDouble() / 20.0), cells.at(4).toDouble() * M_PI / 180.0);
        const Complex actual = point.GetBalloonData(QStringLiteral("default"), cells.at(0).toDouble(), cells.at(1).toDouble(), cells.at(2).toDouble(), false);
        LPSDK_COMPARE_COMPLEX(actual, expected, 1e-6);
        if (cells.at(2).toDouble() == 0.0) // the closing column repeats phi 0
            LPSDK_COMPARE_COMPLEX(point.GetBalloonData(QStringLiteral("default"), cells.at(0).toDouble(), cells.at(1).toDouble(), 360.0, false), expected, 1e-6);
        ++rows;
    }
    QCOMPARE(rows, 40);
}

void tst_Lpsdk::usageErrors_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("accepted"); // a part of the message that names what is accepted
    QTest::newRow("unknown command") << QStringList{QStringLiteral("frobnicate")} << QStringLiteral("list, show");
    QTest::newRow("unknown option") << QStringList{QStringLiteral("list"), QStringLiteral("--frobnicate")} << QStringLiteral("frobnicate");
    QTest::newRow("option of another command") << QStringList{QStringLiteral("list"), QStringLiteral("--theta"), QStringLiteral("3")} << QStringLiteral("--expect-loudspeaker");
    QTest::newRow("switch value off the list") << QStringList{QStringLiteral("transfer"), QStringLiteral("DS-L12"), QStringLiteral("--switch"), QStringLiteral("4=99")} << QStringLiteral("14 (1.5)");
    QTest::newRow("no such switch") << QStringList{QStringLiteral("transfer"), QStringLiteral("DS-L12"), QStringLiteral("--switch"), QStringLiteral("9=3")} << QStringLiteral("1, 2, 3, 4, 5");
    QTest::newRow("sensitivity") << QStringList{QStringLiteral("transfer"), QStringLiteral("DS-L12"), QStringLiteral("--sensitivity"), QStringLiteral("9")} << QStringLiteral("3 (both)");
    QTest::newRow("coupling position") << QStringList{QStringLiteral("coupling"), QStringLiteral("--low"), QStringLiteral("99")} << QStringLiteral("0 ... 15");
    QTest::newRow("mounting") << QStringList{QStringLiteral("show"), QStringLiteral("DS-L12"), QStringLiteral("--mounting"), QStringLiteral("sideways")} << QStringLiteral("flown_pullback");
    QTest::newRow("theta past 180") << QStringList{QStringLiteral("balloon"), QStringLiteral("DS-L12"), QStringLiteral("--frequency"), QStringLiteral("1000"),
                                                    QStringLiteral("--theta"), QStringLiteral("200"), QStringLiteral("--phi"), QStringLiteral("0")} << QStringLiteral("0 ... 180");
    QTest::newRow("frequency outside the balloon") << QStringList{QStringLiteral("balloon"), QStringLiteral("DS-L12"), QStringLiteral("--frequency"), QStringLiteral("5"),
                                                    QStringLiteral("--theta"), QStringLiteral("0"), QStringLiteral("--phi"), QStringLiteral("0")} << QStringLiteral("--frequency must lie in");
    QTest::newRow("picture suffix") << QStringList{QStringLiteral("shape"), QStringLiteral("DS-L12"), QStringLiteral("--plot"), QStringLiteral("x.gif")} << QStringLiteral(".png or .svg");
    QTest::newRow("plugin folder that does not exist") << QStringList{QStringLiteral("validate"), QStringLiteral("--plugins"), QStringLiteral("/nonexistent/lpsdk-plugins")}
                                                       << QStringLiteral("/nonexistent/lpsdk-plugins does not exist");
    QTest::newRow("pack symmetry") << QStringList{QStringLiteral("balloon-pack"), QStringLiteral("in.csv"), QStringLiteral("-o"), QStringLiteral("out.bin"),
                                                   QStringLiteral("--symmetry"), QStringLiteral("twofold")} << QStringLiteral("half-rotated");
}

void tst_Lpsdk::usageErrors()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, accepted);
    const Run run = lpsdk(arguments);
    QCOMPARE(run.status, 2);
    QVERIFY(run.out.isEmpty());
    QVERIFY2(run.err.contains(accepted.toUtf8()), run.err.constData());
}

QTEST_GUILESS_MAIN(tst_Lpsdk)
#include "tst_lpsdk.moc"
