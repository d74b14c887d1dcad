// SPDX-License-Identifier: MIT
// The provider is a process-wide singleton that keeps what it has read, so the test
// functions run as one story: no connection, unusable tables, then real rows.
#include "CouplingFilterProvider.h"
#include "FilterResponse.h"
#include "TestHelpers.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

namespace {

const QString connectionName = QStringLiteral("nvRemoteDriverDatabase");
const QString createTable = QStringLiteral("CREATE TABLE CplFilter (LowPos INTEGER, MidPos INTEGER, BiquadType INTEGER, "
                                           "BiquadFX REAL, BiquadQ REAL, BiquadVdB REAL)");

Tolvane::BiquadData Biquad(int type, double frequency, double q, double gain)
{
    Tolvane::BiquadData biquad;
    biquad.type = type;
    biquad.frequency = frequency;
    biquad.q = q;
    biquad.gain = gain;
    return biquad;
}

} // namespace

namespace QTest {
template<>
inline char *toString(const Tolvane::BiquadData &b)
{
    return QTest::toString(QStringLiteral("BiquadData(%1, %2, %3, %4)").arg(b.type).arg(b.frequency).arg(b.q).arg(b.gain));
}
} // namespace QTest

class tst_CouplingFilterProvider : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QVERIFY(m_dir.isValid()); }
    void init() { failOnUnexpectedWarnings(); }

    void conversions_data();
    void conversions();

    void withoutConnectionEverythingIsEmpty();
    void databases_data();
    void databases();
    void connectionAddedLaterIsRead();
    void firGrid_data();
    void firGrid();
    void couplingResponseAtOneFrequency();
    void tableWithoutUsableRowsIsReadOnce();
    void rowProblemsAreReportedOncePerRead();

private:
    bool UseNewDatabase(const QString &name, const QStringList &statements);

    QTemporaryDir m_dir;
};

// Writes a database file and makes it the provider's connection.
bool tst_CouplingFilterProvider::UseNewDatabase(const QString &name, const QStringList &statements)
{
    const QString path = m_dir.filePath(name + QStringLiteral(".sqlite"));
    bool written = true;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("writer"));
        database.setDatabaseName(path);
        written = database.open();
        QSqlQuery query(database);
        for (const QString &statement : statements)
            written = written && query.exec(statement);
        database.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("writer"));
    if (QSqlDatabase::contains(connectionName))
        QSqlDatabase::removeDatabase(connectionName);
    QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName).setDatabaseName(path);
    return written;
}

void tst_CouplingFilterProvider::conversions_data()
{
    QTest::addColumn<QString>("conversion");
    QTest::addColumn<double>("input");
    QTest::addColumn<double>("output");

    QTest::newRow("low +2 dB is 15") << "low" << 2.0 << 15.0;
    QTest::newRow("low truncates up") << "low" << 0.2 << 11.0;      // 11.4
    QTest::newRow("low truncates toward zero") << "low" << -5.6 << 0.0; // -0.2
    QTest::newRow("mid -1 dB is 3") << "mid" << -1.0 << 3.0;
    QTest::newRow("mid truncates") << "mid" << -0.3 << 1.0; // 1.6
    // Old scales: (c + 2) * 10/7 and (c - 5) * 8/7, rounded to whole half-dB steps.
    QTest::newRow("old low 0 is 14") << "oldLow" << 0.0 << 14.0;  // rnd(2.857) = 3, w = 1.5
    QTest::newRow("old low -3 is 10") << "oldLow" << -3.0 << 10.0; // rnd(-1.43) = -1, w = -0.5
    QTest::newRow("old low 5 is 21") << "oldLow" << 5.0 << 21.0;   // rnd(10) = 10, w = 5
    QTest::newRow("old mid 6 is 0") << "oldMid" << 6.0 << 0.0;     // rnd(1.14) = 1, w = 0.5
    QTest::newRow("old mid 0 is 7") << "oldMid" << 0.0 << 7.0;     // rnd(-5.71) = -6, w = -3
    QTest::newRow("old mid 3 is 3") << "oldMid" << 3.0 << 3.0;     // rnd(-2.29) = -2, w = -1
}

void tst_CouplingFilterProvider::conversions()
{
    QFETCH(QString, conversion);
    QFETCH(double, input);

    double actual = -1000;
    if (conversion == QLatin1String("low"))
        actual = CouplingFilterProvider::ConvertToLowIndex(input);
    else if (conversion == QLatin1String("mid"))
        actual = CouplingFilterProvider::ConvertToMidIndex(input);
    else if (conversion == QLatin1String("oldLow"))
        actual = CouplingFilterProvider::ConvertToLowIndexFromOldCpl(int(input));
    else
        actual = CouplingFilterProvider::ConvertToMidIndexFromOldCpl(int(input));
    QTEST(actual, "output");
}

void tst_CouplingFilterProvider::withoutConnectionEverythingIsEmpty()
{
    QVERIFY(!QSqlDatabase::contains(connectionName));
    CouplingFilterProvider &provider = CouplingFilterProvider::GetInstance();
    QCOMPARE(&provider, &CouplingFilterProvider::GetInstance());
    QVERIFY(!provider.Initialize());
    QVERIFY(provider.GetFilter(3, 0).isEmpty());
    QVERIFY(provider.GetLowPositions().isEmpty() && provider.GetMidPositions().isEmpty());
    QCOMPARE(provider.GetLowRange(), std::make_pair(0, 0));
    QCOMPARE(provider.GetMidRange(), std::make_pair(0, 0));
    QCOMPARE(provider.CalculateCouplingResponse(3, 0, 1000.0), Complex(1, 0));
}

void tst_CouplingFilterProvider::databases_data()
{
    using Range = std::pair<int, int>;
    QTest::addColumn<QStringList>("statements");
    QTest::addColumn<bool>("initialized");
    QTest::addColumn<Range>("lowRange");
    QTest::addColumn<Range>("midRange");
    QTest::addColumn<QList<int>>("lowPositions");

    // The rows run in order on the one provider: ranges only ever widen after a successful read.
    QTest::newRow("no table") << QStringList {QStringLiteral("CREATE TABLE Other (x INTEGER)")} << false << Range(0, 0) << Range(0, 0) << QList<int>();
    QTest::newRow("table without gain column")
        << QStringList {QStringLiteral("CREATE TABLE CplFilter (LowPos INTEGER, MidPos INTEGER, BiquadType INTEGER, BiquadFX REAL, BiquadQ REAL)"),
                        QStringLiteral("INSERT INTO CplFilter VALUES (1, 2, 8, 1000, 1)")}
        << false << Range(0, 0) << Range(0, 0) << QList<int>();
    QTest::newRow("empty table shows the untouched ranges") << QStringList {createTable} << true << Range(99, -99) << Range(99, -99) << QList<int>();
    QTest::newRow("rows without a gain only widen the ranges")
        << QStringList {createTable, QStringLiteral("INSERT INTO CplFilter VALUES (40, 2, 8, 1000, 1, NULL)"),
                        QStringLiteral("INSERT INTO CplFilter VALUES (1, -3, 8, 1000, 1, 'loud')")}
        << true << Range(1, 40) << Range(-3, 2) << QList<int>({1, 40});
}

void tst_CouplingFilterProvider::databases()
{
    QFETCH(QStringList, statements);
    static int serial = 0;
    QVERIFY(UseNewDatabase(QString::number(++serial), statements));
    CouplingFilterProvider &provider = CouplingFilterProvider::GetInstance();
    QTEST(provider.Initialize(), "initialized");
    QVERIFY(provider.GetFilter(1, 2).isEmpty() && provider.GetFilter(40, 2).isEmpty() && provider.GetFilter(1, -3).isEmpty());
    QTEST(provider.GetLowRange(), "lowRange");
    QTEST(provider.GetMidRange(), "midRange");
    QTEST(provider.GetLowPositions(), "lowPositions");
}

void tst_CouplingFilterProvider::connectionAddedLaterIsRead()
{
    QSqlDatabase::removeDatabase(connectionName);
    CouplingFilterProvider &provider = CouplingFilterProvider::GetInstance();
    QVERIFY(provider.GetFilter(3, 0).isEmpty());

    // Rows of different pairs interleave; a NULL and a text gain sit between valid rows.
    QStringList statements {createTable};
    for (const char *row : {"3, 0, 10, 100, 0.7, -4", "11, 1, 10, 100, 0.7, 0", "3, 0, 8, 1000, 1, 0.5", "3, 0, 8, 2000, 1, NULL",
                            "3, 0, 11, 6000, 0.71, 1.25", "0, 9, 12, 800, 0.6, 'x'", "15, 9, 12, 800, 0.6, -4"})
        statements.append(QStringLiteral("INSERT INTO CplFilter VALUES (%1)").arg(QLatin1String(row)));
    QVERIFY(UseNewDatabase(QStringLiteral("filters"), statements));

    // No Initialize(): the next query reads the table, and keeps the rows in order.
    QCOMPARE(provider.GetFilter(3, 0), QList<Tolvane::BiquadData>({Biquad(10, 100, 0.7, -4), Biquad(8, 1000, 1, 0.5), Biquad(11, 6000, 0.71, 1.25)}));
    QCOMPARE(provider.GetFilter(15, 9), QList<Tolvane::BiquadData>({Biquad(12, 800, 0.6, -4)}));
    QCOMPARE(provider.GetLowPositions(), QList<int>({0, 3, 11, 15}));
    QCOMPARE(provider.GetMidPositions(), QList<int>({0, 1, 9}));
    // Ranges keep widening over every read of the process.
    QCOMPARE(provider.GetLowRange(), std::make_pair(0, 40));
    QCOMPARE(provider.GetMidRange(), std::make_pair(-3, 9));
    QVERIFY(provider.GetFilter(0, 9).isEmpty());
    QVERIFY(provider.GetFilter(3, 1).isEmpty());
}

void tst_CouplingFilterProvider::firGrid_data()
{
    QTest::addColumn<int>("low");
    QTest::addColumn<int>("mid");
    QTest::addColumn<double>("sampleRate");
    QTest::addColumn<int>("fftLength");
    QTest::addColumn<QList<double>>("frequencies");

    QTest::newRow("48 kHz, 8 points") << 3 << 0 << 48000.0 << 8 << QList<double> {0, 6000, 12000, 18000, 24000};
    QTest::newRow("odd length rounds down") << 3 << 0 << 48000.0 << 9 << QList<double> {0, 6000, 12000, 18000, 24000};
    QTest::newRow("unknown pair") << 7 << 7 << 1000.0 << 4 << QList<double> {0, 250, 500};
    QTest::newRow("one bin") << 3 << 0 << 48000.0 << 1 << QList<double> {0};
    QTest::newRow("no sample rate") << 3 << 0 << 0.0 << 8 << QList<double>();
    QTest::newRow("negative length") << 3 << 0 << 48000.0 << -4 << QList<double>();
}

void tst_CouplingFilterProvider::firGrid()
{
    QFETCH(int, low);
    QFETCH(int, mid);
    QFETCH(double, sampleRate);
    QFETCH(int, fftLength);
    QFETCH(QList<double>, frequencies);

    CouplingFilterProvider &provider = CouplingFilterProvider::GetInstance();
    const QList<std::pair<double, Complex>> grid = provider.CalculateFIRFilters(low, mid, sampleRate, fftLength);
    QCOMPARE(grid.size(), frequencies.size());
    for (int k = 0; k < grid.size(); ++k) {
        QCOMPARE(grid.at(k).first, frequencies.at(k));
        // Against the single-frequency response; the Nyquist bin keeps only its real part.
        Complex expected = provider.CalculateCouplingResponse(low, mid, frequencies.at(k));
        if (k == grid.size() - 1)
            expected = Complex(expected.real(), 0.0);
        LPSDK_COMPARE_COMPLEX(grid.at(k).second, expected, 1e-15);
    }
    // 0 Hz: the -4 dB low shelf at full depth, the peak and the high shelf at 1.
    if (!grid.isEmpty() && low == 3)
        LPSDK_COMPARE_COMPLEX(grid.at(0).second, Complex(std::pow(10.0, -4.0 / 20.0), 0), 1e-15);
}

void tst_CouplingFilterProvider::couplingResponseAtOneFrequency()
{
    CouplingFilterProvider &provider = CouplingFilterProvider::GetInstance();
    // Far below every corner only the low shelf acts; far above only the high shelf.
    LPSDK_COMPARE_COMPLEX(provider.CalculateCouplingResponse(3, 0, 1e-4), Complex(std::pow(10.0, -4.0 / 20.0), 0), 1e-6);
    LPSDK_COMPARE_COMPLEX(provider.CalculateCouplingResponse(3, 0, 1e9), Complex(std::pow(10.0, 1.25 / 20.0), 0), 1e-5);
    // Between the corners the three biquads multiply.
    Complex product(1, 0);
    for (const QVariantMap &entry : {QVariantMap {{"type", 10}, {"fp", 100}, {"Q", 0.7}, {"G", -4}}, QVariantMap {{"type", 8}, {"fp", 1000}, {"Q", 1}, {"G", 0.5}},
                                     QVariantMap {{"type", 11}, {"fp", 6000}, {"Q", 0.71}, {"G", 1.25}}})
        product *= CalculateFilterResponse({700.0}, entry).at(0);
    LPSDK_COMPARE_COMPLEX(provider.CalculateCouplingResponse(3, 0, 700.0), product, 1e-15);
    QCOMPARE(provider.CalculateCouplingResponse(11, 1, 1000.0), Complex(1, 0)); // a 0 dB shelf is exactly flat
    QCOMPARE(provider.CalculateCouplingResponse(7, 7, 1000.0), Complex(1, 0));
}

// Reading again on every query would cost a query each time; a row added to the same
// connection's table is seen after Initialize(), and another connection is read at once.
void tst_CouplingFilterProvider::tableWithoutUsableRowsIsReadOnce()
{
    CouplingFilterProvider &provider = CouplingFilterProvider::GetInstance();
    QVERIFY(UseNewDatabase(QStringLiteral("skipped"), {createTable, QStringLiteral("INSERT INTO CplFilter VALUES (4, 1, 8, 1000, 1, NULL)")}));
    QVERIFY(provider.GetFilter(4, 1).isEmpty());
    {
        QSqlDatabase writer = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("writer"));
        writer.setDatabaseName(m_dir.filePath(QStringLiteral("skipped.sqlite")));
        QVERIFY(writer.open());
        QVERIFY(QSqlQuery(writer).exec(QStringLiteral("INSERT INTO CplFilter VALUES (4, 1, 8, 1000, 1, 3)")));
        writer.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("writer"));
    QVERIFY(provider.GetFilter(4, 1).isEmpty());
    QVERIFY(provider.Initialize());
    QCOMPARE(provider.GetFilter(4, 1), QList<Tolvane::BiquadData>({Biquad(8, 1000, 1, 3)}));
}

void tst_CouplingFilterProvider::rowProblemsAreReportedOncePerRead()
{
    CouplingFilterProvider &provider = CouplingFilterProvider::GetInstance();
    QStringList statements{createTable};
    for (const char *row : {"4, 1, 8, '1k', 1, 3", "4, 1, 16, 1000, 1, 0", "4, 1, 8, 0, 1, 0", "4, 1, 4, 100, 0, 0", "5, 1, 8, 1000, 1, NULL", "4, 1, 0, 0, 0, -3"})
        statements.append(QStringLiteral("INSERT INTO CplFilter VALUES (%1)").arg(QLatin1String(row)));
    QVERIFY(UseNewDatabase(QStringLiteral("problems"), statements));
    QTest::ignoreMessage(QtWarningMsg, "CplFilter row 1 (LowPos 4, MidPos 1): BiquadFX \"1k\" does not read as a number (read as 0)");
    QVERIFY(provider.Initialize());

    // What a row contributes is unchanged: all five stored; an unknown type warns where it is evaluated.
    QCOMPARE(provider.GetFilter(4, 1).size(), 5);
    QTest::ignoreMessage(QtWarningMsg, "unknown filter type 16");
    provider.CalculateCouplingResponse(4, 1, 1000.0);
    QStringList texts;
    for (const CouplingTableProblem &problem : provider.GetTableProblems())
        texts.append(problem.ToString());
    QCOMPARE(texts, QStringList({
        QStringLiteral("row 1 (LowPos 4, MidPos 1), BiquadFX: \"1k\" does not read as a number (read as 0)"),
        QStringLiteral("row 2 (LowPos 4, MidPos 1), BiquadType: 16 is no filter type (0 ... 15); the filter passes everything"),
        QStringLiteral("row 3 (LowPos 4, MidPos 1), BiquadFX: frequency 0 Hz leaves filter type 8 undefined"),
        QStringLiteral("row 4 (LowPos 4, MidPos 1), BiquadQ: Q 0 leaves filter type 4 undefined"),
        QStringLiteral("row 5 (LowPos 5, MidPos 1), BiquadVdB: gain NULL is no number: the row is skipped"),
        QStringLiteral("LowPos 5, MidPos 1: the pair has no filters"),
    }));
    QCOMPARE(provider.GetPairProblems(5, 1).size(), 2);
    QCOMPARE(provider.GetPairProblems(6, 1).value(0).ToString(), QStringLiteral("LowPos 6, MidPos 1: the table has no row for the pair"));
}

QTEST_GUILESS_MAIN(tst_CouplingFilterProvider)
#include "tst_couplingfilterprovider.moc"
