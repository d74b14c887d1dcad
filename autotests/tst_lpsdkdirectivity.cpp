// SPDX-License-Identifier: MIT
// lpsdk directivity and balloon-unpack end to end, on the demo series and on packed files.
#include "LpsdkRun.h"
#include "TestHelpers.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QtEndian>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cmath>

namespace {

QString demoBalloon(const QString &name)
{
    return QStringLiteral(LPSDK_DEMO_BALLOONS "/") + name;
}

} // namespace

class tst_LpsdkDirectivity : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Unpacking and packing again gives the table back, within float precision, whatever the
    // symmetry and the stored format.
    void unpackPackRoundTrip_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("symmetry");
        QTest::newRow("measured, full circle, double") << QStringLiteral("DS-C5.bin") << QStringLiteral("none");
        QTest::newRow("quarter, byte-scaled") << QStringLiteral("DS-L12.bin") << QStringLiteral("quarter");
        QTest::newRow("half") << QStringLiteral("DS-M12.bin") << QStringLiteral("half");
        QTest::newRow("rotational") << QStringLiteral("DS-P8.bin") << QStringLiteral("rotational");
    }

    void unpackPackRoundTrip()
    {
        QFETCH(QString, file);
        QFETCH(QString, symmetry);
        QTemporaryDir dir;
        const QString csv = dir.filePath(QStringLiteral("out.csv"));
        const QString bin = dir.filePath(QStringLiteral("again.bin"));
        const Run unpack = lpsdk({QStringLiteral("balloon-unpack"), demoBalloon(file), QStringLiteral("-o"), csv});
        QVERIFY2(unpack.status == 0, unpack.err);
        const Run pack = lpsdk({QStringLiteral("balloon-pack"), csv, QStringLiteral("-o"), bin, QStringLiteral("--symmetry"), symmetry});
        QVERIFY2(pack.status == 0, pack.err);
        const auto original = BalloonFile::Read(demoBalloon(file)).table;
        const auto again = BalloonFile::Read(bin).table;
        QVERIFY(original && again);
        QCOMPARE(again->GetFrequencies(), original->GetFrequencies());
        QCOMPARE(again->GetNH(), original->GetNH());
        QCOMPARE(again->GetNV(), original->GetNV());
        QCOMPARE(again->GetSymmetryCode(), original->GetSymmetryCode());
        QCOMPARE(again->GetValueCount(), original->GetValueCount());
        for (qsizetype i = 0; i < original->GetValueCount(); ++i) {
            const std::complex<float> a = original->GetValues()[i];
            const std::complex<float> b = again->GetValues()[i];
            if (std::abs(a - b) > 2e-6f * std::abs(a) + 1e-30f)
                QFAIL(qPrintable(QStringLiteral("value %1: (%2, %3) became (%4, %5)").arg(i).arg(a.real()).arg(a.imag()).arg(b.real()).arg(b.imag())));
        }
    }

    // Every key, one value per frequency; DI is on-axis minus sound power; the acoustic on-axis
    // response is the balloon's on-axis level plus the setup's transfer function.
    void jsonOfALoudspeaker()
    {
        const Run run = lpsdk({QStringLiteral("directivity"), QStringLiteral("DS-C5"), QStringLiteral("--json")});
        QVERIFY2(run.status == 0, run.err);
        const QJsonObject json = run.json();
        const QJsonArray frequencies = json.value(QStringLiteral("frequencies_hz")).toArray();
        QCOMPARE(frequencies.size(), BalloonFile::Read(demoBalloon(QStringLiteral("DS-C5.bin"))).table->GetFrequencies().size());
        const QJsonObject cta = json.value(QStringLiteral("cta2034")).toObject();
        for (const char *key : {"on_axis_db", "listening_window_db", "early_reflections_db", "sound_power_db", "sound_power_di_db", "early_reflections_di_db",
                                "estimated_in_room_db"})
            QVERIFY2(cta.value(QLatin1String(key)).toArray().size() == frequencies.size(), key);
        for (const char *key : {"on_axis_db", "sound_power_db", "directivity_index_db", "beamwidth_horizontal_deg", "beamwidth_vertical_deg",
                                "acoustic_on_axis_db", "acoustic_on_axis_phase_deg"})
            QVERIFY2(json.value(QLatin1String(key)).toArray().size() == frequencies.size(), key);
        const int k1 = int(frequencies.toVariantList().indexOf(1000.0));
        QVERIFY(k1 >= 0);
        const auto at = [&](const QJsonObject &o, const char *key) { return o.value(QLatin1String(key)).toArray().at(k1).toDouble(); };
        QCOMPARE_LT(std::abs(at(json, "directivity_index_db") - (at(json, "on_axis_db") - at(json, "sound_power_db"))), 2e-3);
        QCOMPARE_LT(std::abs(at(cta, "on_axis_db") - at(json, "on_axis_db")), 2e-3);

        const Run transfer = lpsdk({QStringLiteral("transfer"), QStringLiteral("DS-C5"), QStringLiteral("--json")});
        double transferDb = std::nan("");
        for (const QJsonValue &point : transfer.json().value(QStringLiteral("points")).toArray()) {
            if (point.toObject().value(QStringLiteral("frequency_Hz")).toDouble() == 1000.0)
                transferDb = point.toObject().value(QStringLiteral("level_dB")).toDouble();
        }
        QCOMPARE_LT(std::abs(at(json, "acoustic_on_axis_db") - (at(json, "on_axis_db") + transferDb)), 3e-3);
    }

    // A bare packed file needs no plugin; where a value does not exist it is null, with a reason.
    void nullsCarryReasons()
    {
        QTemporaryDir dir;
        QFile csv(dir.filePath(QStringLiteral("omni.csv")));
        QVERIFY(csv.open(QIODevice::WriteOnly));
        csv.write("frequency_hz,theta_deg,phi_deg,magnitude_db,phase_deg\n");
        for (int f : {100, 1000})
            for (int t = 0; t <= 180; t += 10)
                for (int p = 0; p < 360; p += 10)
                    csv.write(QStringLiteral("%1,%2,%3,-3,0\n").arg(f).arg(t).arg(p).toLatin1());
        csv.close();
        const QString bin = dir.filePath(QStringLiteral("omni.bin"));
        QCOMPARE(lpsdk({QStringLiteral("balloon-pack"), csv.fileName(), QStringLiteral("-o"), bin}).status, 0);
        const Run run = lpsdk({QStringLiteral("directivity"), bin, QStringLiteral("--json")});
        QVERIFY2(run.status == 0, run.err);
        const QJsonObject json = run.json();
        QCOMPARE(json.value(QStringLiteral("beamwidth_vertical_deg")).toArray(), (QJsonArray{QJsonValue(), QJsonValue()}));
        QCOMPARE_LT(std::abs(json.value(QStringLiteral("on_axis_db")).toArray().at(1).toDouble() + 3.0), 1e-3);
        QCOMPARE_LT(std::abs(json.value(QStringLiteral("directivity_index_db")).toArray().at(1).toDouble()), 1e-3);
        QVERIFY(!json.contains(QStringLiteral("acoustic_on_axis_db")));
        const QJsonArray reasons = json.value(QStringLiteral("reasons")).toArray();
        QCOMPARE(reasons.size(), 4);
        const QJsonObject first = reasons.at(0).toObject();
        QCOMPARE(first.value(QStringLiteral("key")).toString(), QStringLiteral("beamwidth_horizontal_deg"));
        QCOMPARE(first.value(QStringLiteral("frequency_hz")).toDouble(), 100.0);
        QCOMPARE(first.value(QStringLiteral("reason")).toString(), QStringLiteral("the level does not fall by 6 dB within ±180°"));
    }

    void pictures_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QSize>("size");
        QTest::newRow("spinorama") << QStringLiteral("spinorama") << QSize(1200, 880);
        QTest::newRow("isobar") << QStringLiteral("isobar") << QSize(1500, 720);
        QTest::newRow("offaxis") << QStringLiteral("offaxis") << QSize(1200, 880);
    }

    void pictures()
    {
        QFETCH(QString, kind);
        QFETCH(QSize, size);
        QTemporaryDir dir;
        const QString png = dir.filePath(QStringLiteral("p.png"));
        const Run run = lpsdk({QStringLiteral("directivity"), QStringLiteral("DS-L12"), QStringLiteral("--plot"), png, QStringLiteral("--kind"), kind});
        QVERIFY2(run.status == 0, run.err);
        QFile file(png);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray head = file.read(24); // the PNG signature, then the IHDR chunk's width and height
        QVERIFY(head.startsWith("\x89PNG"));
        QCOMPARE(QSize(qFromBigEndian<qint32>(head.constData() + 16), qFromBigEndian<qint32>(head.constData() + 20)), size);
    }

    void errors_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("message");
        QTest::newRow("unknown kind") << QStringList{QStringLiteral("DS-C5"), QStringLiteral("--plot"), QStringLiteral("x.png"), QStringLiteral("--kind"), QStringLiteral("polar")}
                                      << 2 << QStringLiteral("spinorama, isobar, di, beamwidth, offaxis");
        QTest::newRow("broken file") << QStringList{QStringLiteral(LPSDK_EXECUTABLE ".bin")} << 1 << QStringLiteral(".bin: ");
        QTest::newRow("no flush mount") << QStringList{QStringLiteral("DS-C5"), QStringLiteral("--flush-mount")} << 2 << QStringLiteral("has no flush-mount variant");
        QTest::newRow("key of a file") << QStringList{demoBalloon(QStringLiteral("DS-C5.bin")), QStringLiteral("--key"), QStringLiteral("cut")} << 2
                                       << QStringLiteral("--key applies to a loudspeaker");
    }

    void errors()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QString, message);
        const Run run = lpsdk(QStringList{QStringLiteral("directivity")} + arguments);
        QCOMPARE(run.status, status);
        QVERIFY2(QString::fromUtf8(run.err).contains(message), run.err);
        QVERIFY(run.out.isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_LpsdkDirectivity)
#include "tst_lpsdkdirectivity.moc"
