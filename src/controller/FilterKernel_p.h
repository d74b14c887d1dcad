// SPDX-License-Identifier: MIT
#pragma once

#include "Complex.h"
#include "UpperState.h"

#include <QtGlobal>

#include <cmath>
#include <type_traits>

/**
 * The evaluation of one filter entry, shared by every place that multiplies filter
 * responses: the per-file precomputation of setups, the free CalculateFilterResponse()
 * and the coupling filters evaluated at query time. Everything here is allocation-free,
 * and every caller runs the same arithmetic, so their results agree to the last bit.
 */
namespace FilterKernel {

/// One filter with the constants of its response worked out once.
struct Section
{
    int type = -1;
    double fp = 0.0;
    double q = 0.0;
    double a = 1.0;      ///< 10^(|G|/20)
    double g = 0.0;      ///< a - 1
    double sqrtA = 1.0;
    double linearGain = 1.0; ///< 10^(G/20) with the sign of G, for the plain gain
    bool invert = false; ///< cut filters are the reciprocal of the boost of the same |G|
};

/// True for the sixteen known filter types (negative numbers count as unknown).
inline bool IsKnownType(int type)
{
    return static_cast<unsigned>(type) <= 15u;
}

inline Section MakeSection(int type, double fp, double q, double gainDb)
{
    Section section;
    section.type = type;
    section.fp = fp;
    section.q = q;
    section.a = std::pow(10.0, std::abs(gainDb) / 20.0);
    section.g = section.a - 1.0;
    section.sqrtA = std::sqrt(section.a);
    section.linearGain = std::pow(10.0, gainDb / 20.0);
    section.invert = gainDb < 0.0 && type >= 8 && type <= 14;
    return section;
}

/// Logs the warning for a filter entry of unknown type; callers do so once per entry.
void WarnUnknownType(int type);

/**
 * The response of a known type at frequency f (Hz). With s = j w, w = f / fp, every filter
 * form reduces to a quotient of two complex numbers whose parts are real
 * polynomials in w; evaluating those directly needs one or two divisions instead of the
 * five or six of textbook complex arithmetic, and gives the same values up to rounding.
 */
template<int Type>
inline Complex EvaluateTyped(const Section &c, double f)
{
    const double w = f / c.fp;
    const double w2 = w * w;
    Complex h;
    if constexpr (Type == 0) {
        h = Complex(c.linearGain, 0.0);
    } else if constexpr (Type == 1 || Type == 3 || Type == 5 || Type == 9 || Type == 11) {
        // First order: 1 / (1 + j w) = (1 - j w) / (1 + w^2).
        const double n = 1.0 / (1.0 + w2);
        if constexpr (Type == 1)
            h = Complex(n, -w * n);
        else if constexpr (Type == 3) // s / (1 + s); exactly 1 at 0 Hz
            h = (w == 0.0) ? Complex(1.0, 0.0) : Complex(w2 * n, w * n);
        else if constexpr (Type == 5) // (1 - s) / (1 + s)
            h = Complex((1.0 - w2) * n, -2.0 * w * n);
        else if constexpr (Type == 9) // 1 + g / (1 + s)
            h = Complex(1.0 + c.g * n, -c.g * w * n);
        else // 1 + g s / (1 + s)
            h = Complex(1.0 + c.g * w2 * n, c.g * w * n);
    } else if constexpr (Type == 7 || Type == 8 || Type == 15) {
        // 1 / (Q (s + 1/s) + 1) = 1 / (1 + j x) with x = Q (w - 1/w); 1 at 0 Hz by definition.
        if (w == 0.0)
            return Complex(1.0, 0.0);
        const double x = c.q * (w - 1.0 / w);
        const double n = 1.0 / (1.0 + x * x);
        if constexpr (Type == 7)
            h = Complex(n, -x * n);
        else if constexpr (Type == 8)
            h = Complex(1.0 + c.g * n, -c.g * x * n);
        else
            h = Complex(x * x * n, x * n);
    } else {
        // Second order: denominator s^2 + s/Q + 1 = a + j b.
        const double a = 1.0 - w2;
        const double b = w / c.q;
        const double n = 1.0 / (a * a + b * b);
        if constexpr (Type == 2) // 1 / (a + j b)
            h = Complex(a * n, -b * n);
        else if constexpr (Type == 4) // -w^2 / (a + j b)
            h = Complex(-w2 * a * n, w2 * b * n);
        else if constexpr (Type == 6) // (a - j b) / (a + j b)
            h = Complex((a * a - b * b) * n, -2.0 * a * b * n);
        else if constexpr (Type == 13) // 1 + g / (a + j b)
            h = Complex(1.0 + c.g * a * n, -c.g * b * n);
        else if constexpr (Type == 14) // 1 - g w^2 / (a + j b)
            h = Complex(1.0 - c.g * w2 * a * n, c.g * w2 * b * n);
        else {
            // Shelves: (p + j q) / (a + j b) with p, q from the table.
            const double p = (Type == 10) ? c.a - w2 : 1.0 - c.a * w2;
            const double q = c.sqrtA * b;
            h = Complex((p * a + q * b) * n, (q * a - p * b) * n);
        }
    }
    if constexpr (Type >= 8 && Type <= 14) {
        if (c.invert) {
            // A cut is the reciprocal of the boost of the same |G|.
            const double m = 1.0 / (h.real() * h.real() + h.imag() * h.imag());
            h = Complex(h.real() * m, -h.imag() * m);
        }
    }
    return h;
}

/// Calls fn.template operator()<Type>() for the section's type; unknown types call nothing.
template<typename Fn>
inline void Dispatch(int type, Fn &&fn)
{
    switch (type) {
    case 0: fn(std::integral_constant<int, 0>()); break;
    case 1: fn(std::integral_constant<int, 1>()); break;
    case 2: fn(std::integral_constant<int, 2>()); break;
    case 3: fn(std::integral_constant<int, 3>()); break;
    case 4: fn(std::integral_constant<int, 4>()); break;
    case 5: fn(std::integral_constant<int, 5>()); break;
    case 6: fn(std::integral_constant<int, 6>()); break;
    case 7: fn(std::integral_constant<int, 7>()); break;
    case 8: fn(std::integral_constant<int, 8>()); break;
    case 9: fn(std::integral_constant<int, 9>()); break;
    case 10: fn(std::integral_constant<int, 10>()); break;
    case 11: fn(std::integral_constant<int, 11>()); break;
    case 12: fn(std::integral_constant<int, 12>()); break;
    case 13: fn(std::integral_constant<int, 13>()); break;
    case 14: fn(std::integral_constant<int, 14>()); break;
    case 15: fn(std::integral_constant<int, 15>()); break;
    default: break;
    }
}

/// The section's response at one frequency (Hz); 1 for an unknown type.
inline Complex Evaluate(const Section &section, double f)
{
    Complex h(1.0, 0.0);
    Dispatch(section.type, [&](auto type) { h = EvaluateTyped<decltype(type)::value>(section, f); });
    return h;
}

/// out[i] *= response at frequencies[i], for i < count. Unknown types leave out unchanged.
inline void MultiplyInto(const Section &section, const double *frequencies, Complex *out, qsizetype count)
{
    ClearUpperState(); // callers look up their filter entries in between, through the C library
    Dispatch(section.type, [&](auto type) {
        for (qsizetype i = 0; i < count; ++i)
            out[i] *= EvaluateTyped<decltype(type)::value>(section, frequencies[i]);
    });
}

} // namespace FilterKernel
