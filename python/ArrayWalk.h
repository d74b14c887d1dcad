// SPDX-License-Identifier: MIT
#pragma once

#include <pybind11/numpy.h>

#include <array>
#include <vector>

namespace nvlps {

using Shape = std::vector<pybind11::ssize_t>;

inline pybind11::ssize_t elementCount(const Shape &shape)
{
    pybind11::ssize_t count = 1;
    for (pybind11::ssize_t extent : shape)
        count *= extent;
    return count;
}

/// The numpy broadcast of two shapes; ValueError when they do not broadcast.
Shape broadcastShape(const Shape &a, const Shape &b);

/// Element strides of a C-contiguous array of `shape` read as broadcast to `target` (0 along broadcast axes).
std::vector<pybind11::ssize_t> broadcastStrides(const Shape &shape, const Shape &target);

/**
 * Calls fn(offsets, n) for every element n of `shape` in C order, with offsets[k] the element
 * offset of operand k, whose strides come from broadcastStrides(). The innermost axis runs as a
 * plain loop, so broadcasting costs one carry per row, not per element. Touches no Python object.
 */
template<std::size_t N, typename Fn>
void walk(const Shape &shape, const std::array<std::vector<pybind11::ssize_t>, N> &strides, Fn &&fn)
{
    const pybind11::ssize_t total = elementCount(shape);
    if (total == 0)
        return;
    const std::size_t axes = shape.size();
    const pybind11::ssize_t inner = axes ? shape.back() : 1;
    std::array<pybind11::ssize_t, N> innerStride{};
    for (std::size_t k = 0; k < N; ++k)
        innerStride[k] = axes ? strides[k].back() : 0;
    std::vector<pybind11::ssize_t> counter(axes, 0);
    std::array<pybind11::ssize_t, N> base{};
    for (pybind11::ssize_t n = 0; n < total;) {
        std::array<pybind11::ssize_t, N> offsets = base;
        for (pybind11::ssize_t i = 0; i < inner; ++i, ++n) {
            fn(offsets, n);
            for (std::size_t k = 0; k < N; ++k)
                offsets[k] += innerStride[k];
        }
        for (std::size_t axis = axes > 0 ? axes - 1 : 0; axis-- > 0;) {
            for (std::size_t k = 0; k < N; ++k)
                base[k] += strides[k][axis];
            if (++counter[axis] < shape[axis])
                break;
            for (std::size_t k = 0; k < N; ++k)
                base[k] -= strides[k][axis] * shape[axis];
            counter[axis] = 0;
        }
    }
}

} // namespace nvlps
