// SPDX-License-Identifier: MIT
// Invariants of the line array, arc array and monitor outlines, through the public entry point.
#include "CabinetShapeCreator.h"
#include "ShapeMeshChecks.h"
#include "TestHelpers.h"

#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <cmath>

using namespace ShapeMeshChecks;

namespace {
constexpr double Tan5 = 0.08748866352592401;
constexpr double Tan6 = 0.10510423526567647;
constexpr double Tan10 = 0.17632698070846498;
constexpr double Sin10 = 0.17364817766693033;
constexpr double Sin70 = 0.9396926207859083;
constexpr double Cos10 = 0.984807753012208;
constexpr double Cos70 = 0.3420201433256688;

QVariantMap lineArray()
{
    return {{QStringLiteral("width"), 1200},       {QStringLiteral("height"), 400},          {QStringLiteral("depth"), 500},
            {QStringLiteral("trapAngle"), 10},     {QStringLiteral("depthRigging"), 100},    {QStringLiteral("depthTransition"), 60},
            {QStringLiteral("widthReduction"), 30}, {QStringLiteral("depthPocket"), 120},    {QStringLiteral("widthPocket"), 160},
            {QStringLiteral("anglePocket"), 100}};
}

QVariantMap arcArray()
{
    return {{QStringLiteral("width"), 1000},        {QStringLiteral("height"), 350},      {QStringLiteral("depth"), 450},
            {QStringLiteral("trapAngle"), 12},      {QStringLiteral("depthPocket"), 100}, {QStringLiteral("widthPocket"), 120},
            {QStringLiteral("anglePocket"), 90},    {QStringLiteral("grillArcSections"), 5}, {QStringLiteral("grillFrontOffset"), 20}};
}

QVariantMap monitor()
{
    return {{QStringLiteral("width"), 500},          {QStringLiteral("height"), 350},        {QStringLiteral("depth"), 450},
            {QStringLiteral("trapAngle"), 20},       {QStringLiteral("grillArcSections"), 6}, {QStringLiteral("grillRadius"), 300},
            {QStringLiteral("grillStartAngle"), 10}, {QStringLiteral("grillEndAngle"), 70}};
}

// Top views lie in z = 0: the summed shoelace areas of their quads.
double quadArea(const QList<Point> &quads)
{
    double area = 0.0;
    for (qsizetype f = 0; f + 3 < quads.size(); f += 4) {
        double twice = 0.0;
        for (int i = 0; i < 4; ++i)
            twice += quads.at(f + i).x() * quads.at(f + (i + 1) % 4).y() - quads.at(f + (i + 1) % 4).x() * quads.at(f + i).y();
        area += std::abs(twice) * 0.5;
    }
    return area;
}
} // namespace

class tst_CabinetShapeGenerators : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void invariants_data();
    void invariants();
    void corners_data();
    void corners();
    void monitorGrillFollowsTheArc();
    void hostileParameters_data();
    void hostileParameters();
};

void tst_CabinetShapeGenerators::invariants_data()
{
    QTest::addColumn<QString>("shape");
    QTest::addColumn<QVariantMap>("parameters");
    QTest::addColumn<int>("meshPoints");
    QTest::addColumn<int>("cornerCount"); // named P1 … Pn
    QTest::addColumn<QString>("side");
    QTest::addColumn<double>("topArea"); // NaN: not checked

    // Lying cabinets are seen from above as their full width times depth, each spot covered once.
    // Line arrays: 12 walls and 5 quads on each end.
    QTest::newRow("line array") << QStringLiteral("LineArray") << lineArray() << 4 * 22 << 24
                                << QStringLiteral("P1 P2 P3 P4 P5 P6 P7 P8 P9 P10 P11 P12") << 1.2 * 0.5;
    QTest::newRow("line array standing") << QStringLiteral("LineArray standing") << lineArray() << 4 * 22 << 24
                                         << QStringLiteral("P1 P4 P16 P13") << qQNaN();
    // Five sections give three grill points per half: 14 walls, 6 quads per end.
    QTest::newRow("arc array") << QStringLiteral("ArcArray") << arcArray() << 4 * 26 << 24
                               << QStringLiteral("P1 P2 P3 P4 P5 P6 P7 P8 P9 P10 G1 P11 P12 G2") << 1.0 * 0.45;
    QTest::newRow("arc array standing") << QStringLiteral("ArcArray standing") << arcArray() << 4 * 26 << 24
                                        << QStringLiteral("P12 P3 P15 P24") << qQNaN();
    // Six arc sections: 16 walls, 7 quads per end. The footprint narrows to the rear by
    // depth * tan(10 degrees) per side.
    const double monitorFootprint = 0.45 * (0.5 - 0.45 * Tan10);
    QTest::newRow("monitor") << QStringLiteral("Monitor") << monitor() << 4 * 30 << 12 << QStringLiteral("P2 P3 P4 P6 P1 G1 G2 G3 G4 G5")
                             << monitorFootprint;
    QVariantMap flatMonitor = monitor();
    flatMonitor.insert(QStringLiteral("grillEndAngle"), 120);
    // An arc past 90 degrees gives a straight baffle: 6 walls, 2 quads per end.
    QTest::newRow("monitor with straight baffle") << QStringLiteral("Monitor") << flatMonitor << 4 * 10 << 12
                                                  << QStringLiteral("P2 P3 P4 P6 P1") << monitorFootprint;
}

void tst_CabinetShapeGenerators::invariants()
{
    QFETCH(QString, shape);
    QFETCH(QVariantMap, parameters);
    QFETCH(int, meshPoints);
    QFETCH(int, cornerCount);
    QFETCH(QString, side);
    QFETCH(double, topArea);

    const auto result = CabinetShapeCreator::CreateCabinetShapeData(parameters, shape);
    const QList<Point> mesh = result.value(QStringLiteral("3D"));
    QCOMPARE(mesh.size(), meshPoints);

    // Corners are exactly P1 … Pn; every other point is a grill or bottom point.
    QSet<QString> pNames;
    static const QRegularExpression cornerName(QStringLiteral("^P\\d+$"));
    static const QRegularExpression otherName(QStringLiteral("^[GB]\\d+$"));
    for (const Point &p : mesh) {
        if (cornerName.match(p.GetName()).hasMatch())
            pNames.insert(p.GetName());
        else
            QVERIFY2(otherName.match(p.GetName()).hasMatch(), qPrintable(p.GetName()));
    }
    QSet<QString> expectedNames;
    for (int i = 1; i <= cornerCount; ++i)
        expectedNames.insert(QStringLiteral("P%1").arg(i));
    QCOMPARE(pNames, expectedNames);

    const QString fault = closureFault(mesh);
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
    QVERIFY(worstPlanarity(mesh) < 1e-12);
    QVERIFY(signedVolume(mesh) < 0.0); // wound like the box shapes

    const double w = parameters.value(QStringLiteral("width")).toDouble() / 1000.0;
    const double h = parameters.value(QStringLiteral("height")).toDouble() / 1000.0;
    const double d = parameters.value(QStringLiteral("depth")).toDouble() / 1000.0;
    const Box box = boundingBox(mesh);
    QVERIFY(near(box.minX, -d) && near(box.maxX, 0.0));
    QVERIFY(near(box.minY, -w / 2) && near(box.maxY, w / 2));
    QVERIFY(near(box.minZ, -h) && near(box.maxZ, 0.0));

    QSet<QString> corners;
    for (const Point &p : mesh)
        corners.insert(cornerKey(p));
    for (const Point &p : mesh)
        QVERIFY2(corners.contains(cornerKey(Point(p).mirrorY())), qPrintable(p.GetName() + QLatin1String(" has no mirror image")));

    const QList<Point> top = result.value(QStringLiteral("top"));
    QVERIFY(!top.isEmpty());
    QCOMPARE(top.size() % 4, 0);
    for (const Point &p : top)
        QCOMPARE(p.z(), 0.0);
    if (!qIsNaN(topArea))
        QVERIFY2(near(quadArea(top), topArea), qPrintable(QString::number(quadArea(top), 'g', 17)));
    const QList<Point> sideView = result.value(QStringLiteral("side"));
    for (const Point &p : sideView)
        QCOMPARE(p.y(), 0.0);
    QCOMPARE(names(sideView), side);
}

void tst_CabinetShapeGenerators::corners_data()
{
    QTest::addColumn<QString>("shape");
    QTest::addColumn<QVariantMap>("parameters");
    QTest::addColumn<Point>("expected"); // named

    const auto row = [](const char *tag, const char *shape, const QVariantMap &parameters, const char *name, double x, double y, double z) {
        QTest::newRow(tag) << QString::fromLatin1(shape) << parameters << Point(x, y, z, QLatin1String(name));
    };

    // Line array: 0.4 high (half 0.2) lying, 1.2 wide (half 0.6) standing; half the 10 degree
    // splay per wall; the pocket walls at 100 degrees narrow its bottom.
    const double tR = 0.1 * Tan5;
    const double tT = 0.16 * Tan5;
    const double t = 0.5 * Tan5;
    const double innerHalf = (0.16 - 2 * Tan10 * 0.12) / 2;
    row("line array: rigging section tapers", "LineArray", lineArray(), "P2", -0.1, 0.6, -tR);
    row("line array: transition steps in by the width reduction", "LineArray", lineArray(), "P3", -0.16, 0.6, -tT - 0.03);
    row("line array: rear corner", "LineArray", lineArray(), "P4", -0.5, 0.6, -t - 0.03);
    row("line array: pocket opening", "LineArray", lineArray(), "P5", -0.5, 0.6, -0.2 + 0.08);
    row("line array: pocket bottom", "LineArray", lineArray(), "P6", -0.38, 0.6, -0.2 + innerHalf);
    row("line array: lower half mirrors the upper", "LineArray", lineArray(), "P9", -0.5, 0.6, -0.4 + t + 0.03);
    row("line array standing: transition", "LineArray standing", lineArray(), "P3", -0.16, 0.6 - tT - 0.03, 0.0);
    row("line array standing: pocket bottom", "LineArray standing", lineArray(), "P6", -0.38, innerHalf, 0.0);
    row("line array standing: bottom rear corner", "LineArray standing", lineArray(), "P16", -0.5, 0.6 - t - 0.03, -0.4);

    // Arc array: five sections over 12 degrees give slices at 1, 3 and 5 degrees; the grill
    // spans half the height (0.175) and bulges 0.02 ahead of the front edges.
    const double sin1 = 0.01745240643728351;
    const double sin3 = 0.052335956242943835;
    const double sin5 = 0.08715574274765817;
    const double cos1 = 0.9998476951563913;
    const double cos3 = 0.9986295347545738;
    const double cos5 = 0.9961946980917455;
    const double tP = 0.35 * Tan6;
    row("arc array: front edge behind the grill", "ArcArray", arcArray(), "P1", -0.02, 0.5, 0.0);
    row("arc array: grill apex", "ArcArray", arcArray(), "P12", 0.0, 0.5, -0.175 + 0.175 * sin1 / sin5);
    row("arc array: grill point", "ArcArray", arcArray(), "G2", -0.02 + 0.02 * (cos3 - cos5) / (cos1 - cos5), 0.5, -0.175 + 0.175 * sin3 / sin5);
    row("arc array: wall kink at the pocket depth", "ArcArray", arcArray(), "P2", -0.35, 0.5, -tP);
    row("arc array: rear corner", "ArcArray", arcArray(), "P3", -0.45, 0.5, -0.45 * Tan6);
    row("arc array: pocket bottom", "ArcArray", arcArray(), "P5", -0.35, 0.5, -0.175 + 0.06);
    row("arc array: lower kink on the far end", "ArcArray", arcArray(), "P21", -0.35, -0.5, -0.35 + tP);
    row("arc array standing: front edge", "ArcArray standing", arcArray(), "P1", -0.02, 0.5, 0.0);
    row("arc array standing: grill apex at the bottom", "ArcArray standing", arcArray(), "P24", 0.0, 0.5 * sin1 / sin5, -0.35);
    row("arc array standing: kink at the bottom", "ArcArray standing", arcArray(), "P14", -0.35, 0.5 - tP, -0.35);

    // Monitor: the arc of radius 0.3 from 10 to 70 degrees is 0.3 (cos 10 - cos 70) deep and
    // 0.3 (sin 70 - sin 10) high; it starts on the front plane and ends on the top; the side
    // walls narrow by 0.45 tan 10 towards the rear.
    const double grillDepth = 0.3 * (Cos10 - Cos70);
    const double grillHeight = 0.3 * (Sin70 - Sin10);
    const double tM = 0.45 * Tan10;
    row("monitor: nose top", "Monitor", monitor(), "P1", 0.0, 0.25, -grillHeight);
    row("monitor: grill meets the top", "Monitor", monitor(), "P2", -grillDepth, 0.25 - tM * grillDepth / 0.45, 0.0);
    row("monitor: rear top", "Monitor", monitor(), "P3", -0.45, 0.25 - tM, 0.0);
    row("monitor: bottom below the grill end", "Monitor", monitor(), "P5", -grillDepth, 0.25 - tM * grillDepth / 0.45, -0.35);
    row("monitor: front bottom", "Monitor", monitor(), "P6", 0.0, 0.25, -0.35);
}

void tst_CabinetShapeGenerators::corners()
{
    QFETCH(QString, shape);
    QFETCH(QVariantMap, parameters);
    QFETCH(Point, expected);

    const QList<Point> mesh = CabinetShapeCreator::CreateCabinetShapeData(parameters, shape).value(QStringLiteral("3D"));
    COMPARE_POINT_TO(find(mesh, expected.GetName()), expected);
}

void tst_CabinetShapeGenerators::monitorGrillFollowsTheArc()
{
    const auto result = CabinetShapeCreator::CreateCabinetShapeData(monitor(), QStringLiteral("Monitor"));
    // Every grill point lies on the circle of radius 0.3 about the arc's centre.
    const double centreX = -0.3 * Cos10;
    const double centreZ = -0.3 * Sin70;
    for (const Point &p : result.value(QStringLiteral("3D"))) {
        if (p.GetName().startsWith(QLatin1Char('G')) || p.GetName() == QLatin1String("P1") || p.GetName() == QLatin1String("P2"))
            QVERIFY2(near(std::hypot(p.x() - centreX, p.z() - centreZ), 0.3), qPrintable(p.GetName()));
    }
    QCOMPARE(names(result.value(QStringLiteral("top"))), QStringLiteral("P17 P18 P19 P20"));
}

void tst_CabinetShapeGenerators::hostileParameters_data()
{
    QTest::addColumn<QString>("shape");
    QTest::addColumn<QVariantMap>("parameters");

    for (const char *shape : {"LineArray", "LineArray standing", "ArcArray", "ArcArray standing", "Monitor"}) {
        QTest::addRow("%s without parameters", shape) << QString::fromLatin1(shape) << QVariantMap();
        QTest::addRow("%s with a huge section count", shape)
            << QString::fromLatin1(shape) << QVariantMap{{QStringLiteral("width"), 500}, {QStringLiteral("height"), 300},
                                                          {QStringLiteral("depth"), 400}, {QStringLiteral("grillArcSections"), 2000000000},
                                                          {QStringLiteral("grillRadius"), 100}, {QStringLiteral("grillEndAngle"), 45},
                                                          {QStringLiteral("trapAngle"), 8}};
        QTest::addRow("%s with a negative splay and text values", shape)
            << QString::fromLatin1(shape) << QVariantMap{{QStringLiteral("width"), QStringLiteral("abc")}, {QStringLiteral("height"), 300},
                                                          {QStringLiteral("depth"), 400}, {QStringLiteral("trapAngle"), -30},
                                                          {QStringLiteral("grillArcSections"), -3}};
    }
}

void tst_CabinetShapeGenerators::hostileParameters()
{
    QFETCH(QString, shape);
    QFETCH(QVariantMap, parameters);

    const auto result = CabinetShapeCreator::CreateCabinetShapeData(parameters, shape);
    const QList<Point> mesh = result.value(QStringLiteral("3D"));
    QVERIFY(!mesh.isEmpty());
    QCOMPARE(mesh.size() % 4, 0);
    QVERIFY(mesh.size() < 4 * 400);
    for (const QString &view : result.keys()) {
        for (const Point &p : result.value(view))
            QVERIFY2(std::isfinite(p.x()) && std::isfinite(p.y()) && std::isfinite(p.z()), qPrintable(view + QLatin1Char(' ') + p.GetName()));
    }
}

QTEST_GUILESS_MAIN(tst_CabinetShapeGenerators)
#include "tst_cabinetshapegenerators.moc"
