// SPDX-License-Identifier: MIT
#include "Point.h"
#include "TestHelpers.h"

#include <QDataStream>

class tst_Point : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void fromVariant_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<Point>("expected");
        QTest::addColumn<QString>("name");
        QTest::newRow("object in millimetres") << QVariant(QVariantMap{{"x", 250}, {"y", -300.5}, {"z", 12}}) << Point(0.25, -0.3005, 0.012) << QString();
        QTest::newRow("object with a name") << QVariant(QVariantMap{{"x", 1000}, {"name", "pin"}}) << Point(1, 0, 0) << QStringLiteral("pin");
        QTest::newRow("numbers written as text") << QVariant(QVariantMap{{"x", "500"}, {"y", "abc"}}) << Point(0.5, 0, 0) << QString();
        QTest::newRow("list in millimetres") << QVariant(QVariantList{100, 200, -300}) << Point(0.1, 0.2, -0.3) << QString();
        QTest::newRow("short list") << QVariant(QVariantList{100}) << Point(0.1, 0, 0) << QString();
        QTest::newRow("stored point, no conversion") << QVariant::fromValue(Point(1, 2, 3, "kept")) << Point(1, 2, 3) << QStringLiteral("kept");
        QTest::newRow("number") << QVariant(5.0) << Point() << QString();
    }

    void fromVariant()
    {
        QFETCH(QVariant, value);
        QFETCH(Point, expected);
        QFETCH(QString, name);
        const Point point = Point::fromVariant(value);
        QCOMPARE(point, expected);
        QCOMPARE(point.GetName(), name);
    }

    void fromVariantMapNamesPointsAfterTheirKeys()
    {
        const QVariantMap map{{"front", QVariantMap{{"x", 10}}}, {"rear", QVariantMap{{"x", -20}, {"name", "own"}}}};
        const QMap<QString, Point> points = Point::fromVariantMap(map);
        QCOMPARE(points.keys(), QStringList({"front", "rear"}));
        QCOMPARE(points.value("front"), Point(0.01, 0, 0));
        QCOMPARE(points.value("front").GetName(), QStringLiteral("front"));
        QCOMPARE(points.value("rear").GetName(), QStringLiteral("own"));
    }

    void fromCoordinateVectorsPadsMissingCoordinates()
    {
        const QList<Point> points = Point::FromCoordinateVectors({0.02, 0.0}, {}, {0.1, 0.5, 0.7});
        QCOMPARE(points, QList<Point>({Point(0.02, 0, 0.1), Point(0, 0, 0.5), Point(0, 0, 0.7)}));
        QVERIFY(Point::FromCoordinateVectors({}, {}, {}).isEmpty());
    }

    void lessThanWithPrecision_data()
    {
        QTest::addColumn<Point>("a");
        QTest::addColumn<Point>("b");
        QTest::addColumn<bool>("aLess");
        QTest::addColumn<bool>("bLess");
        QTest::newRow("x decides") << Point(0, 5, 5) << Point(1, 0, 0) << true << false;
        QTest::newRow("x within precision, y decides") << Point(1.0005, 0, 9) << Point(1, 1, 0) << true << false;
        QTest::newRow("z decides last") << Point(1, 1, 0) << Point(1, 1, 1) << true << false;
        QTest::newRow("equal within precision") << Point(1, 2, 3) << Point(1.0009, 1.9991, 3.0009) << false << false;
        QTest::newRow("just outside precision") << Point(1, 2, 3) << Point(1.0011, 2, 3) << true << false;
    }

    void lessThanWithPrecision()
    {
        QFETCH(Point, a);
        QFETCH(Point, b);
        QFETCH(bool, aLess);
        QFETCH(bool, bLess);
        QCOMPARE(a.LessThanWithPrecision(b, 0.001), aLess);
        QCOMPARE(b.LessThanWithPrecision(a, 0.001), bLess);
    }

    void mirrorAndTranslateChainInPlace()
    {
        const Point top(-0.5, 0.25, 0.125, "P2");
        Point bottom = Point(top).mirrorZ().translateZ(-0.5);
        QCOMPARE(bottom, Point(-0.5, 0.25, -0.625));
        QCOMPARE(bottom.GetName(), QStringLiteral("P2"));
        bottom.mirrorY().translateX(0.25);
        QCOMPARE(bottom, Point(-0.25, -0.25, -0.625));
        QCOMPARE(top, Point(-0.5, 0.25, 0.125));
        QCOMPARE(top.projectionXZ(), Point(-0.5, 0, 0.125));
        QCOMPARE(Point(1, 2, 3, "n").projectionXY().GetName(), QStringLiteral("n"));
    }

    void dataStreamRoundTrip()
    {
        QByteArray bytes;
        {
            QDataStream out(&bytes, QIODevice::WriteOnly);
            out << Point(0.1, -0.2, 1e-9, QStringLiteral("P17")) << Point();
        }
        QDataStream in(bytes);
        Point named;
        Point plain(9, 9, 9, "x");
        in >> named >> plain;
        QCOMPARE(in.status(), QDataStream::Ok);
        QCOMPARE(named, Point(0.1, -0.2, 1e-9));
        QCOMPARE(named.GetName(), QStringLiteral("P17"));
        QCOMPARE(plain, Point());
        QVERIFY(plain.GetName().isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_Point)
#include "tst_point.moc"
