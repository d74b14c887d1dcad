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

bool near(double a, double b, double tolerance = 1e-12)
{
    return std::abs(a - b) <= tolerance;
}

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

Point find(const QList<Point> &points, const QString &name)
{
    for (const Point &p : points) {
        if (p.GetName() == name)
            return p;
    }
    return Point(qQNaN(), qQNaN(), qQNaN(), QStringLiteral("missing ") + name);
}

double quadArea(const QList<Point> &quads)
{
    // Top views lie in z = 0: the shoelace of each quad.
    double area = 0.0;
    for (qsizetype f = 0; f + 3 < quads.size(); f += 4) {
        double twice = 0.0;
        for (int i = 0; i < 4; ++i) {
            const Point &a = quads.at(f + i);
            const Point &b = quads.at(f + (i + 1) % 4);
            twice += a.x() * b.y() - b.x() * a.y();
        }
        area += std::abs(twice) * 0.5;
    }
    return area;
}

QStringList cornerNames(int first, int last)
{
    QStringList names;
    for (int i = first; i <= last; ++i)
        names.append(QStringLiteral("P%1").arg(i));
    return names;
}

#define COMPARE_POINT(actual, ex, ey, ez)                                                                              \
    do {                                                                                                               \
        const Point actual_ = (actual);                                                                                \
        if (!near(actual_.x(), (ex)) || !near(actual_.y(), (ey)) || !near(actual_.z(), (ez)))                         \
            QCOMPARE(actual_, Point((ex), (ey), (ez), actual_.GetName()));                                             \
    } while (false)
} // namespace

class tst_CabinetShapeGenerators : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void invariants_data();
    void invariants();
    void lyingTopCoversTheFootprint_data();
    void lyingTopCoversTheFootprint();
    void lineArrayCorners();
    void arcArrayCorners();
    void monitorCorners();
    void hostileParameters_data();
    void hostileParameters();
};

void tst_CabinetShapeGenerators::invariants_data()
{
    QTest::addColumn<QString>("shape");
    QTest::addColumn<QVariantMap>("parameters");
    QTest::addColumn<int>("meshPoints");
    QTest::addColumn<QStringList>("meshNames");
    QTest::addColumn<QString>("sideStart");

    const QStringList all24 = cornerNames(1, 24);
    // 12 walls and 5 quads on each end.
    QTest::newRow("line array") << QStringLiteral("LineArray") << lineArray() << 4 * 22 << all24
                                << QStringLiteral("P1 P2 P3 P4 P5 P6 P7 P8 P9 P10 P11 P12");
    QTest::newRow("line array standing") << QStringLiteral("LineArray standing") << lineArray() << 4 * 22 << all24 << QStringLiteral("P1 P4 P16 P13");
    // Five sections give three grill points per half: 14 walls, 6 quads per end.
    QTest::newRow("arc array") << QStringLiteral("ArcArray") << arcArray() << 4 * 26 << all24
                               << QStringLiteral("P1 P2 P3 P4 P5 P6 P7 P8 P9 P10 G1 P11 P12 G2");
    QTest::newRow("arc array standing") << QStringLiteral("ArcArray standing") << arcArray() << 4 * 26 << all24
                                        << QStringLiteral("P12 P3 P15 P24");
    // Six arc sections: 16 walls, 7 quads per end.
    QTest::newRow("monitor") << QStringLiteral("Monitor") << monitor() << 4 * 30 << cornerNames(1, 12)
                             << QStringLiteral("P2 P3 P4 P6 P1 G1 G2 G3 G4 G5");
    QVariantMap flatMonitor = monitor();
    flatMonitor.insert(QStringLiteral("grillEndAngle"), 120);
    // An arc past 90 degrees gives a straight baffle: 6 walls, 2 quads per end.
    QTest::newRow("monitor with straight baffle") << QStringLiteral("Monitor") << flatMonitor << 4 * 10 << cornerNames(1, 12)
                                                  << QStringLiteral("P2 P3 P4 P6 P1");
}

void tst_CabinetShapeGenerators::invariants()
{
    QFETCH(QString, shape);
    QFETCH(QVariantMap, parameters);
    QFETCH(int, meshPoints);
    QFETCH(QStringList, meshNames);
    QFETCH(QString, sideStart);

    const auto result = CabinetShapeCreator::CreateCabinetShapeData(parameters, shape);
    QCOMPARE(result.keys(), (QStringList{QStringLiteral("3D"), QStringLiteral("side"), QStringLiteral("top")}));
    const QList<Point> mesh = result.value(QStringLiteral("3D"));
    QCOMPARE(mesh.size(), meshPoints);

    // Corner names: exactly the expected P names; every other point is a grill or bottom point.
    QSet<QString> pNames;
    static const QRegularExpression cornerName(QStringLiteral("^P\\d+$"));
    static const QRegularExpression otherName(QStringLiteral("^[GB]\\d+$"));
    for (const Point &p : mesh) {
        if (cornerName.match(p.GetName()).hasMatch())
            pNames.insert(p.GetName());
        else
            QVERIFY2(otherName.match(p.GetName()).hasMatch(), qPrintable(p.GetName()));
    }
    QCOMPARE(pNames, QSet<QString>(meshNames.cbegin(), meshNames.cend()));

    const QString fault = closureFault(mesh);
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
    QVERIFY(worstPlanarity(mesh) < 1e-12);
    // Wound like the box shapes.
    QVERIFY(signedVolume(mesh) < 0.0);

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
    const QList<Point> side = result.value(QStringLiteral("side"));
    for (const Point &p : side)
        QCOMPARE(p.y(), 0.0);
    QVERIFY2(names(side).startsWith(sideStart), qPrintable(names(side)));
    QCOMPARE(names(side).size(), sideStart.size());
}

void tst_CabinetShapeGenerators::lyingTopCoversTheFootprint_data()
{
    QTest::addColumn<QString>("shape");
    QTest::addColumn<QVariantMap>("parameters");
    QTest::addColumn<double>("area");

    // Lying arrays are seen from above as their full width times depth, each spot covered once.
    QTest::newRow("line array") << QStringLiteral("LineArray") << lineArray() << 1.2 * 0.5;
    QTest::newRow("arc array") << QStringLiteral("ArcArray") << arcArray() << 1.0 * 0.45;
    // The monitor's footprint narrows to the rear by depth * tan(10 degrees) per side.
    QTest::newRow("monitor") << QStringLiteral("Monitor") << monitor() << 0.45 * (0.5 - 0.45 * Tan10);
}

void tst_CabinetShapeGenerators::lyingTopCoversTheFootprint()
{
    QFETCH(QString, shape);
    QFETCH(QVariantMap, parameters);
    QFETCH(double, area);

    const QList<Point> top = CabinetShapeCreator::CreateCabinetShapeData(parameters, shape).value(QStringLiteral("top"));
    QVERIFY2(near(quadArea(top), area), qPrintable(QString::number(quadArea(top), 'g', 17)));
}

void tst_CabinetShapeGenerators::lineArrayCorners()
{
    // Across the height 0.4 (half 0.2) lying, across the width 1.2 (half 0.6) standing.
    const double tR = 0.1 * Tan5;
    const double tT = 0.16 * Tan5;
    const double t = 0.5 * Tan5;
    const double innerHalf = (0.16 - 2 * Tan10 * 0.12) / 2; // pocket walls at 100 degrees

    const QList<Point> lying = CabinetShapeCreator::CreateCabinetShapeData(lineArray(), QStringLiteral("LineArray")).value(QStringLiteral("3D"));
    COMPARE_POINT(find(lying, QStringLiteral("P1")), 0.0, 0.6, 0.0);
    COMPARE_POINT(find(lying, QStringLiteral("P2")), -0.1, 0.6, -tR);
    COMPARE_POINT(find(lying, QStringLiteral("P3")), -0.16, 0.6, -tT - 0.03);
    COMPARE_POINT(find(lying, QStringLiteral("P4")), -0.5, 0.6, -t - 0.03);
    COMPARE_POINT(find(lying, QStringLiteral("P5")), -0.5, 0.6, -0.2 + 0.08);
    COMPARE_POINT(find(lying, QStringLiteral("P6")), -0.38, 0.6, -0.2 + innerHalf);
    COMPARE_POINT(find(lying, QStringLiteral("P9")), -0.5, 0.6, -0.4 + t + 0.03);
    COMPARE_POINT(find(lying, QStringLiteral("P12")), 0.0, 0.6, -0.4);
    COMPARE_POINT(find(lying, QStringLiteral("P15")), -0.16, -0.6, -tT - 0.03);

    const QList<Point> standing = CabinetShapeCreator::CreateCabinetShapeData(lineArray(), QStringLiteral("LineArray standing")).value(QStringLiteral("3D"));
    COMPARE_POINT(find(standing, QStringLiteral("P3")), -0.16, 0.6 - tT - 0.03, 0.0);
    COMPARE_POINT(find(standing, QStringLiteral("P6")), -0.38, innerHalf, 0.0);
    COMPARE_POINT(find(standing, QStringLiteral("P16")), -0.5, 0.6 - t - 0.03, -0.4);
    COMPARE_POINT(find(standing, QStringLiteral("P21")), -0.5, -(0.6 - t - 0.03), -0.4);
}

void tst_CabinetShapeGenerators::arcArrayCorners()
{
    // Five sections over 12 degrees: slices at 1, 3 and 5 degrees; the grill spans half the
    // height (0.175) and bulges 0.02 ahead of the front edges.
    const double sin1 = 0.01745240643728351;
    const double sin3 = 0.052335956242943835;
    const double sin5 = 0.08715574274765817;
    const double cos1 = 0.9998476951563913;
    const double cos3 = 0.9986295347545738;
    const double cos5 = 0.9961946980917455;
    const double tP = 0.35 * Tan6;

    const QList<Point> lying = CabinetShapeCreator::CreateCabinetShapeData(arcArray(), QStringLiteral("ArcArray")).value(QStringLiteral("3D"));
    COMPARE_POINT(find(lying, QStringLiteral("P1")), -0.02, 0.5, 0.0);
    COMPARE_POINT(find(lying, QStringLiteral("P12")), 0.0, 0.5, -0.175 + 0.175 * sin1 / sin5);
    COMPARE_POINT(find(lying, QStringLiteral("G2")), -0.02 + 0.02 * (cos3 - cos5) / (cos1 - cos5), 0.5, -0.175 + 0.175 * sin3 / sin5);
    COMPARE_POINT(find(lying, QStringLiteral("P2")), -0.35, 0.5, -tP);
    COMPARE_POINT(find(lying, QStringLiteral("P3")), -0.45, 0.5, -0.45 * Tan6);
    COMPARE_POINT(find(lying, QStringLiteral("P5")), -0.35, 0.5, -0.175 + 0.06);
    COMPARE_POINT(find(lying, QStringLiteral("P21")), -0.35, -0.5, -0.35 + tP);

    const QList<Point> standing = CabinetShapeCreator::CreateCabinetShapeData(arcArray(), QStringLiteral("ArcArray standing")).value(QStringLiteral("3D"));
    COMPARE_POINT(find(standing, QStringLiteral("P1")), -0.02, 0.5, 0.0);
    COMPARE_POINT(find(standing, QStringLiteral("P24")), 0.0, 0.5 * sin1 / sin5, -0.35);
    COMPARE_POINT(find(standing, QStringLiteral("P14")), -0.35, 0.5 - tP, -0.35);
}

void tst_CabinetShapeGenerators::monitorCorners()
{
    // The arc of radius 0.3 from 10 to 70 degrees is 0.3 (cos 10 - cos 70) deep and
    // 0.3 (sin 70 - sin 10) high; it starts on the front plane and ends on the top.
    const double grillDepth = 0.3 * (Cos10 - Cos70);
    const double grillHeight = 0.3 * (Sin70 - Sin10);
    const double t = 0.45 * Tan10;
    const auto result = CabinetShapeCreator::CreateCabinetShapeData(monitor(), QStringLiteral("Monitor"));
    const QList<Point> mesh = result.value(QStringLiteral("3D"));
    COMPARE_POINT(find(mesh, QStringLiteral("P1")), 0.0, 0.25, -grillHeight);
    COMPARE_POINT(find(mesh, QStringLiteral("P2")), -grillDepth, 0.25 - t * grillDepth / 0.45, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P3")), -0.45, 0.25 - t, 0.0);
    COMPARE_POINT(find(mesh, QStringLiteral("P4")), -0.45, 0.25 - t, -0.35);
    COMPARE_POINT(find(mesh, QStringLiteral("P5")), -grillDepth, 0.25 - t * grillDepth / 0.45, -0.35);
    COMPARE_POINT(find(mesh, QStringLiteral("P6")), 0.0, 0.25, -0.35);
    COMPARE_POINT(find(mesh, QStringLiteral("P12")), 0.0, -0.25, -0.35);
    // Every grill point lies on the circle of radius 0.3 about the arc's centre.
    const double centreX = -0.3 * Cos10;
    const double centreZ = -0.3 * Sin70;
    for (const Point &p : mesh) {
        if (p.GetName().startsWith(QLatin1Char('G')) || p.GetName() == QLatin1String("P1") || p.GetName() == QLatin1String("P2"))
            QVERIFY2(near(std::hypot(p.x() - centreX, p.z() - centreZ), 0.3), qPrintable(p.GetName()));
    }

    const QList<Point> top = result.value(QStringLiteral("top"));
    QCOMPARE(names(top), QStringLiteral("P17 P18 P19 P20"));
    COMPARE_POINT(top.at(1), -0.45, 0.25 - t, 0.0);
    COMPARE_POINT(top.at(3), 0.0, -0.25, 0.0);
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
