// SPDX-License-Identifier: MIT
#include "LoudspeakerDescriptor.h"
#include "ShapeMeshChecks.h"
#include "SourcePointDescriptor.h"
#include "TestHelpers.h"

#include <QTemporaryDir>
#include <QTest>

namespace {
const QString DataDir = QStringLiteral(":/Resources/loudspeaker/");
} // namespace

class tst_LoudspeakerDescriptor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void readsEveryKey();
    void defaults_data();
    void defaults();
    void typeMapping_data();
    void typeMapping();
    void wrongKindsGiveConversionResults();
    void viewValidation_data();
    void viewValidation();
    void pointsPerMounting_data();
    void pointsPerMounting();
    void centerOfAudio_data();
    void centerOfAudio();
    void mechanicalConnectionPoints_data();
    void mechanicalConnectionPoints();
    void sourcePoints();
    void contourCoupling_data();
    void contourCoupling();
    void seriesThroughParent();
};

void tst_LoudspeakerDescriptor::readsEveryKey()
{
    LoudspeakerDescriptor descriptor(DataDir + QStringLiteral("full.json"), nullptr);
    QVERIFY(!descriptor.IsDataApproved());
    QCOMPARE(descriptor.GetName(), QStringLiteral("LA12"));
    QCOMPARE(descriptor.GetPartNumber(false), QStringLiteral("123"));
    QCOMPARE(descriptor.GetPartNumber(true), QStringLiteral("123.201"));
    QCOMPARE(descriptor.GetDisplayName(), QStringLiteral("LA 12 Line Array"));
    QCOMPARE(int(descriptor.GetType()), 0x1010);
    QCOMPARE(descriptor.GetCabinetShape(), QStringLiteral("Cuboid"));
    QCOMPARE(descriptor.GetSize(), Size(0.6, 0.4, 0.5));
    QCOMPARE(descriptor.GetWeight(), 23.5);
    QCOMPARE(descriptor.GetTrapAngle(), 10.0);
    QVERIFY(descriptor.HasTriangulated3dView());
    QCOMPARE(descriptor.GetNominalDispersionHor(), 110.0);
    QCOMPARE(descriptor.GetNominalDispersionVer(), 12.5);
    QCOMPARE(descriptor.GetFrontEdgeOffset(), 0.25);
    QCOMPARE(descriptor.GetRearEdgeOffset(), 0.12);
    QVERIFY(descriptor.CanBeUsedInMainArrays());
    QVERIFY(descriptor.CanBeUsedInSubArrays());
    QVERIFY(descriptor.GetShowBeam());
    QVERIFY(descriptor.HasAlternateDispersionMode());
    QVERIFY(descriptor.HasFixedCabinetsPerSubArrayPosition());
    QCOMPARE(descriptor.GetDefaultCabinetsPerSubArrayPosition(), 3);
    QCOMPARE(descriptor.GetDefaultCabinetsPerMixedSubArrayPosition(), 2);
    QCOMPARE(int(descriptor.GetMixedSubArrayFilterMode()), 2);
    QCOMPARE(descriptor.GetSplayAngles(), (QVariantMap{{QStringLiteral("flown"), QVariantList{0, 1, 2.5, 5}}}));
    QCOMPARE(descriptor.GetFrontMechanicalConnectionPointDescriptor().toMap().value(QStringLiteral("type")).toString(), QStringLiteral("hinge"));
    // The cuboid generator drew the views from the size: 6 faces.
    QCOMPARE(descriptor.Get3dView(Tolvane::Flown).size(), 24);
}

void tst_LoudspeakerDescriptor::defaults_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("warnings");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("cabinetShape");
    QTest::addColumn<QVariantMap>("splayAngles");
    QTest::addColumn<int>("type");

    const QVariantMap defaultSplay{{QStringLiteral("default"), QVariantList{0.0}}};
    QTest::newRow("minimal file") << DataDir + QStringLiteral("minimal.json") << QStringList() << QStringLiteral("Sub18")
                                  << QStringLiteral("Arbitrary") << defaultSplay << 0x0100;
    const QString missing = DataDir + QStringLiteral("nowhere.json");
    QTest::newRow("missing file") << missing
                                  << QStringList{QStringLiteral("Json file not found: ") + missing, QStringLiteral("File error code: 5"),
                                                 QStringLiteral("Unknown loudspeaker type: ") + missing}
                                  << QString() << QStringLiteral("Arbitrary") << defaultSplay << 0;
    QTest::newRow("blank descriptor") << QString() << QStringList() << QString() << QStringLiteral("Unknown") << QVariantMap() << 0;
}

void tst_LoudspeakerDescriptor::defaults()
{
    QFETCH(QString, path);
    QFETCH(QStringList, warnings);
    QFETCH(QString, name);
    QFETCH(QString, cabinetShape);
    QFETCH(QVariantMap, splayAngles);
    QFETCH(int, type);

    for (const QString &warning : warnings)
        QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
    LoudspeakerDescriptor descriptor(path, nullptr);
    QCOMPARE(descriptor.GetName(), name);
    QCOMPARE(descriptor.GetDisplayName(), name);
    QCOMPARE(int(descriptor.GetType()), type);
    QCOMPARE(descriptor.GetCabinetShape(), cabinetShape);
    QCOMPARE(descriptor.GetSplayAngles(), splayAngles);
    QVERIFY(descriptor.IsDataApproved());
    QCOMPARE(descriptor.GetSize(), Size());
    QCOMPARE(descriptor.GetDefaultCabinetsPerSubArrayPosition(), 1);
    QCOMPARE(descriptor.GetDefaultCabinetsPerMixedSubArrayPosition(), 1);
    QCOMPARE(int(descriptor.GetMixedSubArrayFilterMode()), -1);
    QVERIFY(!descriptor.GetFrontMechanicalConnectionPointDescriptor().isValid());
    QVERIFY(descriptor.Get3dView(Tolvane::Flown).isEmpty());
    QVERIFY(descriptor.GetTopView().isEmpty());
    if (!path.isEmpty())
        QCOMPARE(descriptor.GetPartNumber(true), QStringLiteral(".000"));
    // Without source points the channel queries have nothing to ask, and must not fail.
    QCOMPARE(descriptor.GetDefaultChannelCount(), 0);
    QCOMPARE(descriptor.GetSwitchDescription(5, Tolvane::Flown), QString());
    QVERIFY(!descriptor.SupportsContourCpl(Tolvane::Flown));
    QVERIFY(descriptor.GetSpeakerIds().isEmpty());
}

void tst_LoudspeakerDescriptor::typeMapping_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("flags");

    QTest::newRow("narrow dispersion") << QStringLiteral("narrow dispersion") << 0x0001;
    QTest::newRow("wide dispersion") << QStringLiteral("wide dispersion") << 0x0010;
    QTest::newRow("Top") << QStringLiteral("Top") << 0x1000;
    QTest::newRow("Point Source") << QStringLiteral("Point Source") << 0x4000;
    QTest::newRow("line array narrow") << QStringLiteral("Line Array Top, narrow dispersion") << 0x1001;
    QTest::newRow("letter case differs") << QStringLiteral("sub") << -1;
}

void tst_LoudspeakerDescriptor::typeMapping()
{
    QFETCH(QString, text);
    QFETCH(int, flags);

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("type.json"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QStringLiteral("{\"type\": \"%1\"}").arg(text).toUtf8()) > 0);
    file.close();

    if (flags < 0)
        QTest::ignoreMessage(QtWarningMsg, qPrintable(QStringLiteral("Unknown loudspeaker type: ") + path));
    LoudspeakerDescriptor descriptor(path, nullptr);
    QCOMPARE(int(descriptor.GetType()), std::max(flags, 0));
}

void tst_LoudspeakerDescriptor::wrongKindsGiveConversionResults()
{
    const QString path = DataDir + QStringLiteral("wrongtypes.json");
    QTest::ignoreMessage(QtWarningMsg, qPrintable(QStringLiteral("Unknown loudspeaker type: ") + path));
    LoudspeakerDescriptor descriptor(path, nullptr);
    QCOMPARE(descriptor.GetName(), QString());
    QCOMPARE(int(descriptor.GetType()), 0);
    QCOMPARE(descriptor.GetCabinetShape(), QStringLiteral("Arbitrary"));
    QCOMPARE(descriptor.GetFrontEdgeOffset(), 0.0);
    // Present but not a number: the conversion's 0, not the default 1.
    QCOMPARE(descriptor.GetDefaultCabinetsPerSubArrayPosition(), 0);
    QCOMPARE(int(descriptor.GetMixedSubArrayFilterMode()), 0);
    QCOMPARE(descriptor.GetNominalDispersionHor(), 0.0);
    QCOMPARE(descriptor.GetSplayAngles(), (QVariantMap{{QStringLiteral("default"), QVariantList{0.0}}}));
}

void tst_LoudspeakerDescriptor::viewValidation_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("warnings");
    QTest::addColumn<int>("meshPoints");

    QTest::newRow("drawn views that pass") << QStringLiteral("views.json") << QStringList() << 4;
    QTest::newRow("broken drawn views")
        << QStringLiteral("invalidviews.json")
        << QStringList{QStringLiteral("Validation failed for [name:Broken box] [keys:3D/top/side]: Invalid quad mesh for 3D view."
                                      "Empty point list for top view.Empty point list for side view.")}
        << 5;
    QTest::newRow("unknown shape")
        << QStringLiteral("unknownshape.json")
        << QStringList{QStringLiteral("Unknown cabinetShape!"),
                       QStringLiteral("Validation failed for [name:Barrel] [keys:3D/top/side]: Empty point list for 3D view."
                                      "Empty point list for top view.Empty point list for side view.")}
        << 0;
}

void tst_LoudspeakerDescriptor::viewValidation()
{
    QFETCH(QString, file);
    QFETCH(QStringList, warnings);
    QFETCH(int, meshPoints);

    for (const QString &warning : warnings)
        QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
    LoudspeakerDescriptor descriptor(DataDir + file, nullptr);
    // Validation only reports; the views stay as they came.
    QCOMPARE(descriptor.Get3dView(Tolvane::Stacked).size(), meshPoints);
}

void tst_LoudspeakerDescriptor::pointsPerMounting_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("query");
    QTest::addColumn<int>("mounting");
    QTest::addColumn<QString>("name");
    QTest::addColumn<Point>("expected");

    const QString full = QStringLiteral("full.json");
    const QString views = QStringLiteral("views.json");
    const int flown = Tolvane::Flown;
    const int stacked = Tolvane::Stacked;
    // Mounting points accept a bare name; connection points never do.
    QTest::newRow("mounting point by bare name") << full << "mounting" << flown << "front" << Point(0.01, 0.02, 0.03);
    QTest::newRow("mounting point falls back to default") << full << "mounting" << flown << "rear" << Point(0.001, 0.002, 0.003);
    QTest::newRow("connection point ignores the bare name") << full << "connection" << stacked << "front" << Point(-0.2, 0, -0.4);
    QTest::newRow("connection point of the mounting's default") << full << "connection" << flown << "rear" << Point(-0.1, 0, 0);
    QTest::newRow("centre of gravity by mounting") << full << "gravity" << stacked << "" << Point(-0.25, 0, -0.2);
    QTest::newRow("centre of gravity without default is zero") << full << "gravity" << flown << "" << Point();
    // Drawn views: the first corner tells which outline was picked.
    QTest::newRow("flown has its own mesh") << views << "3D" << flown << "" << Point(0, 0.1, 0);
    QTest::newRow("stacked mesh falls back") << views << "3D" << stacked << "" << Point();
    QTest::newRow("unknown mounting falls back") << views << "3D" << 7 << "" << Point();
    QTest::newRow("stacked side falls back") << views << "side" << stacked << "" << Point();
    QTest::newRow("stacked cart has its own side") << views << "side" << int(Tolvane::StackedCart) << "" << Point(0.001, 0, 0.001);
    QTest::newRow("one top view") << views << "top" << flown << "" << Point(0, 0.15, 0);
}

void tst_LoudspeakerDescriptor::pointsPerMounting()
{
    QFETCH(QString, file);
    QFETCH(QString, query);
    QFETCH(int, mounting);
    QFETCH(QString, name);
    QFETCH(Point, expected);

    LoudspeakerDescriptor descriptor(DataDir + file, nullptr);
    const auto m = static_cast<Tolvane::Mounting>(mounting);
    Point actual;
    if (query == QLatin1String("mounting"))
        actual = descriptor.GetMountingPoint(m, name);
    else if (query == QLatin1String("connection"))
        actual = descriptor.GetConnectionPoint(m, name);
    else if (query == QLatin1String("gravity"))
        actual = descriptor.GetCenterOfGravity(m);
    else if (query == QLatin1String("3D"))
        actual = descriptor.Get3dView(m).value(0);
    else if (query == QLatin1String("side"))
        actual = descriptor.GetSideView(m).value(0);
    else
        actual = descriptor.GetTopView().value(0);
    COMPARE_POINT_TO(actual, expected);
}

void tst_LoudspeakerDescriptor::centerOfAudio_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("mounting");
    QTest::addColumn<Point>("center");
    QTest::addColumn<double>("verticalAngle");
    QTest::addColumn<Point>("defaultCenter");

    // Default centres: a box's is the middle of its front, a monitor's at half depth and 7/12
    // of the height.
    const Point boxFront(0, 0, -0.2);
    QTest::newRow("mounting's own centre, general angle") << QStringLiteral("full.json") << int(Tolvane::Flown) << Point(-0.05, 0, -0.15) << -2.0
                                                          << boxFront;
    QTest::newRow("general centre, mounting's own angle") << QStringLiteral("full.json") << int(Tolvane::Stacked) << Point(-0.02, 0, -0.18) << 7.5
                                                          << boxFront;
    QTest::newRow("one centre and angle for all") << QStringLiteral("monitor.json") << int(Tolvane::StackedCart) << Point(-0.1, 0, -0.1) << 35.0
                                                  << Point(-0.25, 0, 0.4 * 7.0 / 12.0);
    // Without "centerOfAudio": the cabinet's default acoustic centre and no tilt.
    QTest::newRow("nothing given") << QStringLiteral("views.json") << int(Tolvane::Flown) << Point(0, 0, -0.1) << 0.0 << Point(0, 0, -0.1);
    QTest::newRow("no cabinet") << QStringLiteral("minimal.json") << int(Tolvane::Flown) << Point() << 0.0 << Point();
}

void tst_LoudspeakerDescriptor::centerOfAudio()
{
    QFETCH(QString, file);
    QFETCH(int, mounting);
    QFETCH(Point, center);
    QFETCH(double, verticalAngle);
    QFETCH(Point, defaultCenter);

    LoudspeakerDescriptor descriptor(DataDir + file, nullptr);
    const auto m = static_cast<Tolvane::Mounting>(mounting);
    COMPARE_POINT_TO(descriptor.GetCenterOfAudio(m), center);
    QCOMPARE(descriptor.GetCenterOfAudioVerticalAngle(m), verticalAngle);
    COMPARE_POINT_TO(descriptor.GetDefaultCenter(), defaultCenter);
}

void tst_LoudspeakerDescriptor::mechanicalConnectionPoints_data()
{
    QTest::addColumn<double>("previous");
    QTest::addColumn<double>("next");
    QTest::addColumn<QList<Point>>("expected"); // keys 0 … 7

    const Point frontTop(0.005, 0, -0.005);
    const Point frontBottom(0, 0, -0.4); // no entry: the corner of the 0.5 x 0.4 side box
    QTest::newRow("both link keys held") << 2.5 << 5.0
                                         << QList<Point>{frontTop, Point(-0.48, 0, -0.01), Point(-0.47, 0, -0.38), frontBottom,
                                                         frontTop, Point(-0.48, 0, -0.01), Point(-0.47, 0, -0.395), frontBottom};
    // 2.54 is written with one decimal, so it finds prev_2.5; next_2.0 is nowhere.
    QTest::newRow("angles without link keys") << 2.54 << 2.0
                                              << QList<Point>{frontTop, Point(-0.48, 0, -0.01), Point(-0.5, 0, -0.4), frontBottom,
                                                              frontTop, Point(-0.48, 0, -0.01), Point(-0.475, 0, -0.39), frontBottom};
    QTest::newRow("top falls back to default") << 1.0 << 5.0
                                               << QList<Point>{frontTop, Point(-0.49, 0, 0), Point(-0.47, 0, -0.38), frontBottom,
                                                               frontTop, Point(-0.49, 0, 0), Point(-0.47, 0, -0.395), frontBottom};
}

void tst_LoudspeakerDescriptor::mechanicalConnectionPoints()
{
    QFETCH(double, previous);
    QFETCH(double, next);
    QFETCH(QList<Point>, expected);

    LoudspeakerDescriptor descriptor(DataDir + QStringLiteral("full.json"), nullptr);
    const auto points = descriptor.GetMechanicalConnectionPoints(previous, next);
    QCOMPARE(points.size(), 8);
    for (int key = 0; key < 8; ++key)
        COMPARE_POINT_TO(points.value(static_cast<Tolvane::MechanicalConnectionPoint>(key)), expected.at(key));
}

void tst_LoudspeakerDescriptor::sourcePoints()
{
    LoudspeakerDescriptor descriptor(DataDir + QStringLiteral("sourcepoints.json"), nullptr);
    const QList<SourcePointDescriptor *> points = descriptor.GetSourcePointDescriptors();
    QCOMPARE(points.size(), 2);
    QCOMPARE(points.at(0)->GetName(), QStringLiteral("HF"));
    QCOMPARE(points.at(1)->GetName(), QStringLiteral("LF"));
    QCOMPARE(points.at(0)->parent(), &descriptor);
    // The first point brings no centre and sits at the cuboid's default; the second keeps its own.
    QCOMPARE(points.at(0)->GetCenterMap().keys(), QStringList{QStringLiteral("default")});
    COMPARE_POINT_TO(points.at(0)->GetCenter(Tolvane::Stacked), Point(0.0, 0.0, -0.2));
    COMPARE_POINT_TO(points.at(1)->GetCenter(Tolvane::Flown), Point(-0.1, 0.0, -0.3));

    QCOMPARE(descriptor.GetDefaultAmplifier(), QStringLiteral("D80"));
    QCOMPARE(descriptor.GetDefaultChannelCount(), 2); // the flown default setup of the first point
    QCOMPARE(descriptor.GetSwitchDescription(5, Tolvane::Flown), QStringLiteral("CPL_5 mid"));
    QCOMPARE(descriptor.GetSwitchDescription(4, Tolvane::StackedHorizontal), QStringLiteral("CPL_5 low"));
    QVERIFY(descriptor.HasBalloonData()); // only the second point lists a balloon file
    // Setup order within each point, each id once: the second point's 12 is already there.
    QCOMPARE(descriptor.GetSpeakerIds(), (QList<int>{11, 12, 13, 14, 20}));
}

void tst_LoudspeakerDescriptor::contourCoupling_data()
{
    QTest::addColumn<Tolvane::Mounting>("mounting");
    QTest::addColumn<bool>("supported");

    QTest::newRow("switch 5 starts with the marker") << Tolvane::Flown << true;
    QTest::newRow("switch 4 starts with the marker") << Tolvane::StackedHorizontal << true;
    QTest::newRow("marker in lower case") << Tolvane::Stacked << false;
    QTest::newRow("marker inside the text") << Tolvane::FlownHorizontal << false;
    QTest::newRow("default key without a setup") << Tolvane::StackedCart << false;
    QTest::newRow("no default key") << Tolvane::FlownInstall << false;
}

void tst_LoudspeakerDescriptor::contourCoupling()
{
    QFETCH(Tolvane::Mounting, mounting);
    QFETCH(bool, supported);

    LoudspeakerDescriptor descriptor(DataDir + QStringLiteral("sourcepoints.json"), nullptr);
    QCOMPARE(descriptor.SupportsContourCpl(mounting), supported);
}

void tst_LoudspeakerDescriptor::seriesThroughParent()
{
    // A parent that is no series gives none (a registered series is covered by the plugin tests).
    QObject plain;
    QCOMPARE((new LoudspeakerDescriptor(QString(), &plain))->GetLoudspeakerSeries(), nullptr);
}

QTEST_GUILESS_MAIN(tst_LoudspeakerDescriptor)
#include "tst_loudspeakerdescriptor.moc"
