// SPDX-License-Identifier: MIT
#include "RiggingHardwareDescriptor.h"
#include "RiggingOutline_p.h"
#include "TestHelpers.h"

namespace {
using Views = QMap<QString, QList<Point>>;
using Box = RiggingOutline::Box;

QString dataFile(const char *name)
{
    return QStringLiteral(":/Resources/rigging/%1").arg(QLatin1String(name));
}

bool near(const Point &a, const Point &b, double tolerance = 1e-12)
{
    return std::abs(a.x() - b.x()) <= tolerance && std::abs(a.y() - b.y()) <= tolerance && std::abs(a.z() - b.z()) <= tolerance;
}

/// Newell's normal of a polygon: robust for quads with a repeated corner.
Point newellNormal(const QList<Point> &polygon)
{
    double nx = 0, ny = 0, nz = 0;
    for (qsizetype i = 0; i < polygon.size(); ++i) {
        const Point &a = polygon.at(i);
        const Point &b = polygon.at((i + 1) % polygon.size());
        nx += (a.y() - b.y()) * (a.z() + b.z());
        ny += (a.z() - b.z()) * (a.x() + b.x());
        nz += (a.x() - b.x()) * (a.y() + b.y());
    }
    return Point(nx, ny, nz);
}

double dot(const Point &a, const Point &b)
{
    return a.x() * b.x() + a.y() * b.y() + a.z() * b.z();
}

/// Every run of 4 corners spans a face of non-zero area whose corners lie in one plane.
void verifyQuadMesh(const QList<Point> &mesh)
{
    QVERIFY(!mesh.isEmpty());
    QCOMPARE(mesh.size() % 4, 0);
    for (qsizetype i = 0; i < mesh.size(); i += 4) {
        const QList<Point> quad = mesh.mid(i, 4);
        const Point n = newellNormal(quad);
        const double length = std::sqrt(dot(n, n));
        QVERIFY2(length > 1e-12, qPrintable(QStringLiteral("degenerate face %1").arg(i / 4)));
        for (const Point &corner : quad)
            QVERIFY2(std::abs(dot(n, corner - quad.first())) / length < 1e-12, qPrintable(QStringLiteral("face %1 not planar").arg(i / 4)));
    }
}

void compareOutline(const QList<Point> &actual, const QList<Point> &expected)
{
    QCOMPARE(actual.size(), expected.size());
    for (qsizetype i = 0; i < actual.size(); ++i) {
        if (!near(actual.at(i), expected.at(i), 1e-12))
            QCOMPARE(actual.at(i), expected.at(i));
    }
}

Views viewsOf(const char *file)
{
    RiggingHardwareDescriptor descriptor(dataFile(file));
    return descriptor.GetViews().value<Views>();
}
} // namespace

class tst_RiggingOutline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void boxFacesPointOutwards()
    {
        const Box box{-0.8, 0.1, -0.5, 0.25, -0.1, 0.02};
        const QList<Point> faces = RiggingOutline::BoxFaces(box);
        verifyQuadMesh(faces);
        QCOMPARE(faces.size(), 24);
        const Point centre(-0.35, -0.125, -0.04);
        for (qsizetype i = 0; i < faces.size(); i += 4) {
            const QList<Point> quad = faces.mid(i, 4);
            const Point faceCentre((quad[0].x() + quad[2].x()) / 2, (quad[0].y() + quad[2].y()) / 2, (quad[0].z() + quad[2].z()) / 2);
            QVERIFY2(dot(newellNormal(quad), faceCentre - centre) > 0, qPrintable(QStringLiteral("face %1 points inwards").arg(i / 4)));
        }
    }

    void frameBoxes_data()
    {
        QTest::addColumn<QVariantMap>("cabinet");
        QTest::addColumn<QList<double>>("expected"); // rear, front, right, left, bottom, top per box
        const QVariantMap size{{"width", 1000}, {"height", 100}, {"depth", 800}};
        QVariantMap edges = size;
        edges.insert("frontEdgeDepth", 60);
        edges.insert("rearEdgeDepth", 40);
        QTest::newRow("rear edge at the rear without an offset")
            << edges << QList<double>{-0.06, 0, -0.5, 0.5, -0.1, 0, -0.8, -0.76, -0.5, 0.5, -0.1, 0};
        QVariantMap placed = edges;
        placed.insert("rearEdgeXOffset", 500);
        placed.insert("rearEdgeWidth", 400);
        QTest::newRow("rear edge placed and narrowed")
            << placed << QList<double>{-0.06, 0, -0.5, 0.5, -0.1, 0, -0.54, -0.5, -0.2, 0.2, -0.1, 0};
        QVariantMap flanks = size;
        flanks.insert("sideFlankWidth", 50);
        flanks.insert("sideFlankXOffset", 100);
        flanks.insert("rearEdgeXOffset", 700);
        QTest::newRow("side flanks from their offset to the rear edge")
            << flanks << QList<double>{-0.7, -0.1, 0.45, 0.5, -0.1, 0, -0.7, -0.1, -0.5, -0.45, -0.1, 0};
        QVariantMap tail = size;
        tail.insert("rearTailDepth", 200);
        tail.insert("rearTailHeight", 40);
        QTest::newRow("tail behind the rear, own height, edge width")
            << tail << QList<double>{-0.8, -0.6, -0.5, 0.5, -0.04, 0};
        QVariantMap nothing = size;
        nothing.insert("frontEdgeWidth", 300);
        QTest::newRow("keys that describe no bar: whole frame") << nothing << QList<double>{-0.8, 0, -0.5, 0.5, -0.1, 0};
        QTest::newRow("no size, no bar: nothing") << QVariantMap{{"frontEdgeWidth", 300}} << QList<double>{};
    }

    void frameBoxes()
    {
        QFETCH(QVariantMap, cabinet);
        QFETCH(QList<double>, expected);
        const Size size(cabinet.value("width").toDouble() / 1000, cabinet.value("height").toDouble() / 1000, cabinet.value("depth").toDouble() / 1000);
        const QList<Box> boxes = RiggingOutline::FrameBoxes(cabinet, size);
        QCOMPARE(boxes.size() * 6, expected.size());
        for (qsizetype i = 0; i < boxes.size(); ++i) {
            const Box &b = boxes.at(i);
            const double actual[] = {b.rear, b.front, b.right, b.left, b.bottom, b.top};
            for (int k = 0; k < 6; ++k)
                QVERIFY2(std::abs(actual[k] - expected.at(i * 6 + k)) < 1e-12, qPrintable(QStringLiteral("box %1, value %2: %3").arg(i).arg(k).arg(actual[k])));
        }
    }

    void sideSilhouetteSplitsAtGaps()
    {
        const QList<Box> boxes{{-0.2, 0, -1, 1, -0.1, 0}, {-0.3, -0.1, -1, 1, -0.2, -0.05}, {-0.9, -0.5, -1, 1, -0.1, 0}};
        compareOutline(RiggingOutline::SideSilhouette(boxes),
                       {Point(0, 0, 0), Point(-0.2, 0, 0), Point(-0.2, 0, -0.05), Point(-0.3, 0, -0.05), Point(-0.3, 0, -0.2),
                        Point(-0.1, 0, -0.2), Point(-0.1, 0, -0.1), Point(0, 0, -0.1),
                        Point(-0.5, 0, 0), Point(-0.9, 0, 0), Point(-0.9, 0, -0.1), Point(-0.5, 0, -0.1)});
    }

    void ladderFrameViews()
    {
        const Views views = viewsOf("ladder.json");
        QCOMPARE(views.keys(), (QStringList{"3D", "3D_pullback", "side", "side_pullback", "top", "top_pullback"}));
        // front edge, two front flanks, two side flanks, rear edge, tail
        QCOMPARE(views.value("3D").size(), 7 * 24);
        QCOMPARE(views.value("top").size(), 7 * 4);
        verifyQuadMesh(views.value("3D"));
        verifyQuadMesh(views.value("3D_pullback"));
        for (const QString &key : {QStringLiteral("3D"), QStringLiteral("3D_pullback")}) {
            for (const Point &p : views.value(key)) {
                QVERIFY(p.x() >= -0.8 - 1e-12 && p.x() <= 0);
                QVERIFY(p.y() >= -0.5 && p.y() <= 0.5);
                QVERIFY(p.z() >= -0.1 - 1e-12 && p.z() <= 1e-12);
            }
        }
        for (const Point &p : views.value("top"))
            QCOMPARE(p.z(), 0.0);
        QCOMPARE(views.value("top_pullback"), views.value("top"));
        compareOutline(views.value("side"), {Point(0, 0, 0), Point(-0.8, 0, 0), Point(-0.8, 0, -0.04), Point(-0.6, 0, -0.04),
                                             Point(-0.6, 0, -0.1), Point(0, 0, -0.1)});
        // Upside down the tail hangs at the bottom; the outline still starts at the front top.
        compareOutline(views.value("side_pullback"), {Point(0, 0, 0), Point(-0.6, 0, 0), Point(-0.6, 0, -0.06), Point(-0.8, 0, -0.06),
                                                      Point(-0.8, 0, -0.1), Point(0, 0, -0.1)});
    }

    void loadBeamOutlines_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<double>("frontOffset");
        QTest::addColumn<QList<Point>>("side");
        // Plain beams lie on their front pin and reach `length` backwards.
        QTest::newRow("plain beam, front position") << "Plain_front" << 0.25
                                                    << QList<Point>{Point(0.25, 0, 0.12), Point(-1.75, 0, 0.12), Point(-1.75, 0, 0), Point(0.25, 0, 0)};
        QTest::newRow("plain beam, rear position") << "Plain_rear" << -0.15
                                                   << QList<Point>{Point(-0.15, 0, 0.12), Point(-2.15, 0, 0.12), Point(-2.15, 0, 0), Point(-0.15, 0, 0)};
        // Pin at x = -0.2; the profile lifts the beam by 0.15 and meets it 0.3 behind its front end.
        QTest::newRow("beam on a profile") << "Hung_mid" << 0.1
                                           << QList<Point>{Point(0.1, 0, 0.25), Point(-1.4, 0, 0.25), Point(-1.4, 0, 0.15), Point(-0.3, 0, 0.15),
                                                           Point(-0.2, 0, 0), Point(-0.1, 0, 0.15), Point(0.1, 0, 0.15)};
    }

    void loadBeamOutlines()
    {
        QFETCH(QString, key);
        QFETCH(double, frontOffset);
        QFETCH(QList<Point>, side);
        RiggingHardwareDescriptor descriptor(dataFile("loadbeams.json"));
        const Views views = descriptor.GetViews().value<Views>();
        const QStringList parts = key.split('_');
        QVERIFY(std::abs(descriptor.GetLoadBeamFrontOffset(parts.at(0), parts.at(1)) - frontOffset) < 1e-12);
        compareOutline(views.value("side_" + key), side);
        const QList<Point> mesh = views.value("3D_" + key);
        verifyQuadMesh(mesh);
        // The mesh spans exactly the side outline's extent; the top view is the beam's top face.
        double minX = 1e9, maxX = -1e9, minZ = 1e9, maxZ = -1e9;
        for (const Point &p : mesh) {
            minX = std::min(minX, p.x());
            maxX = std::max(maxX, p.x());
            minZ = std::min(minZ, p.z());
            maxZ = std::max(maxZ, p.z());
        }
        QVERIFY(std::abs(maxX - frontOffset) < 1e-12);
        QVERIFY(std::abs(maxZ - side.first().z()) < 1e-12);
        QVERIFY(std::abs(minX - side.at(1).x()) < 1e-12);
        const double lowestSide = std::min_element(side.cbegin(), side.cend(), [](const Point &a, const Point &b) { return a.z() < b.z(); })->z();
        QVERIFY(std::abs(minZ - lowestSide) < 1e-12);
        const QList<Point> top = views.value("top_" + key);
        QCOMPARE(top.size(), 4);
        for (const Point &p : top)
            QCOMPARE(p.z(), 0.0);
    }

    void loadBeamFrontOffsetOfUnknownKeysIsZero_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("position");
        QTest::newRow("unknown type") << "Other" << "front";
        QTest::newRow("unknown position") << "Plain" << "mid";
        QTest::newRow("empty") << "" << "";
    }

    void loadBeamFrontOffsetOfUnknownKeysIsZero()
    {
        QFETCH(QString, type);
        QFETCH(QString, position);
        RiggingHardwareDescriptor descriptor(dataFile("loadbeams.json"));
        QCOMPARE(descriptor.GetLoadBeamFrontOffset(type, position), 0.0);
    }
};

QTEST_GUILESS_MAIN(tst_RiggingOutline)
#include "tst_riggingoutline.moc"
