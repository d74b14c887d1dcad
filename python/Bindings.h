// SPDX-License-Identifier: MIT
#pragma once

#include "QtCasters.h"

#include <QPointer>

#include <memory>

class BalloonTable;
class DspChannelDescriptor;
class LoudspeakerDescriptor;
class SourcePointDescriptor;

namespace nvlps {

namespace py = pybind11;

// Descriptors belong to their plugins; a wrapper notices when its plugin has been unloaded.
template<typename T>
T *alive(const QPointer<T> &pointer)
{
    if (!pointer)
        throw std::runtime_error("the descriptor is gone: its plugin was unloaded");
    return pointer.data();
}

struct Loudspeaker {
    QPointer<LoudspeakerDescriptor> descriptor;
    std::shared_ptr<LoudspeakerDescriptor> owned; // descriptors read from JSON here, not by a plugin
};

struct SourcePoint {
    QPointer<SourcePointDescriptor> point;
    std::shared_ptr<LoudspeakerDescriptor> owner; // keeps a descriptor read from JSON alive
    QString loudspeaker; // for messages
};

struct Channel {
    QPointer<DspChannelDescriptor> channel;
    std::shared_ptr<LoudspeakerDescriptor> owner;
    QString loudspeaker;
};

/// One balloon table; its numpy views share ownership, so they outlive every other object.
struct Balloon {
    std::shared_ptr<const BalloonTable> table;
    QString origin; // file or "loudspeaker/point/key", for messages
};

/// Balloon lookups over broadcast arrays. `point` shifts phi by its normal angle, as its own lookup does.
py::object lookupArray(const BalloonTable &table, const SourcePointDescriptor *point, const py::object &frequency,
                       const py::object &theta, const py::object &phi, bool flushMount);

/// One SourcePointDescriptor::GetBalloonData() call per element: the plain per-call path, for checks and timing.
py::object lookupPerCall(SourcePointDescriptor &point, const QString &key, const py::object &frequency, const py::object &theta,
                         const py::object &phi, bool flushMount);

void bindLibrary(py::module_ &m);
void bindSourcePoint(py::module_ &m);
void bindBalloon(py::module_ &m);
void bindChannel(py::module_ &m);
void bindAnalysis(py::module_ &m);
void bindPrediction(py::module_ &m);

} // namespace nvlps
