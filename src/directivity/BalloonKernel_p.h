// SPDX-License-Identifier: MIT
#pragma once

// The arithmetic of one balloon lookup, shared by the table's short and checked ways (and
// tested on its own): cell indexes, bilinear weights and the cancellation rule.

#include "Complex.h"

#include <QtGlobal>

#include <cmath>
#include <complex>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace BalloonKernel {

// Integer part of a grid coordinate; beyond +-2^62 (and NaN) saturates, which always lies
// outside any table.
inline qint64 saturatedIndex(double integral)
{
    constexpr double Limit = 4611686018427387904.0; // 2^62
    if (integral >= Limit || std::isnan(integral))
        return qint64(1) << 62;
    if (integral <= -Limit)
        return -(qint64(1) << 62);
    return qint64(integral);
}

// Integer part toward zero and fraction, as modf gives them (the sign of a zero fraction aside,
// which no weight can see). Converting through an integer keeps the call out of the hot path.
inline qint64 splitIndex(double value, double &fraction)
{
    if (std::abs(value) < 4503599627370496.0) { // 2^52: from there on every double is an integer
        const qint64 integral = qint64(value);
        fraction = value - double(integral);
        return integral;
    }
    fraction = std::isnan(value) ? value : 0.0; // larger magnitudes are integers already
    return saturatedIndex(value);
}

// On a grid line above the first, a direction is the upper edge of the cell below.
inline qint64 interpolationIndex(double value, double &fraction)
{
    const qint64 i = splitIndex(value, fraction);
    if (fraction == 0.0 && i > 0) {
        fraction = 1.0;
        return i - 1;
    }
    return i;
}

// The flush-mount table has two columns: 90 degrees (0) and 270 degrees (1).
inline double flushMountColumn(double phi)
{
    double p = phi >= 0.0 && phi < 360.0 ? phi : std::fmod(phi, 360.0);
    if (p < 0)
        p += 360.0;
    if (std::abs(p - 90.0) < 0.1)
        return 0.0;
    if (std::abs(p - 270.0) < 0.1)
        return 1.0;
    return 0.0;
}

// The bilinear weights of the corners (t, p), (t, p + 1), (t + 1, p) and (t + 1, p + 1).
inline void cornerWeights(double tf, double pf, double (&w)[4])
{
    w[0] = (1 - tf) * (1 - pf);
    w[1] = (1 - tf) * pf;
    w[2] = tf * (1 - pf);
    w[3] = tf * pf;
}

// sqrt(x) >= y exactly as with the root, which is only taken where x lies within far more than
// the rounding of either side of y * y.
inline bool rootAtLeast(double x, double y)
{
    if (y > 1e-150 && y < 1e150) {
        const double square = y * y;
        if (x >= square * (1 + 0x1p-40))
            return true;
        if (x <= square * (1 - 0x1p-40))
            return false;
    }
    return std::sqrt(x) >= y;
}

#ifdef __SSE2__
// One row of a cell: the real and imaginary parts of its two neighbouring corners (one load,
// split so that squares, roots and weights need no shuffling), their weights and the mask of the
// positive ones.
struct CellRow {
    __m128d re;
    __m128d im;
    __m128d weight;
    __m128d use;
};

inline CellRow cellRow(const std::complex<float> *corners, double rowWeight, __m128d columns)
{
    __m128 pair = _mm_loadu_ps(reinterpret_cast<const float *>(corners));
    pair = _mm_shuffle_ps(pair, pair, _MM_SHUFFLE(3, 1, 2, 0)); // re, re, im, im
    const __m128d weight = _mm_mul_pd(_mm_set1_pd(rowWeight), columns);
    return {_mm_cvtps_pd(pair), _mm_cvtps_pd(_mm_movehl_ps(pair, pair)), weight,
            _mm_cmpgt_pd(weight, _mm_setzero_pd())};
}

// Adds w * c of the row's corners of positive weight to the (re, im) total, in corner order; a
// skipped corner adds +0, which leaves the total exactly as it was.
inline __m128d addWeighted(__m128d total, const CellRow &row)
{
    const __m128d reParts = _mm_and_pd(row.use, _mm_mul_pd(row.re, row.weight));
    const __m128d imParts = _mm_and_pd(row.use, _mm_mul_pd(row.im, row.weight));
    total = _mm_add_pd(total, _mm_unpacklo_pd(reParts, imParts));
    return _mm_add_pd(total, _mm_unpackhi_pd(reParts, imParts));
}

inline __m128d squaredMagnitudes(const CellRow &row)
{
    return _mm_add_pd(_mm_mul_pd(row.re, row.re), _mm_mul_pd(row.im, row.im));
}
#endif

// Sums w * c and w * |c| over the corners (t, p), (t, p + 1), (t + 1, p) and (t + 1, p + 1) of
// positive weight, at cell[0], cell[1], cell[stride] and cell[stride + 1], in that order, and
// tells whether the phases keep the sum (|sum| >= 0.99 * sum of w * |c|).
inline bool interpolateCell(const std::complex<float> *cell, qint64 stride, double tf, double pf, Complex &sum,
                            double &magnitudeSum)
{
#ifdef __SSE2__
    const __m128d columns = _mm_set_pd(pf, 1 - pf);
    __m128d total = _mm_setzero_pd();
    double m = 0.0;
    for (int row = 0; row < 2; ++row) {
        const CellRow r = cellRow(cell + row * stride, row == 0 ? 1 - tf : tf, columns);
        total = addWeighted(total, r);
        const __m128d magnitudes = _mm_and_pd(r.use, _mm_mul_pd(_mm_sqrt_pd(squaredMagnitudes(r)), r.weight));
        m += _mm_cvtsd_f64(magnitudes);
        m += _mm_cvtsd_f64(_mm_unpackhi_pd(magnitudes, magnitudes));
    }
    magnitudeSum = m;
    sum = Complex(_mm_cvtsd_f64(total), _mm_cvtsd_f64(_mm_unpackhi_pd(total, total)));
#else
    double w[4];
    cornerWeights(tf, pf, w);
    const Complex corners[4] = {Complex(cell[0]), Complex(cell[1]), Complex(cell[stride]), Complex(cell[stride + 1])};
    sum = Complex(0.0, 0.0);
    magnitudeSum = 0.0;
    for (int corner = 0; corner < 4; ++corner) {
        if (w[corner] > 0) {
            sum += corners[corner] * w[corner];
            magnitudeSum += corners[corner].abs() * w[corner];
        }
    }
#endif
    return rootAtLeast(sum.real() * sum.real() + sum.imag() * sum.imag(), 0.99 * magnitudeSum);
}

// A cell inside a table: its corner (t, p), the stride to the next row and the fractions.
struct Cell {
    const std::complex<float> *values = nullptr;
    qint64 stride = 0;
    double tf = 0.0;
    double pf = 0.0;
};

// The value of a cell inside the table, deciding the cancellation rule with the roots.
Q_NEVER_INLINE inline Complex exactCell(const std::complex<float> *cell, qint64 stride, double tf, double pf)
{
    Complex sum;
    double magnitudeSum;
    if (interpolateCell(cell, stride, tf, pf, sum, magnitudeSum))
        return sum;
    // Opposite phases cancel: keep the weighted level, with the phase of the nearest corner.
    const Complex nearest(cell[(tf >= 0.5 ? stride : 0) + (pf >= 0.5 ? 1 : 0)]);
    return Complex::fromPolar(magnitudeSum, nearest.arg());
}

// The weighted sum of interpolateCell(), and a test without roots that is sufficient for the
// cancellation rule to keep it. The weights add up to at most 1 plus rounding, so Cauchy-Schwarz
// gives (sum of w|c|)^2 <= sum of w|c|^2: when |sum|^2 >= 0.99^2 * sum of w|c|^2, with a margin
// far above every rounding of either side, the rule keeps the sum. Squares of single-precision
// values are exact and far from overflow; tiny cells, where underflow could eat the margin, and
// NaN fail the test and are decided the exact way.
// Corners of weight zero are added too: a finite one adds a zero, which leaves a sum that started
// at +0 exactly as it was; an infinite or NaN one makes the sum NaN, which goes the exact way.
struct WeightedSum {
    Complex value;
    bool keepsPhases;
};

inline WeightedSum weightedSum(const std::complex<float> *cell, qint64 stride, double tf, double pf)
{
#ifdef __SSE2__
    constexpr double Factor = 0.99 * 0.99 * (1 + 0x1p-40);
    double w[4];
    cornerWeights(tf, pf, w);
    __m128d total = _mm_setzero_pd();
    __m128d squares = _mm_setzero_pd();
    for (int row = 0; row < 2; ++row) {
        const __m128 pair = _mm_loadu_ps(reinterpret_cast<const float *>(cell + row * stride));
        const __m128d corners[2] = {_mm_cvtps_pd(pair), _mm_cvtps_pd(_mm_movehl_ps(pair, pair))};
        for (int column = 0; column < 2; ++column) {
            const __m128d part = _mm_mul_pd(corners[column], _mm_set1_pd(w[2 * row + column]));
            total = _mm_add_pd(total, part);
            squares = _mm_add_pd(squares, _mm_mul_pd(part, corners[column]));
        }
    }
    const double q = _mm_cvtsd_f64(squares) + _mm_cvtsd_f64(_mm_unpackhi_pd(squares, squares));
    const Complex sum(_mm_cvtsd_f64(total), _mm_cvtsd_f64(_mm_unpackhi_pd(total, total)));
    return {sum, q >= 0x1p-800 && sum.real() * sum.real() + sum.imag() * sum.imag() >= Factor * q};
#else
    // Elsewhere the rule itself decides.
    WeightedSum result;
    double magnitudeSum;
    result.keepsPhases = interpolateCell(cell, stride, tf, pf, result.value, magnitudeSum);
    return result;
#endif
}

// std::round of a cell fraction in [-1, 1]: halves away from zero.
inline qint64 roundFraction(double fraction)
{
    return fraction >= 0.5 ? 1 : fraction <= -0.5 ? -1 : 0;
}

} // namespace BalloonKernel
