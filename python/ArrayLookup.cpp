// SPDX-License-Identifier: MIT
// Balloon lookups over numpy arrays: cells once per direction, frequency indices once per
// frequency, then one table read per output value, all without the GIL.
#include "ArrayWalk.h"
#include "Bindings.h"

#include "BalloonTable.h"
#include "SourcePointDescriptor.h"

#include <stdexcept>

namespace nvlps {

namespace {

using Doubles = py::array_t<double, py::array::c_style | py::array::forcecast>;

Doubles doubles(const py::object &value, const char *name)
{
    Doubles array = Doubles::ensure(value);
    if (!array)
        throw py::type_error(std::string(name) + " must be a number or an array of numbers");
    return array;
}

Shape shapeOf(const py::array &array)
{
    return Shape(array.shape(), array.shape() + array.ndim());
}

// " at (i, j)" of flat index n; nothing for a scalar.
QString indexText(pybind11::ssize_t n, const Shape &shape)
{
    if (shape.empty())
        return QString();
    QStringList parts;
    for (std::size_t axis = shape.size(); axis-- > 0;) {
        parts.prepend(QString::number(n % shape[axis]));
        n /= shape[axis];
    }
    return QStringLiteral(" at (%1)").arg(parts.join(QStringLiteral(", ")));
}

// The library's out_of_range as IndexError, with the element and direction that caused it.
[[noreturn]] void throwOutside(const std::string &error, py::ssize_t n, const Shape &shape, double frequency, double theta, double phi)
{
    throw py::index_error(QStringLiteral("%1%2: frequency %3 Hz, theta %4, phi %5 degrees lies outside the balloon table")
                              .arg(QString::fromStdString(error), indexText(n, shape))
                              .arg(frequency)
                              .arg(theta)
                              .arg(phi)
                              .toStdString());
}

} // namespace

Shape broadcastShape(const Shape &a, const Shape &b)
{
    Shape result(std::max(a.size(), b.size()), 1);
    for (std::size_t i = 0; i < result.size(); ++i) {
        const py::ssize_t x = i < a.size() ? a[a.size() - 1 - i] : 1;
        const py::ssize_t y = i < b.size() ? b[b.size() - 1 - i] : 1;
        if (x != y && x != 1 && y != 1)
            throw py::value_error("frequency, theta and phi do not broadcast to one shape");
        result[result.size() - 1 - i] = x == 1 ? y : x;
    }
    return result;
}

std::vector<py::ssize_t> broadcastStrides(const Shape &shape, const Shape &target)
{
    std::vector<py::ssize_t> strides(target.size(), 0);
    py::ssize_t stride = 1;
    for (std::size_t i = 0; i < shape.size(); ++i) {
        const std::size_t axis = shape.size() - 1 - i;
        if (shape[axis] != 1)
            strides[target.size() - 1 - i] = stride;
        stride *= shape[axis];
    }
    return strides;
}

py::object lookupArray(const BalloonTable &table, const SourcePointDescriptor *point, const py::object &frequency,
                       const py::object &theta, const py::object &phi, bool flushMount)
{
    const Doubles f = doubles(frequency, "frequency");
    const Doubles t = doubles(theta, "theta");
    const Doubles p = doubles(phi, "phi");
    const Shape directions = broadcastShape(shapeOf(t), shapeOf(p));
    const Shape shape = broadcastShape(shapeOf(f), directions);
    py::array_t<std::complex<double>> result(shape);
    const double *fs = f.data();
    const double *ts = t.data();
    const double *ps = p.data();
    std::complex<double> *out = result.mutable_data();
    const auto cellOf = [&](py::ssize_t at, py::ssize_t ap) {
        return table.GetCell(ts[at], point ? point->GetPhiWithNormalAngle(ps[ap]) : ps[ap], flushMount);
    };
    std::array<py::ssize_t, 4> failedAt{};
    py::ssize_t failed = -1;
    std::string error;
    {
        py::gil_scoped_release release;
        std::vector<int> indices(f.size());
        for (std::size_t i = 0; i < indices.size(); ++i)
            indices[i] = table.FindFrequencyIndex(fs[i]);
        const auto store = [&](const std::array<py::ssize_t, 4> &at, py::ssize_t n, const BalloonCell &cell) {
            try {
                const Complex value = table.GetValue(indices[at[0]], cell);
                out[n] = {value.real(), value.imag()};
            } catch (const std::out_of_range &) {
                failed = n;
                failedAt = at;
                throw;
            }
        };
        const std::array<std::vector<py::ssize_t>, 4> strides{broadcastStrides(shapeOf(f), shape), broadcastStrides(shapeOf(t), shape),
                                                             broadcastStrides(shapeOf(p), shape), broadcastStrides(directions, shape)};
        try {
            if (result.size() == elementCount(directions)) {
                // Every direction asked once: nothing to share, so no cells are kept.
                walk<4>(shape, strides, [&](const std::array<py::ssize_t, 4> &at, py::ssize_t n) { store(at, n, cellOf(at[1], at[2])); });
            } else {
                // Directions asked at several frequencies: each cell is found once.
                std::vector<BalloonCell> cells;
                cells.reserve(elementCount(directions));
                walk<2>(directions, {broadcastStrides(shapeOf(t), directions), broadcastStrides(shapeOf(p), directions)},
                        [&](const std::array<py::ssize_t, 2> &at, py::ssize_t) { cells.push_back(cellOf(at[0], at[1])); });
                walk<4>(shape, strides, [&](const std::array<py::ssize_t, 4> &at, py::ssize_t n) { store(at, n, cells[at[3]]); });
            }
        } catch (const std::out_of_range &e) {
            error = e.what();
        }
    }
    if (failed >= 0)
        throwOutside(error, failed, shape, fs[failedAt[0]], ts[failedAt[1]], ps[failedAt[2]]);
    return shape.empty() ? py::cast(out[0]) : py::object(std::move(result));
}

py::object lookupPerCall(SourcePointDescriptor &point, const QString &key, const py::object &frequency, const py::object &theta,
                         const py::object &phi, bool flushMount)
{
    const Doubles f = doubles(frequency, "frequency");
    const Doubles t = doubles(theta, "theta");
    const Doubles p = doubles(phi, "phi");
    const Shape shape = broadcastShape(shapeOf(f), broadcastShape(shapeOf(t), shapeOf(p)));
    py::array_t<std::complex<double>> result(shape);
    const double *fs = f.data();
    const double *ts = t.data();
    const double *ps = p.data();
    std::complex<double> *out = result.mutable_data();
    std::array<py::ssize_t, 3> failedAt{};
    py::ssize_t failed = -1;
    std::string error;
    {
        py::gil_scoped_release release;
        try {
            walk<3>(shape, {broadcastStrides(shapeOf(f), shape), broadcastStrides(shapeOf(t), shape), broadcastStrides(shapeOf(p), shape)},
                    [&](const std::array<py::ssize_t, 3> &at, py::ssize_t n) {
                        try {
                            const Complex value = point.GetBalloonData(key, fs[at[0]], ts[at[1]], ps[at[2]], flushMount);
                            out[n] = {value.real(), value.imag()};
                        } catch (const std::out_of_range &) {
                            failed = n;
                            failedAt = at;
                            throw;
                        }
                    });
        } catch (const std::out_of_range &e) {
            error = e.what();
        }
    }
    if (failed >= 0)
        throwOutside(error, failed, shape, fs[failedAt[0]], ts[failedAt[1]], ps[failedAt[2]]);
    return shape.empty() ? py::cast(out[0]) : py::object(std::move(result));
}

} // namespace nvlps
