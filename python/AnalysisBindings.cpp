// SPDX-License-Identifier: MIT
// nvlps.directivity: the directivity analysis of a balloon, with the keys of lpsdk directivity --json.
#include "Bindings.h"

#include <pybind11/numpy.h>

#include "BalloonTable.h"
#include "DirectivityAnalysis.h"
#include "SpinoramaCurves.h"

#include <stdexcept>

namespace nvlps {

namespace {

py::array_t<double> toArray(const std::vector<double> &values)
{
    return py::array_t<double>(py::ssize_t(values.size()), values.data());
}

py::dict directivity(const Balloon &balloon, bool flushMount)
{
    std::unique_ptr<DirectivityAnalysis> analysis;
    try {
        py::gil_scoped_release release;
        analysis = std::make_unique<DirectivityAnalysis>(balloon.table, flushMount);
    } catch (const std::invalid_argument &error) {
        throw py::value_error(balloon.origin.toStdString() + ": " + error.what());
    }
    const QList<double> &frequencies = analysis->GetFrequencies();
    const SpinoramaCurves &spin = analysis->GetSpinorama();
    py::dict cta2034;
    cta2034["on_axis_db"] = toArray(spin.onAxis);
    cta2034["listening_window_db"] = toArray(spin.listeningWindow);
    cta2034["early_reflections_db"] = toArray(spin.earlyReflections);
    cta2034["sound_power_db"] = toArray(spin.soundPower);
    cta2034["sound_power_di_db"] = toArray(spin.soundPowerDi);
    cta2034["early_reflections_di_db"] = toArray(spin.earlyReflectionsDi);
    cta2034["estimated_in_room_db"] = toArray(spin.estimatedInRoom);
    py::dict result;
    result["frequencies_hz"] = py::array_t<double>(frequencies.size(), frequencies.constData());
    result["on_axis_db"] = toArray(analysis->GetOnAxisLevels());
    result["sound_power_db"] = toArray(analysis->GetSoundPowerLevels());
    result["directivity_index_db"] = toArray(analysis->GetDirectivityIndices());
    result["beamwidth_horizontal_deg"] = toArray(analysis->GetBeamwidths(DirectivityPlane::Horizontal));
    result["beamwidth_vertical_deg"] = toArray(analysis->GetBeamwidths(DirectivityPlane::Vertical));
    result["cta2034"] = cta2034;
    return result;
}

} // namespace

void bindAnalysis(py::module_ &m)
{
    m.def("directivity", &directivity, py::arg("balloon"), py::arg("flush_mount") = false,
          R"(The directivity analysis of a balloon in its own frame: a dict of numpy arrays, one value per
balloon frequency, with the keys of ``lpsdk directivity --json`` (levels in dB, angles in degrees,
NaN where a value does not exist, e.g. a beamwidth whose level never falls by 6 dB). Raises
ValueError when the table cannot stand for a sphere.)");
}

} // namespace nvlps
