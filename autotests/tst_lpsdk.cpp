// SPDX-License-Identifier: MIT
// The lpsdk host end to end: it runs on the demo series' plugin folder and its JSON is parsed,
// so the tests pin structure rather than wording.
#include "SourcePointDescriptor.h"

#include "LpsdkRun.h"
#include "TestHelpers.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QtEndian>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <cmath>

class tst_Lpsdk : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void listsTheDemoSeries();
    void transferDefaultsCouplingToZeroDecibels();
    void balloonValueAndPlots();
    void objIsTheClosedCabinet();
    void balloonPackRoundTrip();
    void validateFindsATruncatedBalloonInAPlugin();
    void validateBalloonFiles_data();
    void validateBalloonFiles();
    void balloonKeyNotThere();
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

void tst_Lpsdk::validateFindsATruncatedBalloonInAPlugin()
{
    const Run run = lpsdk({QStringLiteral("validate"), QStringLiteral("--json"), QStringLiteral("--plugins"), QStringLiteral(LPSDK_BROKEN_PLUGIN_DIR)});
    QCOMPARE(run.status, 1);
    bool found = false;
    for (const QJsonValue &problem : problems(run)) {
        found = found || (problem[QStringLiteral("key")].toString() == QLatin1String("sourcePoints/0/balloonData/default")
                          && problem[QStringLiteral("message")].toString().startsWith(QLatin1String("the balloon file \"truncated.bin\": body (byte ")));
    }
    QVERIFY2(found, run.out.constData());
}

void tst_Lpsdk::validateBalloonFiles_data()
{
    // The packed test balloon (19 x 37 double values per frequency), corrupted one way per row.
    QTest::addColumn<qsizetype>("offset"); // where a 32-bit integer is written, or -1
    QTest::addColumn<qint32>("value");
    QTest::addColumn<qsizetype>("cut");    // bytes cut off the end
    QTest::addColumn<QString>("key");      // the field the first problem names; empty: no problem
    QTest::newRow("as packed") << qsizetype(-1) << 0 << qsizetype(0) << QString();
    QTest::newRow("truncated") << qsizetype(-1) << 0 << qsizetype(100) << QStringLiteral("body");
    QTest::newRow("cut in the header") << qsizetype(-1) << 0 << qsizetype(-150) << QStringLiteral("header");
    QTest::newRow("NV of 0") << qsizetype(8) << 0 << qsizetype(0) << QStringLiteral("NV");
    QTest::newRow("unknown symmetry") << qsizetype(28) << 9 << qsizetype(0) << QStringLiteral("symmetry");
}

void tst_Lpsdk::validateBalloonFiles()
{
    QFETCH(qsizetype, offset);
    QFETCH(qint32, value);
    QFETCH(qsizetype, cut);
    QFETCH(QString, key);
    QFile packed(QStringLiteral(":/Resources/lpsdk_packed.bin"));
    QVERIFY(packed.open(QIODevice::ReadOnly));
    QByteArray bytes = packed.readAll();
    if (offset >= 0)
        qToLittleEndian(value, bytes.data() + offset);
    bytes = cut >= 0 ? bytes.chopped(cut) : bytes.left(-cut);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("balloon.bin"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();

    const Run run = lpsdk({QStringLiteral("validate"), QStringLiteral("--json"), path});
    QCOMPARE(run.status, key.isEmpty() ? 0 : 1);
    const QJsonArray found = problems(run);
    QCOMPARE(found.isEmpty(), key.isEmpty());
    if (!key.isEmpty()) {
        QCOMPARE(found.first()[QStringLiteral("file")].toString(), path);
        QCOMPARE(found.first()[QStringLiteral("key")].toString(), key);
    }
}

void tst_Lpsdk::balloonKeyNotThere()
{
    const Run run = lpsdk({QStringLiteral("balloon"), QStringLiteral("DS-L12"), QStringLiteral("--key"), QStringLiteral("nosuch"),
                           QStringLiteral("--frequency"), QStringLiteral("1000"), QStringLiteral("--theta"), QStringLiteral("0"),
                           QStringLiteral("--phi"), QStringLiteral("0")});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.contains("no balloon key \"nosuch\" (its keys: cut, default)"), run.err.constData());
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
