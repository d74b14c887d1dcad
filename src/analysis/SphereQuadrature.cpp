// SPDX-License-Identifier: MIT
#include "SphereQuadrature_p.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

constexpr double Pi = 3.141592653589793;

// The integrals over [a, min(b, end)] of a hat rising from 0 at a to 1 at b, and of one falling
// from 1 at a to 0 at b, against the density (sin x for theta, 1 for phi).
struct HatIntegrals {
    double rising = 0.0;
    double falling = 0.0;
};

HatIntegrals sineHat(double a, double b, double end)
{
    if (a >= end)
        return {};
    const double c = std::min(b, end);
    const double rising = (-(c - a) * std::cos(c) + std::sin(c) - std::sin(a)) / (b - a);
    return {rising, (std::cos(a) - std::cos(c)) - rising};
}

HatIntegrals flatHat(double a, double b, double end)
{
    if (a >= end)
        return {};
    const double c = std::min(b, end);
    const double rising = (c - a) * (c - a) / (2.0 * (b - a));
    return {rising, (c - a) - rising};
}

template<typename Hat>
std::vector<double> hatWeights(int count, double step, double end, Hat hat)
{
    std::vector<double> weights(size_t(std::max(count, 0)), 0.0);
    for (int i = 0; i + 1 < count; ++i) {
        const HatIntegrals segment = hat(i * step, (i + 1) * step, end);
        weights[size_t(i)] += segment.falling;
        weights[size_t(i + 1)] += segment.rising;
    }
    const double sum = std::accumulate(weights.cbegin(), weights.cend(), 0.0);
    if (sum > 0.0) {
        for (double &w : weights)
            w /= sum;
    } else if (!weights.empty()) {
        weights.front() = 1.0;
    }
    return weights;
}

} // namespace

namespace SphereQuadrature {

double StoredPhiSpan(int symmetryCode)
{
    switch (symmetryCode) {
    case Tolvane::HalfSymmetry:
    case Tolvane::HalfSymmetryRotated:
        return 180.0;
    case Tolvane::QuarterSymmetry:
        return 90.0;
    case Tolvane::RotationalSymmetry:
        return 0.0;
    default:
        return 360.0; // the lookup leaves phi unfolded for any other code
    }
}

std::vector<double> ThetaWeights(int nh, double stepDegrees)
{
    return hatWeights(nh, stepDegrees * Pi / 180.0, Pi, sineHat);
}

std::vector<double> PhiWeights(int nv, double stepDegrees, int symmetryCode)
{
    const double span = StoredPhiSpan(symmetryCode);
    if (span == 0.0 || nv == 1) {
        std::vector<double> weights(size_t(std::max(nv, 0)), 0.0);
        if (nv > 0)
            weights.front() = 1.0;
        return weights;
    }
    if (span == 360.0 && std::abs(nv * stepDegrees - 360.0) < 1e-9)
        return std::vector<double>(size_t(nv), 1.0 / nv);
    return hatWeights(nv, stepDegrees, span, flatHat);
}

} // namespace SphereQuadrature
