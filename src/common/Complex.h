// SPDX-License-Identifier: MIT
#pragma once

#include <QDebug>

#include <cmath>
#include <complex>

/**
 * A complex number of two doubles, the value type of every transfer function and
 * interpolated balloon value. All operations are inline and allocation-free; the
 * arithmetic is the textbook formula (no scaling in division), so results are
 * reproducible from the formulas alone.
 *
 * A value type: copy it freely and use it from any thread. Division by zero gives the IEEE
 * results (infinities or NaN), never an exception.
 */
class Complex
{
public:
    constexpr Complex() = default;
    constexpr Complex(double re, double im) : m_re(re), m_im(im) { }
    /// Widens a single-precision value (balloon tables, sensitivities) to double precision.
    constexpr explicit Complex(const std::complex<float> &c) : m_re(c.real()), m_im(c.imag()) { }

    /// magnitude * (cos(phase) + i sin(phase)); a negative magnitude gives the negated value.
    static Complex fromPolar(double magnitude, double phase)
    {
        return Complex(magnitude * std::cos(phase), magnitude * std::sin(phase));
    }

    constexpr double real() const { return m_re; }
    constexpr double imag() const { return m_im; }
    double abs() const { return std::sqrt(m_re * m_re + m_im * m_im); }
    /// Argument in radians, in (-pi, pi].
    double arg() const { return std::atan2(m_im, m_re); }
    constexpr Complex conj() const { return Complex(m_re, -m_im); }

    constexpr Complex operator-() const { return Complex(-m_re, -m_im); }

    constexpr Complex &operator+=(const Complex &o) { m_re += o.m_re; m_im += o.m_im; return *this; }
    constexpr Complex &operator-=(const Complex &o) { m_re -= o.m_re; m_im -= o.m_im; return *this; }
    constexpr Complex &operator*=(const Complex &o)
    {
        const double re = m_re * o.m_re - m_im * o.m_im;
        m_im = m_re * o.m_im + m_im * o.m_re;
        m_re = re;
        return *this;
    }
    constexpr Complex &operator/=(const Complex &o)
    {
        const double d = o.m_re * o.m_re + o.m_im * o.m_im;
        const double re = (m_re * o.m_re + m_im * o.m_im) / d;
        m_im = (m_im * o.m_re - m_re * o.m_im) / d;
        m_re = re;
        return *this;
    }
    constexpr Complex &operator+=(double d) { m_re += d; return *this; }
    constexpr Complex &operator-=(double d) { m_re -= d; return *this; }
    constexpr Complex &operator*=(double d) { m_re *= d; m_im *= d; return *this; }
    constexpr Complex &operator/=(double d) { m_re /= d; m_im /= d; return *this; }

    friend constexpr Complex operator+(Complex a, const Complex &b) { return a += b; }
    friend constexpr Complex operator-(Complex a, const Complex &b) { return a -= b; }
    friend constexpr Complex operator*(Complex a, const Complex &b) { return a *= b; }
    friend constexpr Complex operator/(Complex a, const Complex &b) { return a /= b; }
    friend constexpr Complex operator+(Complex a, double d) { return a += d; }
    friend constexpr Complex operator-(Complex a, double d) { return a -= d; }
    friend constexpr Complex operator*(Complex a, double d) { return a *= d; }
    friend constexpr Complex operator/(Complex a, double d) { return a /= d; }
    friend constexpr Complex operator+(double d, Complex a) { return a += d; }
    friend constexpr Complex operator-(double d, const Complex &a) { return Complex(d - a.m_re, -a.m_im); }
    friend constexpr Complex operator*(double d, Complex a) { return a *= d; }
    friend constexpr Complex operator/(double d, const Complex &a) { return Complex(d, 0.0) /= a; }

    friend constexpr bool operator==(const Complex &a, const Complex &b) { return a.m_re == b.m_re && a.m_im == b.m_im; }
    friend constexpr bool operator!=(const Complex &a, const Complex &b) { return !(a == b); }

    friend QDebug operator<<(QDebug debug, const Complex &c)
    {
        QDebugStateSaver saver(debug);
        debug.nospace() << "Complex(" << c.m_re << ", " << c.m_im << ')';
        return debug;
    }

private:
    double m_re = 0.0;
    double m_im = 0.0;
};

Q_DECLARE_TYPEINFO(Complex, Q_PRIMITIVE_TYPE);
