// SPDX-License-Identifier: MIT
// nvlps.predict: the sound field of a scene over its receivers, as a complex numpy array.
#include "Bindings.h"

#include <pybind11/numpy.h>

#include "CoveragePredictor.h"
#include "SceneFile.h"

#include <stdexcept>

namespace nvlps {

namespace {

py::tuple predict(const py::object &scene, int threads)
{
    // The scene as the JSON text lpsdk predict reads, so both take exactly the same files.
    const std::string json = py::module_::import("json").attr("dumps")(scene).cast<std::string>();
    std::unique_ptr<SoundField> field;
    try {
        py::gil_scoped_release release;
        const CoveragePredictor predictor(SceneFile::Parse(QByteArray::fromStdString(json)));
        field = std::make_unique<SoundField>(predictor.Compute(threads));
    } catch (const std::invalid_argument &error) {
        throw py::value_error(error.what());
    }
    const QList<double> &frequencies = field->GetFrequencies();
    py::array_t<std::complex<float>> pressures({py::ssize_t(field->GetReceiverCount()), py::ssize_t(field->GetBandCount())});
    std::copy(field->GetPressures().cbegin(), field->GetPressures().cend(), pressures.mutable_data());
    return py::make_tuple(py::array_t<double>(frequencies.size(), frequencies.constData()), pressures);
}

} // namespace

void bindPrediction(py::module_ &m)
{
    m.def("predict", &predict, py::arg("scene"), py::arg("threads") = 0,
          R"(The sound field of a scene (a dict in the scene-file format of ``lpsdk predict``) over its
receivers, for the loudspeakers and rigging a Library has loaded: (frequencies in Hz, complex64
pressures of shape (receivers, bands)). Levels are 20 log10 abs(p). Raises ValueError naming the
key and value of anything the scene gets wrong.)");
}

} // namespace nvlps
