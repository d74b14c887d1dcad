// SPDX-License-Identifier: MIT
#pragma once

#include <QDebug>

/// Width, height and depth of a cabinet or frame, in metres.
/// A value type; any thread. Nothing is validated: negative sizes stay as given.
class Size
{
public:
    constexpr Size() = default;
    constexpr Size(double width, double height, double depth) : m_width(width), m_height(height), m_depth(depth) { }

    constexpr double width() const { return m_width; }
    constexpr double height() const { return m_height; }
    constexpr double depth() const { return m_depth; }
    constexpr void setWidth(double width) { m_width = width; }
    constexpr void setHeight(double height) { m_height = height; }
    constexpr void setDepth(double depth) { m_depth = depth; }

    friend constexpr bool operator==(const Size &a, const Size &b)
    {
        return a.m_width == b.m_width && a.m_height == b.m_height && a.m_depth == b.m_depth;
    }
    friend constexpr bool operator!=(const Size &a, const Size &b) { return !(a == b); }

    friend QDebug operator<<(QDebug debug, const Size &s)
    {
        QDebugStateSaver saver(debug);
        debug.nospace() << "Size(" << s.m_width << ", " << s.m_height << ", " << s.m_depth << ')';
        return debug;
    }

private:
    double m_width = 0.0;
    double m_height = 0.0;
    double m_depth = 0.0;
};

Q_DECLARE_TYPEINFO(Size, Q_PRIMITIVE_TYPE);
