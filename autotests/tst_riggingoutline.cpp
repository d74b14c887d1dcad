// SPDX-License-Identifier: MIT
#include "RiggingHardwareDescriptor.h"
#include "RiggingOutline_p.h"
#include "ShapeMeshChecks.h"
#include "TestHelpers.h"

namespace {
using Views = QMap<QString, QList<Point>>;

QString dataFile(const char *name)
{
    return QStringLiteral(":/Resources/rigging/%1").arg(QLatin1String(name));
}

/// Every run of 4 corners is a flat face of non-zero area (a repeated corner is allowed).
void verifyQuadMesh(const QList<Point> &mesh)
{
    QVERIFY(!mesh.isEmpty());
    QCOMPARE(mesh.size() % 4, 0);
    QVERIFY(ShapeMeshChecks::worstPlanarity(mesh) < 1e-12);
    for (qsizetype f = 0; f < mesh.size(); f += 4) {
        double nx = 0, ny = 0, nz = 0; // Newell's normal: twice the area
        for (int i = 0; i < 4; ++i) {
            const Point &a = mesh.at(f + i);
            const Point &b = mesh.at(f + (i + 1) % 4);
            nx += (a.y() - b.y()) * (a.z() + b.z());
            ny += (a.z() - b.z()) * (a.x() + b.x());
            nz += (a.x() - b.x()) * (a.y() + b.y());
        }
        QVERIFY2(std::sqrt(nx * nx + ny * ny + nz * nz) > 1e-12, qPrintable(QStringLiteral("degenerate face %1").arg(f / 4)));
    }
}

void compareOutline(const QList<Point> &actual, const QList<Point> &expected)
{
    QCOMPARE(actual.size(), expected.size());
    for (qsizetype i = 0; i < actual.size(); ++i)
        COMPARE_POINT_TO(actual.at(i), expected.at(i));
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
        const RiggingOutline::Box box{-0.8, 0.1, -0.5, 0.25, -0.1, 0.02};
        const QList<Point> faces = RiggingOutline::BoxFaces(box);
        QCOMPARE(faces.size(), 24);
        const QString fault = ShapeMeshChecks::closureFault(faces);
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
        QVERIFY(ShapeMeshChecks::worstPlanarity(faces) < 1e-12);
        // Counter-clockwise seen from outside (normals outwards): a positive volume.
        QVERIFY(ShapeMeshChecks::near(ShapeMeshChecks::signedVolume(faces), 0.9 * 0.75 * 0.12));
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
        const QList<RiggingOutline::Box> boxes = RiggingOutline::FrameBoxes(cabinet, size);
        QCOMPARE(boxes.size() * 6, expected.size());
        for (qsizetype i = 0; i < boxes.size(); ++i) {
            const RiggingOutline::Box &b = boxes.at(i);
            const double actual[] = {b.rear, b.front, b.right, b.left, b.bottom, b.top};
            for (int k = 0; k < 6; ++k)
                QVERIFY2(std::abs(actual[k] - expected.at(i * 6 + k)) < 1e-12, qPrintable(QStringLiteral("box %1, value %2: %3").arg(i).arg(k).arg(actual[k])));
        }
    }

    void sideSilhouetteSplitsAtGaps()
    {
        const QList<RiggingOutline::Box> boxes{{-0.2, 0, -1, 1, -0.1, 0}, {-0.3, -0.1, -1, 1, -0.2, -0.05}, {-0.9, -0.5, -1, 1, -0.1, 0}};
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
            const ShapeMeshChecks::Box box = ShapeMeshChecks::boundingBox(views.value(key));
            QVERIFY(box.minX >= -0.8 - 1e-12 && box.maxX <= 0 && box.minY >= -0.5 && box.maxY <= 0.5);
            QVERIFY(box.minZ >= -0.1 - 1e-12 && box.maxZ <= 1e-12);
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
        const ShapeMeshChecks::Box box = ShapeMeshChecks::boundingBox(mesh);
        const ShapeMeshChecks::Box sideBox = ShapeMeshChecks::boundingBox(side);
        COMPARE_POINT(Point(box.minX, box.maxX, box.minZ), sideBox.minX, sideBox.maxX, sideBox.minZ);
        QVERIFY(ShapeMeshChecks::near(box.maxZ, sideBox.maxZ));
        const QList<Point> top = views.value("top_" + key);
        QCOMPARE(top.size(), 4);
        for (const Point &p : top)
            QCOMPARE(p.z(), 0.0);
    }

    void frameOutlineSources_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<QStringList>("picked"); // ExtractViewKeys: 3D, side, top
        QTest::addColumn<QString>("warning");
        QTest::newRow("drawn by the file, flown view preferred")
            << "arbitrary.json" << QStringList{"3D", "3D_flown", "3D_pullback", "side", "side_pullback", "top", "top_pullback"}
            << QStringList{"3D_flown", "side", "top"} << QString();
        QTest::newRow("cabinet views win over the file's") << "arbitrary_cabinet.json" << QStringList{"side"}
                                                           << QStringList{"", "side", ""} << QString();
        QTest::newRow("cabinet shape with pullback and a load beam")
            << "cuboid.json"
            << QStringList{"3D", "3D_Beam_front", "3D_pullback", "side", "side_Beam_front", "side_pullback", "top", "top_Beam_front", "top_pullback"}
            << QStringList{"3D", "side", "top"} << QString();
        QTest::newRow("size only: a box") << "sizeonly.json" << QStringList{"3D", "side", "top"} << QStringList{"3D", "side", "top"} << QString();
        QTest::newRow("unknown shape: load beams only")
            << "unknownshape.json" << QStringList{"3D_Beam_front", "side_Beam_front", "top_Beam_front"} << QStringList{"", "", ""}
            << "Unknown cabinetShape!";
    }

    void frameOutlineSources()
    {
        QFETCH(QString, file);
        QFETCH(QStringList, keys);
        QFETCH(QStringList, picked);
        QFETCH(QString, warning);
        if (!warning.isEmpty())
            QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
        const Views views = viewsOf(qPrintable(file));
        QCOMPARE(views.keys(), keys);
        QString key3D, keySide, keyTop;
        RiggingHardwareDescriptor::ExtractViewKeys(views, key3D, keySide, keyTop);
        QCOMPARE((QStringList{key3D, keySide, keyTop}), picked);
    }

    void drawnFrameTurnsOverByTriangles()
    {
        const Views views = viewsOf("arbitrary.json");
        compareOutline(views.value("3D"), {Point(0, -0.3, 0), Point(-0.4, -0.3, 0), Point(-0.4, 0.3, 0), Point(0, -0.3, 0), Point(-0.4, 0.3, 0), Point(0, 0.3, 0)});
        // Upside down within the 50 mm height; each triangle keeps its winding.
        compareOutline(views.value("3D_pullback"), {Point(-0.4, 0.3, -0.05), Point(-0.4, -0.3, -0.05), Point(0, -0.3, -0.05),
                                                    Point(0, 0.3, -0.05), Point(-0.4, 0.3, -0.05), Point(0, -0.3, -0.05)});
        compareOutline(views.value("side_pullback"), views.value("side"));
        QCOMPARE(views.value("top_pullback"), views.value("top"));
    }

    void boxFrameTurnedOverIsTheSameBox()
    {
        const Views views = viewsOf("cuboid.json");
        const QList<Point> mesh = views.value("3D");
        const QList<Point> flipped = views.value("3D_pullback");
        verifyQuadMesh(flipped);
        // A box is symmetric top to bottom: the turned faces are the original faces.
        const auto faceSet = [](const QList<Point> &faces) {
            QStringList set;
            for (qsizetype i = 0; i + 3 < faces.size(); i += 4) {
                QStringList corners;
                for (int k = 0; k < 4; ++k)
                    corners.append(ShapeMeshChecks::cornerKey(faces.at(i + k)));
                corners.sort();
                set.append(corners.join(QLatin1Char(';')));
            }
            set.sort();
            return set;
        };
        QCOMPARE(faceSet(flipped), faceSet(mesh));
        compareOutline(views.value("side_pullback"), views.value("side"));
    }
};

QTEST_GUILESS_MAIN(tst_RiggingOutline)
#include "tst_riggingoutline.moc"
