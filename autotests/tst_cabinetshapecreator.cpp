// SPDX-License-Identifier: MIT
#include "CabinetShapeCreator.h"
#include "ShapeMeshChecks.h"
#include "TestHelpers.h"

#include <QTest>

#include <cmath>

using namespace ShapeMeshChecks;

namespace {
constexpr double Tan10 = 0.17632698070846498;
constexpr double Degree = 0.017453292519943295;

QVariantMap cabinet(double width, double height, double depth, const QVariantMap &extra = {})
{
    QVariantMap map = extra;
    map.insert(QStringLiteral("width"), width);
    map.insert(QStringLiteral("height"), height);
    map.insert(QStringLiteral("depth"), depth);
    return map;
}

Point p(const char *name, double x, double y, double z)
{
    return Point(x, y, z, QLatin1String(name));
}
} // namespace

class tst_CabinetShapeCreator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void unknownShapes_data();
    void unknownShapes();
    void cuboidAndTrapezoidalShareOneGenerator();
    void angleSlices_data();
    void angleSlices();
    void arcCoordinates_data();
    void arcCoordinates();
    void bentGrill_data();
    void bentGrill();
    void arbitraryTakesFileViews();
    void boxShapes_data();
    void boxShapes();
};

void tst_CabinetShapeCreator::unknownShapes_data()
{
    // Every known name is drawn by boxShapes below or by tst_cabinetshapegenerators.
    QTest::addColumn<QString>("shape");
    QTest::newRow("lower-case cuboid") << QStringLiteral("cuboid");
    QTest::newRow("trailing blank") << QStringLiteral("Cuboid ");
    QTest::newRow("empty name") << QString();
}

void tst_CabinetShapeCreator::unknownShapes()
{
    QFETCH(QString, shape);
    QTest::ignoreMessage(QtWarningMsg, "Unknown cabinetShape!");
    QVERIFY(CabinetShapeCreator::CreateCabinetShapeData(cabinet(600, 400, 500), shape).isEmpty());
}

void tst_CabinetShapeCreator::cuboidAndTrapezoidalShareOneGenerator()
{
    // A "Cuboid" with a trapAngle tapers like a trapezoid.
    const QVariantMap parameters = cabinet(600, 400, 300, {{QStringLiteral("trapAngle"), 20}});
    const QList<Point> cuboid = CabinetShapeCreator::CreateCabinetShapeData(parameters, QStringLiteral("Cuboid")).value(QStringLiteral("3D"));
    QCOMPARE(cuboid, CabinetShapeCreator::CreateCabinetShapeData(parameters, QStringLiteral("Trapezoidal")).value(QStringLiteral("3D")));
    COMPARE_POINT(find(cuboid, QStringLiteral("P2")), -0.3, 0.3 - 0.3 * Tan10, 0.0);
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
}

void tst_CabinetShapeCreator::angleSlices()
{
    QFETCH(double, step);
    QFETCH(double, total);
    QFETCH(QList<double>, degrees);

    const QList<double> radians = CabinetShapeCreator::DivideTrapAngleByAngleStep(step, total);
    QCOMPARE(radians.size(), degrees.size());
    for (qsizetype i = 0; i < degrees.size(); ++i)
        QVERIFY(near(radians.at(i), degrees.at(i) * Degree));
}

void tst_CabinetShapeCreator::arcCoordinates_data()
{
    QTest::addColumn<double>("sections");
    QTest::addColumn<double>("radius");
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("end");
    QTest::addColumn<QList<double>>("degrees");

    QTest::newRow("quarter circle stops one step short") << 4.0 << 2.0 << 0.0 << 90.0 << QList<double>{0, 22.5, 45, 67.5};
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

    const QList<Point> points = CabinetShapeCreator::CalculateArcCoordinates(sections, radius, start, end);
    QCOMPARE(points.size(), degrees.size());
    for (qsizetype i = 0; i < degrees.size(); ++i)
        COMPARE_POINT(points.at(i), radius * std::cos(degrees.at(i) * Degree), 0.0, radius * std::sin(degrees.at(i) * Degree));
}

void tst_CabinetShapeCreator::bentGrill_data()
{
    QTest::addColumn<double>("sections");
    QTest::addColumn<double>("totalAngle");
    QTest::addColumn<QList<Point>>("expected");

    // Step 30 / 3 = 10 degrees: slices at 5 and 15 degrees. X is shifted to start at 0 and
    // scaled to 0.02; Z is only scaled (to 0.5), never shifted.
    QTest::newRow("two sections over 30 degrees") << 2.0 << 30.0 << QList<Point>{Point(0.02, 0, 0.16837196565873838), Point(0, 0, 0.5)};
    QTest::newRow("no angle: no slice, no points") << 2.0 << 0.0 << QList<Point>{};
}

void tst_CabinetShapeCreator::bentGrill()
{
    QFETCH(double, sections);
    QFETCH(double, totalAngle);
    QFETCH(QList<Point>, expected);

    const QList<Point> points = CabinetShapeCreator::CalculateBentGrillPointCoordinates(sections, 0.02, 0.5, totalAngle);
    QCOMPARE(points.size(), expected.size());
    for (qsizetype i = 0; i < points.size(); ++i)
        COMPARE_POINT_TO(points.at(i), expected.at(i));
}

void tst_CabinetShapeCreator::arbitraryTakesFileViews()
{
    const QVariantMap views{{QStringLiteral("top"), QVariantList{QVariantList{0, 0, 0}, QVariantList{-500, 300, 0}}},
                            {QStringLiteral("3D_flown"), QVariantList{QVariantMap{{QStringLiteral("x"), 100}, {QStringLiteral("y"), -200},
                                                                                 {QStringLiteral("z"), -300}, {QStringLiteral("name"), QStringLiteral("A")}}}},
                            {QStringLiteral("side"), QVariantList{}}};
    const auto result = CabinetShapeCreator::CreateCabinetShapeData({{QStringLiteral("width"), 600}, {QStringLiteral("views"), views}},
                                                                    QStringLiteral("Arbitrary"));
    QCOMPARE(result.keys(), (QStringList{QStringLiteral("3D_flown"), QStringLiteral("side"), QStringLiteral("top")}));
    QCOMPARE(result.value(QStringLiteral("top")), (QList<Point>{Point(0, 0, 0), Point(-0.5, 0.3, 0)}));
    QCOMPARE(result.value(QStringLiteral("3D_flown")), (QList<Point>{Point(0.1, -0.2, -0.3)}));
    QCOMPARE(result.value(QStringLiteral("3D_flown")).first().GetName(), QStringLiteral("A"));

    QVERIFY(CabinetShapeCreator::CreateCabinetShapeData({}, QStringLiteral("Arbitrary")).isEmpty());
}

void tst_CabinetShapeCreator::boxShapes_data()
{
    QTest::addColumn<QString>("shape");
    QTest::addColumn<QVariantMap>("parameters");
    QTest::addColumn<QList<Point>>("corners"); // named corners of the 3D view, worked out by hand
    QTest::addColumn<QList<Point>>("side");
    QTest::addColumn<QString>("top");
    QTest::addColumn<QString>("faces"); // corner names of the 3D view in order; empty: not checked
    QTest::addColumn<double>("volume"); // NaN: an open mesh

    QTest::newRow("cuboid") << QStringLiteral("Cuboid") << cabinet(600, 400, 300)
                            << QList<Point>{p("P1", 0, 0.3, 0), p("P2", -0.3, 0.3, 0), p("P3", -0.3, -0.3, 0), p("P4", 0, -0.3, 0),
                                            p("P5", 0, 0.3, -0.4), p("P6", -0.3, 0.3, -0.4), p("P7", -0.3, -0.3, -0.4), p("P8", 0, -0.3, -0.4)}
                            << QList<Point>{p("P1", 0, 0, 0), p("P2", -0.3, 0, 0), p("P6", -0.3, 0, -0.4), p("P5", 0, 0, -0.4)}
                            << QStringLiteral("P1 P2 P3 P4")
                            << QStringLiteral("P1 P2 P6 P5 P2 P3 P7 P6 P3 P4 P8 P7 P4 P1 P5 P8 P3 P2 P1 P4 P8 P5 P6 P7") << 0.6 * 0.4 * 0.3;

    // Each wall turns by half the trap angle.
    const double rearY = 0.3 - 0.3 * Tan10;
    QTest::newRow("trapezoidal") << QStringLiteral("Trapezoidal") << cabinet(600, 400, 300, {{QStringLiteral("trapAngle"), 20}})
                                 << QList<Point>{p("P2", -0.3, rearY, 0), p("P3", -0.3, -rearY, 0), p("P7", -0.3, -rearY, -0.4)}
                                 << QList<Point>{p("P1", 0, 0, 0), p("P2", -0.3, 0, 0), p("P6", -0.3, 0, -0.4), p("P5", 0, 0, -0.4)}
                                 << QStringLiteral("P1 P2 P3 P4") << QString() << 0.4 * 0.3 * (0.6 + 2 * rearY) / 2.0;

    // The taper is vertical: the rear top edge drops and the rear bottom edge rises.
    const double t = 0.3 * Tan10;
    QTest::newRow("trapezoidal lying") << QStringLiteral("Trapezoidal lying") << cabinet(600, 400, 300, {{QStringLiteral("trapAngle"), 20}})
                                       << QList<Point>{p("P2", -0.3, 0.3, -t), p("P3", -0.3, -0.3, -t), p("P6", -0.3, 0.3, t - 0.4),
                                                       p("P8", 0, -0.3, -0.4)}
                                       << QList<Point>{p("P1", 0, 0, 0), p("P2", -0.3, 0, -t), p("P6", -0.3, 0, t - 0.4), p("P5", 0, 0, -0.4)}
                                       << QStringLiteral("P1 P2 P3 P4") << QString() << 0.6 * 0.3 * (0.4 - t);

    // Whole bevel angles of 45 degrees: the right bevel starts 0.3 deep and takes 0.1 off the
    // rear half width, the left one starts 0.2 deep and takes 0.2 off.
    QTest::newRow("cuboid trapped")
        << QStringLiteral("Cuboid trapped")
        << cabinet(600, 400, 400, {{QStringLiteral("trapAngleRight"), 45}, {QStringLiteral("depthToTrapRight"), 300},
                                   {QStringLiteral("trapAngleLeft"), 45}, {QStringLiteral("depthToTrapLeft"), 200}})
        << QList<Point>{p("P2", -0.3, 0.3, 0), p("P3", -0.4, 0.2, 0), p("P4", -0.4, -0.1, 0), p("P5", -0.2, -0.3, 0), p("P6", 0, -0.3, 0),
                        p("P9", -0.4, 0.2, -0.4), p("P11", -0.2, -0.3, -0.4)}
        // The side outline runs to the rear corner, not to where the bevel starts.
        << QList<Point>{p("P1", 0, 0, 0), p("P3", -0.4, 0, 0), p("P9", -0.4, 0, -0.4), p("P7", 0, 0, -0.4)}
        << QStringLiteral("P5 P2 P1 P6 P4 P3 P2 P5") << QString() << 0.4 * (0.6 * 0.4 - 0.005 - 0.02);

    // The rear bottom edge is cut 50 mm forwards and 100 mm up. The top and the walls meet
    // with the chamfer corners in between, so the mesh is not closed edge to edge.
    const QString chamferedFaces = QStringLiteral("P1 P5 P6 P12 P12 P2 P26 P6 P6 P7 P37 P26 P26 P2 P3 P37 P37 P7 P34 P3 P34 P7 P8 P4 "
                                                  "P4 P3 P2 P1 P4 P8 P5 P1 P5 P6 P7 P8");
    QTest::newRow("cuboid chamfered")
        << QStringLiteral("Cuboid chamfered")
        << cabinet(600, 400, 300, {{QStringLiteral("chamferDepth"), 50}, {QStringLiteral("chamferHeight"), 100}})
        << QList<Point>{p("P12", -0.25, 0.3, 0), p("P34", -0.25, -0.3, 0), p("P6", -0.25, 0.3, -0.4), p("P7", -0.25, -0.3, -0.4),
                        p("P26", -0.3, 0.3, -0.3), p("P37", -0.3, -0.3, -0.3)}
        << QList<Point>{p("P1", 0, 0, 0), p("P2", -0.3, 0, 0), p("P26", -0.3, 0, -0.3), p("P6", -0.25, 0, -0.4), p("P5", 0, 0, -0.4)}
        << QStringLiteral("P1 P2 P3 P4") << chamferedFaces << qQNaN();
    QTest::newRow("no chamfer: the faces collapse but keep their count")
        << QStringLiteral("Cuboid chamfered") << cabinet(600, 400, 300)
        << QList<Point>{p("P12", -0.3, 0.3, 0), p("P26", -0.3, 0.3, -0.4), p("P6", -0.3, 0.3, -0.4)}
        << QList<Point>{p("P1", 0, 0, 0), p("P2", -0.3, 0, 0), p("P26", -0.3, 0, -0.4), p("P6", -0.3, 0, -0.4), p("P5", 0, 0, -0.4)}
        << QStringLiteral("P1 P2 P3 P4") << chamferedFaces << qQNaN();
}

void tst_CabinetShapeCreator::boxShapes()
{
    QFETCH(QString, shape);
    QFETCH(QVariantMap, parameters);
    QFETCH(QList<Point>, corners);
    QFETCH(QList<Point>, side);
    QFETCH(QString, top);
    QFETCH(QString, faces);
    QFETCH(double, volume);

    const auto result = CabinetShapeCreator::CreateCabinetShapeData(parameters, shape);
    const QList<Point> mesh = result.value(QStringLiteral("3D"));
    if (!faces.isEmpty())
        QCOMPARE(names(mesh), faces);
    QVERIFY(worstPlanarity(mesh) < 1e-12);
    if (!qIsNaN(volume)) {
        const QString fault = closureFault(mesh);
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
        // Corners run clockwise seen from outside: the signed volume is negative.
        QVERIFY2(near(signedVolume(mesh), -volume), qPrintable(QString::number(signedVolume(mesh), 'g', 17)));
    }
    for (const Point &corner : std::as_const(corners))
        COMPARE_POINT_TO(find(mesh, corner.GetName()), corner);

    const QList<Point> sideView = result.value(QStringLiteral("side"));
    QCOMPARE(names(sideView), names(side));
    for (qsizetype i = 0; i < side.size(); ++i)
        COMPARE_POINT_TO(sideView.at(i), side.at(i));

    // The top view is the named mesh corners seen from above.
    const QList<Point> topView = result.value(QStringLiteral("top"));
    QCOMPARE(names(topView), top);
    for (const Point &corner : topView)
        QCOMPARE(corner, find(mesh, corner.GetName()).projectionXY());
}

QTEST_GUILESS_MAIN(tst_CabinetShapeCreator)
#include "tst_cabinetshapecreator.moc"
