// SPDX-License-Identifier: MIT
#pragma once

#include "nvcommon_export.h"

#include <QList>
#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariant>

class QDataStream;
class QDebug;

/**
 * A point in 3-D space with an optional name; coordinates in metres.
 *
 * Frame used by the SDK: X points forwards (the cabinet front at x = 0), Y is lateral,
 * Z points up (the cabinet top at z = 0).
 *
 * Descriptor files write points in millimetres, as an object {"x": …, "y": …, "z": …}
 * (optionally with "name") or as a list [x, y, z]. The variant converters read those
 * forms and return metres; a QVariant that already holds a Point is returned unchanged.
 *
 * The mirror and translate operations change the point in place and return it, so that
 * they chain: `Point(p).mirrorZ().translateZ(-h)`.
 *
 * A value type: copy it freely and use it from any thread. A variant of any other form
 * converts to the origin; missing coordinates are 0.
 */
class NVCOMMON_EXPORT Point
{
public:
    Point() = default;
    Point(double x, double y, double z) : m_x(x), m_y(y), m_z(z) { }
    Point(double x, double y, double z, QString name) : m_x(x), m_y(y), m_z(z), m_name(std::move(name)) { }
    Point(const Point &) = default;
    Point(Point &&) noexcept = default;
    Point &operator=(const Point &) = default;
    Point &operator=(Point &&) noexcept = default;
    virtual ~Point();

    double x() const { return m_x; }
    double y() const { return m_y; }
    double z() const { return m_z; }
    virtual void setX(double x) { m_x = x; }
    virtual void setY(double y) { m_y = y; }
    virtual void setZ(double z) { m_z = z; }

    QString GetName() const { return m_name; }
    void SetName(QString name) { m_name = std::move(name); }

    /// Coordinates compare exactly; the name does not take part.
    bool operator==(const Point &other) const { return m_x == other.m_x && m_y == other.m_y && m_z == other.m_z; }
    bool operator!=(const Point &other) const { return !(*this == other); }

    /// Component-wise difference and sum; the result keeps this point's name.
    Point operator-(const Point &other) const { return Point(*this) -= other; }
    Point operator+(const Point &other) const { return Point(*this) += other; }
    Point &operator+=(const Point &other)
    {
        m_x += other.m_x;
        m_y += other.m_y;
        m_z += other.m_z;
        return *this;
    }
    Point &operator-=(const Point &other)
    {
        m_x -= other.m_x;
        m_y -= other.m_y;
        m_z -= other.m_z;
        return *this;
    }

    Point &translateX(double dx) { m_x += dx; return *this; }
    Point &translateY(double dy) { m_y += dy; return *this; }
    Point &translateZ(double dz) { m_z += dz; return *this; }
    /// Negates y (mirror in the X-Z plane).
    Point &mirrorY() { m_y = -m_y; return *this; }
    /// Negates z (mirror in the X-Y plane).
    Point &mirrorZ() { m_z = -m_z; return *this; }

    /// The point projected onto the X-Y plane (z = 0), name kept: the top view.
    Point projectionXY() const { return Point(m_x, m_y, 0.0, m_name); }
    /// The point projected onto the X-Z plane (y = 0), name kept: the side view.
    Point projectionXZ() const { return Point(m_x, 0.0, m_z, m_name); }

    /**
     * Lexicographic order on (x, y, z) in which coordinates closer than `precision`
     * count as equal; two points equal within precision are not less than each other.
     */
    bool LessThanWithPrecision(const Point &other, double precision) const;

    /// A point from a file form in millimetres (object or list), or a stored Point.
    static Point fromVariant(const QVariant &value);
    static QList<Point> fromVariantList(const QList<QVariant> &values);
    /// A map of named points; each point without a name of its own is named after its key.
    static QMap<QString, Point> fromVariantMap(const QMap<QString, QVariant> &values);
    /// Point k is (x[k], y[k], z[k]), a missing coordinate being 0; values are taken as metres.
    static QList<Point> FromCoordinateVectors(const QList<double> &x, const QList<double> &y, const QList<double> &z);

private:
    double m_x = 0.0;
    double m_y = 0.0;
    double m_z = 0.0;
    QString m_name;
};

Q_DECLARE_METATYPE(Point)

NVCOMMON_EXPORT QDataStream &operator<<(QDataStream &stream, const Point &point);
NVCOMMON_EXPORT QDataStream &operator>>(QDataStream &stream, Point &point);
NVCOMMON_EXPORT QDebug operator<<(QDebug debug, const Point &point);
