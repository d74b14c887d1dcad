// SPDX-License-Identifier: MIT
#pragma once

#include "Complex.h"
#include "Point.h"

#include <QRegularExpression>
#include <QTest>

#include <cmath>

// Readable QCOMPARE/QVERIFY failure output for the value types.
inline char *toString(const Complex &c)
{
    return QTest::toString(QStringLiteral("Complex(%1, %2)").arg(c.real(), 0, 'g', 17).arg(c.imag(), 0, 'g', 17));
}

inline char *toString(const Point &p)
{
    return QTest::toString(QStringLiteral("Point(%1, %2, %3, %4)").arg(p.GetName()).arg(p.x(), 0, 'g', 17).arg(p.y(), 0, 'g', 17).arg(p.z(), 0, 'g', 17));
}

/// Makes any warning that a test does not announce with QTest::ignoreMessage() a failure.
/// Call from init(): the setting is reset after every test function.
inline void failOnUnexpectedWarnings()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
}

/// |a - b| <= tolerance, component-wise.
inline bool nearlyEqual(const Complex &a, const Complex &b, double tolerance = 1e-12)
{
    return std::abs(a.real() - b.real()) <= tolerance && std::abs(a.imag() - b.imag()) <= tolerance;
}

#define LPSDK_COMPARE_COMPLEX(actual, expected, tolerance)                                                    \
    do {                                                                                                      \
        const Complex lpsdkActual_ = (actual);                                                                \
        const Complex lpsdkExpected_ = (expected);                                                            \
        if (!nearlyEqual(lpsdkActual_, lpsdkExpected_, (tolerance)))                                          \
            QCOMPARE(lpsdkActual_, lpsdkExpected_);                                                           \
    } while (false)
