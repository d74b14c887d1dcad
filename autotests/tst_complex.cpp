// SPDX-License-Identifier: MIT
#include "Complex.h"
#include "TestHelpers.h"

#include <complex>

class tst_Complex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void arithmetic_data()
    {
        QTest::addColumn<Complex>("actual");
        QTest::addColumn<Complex>("expected");
        const Complex a(1, 2);
        const Complex b(3, -4);
        QTest::newRow("sum") << a + b << Complex(4, -2);
        QTest::newRow("difference") << a - b << Complex(-2, 6);
        QTest::newRow("product") << a * b << Complex(11, 2);
        QTest::newRow("quotient") << a / b << Complex(-0.2, 0.4);
        QTest::newRow("real minus complex") << 2.0 - a << Complex(1, -2);
        QTest::newRow("real over complex") << 1.0 / Complex(0, 2) << Complex(0, -0.5);
        QTest::newRow("complex times real") << a * 2.0 << Complex(2, 4);
        QTest::newRow("complex over real") << b / 2.0 << Complex(1.5, -2);
        QTest::newRow("polar, quarter turn") << Complex::fromPolar(2, M_PI / 2) << Complex(0, 2);
        QTest::newRow("polar, negative magnitude negates") << Complex::fromPolar(-2, 0) << Complex(-2, 0);
        QTest::newRow("from complex float") << Complex(std::complex<float>(0.5f, -0.25f)) << Complex(0.5, -0.25);
    }

    void arithmetic()
    {
        QFETCH(Complex, actual);
        QFETCH(Complex, expected);
        LPSDK_COMPARE_COMPLEX(actual, expected, 1e-15);
    }

    void compoundProductUsesTheOldValue()
    {
        Complex c(1, 1);
        c *= c; // (1 + i)^2 = 2i: the real part must not be updated before the imaginary one is computed
        QCOMPARE(c, Complex(0, 2));
        c /= Complex(0, 2);
        QCOMPARE(c, Complex(1, 0));
    }

    void magnitudeAndArgument()
    {
        QCOMPARE(Complex(3, -4).abs(), 5.0);
        QCOMPARE(Complex(-1, 0).arg(), M_PI);
        QCOMPARE(Complex(0, -2).arg(), -M_PI / 2);
    }
};

QTEST_GUILESS_MAIN(tst_Complex)
#include "tst_complex.moc"
