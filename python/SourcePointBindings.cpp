// SPDX-License-Identifier: MIT
// nvlps.SourcePoint: a source point's balloons, their lookups and its DSP channels.
#include "Bindings.h"

#include "BalloonTable.h"
#include "DspChannelDescriptor.h"
#include "SourcePointDescriptor.h"

namespace nvlps {

namespace {

// Balloons are read on first use; a plugin may have started a background read, which this waits for.
SourcePointDescriptor *loaded(const SourcePoint &source)
{
    SourcePointDescriptor *point = alive(source.point);
    if (!point->IsBalloonDataLoaded())
        point->ReadBalloonData(SourcePointDescriptor_Interface::Synchronous);
    return point;
}

std::shared_ptr<const BalloonTable> table(const SourcePoint &source, const QString &key)
{
    SourcePointDescriptor *point = loaded(source);
    if (std::shared_ptr<const BalloonTable> found = point->GetBalloonTable(key))
        return found;
    const QStringList keys = point->GetBalloonKeys();
    throw py::key_error(QStringLiteral("%1, source point \"%2\" has no balloon \"%3\" (its balloons: %4)")
                            .arg(source.loudspeaker, point->GetName(), key,
                                 keys.isEmpty() ? QStringLiteral("none") : keys.join(QStringLiteral(", ")))
                            .toStdString());
}

} // namespace

void bindSourcePoint(py::module_ &m)
{
    py::class_<SourcePoint>(m, "SourcePoint", "One acoustic source point of a loudspeaker: its balloons and DSP channels.")
        .def_property_readonly("name", [](const SourcePoint &s) { return alive(s.point)->GetName(); })
        .def_property_readonly("loudspeaker", [](const SourcePoint &s) { return s.loudspeaker; },
                               "The name of the loudspeaker it belongs to.")
        .def_property_readonly(
            "normal_angle", [](const SourcePoint &s) { return alive(s.point)->GetPhiWithNormalAngle(0.0); },
            "Degrees added to every phi of lookup() (the first \"default\" normal angle; 0 without one).")
        .def(
            "balloon_keys", [](const SourcePoint &s) { return loaded(s)->GetBalloonKeys(); },
            "The keys of the balloons read (reading them if needed).")
        .def(
            "balloon", [](const SourcePoint &s, const QString &key) { return Balloon{table(s, key), s.loudspeaker + QLatin1Char('/') + key}; },
            py::arg("key") = QStringLiteral("default"),
            R"(The balloon `key`, read from the plugin if not read yet. KeyError for a key the point lacks;
ValueError when a balloon file cannot be read.)")
        .def(
            "lookup",
            [](const SourcePoint &s, const py::object &frequency, const py::object &theta, const py::object &phi, const QString &key,
               bool flushMount) { return lookupArray(*table(s, key), alive(s.point), frequency, theta, phi, flushMount); },
            py::arg("frequency"), py::arg("theta"), py::arg("phi"), py::arg("key") = QStringLiteral("default"),
            py::arg("flush_mount") = false,
            R"(The directivity of balloon `key` at the balloon frequency nearest `frequency` (Hz), in the
direction theta, phi (degrees, the library's frame: theta from the front axis, phi from up
towards the left), with phi turned by the point's normal angle. The three broadcast like numpy
arrays; the result is complex128 of the broadcast shape (a complex for three scalars), equal bit
for bit to the library's per-call lookup. The work runs in C++ without the GIL.

Raises KeyError for a balloon key the point lacks and IndexError, naming the element, for a
direction outside the table (theta beyond the grid, a frequency with no index). A NaN angle
gives 0.)")
        .def(
            "lookup_per_call",
            [](const SourcePoint &s, const py::object &frequency, const py::object &theta, const py::object &phi, const QString &key,
               bool flushMount) { return lookupPerCall(*loaded(s), key, frequency, theta, phi, flushMount); },
            py::arg("frequency"), py::arg("theta"), py::arg("phi"), py::arg("key") = QStringLiteral("default"),
            py::arg("flush_mount") = false,
            R"(The same as lookup(), by one call of the library's per-point lookup
(SourcePointDescriptor::GetBalloonData) per element: the reference that lookup() is checked and
timed against. Unlike lookup(), an unknown key reads the library's fallback table.)")
        .def(
            "channel",
            [](const SourcePoint &s, const std::optional<QString> &amplifier) {
                SourcePointDescriptor *point = alive(s.point);
                DspChannelDescriptor *channel = point->GetDspChannelDescriptor(amplifier.value_or(point->GetDefaultAmplifier()));
                if (!channel)
                    throw py::key_error(QStringLiteral("%1, source point \"%2\" has no DSP channel").arg(s.loudspeaker, point->GetName()).toStdString());
                return Channel{channel, s.owner, s.loudspeaker};
            },
            py::arg("amplifier") = py::none(),
            "The DSP channel of `amplifier` (the library falls back to the default amplifier's channel).")
        .def("__repr__", [](const SourcePoint &s) {
            return QStringLiteral("<nvlps.SourcePoint %1 of %2>").arg(s.point ? s.point->GetName() : QStringLiteral("(unloaded)"), s.loudspeaker);
        });
}

} // namespace nvlps
