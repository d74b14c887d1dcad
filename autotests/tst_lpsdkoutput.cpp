// SPDX-License-Identifier: MIT
// What lpsdk prints and draws on the demo series: the points an outline marks, the keys of the
// transfer function, and the frequencies and quiet stderr of the polar plots.
#include "LpsdkRun.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

class tst_LpsdkOutput : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void outlinesMarkOnlyTheGivenPoints_data();
    void outlinesMarkOnlyTheGivenPoints();
    void transferKeepsItsLevelKey_data();
    void transferKeepsItsLevelKey();
    void transferPlotReplacesTheTable();
    void transferCsvIsTheTableAlone();
    void balloonGridInNumbers();
    void polarPlotsSpanTheBand_data();
    void polarPlotsSpanTheBand();
};

void tst_LpsdkOutput::outlinesMarkOnlyTheGivenPoints_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<QString>("mounting");
    QTest::addColumn<QStringList>("marks");
    QTest::newRow("frame: no mounting or connection point")
        << "DS-L12 Frame" << "flown" << QStringList{"centre of gravity", "connection front top"};
    QTest::newRow("plate flown: its connection point is for stacking only")
        << "DS-GS Plate" << "flown" << QStringList{"mounting point", "centre of gravity", "connection front top"};
    QTest::newRow("plate stacked") << "DS-GS Plate" << "stacked"
                                   << QStringList{"mounting point", "connection point", "centre of gravity", "connection front top"};
    QTest::newRow("point source flown") << "DS-P8" << "flown" << QStringList{"mounting point", "source point \"DS-P8\""};
    QTest::newRow("point source stacked: its mounting point is for flying") << "DS-P8" << "stacked" << QStringList{"source point \"DS-P8\""};
}

// A point the file leaves out reads as the zero point; drawn, it would mark a place that is
// no part of the item.
void tst_LpsdkOutput::outlinesMarkOnlyTheGivenPoints()
{
    QFETCH(QString, item);
    QFETCH(QString, mounting);
    QFETCH(QStringList, marks);
    const Run run = lpsdk({QStringLiteral("shape"), item, QStringLiteral("--mounting"), mounting, QStringLiteral("--json")});
    QCOMPARE(run.status, 0);
    QStringList names;
    for (const QJsonValue &point : run.json().value(QStringLiteral("points")).toArray())
        names.append(point[QStringLiteral("name")].toString());
    QCOMPARE(names, marks);
}

void tst_LpsdkOutput::transferKeepsItsLevelKey_data()
{
    QTest::addColumn<QString>("sensitivity");
    QTest::addColumn<QString>("reference");
    QTest::newRow("controller response") << "0" << "dB re 1, the controller's response";
    QTest::newRow("with the measured sensitivity") << "1" << "dB SPL (re 20 uPa), the sound pressure level";
    QTest::newRow("with the array EQ") << "2" << "dB re 1, the controller's response";
}

void tst_LpsdkOutput::transferKeepsItsLevelKey()
{
    QFETCH(QString, sensitivity);
    QFETCH(QString, reference);
    const Run run = lpsdk({QStringLiteral("transfer"), QStringLiteral("DS-L12"), QStringLiteral("--sensitivity"), sensitivity, QStringLiteral("--json")});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.json().value(QStringLiteral("level_reference")).toString(), reference);
    const QJsonArray points = run.json().value(QStringLiteral("points")).toArray();
    QCOMPARE(points.size(), 249);
    for (const QJsonValue &point : points)
        QCOMPARE(point.toObject().keys(), QStringList({"frequency_Hz", "level_dB", "phase_deg"}));
}

void tst_LpsdkOutput::transferPlotReplacesTheTable()
{
    QTemporaryDir directory;
    const QString png = directory.filePath(QStringLiteral("response.png"));
    const Run run = lpsdk({QStringLiteral("transfer"), QStringLiteral("DS-L12"), QStringLiteral("--plot"), png});
    QCOMPARE(run.status, 0);
    QVERIFY(QFile::exists(png));
    QVERIFY2(!run.out.contains("frequency_Hz") && run.out.contains(QByteArray("plot: ") + png.toUtf8()), run.out.constData());
}

// The DS-L12 balloon: 5-degree steps over theta 0 ... 180 and, folded both ways, phi 0 ... 90,
// on the 249 frequencies of the 1/24-octave grid, 1000 * 2^(k / 24) Hz for k = -140 ... 108.
void tst_LpsdkOutput::balloonGridInNumbers()
{
    const Run run = lpsdk({QStringLiteral("show"), QStringLiteral("DS-L12"), QStringLiteral("--json")});
    QCOMPARE(run.status, 0);
    const QJsonObject grid = run.json().value(QStringLiteral("source_points")).toArray().at(0)[QStringLiteral("balloon_grid")].toObject();
    const QJsonObject expected{{"theta_rows", 37}, {"phi_columns", 19}, {"theta_step_deg", 5}, {"phi_step_deg", 5}, {"symmetry", 3}, {"frequencies", 249},
                               {"lowest_frequency_Hz", 1000.0 * std::pow(2.0, -140 / 24.0)}, {"highest_frequency_Hz", 1000.0 * std::pow(2.0, 108 / 24.0)}};
    QCOMPARE(grid, expected);
}

void tst_LpsdkOutput::transferCsvIsTheTableAlone()
{
    const Run run = lpsdk({QStringLiteral("transfer"), QStringLiteral("DS-L12"), QStringLiteral("--csv")});
    QCOMPARE(run.status, 0);
    const QList<QByteArray> lines = run.out.trimmed().split('\n');
    QCOMPARE(lines.first(), QByteArray("frequency_Hz,level_dB,phase_deg"));
    QCOMPARE(lines.size(), 1 + 249);
}

void tst_LpsdkOutput::polarPlotsSpanTheBand_data()
{
    QTest::addColumn<QString>("loudspeaker");
    QTest::addColumn<double>("low"); // "fLowOpt" and "fHighOpt" of the default setup, Hz
    QTest::addColumn<double>("high");
    QTest::newRow("subwoofer") << "DS-S18" << 32.0 << 120.0;
    QTest::newRow("line array element") << "DS-L12" << 55.0 << 18000.0;
    QTest::newRow("measured monitor") << "DS-C5" << 52.0 << 21000.0;
}

// Four frequencies inside the band, a balloon frequency apart at least, and nothing on stderr
// where no runtime folder is set.
void tst_LpsdkOutput::polarPlotsSpanTheBand()
{
    QFETCH(QString, loudspeaker);
    QFETCH(double, low);
    QFETCH(double, high);
    QTemporaryDir directory;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    const Run run = lpsdk({QStringLiteral("balloon"), loudspeaker, QStringLiteral("--plot"), directory.filePath(QStringLiteral("polar.png")),
                                QStringLiteral("--json")}, environment);
    QCOMPARE(run.status, 0);
    QCOMPARE(run.err, QByteArray());
    const QJsonArray frequencies = run.json().value(QStringLiteral("frequencies_Hz")).toArray();
    QCOMPARE(frequencies.size(), 4);
    const double halfStep = std::pow(2.0, 1.0 / 48.0); // the demo balloons are on 1/24 octaves
    for (int i = 0; i < frequencies.size(); ++i) {
        const double f = frequencies.at(i).toDouble();
        QVERIFY2(f >= low / halfStep && f <= high * halfStep, qPrintable(QString::number(f)));
        QVERIFY(i == 0 || f > frequencies.at(i - 1).toDouble());
    }
}

QTEST_GUILESS_MAIN(tst_LpsdkOutput)
#include "tst_lpsdkoutput.moc"
