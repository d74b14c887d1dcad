// SPDX-License-Identifier: MIT
#include "CabinetShapeArcArray_p.h"
#include "CabinetShapeBasic_p.h"
#include "CabinetShapeCreator.h"
#include "CabinetShapeCuboidChamfered_p.h"
#include "CabinetShapeCuboidTrapped_p.h"
#include "CabinetShapeLineArray_p.h"
#include "CabinetShapeMonitor_p.h"
#include "ShapeMeshChecks.h"
#include "TestHelpers.h"

#include <QTest>

#include <cmath>

using namespace ShapeMeshChecks;

namespace {
constexpr double Tan5 = 0.08748866352592401;
constexpr double Tan10 = 0.17632698070846498;
constexpr double Tolerance = 1e-12;

bool near(double a, double b, double tolerance = Tolerance)
{
    return std::abs(a - b) <= tolerance;
}

QVariantMap cabinet(double width, double height, double depth, const QVariantMap &extra = {})
{
    QVariantMap map = extra;
    map.insert(QStringLiteral("width"), width);
    map.insert(QStringLiteral("height"), height);
    map.insert(QStringLiteral("depth"), depth);
    return map;
}

Point find(const QList<Point> &points, const QString &name)
{
    for (const Point &p : points) {
        if (p.GetName() == name)
            return p;
    }
    return Point(qQNaN(), qQNaN(), qQNaN(), QStringLiteral("missing ") + name);
}

#define COMPARE_POINT(actual, ex, ey, ez)                                                                              \
    do {                                                                                                               \
        const Point actual_ = (actual);                                                                                \
        if (!near(actual_.x(), (ex)) || !near(actual_.y(), (ey)) || !near(actual_.z(), (ez)))                         \
            QCOMPARE(actual_, Point((ex), (ey), (ez), actual_.GetName()));                                             \
    } while (false)
} // namespace

class tst_CabinetShapeCreator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void dispatch_data();
    void dispatch();
    void cuboidAndTrapezoidalShareOneGenerator();

    void basicRecord();
    void pocketRecords_data();
    void pocketRecords();
    void lineArrayInsets();
    void trappedRecordUsesWholeAngles();
    void chamferedAndMonitorRecords();

    void angleSlices_data();
    void angleSlices();
    void normalisation();
    void arcCoordinates_data();
    void arcCoordinates();
    void bentGrill();

    void arbitraryTakesFileViews();

    void cuboid();
    void trapezoidal();
    void trapezoidalLying();
    void cuboidTrapped();
    void cuboidChamfered_data();
    void cuboidChamfered();
    void boxMeshesAreClosed_data();
    void boxMeshesAreClosed();
};

void tst_CabinetShapeCreator::dispatch_data()
{
    QTest::addColumn<QString>("shape");
    QTest::addColumn<bool>("known");

    for (const char *name : {"Cuboid", "Trapezoidal", "Trapezoidal lying", "Cuboid trapped", "Cuboid chamfered", "LineArray",
                             "LineArray standing", "ArcArray", "ArcArray standing", "Monitor"})
        QTest::newRow(name) << QString::fromLatin1(name) << true;
    QTest::newRow("lower-case cuboid is unknown") << QStringLiteral("cuboid") << false;
    QTest::newRow("trailing blank is unknown") << QStringLiteral("Cuboid ") << false;
    QTest::newRow("empty name is unknown") << QString() << false;
    QTest::newRow("spelling with a space is unknown") << QStringLiteral("Line Array") << false;
}

void tst_CabinetShapeCreator::dispatch()
{
    QFETCH(QString, shape);
    QFETCH(bool, known);

    QVariantMap parameters = cabinet(600, 400, 500);
    parameters.insert(QStringLiteral("grillArcSections"), 4);
    if (!known)
        QTest::ignoreMessage(QtWarningMsg, "Unknown cabinetShape!");
    const auto result = CabinetShapeCreator::CreateCabinetShapeData(parameters, shape);
    if (known) {
        QCOMPARE(result.keys(), (QStringList{QStringLiteral("3D"), QStringLiteral("side"), QStringLiteral("top")}));
        QVERIFY(!result.value(QStringLiteral("3D")).isEmpty());
        QCOMPARE(result.value(QStringLiteral("3D")).size() % 4, 0);
    } else {
        QVERIFY(result.isEmpty());
    }
}

void tst_CabinetShapeCreator::cuboidAndTrapezoidalShareOneGenerator()
{
    const QVariantMap parameters = cabinet(600, 400, 300, {{QStringLiteral("trapAngle"), 20}});
    const auto cuboid = CabinetShapeCreator::CreateCabinetShapeData(parameters, QStringLiteral("Cuboid"));
    const auto trapezoidal = CabinetShapeCreator::CreateCabinetShapeData(parameters, QStringLiteral("Trapezoidal"));
    QCOMPARE(cuboid.value(QStringLiteral("3D")), trapezoidal.value(QStringLiteral("3D")));
    QCOMPARE(names(cuboid.value(QStringLiteral("3D"))), names(trapezoidal.value(QStringLiteral("3D"))));
}

void tst_CabinetShapeCreator::basicRecord()
{
    const CabinetShapeBasic basic = CabinetShapeCreator::CalculateShapeDataBasic(cabinet(600, 350, 400, {{QStringLiteral("trapAngle"), 10}}));
    QCOMPARE(basic.width, 0.6);
    QCOMPARE(basic.height, 0.35);
    QCOMPARE(basic.depth, 0.4);
    QCOMPARE(basic.trapAngle, 10.0);
    QVERIFY(near(basic.trapInset, 0.4 * Tan5));

    // Missing and non-numeric values read as 0 without a word.
    const CabinetShapeBasic empty = CabinetShapeCreator::CalculateShapeDataBasic({{QStringLiteral("width"), QStringLiteral("wide")}});
    QCOMPARE(empty.width, 0.0);
    QCOMPARE(empty.depth, 0.0);
    QCOMPARE(empty.trapInset, 0.0);
}

void tst_CabinetShapeCreator::pocketRecords_data()
{
    QTest::addColumn<QVariant>("anglePocket");
    QTest::addColumn<double>("expectedInner");

    QTest::newRow("square walls keep the width") << QVariant(90) << 0.3;
    QTest::newRow("walls at 135 degrees narrow by twice the depth") << QVariant(135) << 0.2;
    QTest::newRow("walls at 45 degrees widen by twice the depth") << QVariant(45) << 0.4;
}

void tst_CabinetShapeCreator::pocketRecords()
{
    QFETCH(QVariant, anglePocket);
    QFETCH(double, expectedInner);

    const QVariantMap parameters = cabinet(600, 400, 500,
                                           {{QStringLiteral("trapAngle"), 20}, {QStringLiteral("depthPocket"), 50},
                                            {QStringLiteral("widthPocket"), 300}, {QStringLiteral("anglePocket"), anglePocket},
                                            {QStringLiteral("grillArcSections"), 6}, {QStringLiteral("grillFrontOffset"), 15}});
    const CabinetShapeBasic basic = CabinetShapeCreator::CalculateShapeDataBasic(parameters);
    const CabinetShapeArcArray arc = CabinetShapeCreator::CalculateShapeDataArcArray(parameters, basic);
    QCOMPARE(arc.width, 0.6);
    QCOMPARE(arc.trapAngle, 20.0);
    QCOMPARE(arc.depthPocket, 0.05);
    QCOMPARE(arc.widthPocket, 0.3);
    QVERIFY2(near(arc.widthPocketInner, expectedInner), qPrintable(QString::number(arc.widthPocketInner, 'g', 17)));
    QVERIFY(near(arc.trapInsetPocket, 0.45 * Tan10));
    QCOMPARE(arc.grillArcSections, 6);
    QCOMPARE(arc.grillFrontOffset, 0.015);

    const CabinetShapeLineArray line = CabinetShapeCreator::CalculateShapeDataLineArray(parameters, basic);
    QVERIFY(near(line.widthPocketInner, expectedInner));
}

void tst_CabinetShapeCreator::lineArrayInsets()
{
    const QVariantMap parameters = cabinet(1000, 300, 500,
                                           {{QStringLiteral("trapAngle"), 20}, {QStringLiteral("depthRigging"), 100},
                                            {QStringLiteral("depthTransition"), 50}, {QStringLiteral("widthReduction"), 40},
                                            {QStringLiteral("depthPocket"), 100}});
    const CabinetShapeLineArray line = CabinetShapeCreator::CalculateShapeDataLineArray(parameters, CabinetShapeCreator::CalculateShapeDataBasic(parameters));
    QCOMPARE(line.depthRigging, 0.1);
    QCOMPARE(line.depthTransition, 0.05);
    QCOMPARE(line.widthReduction, 0.04);
    QVERIFY(near(line.trapInsetRigging, 0.1 * Tan10));
    QVERIFY(near(line.trapInsetTransition, 0.15 * Tan10));
    QVERIFY(near(line.trapInsetPocket, 0.4 * Tan10));
    // Without an angle the pocket walls come out as computed: tan(-90 degrees) is huge.
    QVERIFY(line.widthPocketInner > 1e12);
}

void tst_CabinetShapeCreator::trappedRecordUsesWholeAngles()
{
    const QVariantMap parameters = cabinet(600, 400, 400,
                                           {{QStringLiteral("trapAngle"), 30}, {QStringLiteral("trapAngleRight"), 45},
                                            {QStringLiteral("depthToTrapRight"), 300}, {QStringLiteral("trapAngleLeft"), 45},
                                            {QStringLiteral("depthToTrapLeft"), 200}});
    const CabinetShapeCuboidTrapped trapped = CabinetShapeCreator::CalculateShapeDataCuboidTrapped(parameters, CabinetShapeCreator::CalculateShapeDataBasic(parameters));
    QCOMPARE(trapped.trapAngle, 30.0);
    QCOMPARE(trapped.trapAngleRight, 45.0);
    QCOMPARE(trapped.depthToTrapLeft, 0.2);
    // tan 45 = 1: the right bevel takes 0.1 off 0.3, the left one 0.2.
    QVERIFY(near(trapped.trapRightX, 0.2));
    QVERIFY(near(trapped.trapLeftX, -0.1));
}

void tst_CabinetShapeCreator::chamferedAndMonitorRecords()
{
    const QVariantMap parameters = cabinet(500, 300, 400,
                                           {{QStringLiteral("chamferDepth"), 80}, {QStringLiteral("chamferHeight"), 120},
                                            {QStringLiteral("grillArcSections"), 8}, {QStringLiteral("grillRadius"), 250},
                                            {QStringLiteral("grillStartAngle"), 10}, {QStringLiteral("grillEndAngle"), 80}});
    const CabinetShapeBasic basic = CabinetShapeCreator::CalculateShapeDataBasic(parameters);
    const CabinetShapeCuboidChamfered chamfered = CabinetShapeCreator::CalculateShapeDataCuboidChamfered(parameters, basic);
    QCOMPARE(chamfered.depth, 0.4);
    QCOMPARE(chamfered.chamferDepth, 0.08);
    QCOMPARE(chamfered.chamferHeight, 0.12);
    const CabinetShapeMonitor monitor = CabinetShapeCreator::CalculateShapeDataMonitor(parameters, basic);
    QCOMPARE(monitor.height, 0.3);
    QCOMPARE(monitor.grillArcSections, 8);
    QCOMPARE(monitor.grillRadius, 0.25);
    QCOMPARE(monitor.grillStartAngle, 10.0);
    QCOMPARE(monitor.grillEndAngle, 80.0);
}

void tst_CabinetShapeCreator::angleSlices_data()
{
    QTest::addColumn<double>("step");
    QTest::addColumn<double>("total");
    QTest::addColumn<QList<double>>("degrees");

    QTest::newRow("bound is inclusive") << 10.0 << 30.0 << QList<double>{5, 15};
    QTest::newRow("slice past the half angle is left out") << 10.0 << 20.0 << QList<double>{5};
    QTest::newRow("step wider than the angle gives nothing") << 40.0 << 30.0 << QList<double>{};
    QTest::newRow("zero step gives nothing") << 0.0 << 30.0 << QList<double>{};
    QTest::newRow("negative step gives nothing") << -5.0 << 30.0 << QList<double>{};
}

void tst_CabinetShapeCreator::angleSlices()
{
    QFETCH(double, step);
    QFETCH(double, total);
    QFETCH(QList<double>, degrees);

    const QList<double> radians = CabinetShapeCreator::DivideTrapAngleByAngleStep(step, total);
    QCOMPARE(radians.size(), degrees.size());
    for (qsizetype i = 0; i < degrees.size(); ++i)
        QVERIFY(near(radians.at(i), degrees.at(i) * 0.017453292519943295));
}

void tst_CabinetShapeCreator::normalisation()
{
    QCOMPARE(CabinetShapeCreator::NormalizeXValues({3.0, 1.0, 2.0}, 4.0), (QList<double>{4.0, 0.0, 2.0}));
    QCOMPARE(CabinetShapeCreator::NormalizeZValues({1.0, 2.0, 4.0}, 2.0), (QList<double>{0.5, 1.0, 2.0}));
    // Z is scaled only, never shifted.
    QCOMPARE(CabinetShapeCreator::NormalizeZValues({-1.0, 2.0}, 1.0), (QList<double>{-0.5, 1.0}));
    QVERIFY(CabinetShapeCreator::NormalizeXValues({}, 1.0).isEmpty());
    QVERIFY(CabinetShapeCreator::NormalizeZValues({}, 1.0).isEmpty());

    const QList<double> cosines = CabinetShapeCreator::CalculateXValues({0.0, 0.5235987755982988});
    const QList<double> sines = CabinetShapeCreator::CalculateZValues({0.0, 0.5235987755982988});
    QVERIFY(near(cosines.at(0), 1.0) && near(cosines.at(1), std::sqrt(3.0) / 2.0));
    QVERIFY(near(sines.at(0), 0.0) && near(sines.at(1), 0.5));
}

void tst_CabinetShapeCreator::arcCoordinates_data()
{
    QTest::addColumn<double>("sections");
    QTest::addColumn<double>("radius");
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("end");
    QTest::addColumn<QList<double>>("degrees");

    QTest::newRow("quarter circle stops one step short") << 4.0 << 1.0 << 0.0 << 90.0 << QList<double>{0, 22.5, 45, 67.5};
    QTest::newRow("fractional sections round up") << 2.5 << 1.0 << 0.0 << 90.0 << QList<double>{0, 36, 72};
    QTest::newRow("full circle from 270") << 2.0 << 1.0 << 270.0 << 360.0 << QList<double>{270, 315};
    QTest::newRow("equal angles give nothing") << 4.0 << 1.0 << 90.0 << 90.0 << QList<double>{};
    QTest::newRow("start at 360 gives nothing") << 4.0 << 1.0 << 360.0 << 400.0 << QList<double>{};
    QTest::newRow("end past 360 gives nothing") << 4.0 << 1.0 << 10.0 << 361.0 << QList<double>{};
    QTest::newRow("negative start gives nothing") << 4.0 << 1.0 << -10.0 << 90.0 << QList<double>{};
    QTest::newRow("zero radius gives nothing") << 4.0 << 0.0 << 0.0 << 90.0 << QList<double>{};
    QTest::newRow("zero sections give nothing") << 0.0 << 1.0 << 0.0 << 90.0 << QList<double>{};
}

void tst_CabinetShapeCreator::arcCoordinates()
{
    QFETCH(double, sections);
    QFETCH(double, radius);
    QFETCH(double, start);
    QFETCH(double, end);
    QFETCH(QList<double>, degrees);

    const QList<Point> points = CabinetShapeCreator::CalculateArcCoordinates(sections, radius * 2.0, start, end);
    QCOMPARE(points.size(), degrees.size());
    for (qsizetype i = 0; i < degrees.size(); ++i) {
        const double theta = degrees.at(i) * 0.017453292519943295;
        COMPARE_POINT(points.at(i), 2.0 * radius * std::cos(theta), 0.0, 2.0 * radius * std::sin(theta));
    }
}

void tst_CabinetShapeCreator::bentGrill()
{
    // Step 30 / 3 = 10 degrees: slices at 5 and 15 degrees.
    const QList<Point> points = CabinetShapeCreator::CalculateBentGrillPointCoordinates(2, 0.02, 0.5, 30);
    QCOMPARE(points.size(), 2);
    COMPARE_POINT(points.at(0), 0.02, 0.0, 0.16837196565873838);
    COMPARE_POINT(points.at(1), 0.0, 0.0, 0.5);
}

void tst_CabinetShapeCreator::arbitraryTakesFileViews()
{
    const QVariantMap parameters{
        {QStringLiteral("width"), 600},
        {QStringLiteral("views"),
         QVariantMap{{QStringLiteral("top"), QVariantList{QVariantList{0, 0, 0}, QVariantList{-500, 300, 0}}},
                     {QStringLiteral("3D_flown"), QVariantList{QVariantMap{{QStringLiteral("x"), 100}, {QStringLiteral("y"), -200},
                                                                          {QStringLiteral("z"), -300}, {QStringLiteral("name"), QStringLiteral("A")}}}},
                     {QStringLiteral("side"), QVariantList{}}}}};
    const auto result = CabinetShapeCreator::CreateCabinetShapeData(parameters, QStringLiteral("Arbitrary"));
    QCOMPARE(result.keys(), (QStringList{QStringLiteral("3D_flown"), QStringLiteral("side"), QStringLiteral("top")}));
    QCOMPARE(result.value(QStringLiteral("top")), (QList<Point>{Point(0, 0, 0), Point(-0.5, 0.3, 0)}));
    QCOMPARE(result.value(QStringLiteral("3D_flown")), (QList<Point>{Point(0.1, -0.2, -0.3)}));
    QCOMPARE(result.value(QStringLiteral("3D_flown")).first().GetName(), QStringLiteral("A"));
    QVERIFY(result.value(QStringLiteral("side")).isEmpty());

    QVERIFY(CabinetShapeCreator::CreateCabinetShapeData({}, QStringLiteral("Arbitrary")).isEmpty());
}

void tst_CabinetShapeCreator::cuboid()
{
    const auto result = CabinetShapeCreator::CreateCabinetShapeData(cabinet(600, 400, 300), QStringLiteral("Cuboid"));
    const QList<Point> mesh = result.value(QStringLiteral("3D"));
    QCOMPARE(mesh.size(), 24);
    QCOMPARE(names(mesh), QStringLiteral("P1 P2 P6 P5 P2 P3 P7 P6 P3 P4 P8 P7 P4 P1 P5 P8 P3 P2 P1 P4 P8 P5 P6 P7"));
    COMPARE_POINT(find(mesh, QStringLiteral("P1")), 0.0, 0.3, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P2")), -0.3, 0.3, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P3")), -0.3, -0.3, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P4")), 0.0, -0.3, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P5")), 0.0, 0.3, -0.4);
    COMPARE_POINT(find(mesh, QStringLiteral("P6")), -0.3, 0.3, -0.4);
    COMPARE_POINT(find(mesh, QStringLiteral("P7")), -0.3, -0.3, -0.4);
    COMPARE_POINT(find(mesh, QStringLiteral("P8")), 0.0, -0.3, -0.4);

    const QList<Point> top = result.value(QStringLiteral("top"));
    QCOMPARE(names(top), QStringLiteral("P1 P2 P3 P4"));
    COMPARE_POINT(top.at(2), -0.3, -0.3, 0.0);

    const QList<Point> side = result.value(QStringLiteral("side"));
    QCOMPARE(names(side), QStringLiteral("P1 P2 P6 P5"));
    COMPARE_POINT(side.at(0), 0.0, 0.0, 0.0);
    COMPARE_POINT(side.at(1), -0.3, 0.0, 0.0);
    COMPARE_POINT(side.at(2), -0.3, 0.0, -0.4);
    COMPARE_POINT(side.at(3), 0.0, 0.0, -0.4);
}

void tst_CabinetShapeCreator::trapezoidal()
{
    const auto result = CabinetShapeCreator::CreateCabinetShapeData(cabinet(600, 400, 300, {{QStringLiteral("trapAngle"), 20}}),
                                                                    QStringLiteral("Trapezoidal"));
    const QList<Point> mesh = result.value(QStringLiteral("3D"));
    const double rearY = 0.3 - 0.3 * Tan10;
    COMPARE_POINT(find(mesh, QStringLiteral("P2")), -0.3, rearY, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P3")), -0.3, -rearY, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P7")), -0.3, -rearY, -0.4);
    // A prism on a trapezoid: height times the mean of front and rear width times depth.
    QVERIFY(near(signedVolume(mesh), -0.4 * 0.3 * (0.6 + 2 * rearY) / 2.0));
    COMPARE_POINT(result.value(QStringLiteral("top")).at(1), -0.3, rearY, 0.0);
}

void tst_CabinetShapeCreator::trapezoidalLying()
{
    const auto result = CabinetShapeCreator::CreateCabinetShapeData(cabinet(600, 400, 300, {{QStringLiteral("trapAngle"), 20}}),
                                                                    QStringLiteral("Trapezoidal lying"));
    const QList<Point> mesh = result.value(QStringLiteral("3D"));
    const double t = 0.3 * Tan10;
    QCOMPARE(mesh.size(), 24);
    COMPARE_POINT(find(mesh, QStringLiteral("P2")), -0.3, 0.3, -t);
    COMPARE_POINT(find(mesh, QStringLiteral("P3")), -0.3, -0.3, -t);
    COMPARE_POINT(find(mesh, QStringLiteral("P6")), -0.3, 0.3, t - 0.4);
    COMPARE_POINT(find(mesh, QStringLiteral("P8")), 0.0, -0.3, -0.4);
    const QList<Point> side = result.value(QStringLiteral("side"));
    COMPARE_POINT(side.at(1), -0.3, 0.0, -t);
    COMPARE_POINT(side.at(2), -0.3, 0.0, t - 0.4);
    QVERIFY(near(signedVolume(mesh), -0.6 * 0.3 * (0.4 + (0.4 - 2 * t)) / 2.0));
}

void tst_CabinetShapeCreator::cuboidTrapped()
{
    const QVariantMap parameters = cabinet(600, 400, 400,
                                           {{QStringLiteral("trapAngleRight"), 45}, {QStringLiteral("depthToTrapRight"), 300},
                                            {QStringLiteral("trapAngleLeft"), 45}, {QStringLiteral("depthToTrapLeft"), 200}});
    const auto result = CabinetShapeCreator::CreateCabinetShapeData(parameters, QStringLiteral("Cuboid trapped"));
    const QList<Point> mesh = result.value(QStringLiteral("3D"));
    QCOMPARE(mesh.size(), 40);
    QCOMPARE(result.value(QStringLiteral("top")).size(), 8);
    QCOMPARE(names(mesh.mid(24, 8)), QStringLiteral("P5 P2 P1 P6 P4 P3 P2 P5"));
    COMPARE_POINT(find(mesh, QStringLiteral("P2")), -0.3, 0.3, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P3")), -0.4, 0.2, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P4")), -0.4, -0.1, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P5")), -0.2, -0.3, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P6")), 0.0, -0.3, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P9")), -0.4, 0.2, -0.4);
    COMPARE_POINT(find(mesh, QStringLiteral("P11")), -0.2, -0.3, -0.4);

    // The side outline runs to the rear corner, not to where the bevel starts.
    const QList<Point> side = result.value(QStringLiteral("side"));
    QCOMPARE(names(side), QStringLiteral("P1 P3 P9 P7"));
    COMPARE_POINT(side.at(1), -0.4, 0.0, 0.0);

    // Full box less the two triangles the bevels cut away (0.1 x 0.1 and 0.2 x 0.2, halved).
    QVERIFY(near(signedVolume(mesh), -0.4 * (0.6 * 0.4 - 0.005 - 0.02)));
}

void tst_CabinetShapeCreator::cuboidChamfered_data()
{
    QTest::addColumn<double>("chamferDepth");
    QTest::addColumn<double>("chamferHeight");

    QTest::newRow("chamfer 50 by 100") << 50.0 << 100.0;
    QTest::newRow("no chamfer keeps the face count") << 0.0 << 0.0;
}

void tst_CabinetShapeCreator::cuboidChamfered()
{
    QFETCH(double, chamferDepth);
    QFETCH(double, chamferHeight);

    const QVariantMap parameters = cabinet(600, 400, 300,
                                           {{QStringLiteral("chamferDepth"), chamferDepth}, {QStringLiteral("chamferHeight"), chamferHeight}});
    const auto result = CabinetShapeCreator::CreateCabinetShapeData(parameters, QStringLiteral("Cuboid chamfered"));
    const QList<Point> mesh = result.value(QStringLiteral("3D"));
    const double cd = chamferDepth / 1000.0;
    const double ch = chamferHeight / 1000.0;
    QCOMPARE(mesh.size(), 36);
    QCOMPARE(names(mesh.mid(0, 8)), QStringLiteral("P1 P5 P6 P12 P12 P2 P26 P6"));
    COMPARE_POINT(find(mesh, QStringLiteral("P12")), -0.3 + cd, 0.3, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P34")), -0.3 + cd, -0.3, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P6")), -0.3 + cd, 0.3, -0.4);
    COMPARE_POINT(find(mesh, QStringLiteral("P7")), -0.3 + cd, -0.3, -0.4);
    COMPARE_POINT(find(mesh, QStringLiteral("P26")), -0.3, 0.3, ch - 0.4);
    COMPARE_POINT(find(mesh, QStringLiteral("P37")), -0.3, -0.3, ch - 0.4);

    // The rear part of each wall is a four-cornered face that is no rectangle, but flat.
    QVERIFY(worstPlanarity(mesh) < 1e-12);

    const QList<Point> side = result.value(QStringLiteral("side"));
    QCOMPARE(names(side), QStringLiteral("P1 P2 P26 P6 P5"));
    COMPARE_POINT(side.at(2), -0.3, 0.0, ch - 0.4);
    COMPARE_POINT(side.at(3), -0.3 + cd, 0.0, -0.4);
}

void tst_CabinetShapeCreator::boxMeshesAreClosed_data()
{
    QTest::addColumn<QString>("shape");
    QTest::addColumn<QVariantMap>("parameters");
    QTest::addColumn<double>("volume");

    QTest::newRow("cuboid") << QStringLiteral("Cuboid") << cabinet(600, 400, 300) << 0.072;
    QTest::newRow("trapezoidal lying") << QStringLiteral("Trapezoidal lying") << cabinet(600, 400, 300, {{QStringLiteral("trapAngle"), 20}})
                                       << 0.6 * 0.3 * (0.4 - 0.3 * Tan10);
    QTest::newRow("trapped") << QStringLiteral("Cuboid trapped")
                             << cabinet(600, 400, 400,
                                        {{QStringLiteral("trapAngleRight"), 45}, {QStringLiteral("depthToTrapRight"), 300},
                                         {QStringLiteral("trapAngleLeft"), 45}, {QStringLiteral("depthToTrapLeft"), 200}})
                             << 0.4 * (0.24 - 0.025);
}

void tst_CabinetShapeCreator::boxMeshesAreClosed()
{
    QFETCH(QString, shape);
    QFETCH(QVariantMap, parameters);
    QFETCH(double, volume);

    const QList<Point> mesh = CabinetShapeCreator::CreateCabinetShapeData(parameters, shape).value(QStringLiteral("3D"));
    const QString fault = closureFault(mesh);
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
    QVERIFY(worstPlanarity(mesh) < 1e-12);
    QVERIFY2(near(signedVolume(mesh), -volume), qPrintable(QString::number(signedVolume(mesh), 'g', 17)));
}

QTEST_GUILESS_MAIN(tst_CabinetShapeCreator)
#include "tst_cabinetshapecreator.moc"
