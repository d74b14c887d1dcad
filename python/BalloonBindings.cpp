// SPDX-License-Identifier: MIT
// nvlps.Balloon, read_balloon and pack_balloon: balloon tables as numpy arrays, and back to files.
#include "ArrayWalk.h"
#include "Bindings.h"

#include "BalloonFile.h"
#include "BalloonFileWriter.h"
#include "BalloonTable.h"

#include <cmath>

namespace nvlps {

namespace {

// A read-only view of table memory whose base owns a share of the table.
py::array view(const std::shared_ptr<const BalloonTable> &table, const std::complex<float> *data, const Shape &shape)
{
    auto *owner = new std::shared_ptr<const BalloonTable>(table);
    py::capsule base(owner, [](void *p) { delete static_cast<std::shared_ptr<const BalloonTable> *>(p); });
    py::array array(py::dtype::of<std::complex<float>>(), shape, data, base);
    array.attr("setflags")(py::arg("write") = false);
    return array;
}

py::array_t<double> toArray(const QList<double> &values)
{
    return py::array_t<double>(values.size(), values.constData());
}

// Grid angles must start at 0 and step evenly; the step is what the file stores.
double gridStep(const py::array_t<double, py::array::c_style | py::array::forcecast> &angles, const char *name)
{
    const py::ssize_t count = angles.size();
    const double *a = angles.data();
    if (angles.ndim() != 1 || count < 2)
        throw py::value_error(std::string(name) + " must be a 1-d array of at least two angles");
    const double step = a[1] - a[0];
    for (py::ssize_t i = 0; i < count; ++i) {
        if (!(std::abs(a[i] - i * step) < 1e-6) || !(step > 0))
            throw py::value_error(QStringLiteral("%1[%2] = %3: the angles must be 0, s, 2s, ... with a positive step s")
                                      .arg(QLatin1String(name))
                                      .arg(i)
                                      .arg(a[i])
                                      .toStdString());
    }
    return step;
}

void packBalloon(const py::array_t<double, py::array::c_style | py::array::forcecast> &frequencies,
                 const py::array_t<double, py::array::c_style | py::array::forcecast> &theta,
                 const py::array_t<double, py::array::c_style | py::array::forcecast> &phi,
                 const py::array_t<std::complex<double>, py::array::c_style | py::array::forcecast> &values, const QString &path,
                 const std::string &format, Tolvane::LoudspeakerSymmetry symmetry)
{
    if (format != "double" && format != "byte")
        throw py::value_error("format must be \"double\" or \"byte\", not \"" + format + "\"");
    BalloonFileWriter::Data data;
    data.frequencies = QList<double>(frequencies.data(), frequencies.data() + frequencies.size());
    data.nh = int(theta.size());
    data.nv = int(phi.size());
    data.thetaStepWidth = gridStep(theta, "theta");
    // A rotationally symmetric balloon has one phi column; its step is nominal.
    data.phiStepWidth = symmetry == Tolvane::RotationalSymmetry && phi.size() == 1 ? data.thetaStepWidth : gridStep(phi, "phi");
    data.symmetry = symmetry;
    const Shape expected{frequencies.size(), theta.size(), phi.size()};
    if (Shape(values.shape(), values.shape() + values.ndim()) != expected)
        throw py::value_error(QStringLiteral("values must have the shape (frequencies, theta, phi) = (%1, %2, %3)")
                                  .arg(expected[0])
                                  .arg(expected[1])
                                  .arg(expected[2])
                                  .toStdString());
    data.magnitudes.reserve(values.size());
    data.phases.reserve(values.size());
    for (py::ssize_t i = 0; i < values.size(); ++i) {
        const std::complex<double> v = values.data()[i];
        data.magnitudes.append(20.0 * std::log10(std::abs(v)));
        data.phases.append(std::arg(v) * 180.0 / M_PI);
    }
    const Tolvane::LoudspeakerDataFormat code = format == "double" ? Tolvane::Double : Tolvane::ByteScaled;
    BalloonFileWriter writer(code, code);
    if (!writer.write(data, path))
        throw py::value_error(QStringLiteral("%1: %2").arg(path, writer.errorString()).toStdString());
}

} // namespace

void bindBalloon(py::module_ &m)
{
    py::enum_<Tolvane::LoudspeakerSymmetry>(m, "Symmetry", "Which part of the phi circle a balloon stores.")
        .value("NoSymmetry", Tolvane::NoSymmetry, "the full circle, 0 ... 360")
        .value("HalfSymmetry", Tolvane::HalfSymmetry, "left/right symmetric: 0 ... 180")
        .value("HalfSymmetryRotated", Tolvane::HalfSymmetryRotated, "up/down symmetric: 270 ... 0 ... 90")
        .value("QuarterSymmetry", Tolvane::QuarterSymmetry, "symmetric both ways: 0 ... 90")
        .value("RotationalSymmetry", Tolvane::RotationalSymmetry, "one phi column");

    py::class_<Balloon>(m, "Balloon", R"(One balloon: complex directivity on a theta/phi grid per frequency.

Theta (rows) runs from the front axis, t * theta_step; phi (columns) from up towards the
loudspeaker's left, p * phi_step of the stored part of the circle (see symmetry).)")
        .def_property_readonly("frequencies", [](const Balloon &b) { return toArray(b.table->GetFrequencies()); }, "Hz, as stored.")
        .def_property_readonly("theta_step", [](const Balloon &b) { return b.table->GetThetaStepWidth(); }, "Degrees.")
        .def_property_readonly("phi_step", [](const Balloon &b) { return b.table->GetPhiStepWidth(); }, "Degrees.")
        .def_property_readonly("nh", [](const Balloon &b) { return b.table->GetNH(); }, "Theta rows.")
        .def_property_readonly("nv", [](const Balloon &b) { return b.table->GetNV(); }, "Phi columns.")
        .def_property_readonly("symmetry", [](const Balloon &b) { return b.table->GetSymmetry(); })
        .def_property_readonly("symmetry_code", [](const Balloon &b) { return b.table->GetSymmetryCode(); },
                               "The symmetry as stored in the file (any 32-bit value).")
        .def_property_readonly(
            "values",
            [](const Balloon &b) {
                const QList<double> &f = b.table->GetFrequencies();
                return view(b.table, b.table->GetValues(), {f.size(), b.table->GetNH(), b.table->GetNV()});
            },
            "complex64 (frequencies, theta, phi): a read-only view of the library's table, no copy. It keeps the table alive.")
        .def_property_readonly(
            "flush_mount_values",
            [](const Balloon &b) -> py::object {
                if (!b.table->HasFlushMount())
                    return py::none();
                return view(b.table, b.table->GetFlushMountValues(), {b.table->GetFrequencies().size(), b.table->GetNH(), 2});
            },
            "complex64 (frequencies, theta, 2) at phi 90 and 270, read-only; None without flush-mount data.")
        .def(
            "lookup",
            [](const Balloon &b, const py::object &frequency, const py::object &theta, const py::object &phi, bool flushMount) {
                return lookupArray(*b.table, nullptr, frequency, theta, phi, flushMount);
            },
            py::arg("frequency"), py::arg("theta"), py::arg("phi"), py::arg("flush_mount") = false,
            R"(As SourcePoint.lookup(), on this table alone: phi is not turned by any normal angle.)")
        .def("__repr__", [](const Balloon &b) {
            return QStringLiteral("<nvlps.Balloon %1: %2 frequencies, %3 x %4 angles>")
                .arg(b.origin)
                .arg(b.table->GetFrequencies().size())
                .arg(b.table->GetNH())
                .arg(b.table->GetNV());
        });

    m.def(
        "read_balloon",
        [](const QString &path) {
            const BalloonReadResult result = BalloonFile::Read(path);
            if (!result.table) {
                QStringList problems;
                for (const BalloonProblem &problem : result.problems)
                    problems.append(problem.ToString());
                throw py::value_error(QStringLiteral("%1: %2").arg(path, problems.join(QStringLiteral("; "))).toStdString());
            }
            return Balloon{result.table, path};
        },
        py::arg("path"), "Reads a balloon file (a path or a \":/...\" resource). ValueError naming each problem of a bad file.");

    m.def("pack_balloon", &packBalloon, py::arg("frequencies"), py::arg("theta"), py::arg("phi"), py::arg("values"), py::arg("path"),
          py::arg("format") = "double", py::arg("symmetry") = Tolvane::NoSymmetry,
          R"(Writes a balloon file: `values` complex (frequencies, theta, phi) at the grid angles `theta`
and `phi` (degrees, 0, s, 2s, ...; phi the stored part of the circle, its closing column
included: 0 ... 360 for NoSymmetry). `format` "double" stores magnitude and phase exactly,
"byte" one byte each over the data's range. ValueError for a grid or values the file cannot
hold (a zero value has no level in dB); an existing file stays as it was then.)");
}

} // namespace nvlps
