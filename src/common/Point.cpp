// SPDX-License-Identifier: MIT
#include "Point.h"

#include "Units.h"

#include <QDataStream>
#include <QDebug>

#include <algorithm>
#include <cmath>

using Units::MillimetresPerMetre;

Point::~Point() = default;

bool Point::LessThanWithPrecision(const Point &other, double precision) const
{
    const double a[] = {m_x, m_y, m_z};
    const double b[] = {other.m_x, other.m_y, other.m_z};
    for (int i = 0; i < 3; ++i) {
        if (std::abs(a[i] - b[i]) > precision)
            return a[i] < b[i];
    }
    return false;
}

Point Point::fromVariant(const QVariant &value)
{
    switch (value.metaType().id()) {
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash: {
        const QVariantMap map = value.toMap();
        return Point(map.value(QStringLiteral("x")).toDouble() / MillimetresPerMetre,
                     map.value(QStringLiteral("y")).toDouble() / MillimetresPerMetre,
                     map.value(QStringLiteral("z")).toDouble() / MillimetresPerMetre,
                     map.value(QStringLiteral("name")).toString());
    }
    case QMetaType::QVariantList: {
        const QVariantList list = value.toList();
        const auto coordinate = [&list](int i) { return i < list.size() ? list.at(i).toDouble() / MillimetresPerMetre : 0.0; };
        return Point(coordinate(0), coordinate(1), coordinate(2));
    }
    default:
        return value.metaType() == QMetaType::fromType<Point>() ? value.value<Point>() : Point();
    }
}

QList<Point> Point::fromVariantList(const QList<QVariant> &values)
{
    QList<Point> points;
    points.reserve(values.size());
    for (const QVariant &value : values)
        points.append(fromVariant(value));
    return points;
}

QMap<QString, Point> Point::fromVariantMap(const QMap<QString, QVariant> &values)
{
    QMap<QString, Point> points;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        Point point = fromVariant(it.value());
        if (point.m_name.isEmpty())
            point.m_name = it.key();
        points.insert(it.key(), point);
    }
    return points;
}

QList<Point> Point::FromCoordinateVectors(const QList<double> &x, const QList<double> &y, const QList<double> &z)
{
    const qsizetype count = std::max({x.size(), y.size(), z.size()});
    QList<Point> points;
    points.reserve(count);
    for (qsizetype i = 0; i < count; ++i)
        points.append(Point(x.value(i, 0.0), y.value(i, 0.0), z.value(i, 0.0)));
    return points;
}

QDataStream &operator<<(QDataStream &stream, const Point &point)
{
    return stream << point.x() << point.y() << point.z() << point.GetName();
}

QDataStream &operator>>(QDataStream &stream, Point &point)
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    QString name;
    stream >> x >> y >> z >> name;
    point = Point(x, y, z, name);
    return stream;
}

QDebug operator<<(QDebug debug, const Point &point)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "Point(";
    if (!point.GetName().isEmpty())
        debug << point.GetName() << ", ";
    debug << point.x() << ", " << point.y() << ", " << point.z() << ')';
    return debug;
}
