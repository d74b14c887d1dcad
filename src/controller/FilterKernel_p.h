// SPDX-License-Identifier: MIT
#pragma once

#include "Complex.h"

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

template<int Type>
inline Complex EvaluateTyped(const Section &c, double f)
{
    const Complex s(0.0, f / c.fp);
    const Complex one(1.0, 0.0);
    Complex h;
    if constexpr (Type == 0) {
        h = Complex(c.linearGain, 0.0);
    } else if constexpr (Type == 1) {
        h = one / (s + 1.0);
    } else if constexpr (Type == 2) {
        h = one / (s / c.q + s * s + 1.0);
    } else if constexpr (Type == 3) {
        h = (s.imag() == 0.0) ? one : one / (one / s + 1.0);
    } else if constexpr (Type == 4) {
        const Complex s2 = s * s;
        h = s2 / (s2 + s / c.q + 1.0);
    } else if constexpr (Type == 5) {
        h = (1.0 - s) / (s + 1.0);
    } else if constexpr (Type == 6) {
        const Complex s2 = s * s;
        h = (1.0 - s / c.q + s2) / (1.0 + s / c.q + s2);
    } else if constexpr (Type == 7) {
        h = (s.imag() == 0.0) ? one : one / (c.q * (s + one / s) + 1.0);
    } else if constexpr (Type == 8) {
        h = (s.imag() == 0.0) ? one : 1.0 + c.g / (c.q * (s + one / s) + 1.0);
    } else if constexpr (Type == 9) {
        h = 1.0 + c.g / (s + 1.0);
    } else if constexpr (Type == 10) {
        const Complex s2 = s * s;
        h = (s2 + c.sqrtA * s / c.q + c.a) / (s2 + s / c.q + 1.0);
    } else if constexpr (Type == 11) {
        h = 1.0 + c.g * s / (s + 1.0);
    } else if constexpr (Type == 12) {
        const Complex s2 = s * s;
        h = (c.a * s2 + c.sqrtA * s / c.q + 1.0) / (s2 + s / c.q + 1.0);
    } else if constexpr (Type == 13) {
        const Complex s2 = s * s;
        h = 1.0 + c.g / (s2 + s / c.q + 1.0);
    } else if constexpr (Type == 14) {
        const Complex s2 = s * s;
        h = 1.0 + c.g * s2 / (s2 + s / c.q + 1.0);
    } else if constexpr (Type == 15) {
        h = (s.imag() == 0.0) ? one : 1.0 - one / (c.q * (s + one / s) + 1.0);
    }
    if constexpr (Type >= 8 && Type <= 14) {
        if (c.invert)
            h = one / h;
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
    Dispatch(section.type, [&](auto type) {
        for (qsizetype i = 0; i < count; ++i)
            out[i] *= EvaluateTyped<decltype(type)::value>(section, frequencies[i]);
    });
}

} // namespace FilterKernel
