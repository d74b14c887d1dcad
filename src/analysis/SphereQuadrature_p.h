// SPDX-License-Identifier: MIT
#pragma once

#include "Tolvane.h"

#include <vector>

/**
 * Solid-angle weights of a balloon grid: the integral over the sphere of each grid point's
 * bilinear hat function, so that sum(w * |v|^2) is the exact mean of the interpolated |v|^2.
 * Theta and phi separate; each set of weights sums to 1.
 */
namespace SphereQuadrature {
/// Weights of the theta rows t * stepDegrees (t < nh), the rows past 180 degrees cut off.
std::vector<double> ThetaWeights(int nh, double stepDegrees);
/**
 * Weights of the phi columns p * stepDegrees (p < nv) over the part of the circle the symmetry
 * stores, which then stands for the whole circle. A full circle without the closing column at 360
 * is periodic: every column weighs the same.
 */
std::vector<double> PhiWeights(int nv, double stepDegrees, int symmetryCode);
/// The phi range in degrees that a symmetry's columns must cover; 0 for one column of a rotational table.
double StoredPhiSpan(int symmetryCode);
} // namespace SphereQuadrature
