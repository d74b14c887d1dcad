// SPDX-License-Identifier: MIT
#include "RiggingHardwareDescriptor.h"
#include "TestHelpers.h"

#include <QFileDevice>
#include <QJsonDocument>
#include <QJsonParseError>

namespace {
QString dataFile(const char *name)
{
    return QStringLiteral(":/Resources/rigging/%1").arg(QLatin1String(name));
}

using MechanicalPoints = QMap<Tolvane::MechanicalConnectionPoint, Point>;
using PointMap = QMap<QString, Point>;
using Views = QMap<QString, QList<Point>>;
} // namespace

class tst_RiggingDescriptor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void defaults_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QStringList>("warnings");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("readingDefaults");
        const QString missing = dataFile("missing.json");
        const QString broken = dataFile("broken.json");
        QJsonParseError error;
        QJsonDocument::fromJson(QByteArrayLiteral("{ \"name\": \"Broken\", "), &error);
        QTest::newRow("empty path reads nothing, applies nothing") << QString() << QStringList() << QString() << false;
        QTest::newRow("name only") << dataFile("minimal.json") << QStringList() << QStringLiteral("Frame") << true;
        QTest::newRow("missing file") << missing
                                      << QStringList{QStringLiteral("Json file not found: ") + missing,
                                                     QStringLiteral("File error code: %1").arg(int(QFileDevice::OpenError))}
                                      << QString() << true;
        QTest::newRow("unparsable file") << broken
                                         << QStringList{QStringLiteral("JSON parse error in file: ") + broken,
                                                        QStringLiteral("Error: ") + error.errorString()}
                                         << QString() << true;
    }

    void defaults()
    {
        QFETCH(QString, path);
        QFETCH(QStringList, warnings);
        QFETCH(QString, name);
        QFETCH(bool, readingDefaults);
        for (const QString &warning : std::as_const(warnings))
            QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
        RiggingHardwareDescriptor descriptor(path);
        QCOMPARE(descriptor.GetName(), name);
        QCOMPARE(descriptor.GetDisplayName(), name);
        QCOMPARE(descriptor.IsDataApproved(), readingDefaults);
        QCOMPARE(descriptor.GetPartNumber(true), readingDefaults ? QStringLiteral(".000") : QString());
        QCOMPARE(descriptor.GetLoadAdapterResolution(), readingDefaults ? 1.0 : 0.0);
        QCOMPARE(descriptor.GetMaximumLoad(), readingDefaults ? 1000.0 : 0.0);
        QCOMPARE(descriptor.GetMaximumLoadSinglePickpoint(), readingDefaults ? 1000.0 : 0.0);
        QCOMPARE(descriptor.GetLoadBeamCategoryDisplayName(), readingDefaults ? QStringLiteral("Load beam") : QString());
        QVERIFY(!descriptor.HasLoadBeam());
        QVERIFY(!descriptor.GetAutomaticMountingDirectionCalculation());
        QVERIFY(!descriptor.GetFrontMechanicalConnectionPointDescriptor().isValid());
        // No size and no shape: nothing to draw.
        QVERIFY(descriptor.GetViews().value<Views>().isEmpty());
        QCOMPARE(descriptor.GetCenterOfGravity(), Point());
        QCOMPARE(descriptor.GetMountingDirection(1), QString());
    }

    void wronglyTypedValuesConvertSilently()
    {
        RiggingHardwareDescriptor d(dataFile("hostile.json"));
        QCOMPARE(d.GetName(), QStringLiteral("42"));
        QCOMPARE(d.GetMaximumLoad(), 0.0);
        QCOMPARE(d.GetSize(), Size());
        QVERIFY(d.HasLoadBeam());
        QCOMPARE(d.GetLoadBeamFrontOffset(QStringLiteral("Bad"), QStringLiteral("p")), 0.0);
        QCOMPARE(d.GetConnectionPointOffset(5), Point());
        QCOMPARE(d.GetMountingDirection(1), QString());
        QCOMPARE(d.GetCenterOfGravity(), Point());
        const auto views = d.GetViews().value<Views>();
        QCOMPARE(views.keys(), (QStringList{"3D_Bad_p", "3D_Bad_q", "side_Bad_p", "side_Bad_q", "top_Bad_p", "top_Bad_q"}));
    }

    void fullFileReadsEveryKey()
    {
        RiggingHardwareDescriptor d(dataFile("full.json"));
        QVERIFY(!d.IsDataApproved());
        QCOMPARE(d.GetName(), QStringLiteral("Frame A"));
        QCOMPARE(d.GetDisplayName(), QStringLiteral("Frame A, flying"));
        QCOMPARE(d.GetPartNumber(false), QStringLiteral("F-100"));
        QCOMPARE(d.GetPartNumber(true), QStringLiteral("F-100.010"));
        QCOMPARE(d.GetShackleHeight(), 0.12);
        QCOMPARE(d.GetPickpointDistance(), 0.25);
        QCOMPARE(d.GetLoadAdapterXPinholes(), 0.04);
        QCOMPARE(d.GetLoadAdapterResolution(), 0.025);
        QCOMPARE(d.GetShackleHoleOffset(), Point(0.035, 0, 0));
        QVERIFY(d.CanUseArraySight());
        QCOMPARE(d.GetMountingPoint(Tolvane::Flown, QStringLiteral("any")), Point(0.01, 0.02, -0.03));
        QCOMPARE(d.GetCompressionSetMap().toMap().value(QStringLiteral("short")).toMap().value(QStringLiteral("length")).toInt(), 300);
        QCOMPARE(d.GetMaximumLoad(), 750.0);
        QCOMPARE(d.GetMaximumLoadSinglePickpoint(), 500.0);
        QCOMPARE(d.GetSize(), Size(1.2, 0.08, 0.9));
        QCOMPARE(d.GetOutriggersBoundaryMaxSize(), Size(1.2, 0.08, 1.5));
        QCOMPARE(d.GetWeight(), 45.5);
        QCOMPARE(d.GetTiltAngleStepWidth(), 0.5);
        QVERIFY(d.HasTriangulated3dView());
        QCOMPARE(d.GetConnectionPoint(Tolvane::Stacked, QString()), Point(0.001, 0.002, 0.003));
        const auto cog = d.GetCenterOfGravityMap();
        QCOMPARE(cog.metaType(), QMetaType::fromType<PointMap>());
        QCOMPARE(cog.value<PointMap>().keys(), QStringList{QStringLiteral("default")});
        const auto pull = d.GetCompressionPullPointMap();
        QCOMPARE(pull.metaType(), QMetaType::fromType<PointMap>());
        QCOMPARE(pull.value<PointMap>().value(QStringLiteral("default")), Point(-0.85, 0, -0.08));
        QCOMPARE(d.GetPickPointsMap().toMap().keys(), (QStringList{QStringLiteral("1"), QStringLiteral("2")}));
        QCOMPARE(d.GetFrontMechanicalConnectionPointDescriptor().toList(), (QVariantList{QStringLiteral("link"), 2}));
        QCOMPARE(d.GetLoadBeamCategoryDisplayName(), QStringLiteral("Spreader"));
        QVERIFY(d.GetAutomaticMountingDirectionCalculation());
        QVERIFY(!d.HasLoadBeam());
        QCOMPARE(d.GetViews().metaType(), QMetaType::fromType<Views>());
    }

    void mountingDirectionServesListedPickPoints_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("pickPoint");
        QTest::addColumn<QString>("direction");
        QTest::newRow("listed first") << dataFile("mechanics.json") << 1 << QStringLiteral("a");
        QTest::newRow("direction without a list serves the rest") << dataFile("mechanics.json") << 2 << QStringLiteral("b");
        QTest::newRow("and wins over later keys") << dataFile("mechanics.json") << 7 << QStringLiteral("b");
        QTest::newRow("second key") << dataFile("full.json") << 1 << QStringLiteral("right");
        QTest::newRow("key order, not list order") << dataFile("full.json") << 2 << QStringLiteral("left");
        QTest::newRow("text is no pick point number") << dataFile("full.json") << 3 << QString();
    }

    void mountingDirectionServesListedPickPoints()
    {
        QFETCH(QString, file);
        QFETCH(int, pickPoint);
        QFETCH(QString, direction);
        RiggingHardwareDescriptor descriptor(file);
        QCOMPARE(descriptor.GetMountingDirection(pickPoint), direction);
    }

    void namedPointsFallBack_data()
    {
        QTest::addColumn<bool>("connection"); // else the mounting point
        QTest::addColumn<int>("mounting");
        QTest::addColumn<QString>("name");
        QTest::addColumn<Point>("expected");
        // Connection points: "<mounting>_<name>", "<mounting>_default", "<mounting>", "default".
        QTest::newRow("connection: mounting and name") << true << int(Tolvane::Flown) << QStringLiteral("Box12") << Point(0.1, 0, 0);
        QTest::newRow("connection: mounting default") << true << int(Tolvane::Flown) << QStringLiteral("Box15") << Point(0.2, 0, 0);
        QTest::newRow("connection: mounting alone") << true << int(Tolvane::Stacked) << QStringLiteral("Box12") << Point(0.3, 0, 0);
        QTest::newRow("connection: default") << true << int(Tolvane::FlownPullback) << QStringLiteral("Box12") << Point(0.4, 0, 0);
        QTest::newRow("connection: unknown mounting value") << true << 9 << QStringLiteral("Box12") << Point(0.4, 0, 0);
        // Mounting points: "<mounting>_<name>", then the bare name, then the mounting's keys.
        QTest::newRow("mounting: mounting and name") << false << int(Tolvane::Flown) << QStringLiteral("Box12") << Point(0.01, 0, 0);
        QTest::newRow("mounting: name before mounting default") << false << int(Tolvane::Flown) << QStringLiteral("Box15") << Point(0.012, 0, 0);
        QTest::newRow("mounting: name before mounting") << false << int(Tolvane::Stacked) << QStringLiteral("Box12") << Point(0.011, 0, 0);
        QTest::newRow("mounting: mounting default") << false << int(Tolvane::Flown) << QStringLiteral("Other") << Point(0.013, 0, 0);
        QTest::newRow("mounting: mounting alone") << false << int(Tolvane::Stacked) << QStringLiteral("Other") << Point(0.014, 0, 0);
        QTest::newRow("mounting: no default, zero point") << false << int(Tolvane::StackedCart) << QStringLiteral("Other") << Point();
    }

    void namedPointsFallBack()
    {
        QFETCH(bool, connection);
        QFETCH(int, mounting);
        QFETCH(QString, name);
        QFETCH(Point, expected);
        RiggingHardwareDescriptor descriptor(dataFile("mechanics.json"));
        const auto m = static_cast<Tolvane::Mounting>(mounting);
        QCOMPARE(connection ? descriptor.GetConnectionPoint(m, name) : descriptor.GetMountingPoint(m, name), expected);
    }

    void connectionPointOffsetUsesOneDecimal_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<Point>("expected");
        QTest::newRow("whole number as 5.0") << 5.0 << Point(0.001, 0, 0);
        QTest::newRow("rounded down to 12.3") << 12.34 << Point(0.002, 0, 0);
        QTest::newRow("rounded up to 5.0") << 4.96 << Point(0.001, 0, 0);
        QTest::newRow("unknown value: default") << 12.0 << Point(0.009, 0, 0);
    }

    void connectionPointOffsetUsesOneDecimal()
    {
        QFETCH(double, value);
        QFETCH(Point, expected);
        RiggingHardwareDescriptor descriptor(dataFile("mechanics.json"));
        QCOMPARE(descriptor.GetConnectionPointOffset(value), expected);
    }

    void mechanicalConnectionPointsResolveEachCorner_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("mounting");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QList<Point>>("expected");
        const QString mechanics = dataFile("mechanics.json");
        const Point frontTop(0.01, 0.02, 0.03);
        const Point frontBottom(0, 0, -0.08);
        const Point frontTopCompressed(0.005, 0, 0);
        const Point rearBottomCompressed(-0.49, 0, -0.08);
        QTest::newRow("flown, named") << mechanics << int(Tolvane::Flown) << QStringLiteral("Box12")
                                      << QList<Point>{frontTop, Point(-0.5, 0, 0.001), Point(), frontBottom,
                                                      frontTopCompressed, Point(), rearBottomCompressed, Point()};
        QTest::newRow("flown, mounting default") << mechanics << int(Tolvane::Flown) << QStringLiteral("Other")
                                                 << QList<Point>{frontTop, Point(-0.5, 0, 0.002), Point(), frontBottom,
                                                                 frontTopCompressed, Point(), rearBottomCompressed, Point()};
        QTest::newRow("stacked, default and list point") << mechanics << int(Tolvane::Stacked) << QStringLiteral("Other")
                                                         << QList<Point>{frontTop, Point(-0.5, 0, 0.003), Point(-0.5, 0, -0.08), frontBottom,
                                                                         frontTopCompressed, Point(), rearBottomCompressed, Point()};
        QTest::newRow("empty item: all zero") << dataFile("minimal.json") << int(Tolvane::Flown) << QStringLiteral("Box12") << QList<Point>(8);
    }

    void mechanicalConnectionPointsResolveEachCorner()
    {
        QFETCH(QString, file);
        QFETCH(int, mounting);
        QFETCH(QString, name);
        QFETCH(QList<Point>, expected);
        RiggingHardwareDescriptor descriptor(file);
        const MechanicalPoints points = descriptor.GetMechanicalConnectionPoints(static_cast<Tolvane::Mounting>(mounting), name);
        QCOMPARE(points.size(), 8);
        for (int i = 0; i < 8; ++i)
            QCOMPARE(points.value(static_cast<Tolvane::MechanicalConnectionPoint>(i)), expected.at(i));
    }

    void centerOfGravityPrefersStandardThenLoadBeamOrder_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<Point>("expected");
        QTest::newRow("standard wins over default") << dataFile("mechanics.json") << Point(-0.002, 0, 0);
        // "Hung" sorts before "Plain": its position is found first although "Plain_rear" is also held.
        QTest::newRow("first type and position in key order") << dataFile("loadbeams.json") << Point(-0.002, 0, 0);
        QTest::newRow("default alone") << dataFile("full.json") << Point(-0.4, 0, -0.04);
        QTest::newRow("nothing: zero point") << dataFile("minimal.json") << Point();
    }

    void centerOfGravityPrefersStandardThenLoadBeamOrder()
    {
        QFETCH(QString, file);
        QFETCH(Point, expected);
        RiggingHardwareDescriptor descriptor(file);
        QCOMPARE(descriptor.GetCenterOfGravity(), expected);
    }

    void loadBeamEntriesAreReadRelativeToTheFrameReference()
    {
        RiggingHardwareDescriptor descriptor(dataFile("loadbeams.json"));
        QVERIFY(descriptor.HasLoadBeam());
        const QVariantMap types = descriptor.GetLoadBeamTypesMap().toMap();
        QCOMPARE(types.keys(), (QStringList{QStringLiteral("Hung"), QStringLiteral("Plain")}));

        const QVariantMap mechanical{{QStringLiteral("front, top"),
                                      QVariantMap{{QStringLiteral("flown_default"), QVariantMap{{QStringLiteral("x"), 50}}},
                                                  {QStringLiteral("default"), QVariantMap{{QStringLiteral("x"), 999}}}}}};
        const Point reference = RiggingHardwareDescriptor::ReadFrameReferencePoint(mechanical);
        QCOMPARE(reference, Point(0.05, 0, 0));

        // Positions are taken relative to the reference, in metres.
        const auto plain = RiggingHardwareDescriptor::ReadLoadBeamData(types.value(QStringLiteral("Plain")).toMap(), reference);
        QCOMPARE(plain.width, 0.1);
        QCOMPARE(plain.positions.value(QStringLiteral("front")).x(), 0.25 - 0.05);
        QCOMPARE(plain.positions.value(QStringLiteral("rear")).x(), -0.15 - 0.05);
        const auto hung = RiggingHardwareDescriptor::ReadLoadBeamData(types.value(QStringLiteral("Hung")).toMap(), reference);
        QCOMPARE(hung.profileBeamIntersection, Point(-0.3, 0, 0));

        QCOMPARE(descriptor.GetLoadBeamFrontOffset(QStringLiteral("Other"), QStringLiteral("front")), 0.0);
        QCOMPARE(descriptor.GetLoadBeamFrontOffset(QStringLiteral("Plain"), QStringLiteral("mid")), 0.0);
    }

    void frameReferencePointFallsBack_data()
    {
        QTest::addColumn<QVariant>("frontTop");
        QTest::addColumn<Point>("expected");
        const QVariantMap a{{QStringLiteral("x"), 1}, {QStringLiteral("y"), 2}, {QStringLiteral("z"), 3}};
        const QVariantMap b{{QStringLiteral("x"), 4}};
        const QVariantMap c{{QStringLiteral("x"), 5}};
        QTest::newRow("a point itself") << QVariant(a) << Point(0.001, 0.002, 0.003);
        QTest::newRow("flown default before default")
            << QVariant(QVariantMap{{QStringLiteral("default"), c}, {QStringLiteral("flown_default"), b}}) << Point(0.004, 0, 0);
        QTest::newRow("default") << QVariant(QVariantMap{{QStringLiteral("default"), c}, {QStringLiteral("stacked_default"), b}})
                                 << Point(0.005, 0, 0);
        QTest::newRow("nothing usable") << QVariant(QVariantMap{{QStringLiteral("stacked_default"), b}}) << Point();
    }

    void frameReferencePointFallsBack()
    {
        QFETCH(QVariant, frontTop);
        QFETCH(Point, expected);
        QCOMPARE(RiggingHardwareDescriptor::ReadFrameReferencePoint({{QStringLiteral("front, top"), frontTop}}), expected);
    }

    void extractViewKeysPrefersFlownViews()
    {
        const auto extract = [](const QStringList &held) {
            Views views;
            for (const QString &key : held)
                views.insert(key, {});
            QString key3D = QStringLiteral("keep3D");
            QString keySide = QStringLiteral("keepSide");
            QString keyTop = QStringLiteral("keepTop");
            RiggingHardwareDescriptor::ExtractViewKeys(views, key3D, keySide, keyTop);
            return QStringList{key3D, keySide, keyTop};
        };
        QCOMPARE(extract({"3D", "3D_flown", "side", "side_flown", "top", "top_flown"}), (QStringList{"3D_flown", "side_flown", "top_flown"}));
        // Views that are not held leave their output as it was.
        QCOMPARE(extract({"top", "3D_stacked"}), (QStringList{"keep3D", "keepSide", "top"}));
    }
};

QTEST_GUILESS_MAIN(tst_RiggingDescriptor)
#include "tst_riggingdescriptor.moc"
