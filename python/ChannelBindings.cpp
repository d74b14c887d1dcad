// SPDX-License-Identifier: MIT
// nvlps.Channel: a DSP channel's controller setups, switches and transfer functions.
#include "Bindings.h"

#include "DspChannelDescriptor.h"
#include "LoudspeakerDescriptor.h"
#include "LoudspeakerSetup.h"
#include "Vocabulary.h"

#include <pybind11/numpy.h>

namespace nvlps {

namespace {

Tolvane::FrequencyRange frequencyRange(const std::string &grid)
{
    if (grid == "log")
        return Tolvane::LogarithmicFrequencies;
    if (grid == "linear")
        return Tolvane::LinearFrequencies;
    throw py::value_error("grid must be \"log\" or \"linear\", not \"" + grid + "\"");
}

int setupKey(const Channel &c, const std::optional<int> &setup, const QString &mounting)
{
    DspChannelDescriptor *channel = alive(c.channel);
    bool known = false;
    const Tolvane::Mounting m = LoudspeakerDescriptor::ConvertStringToMounting(mounting, &known);
    if (!known)
        throw py::value_error(QStringLiteral("unknown mounting \"%1\"").arg(mounting).toStdString());
    const int key = setup.value_or(channel->GetDefaultLoudspeakerSetupKey(m));
    if (!channel->GetLoudspeakerSetups().value(key)) {
        QStringList keys;
        for (int k : channel->GetLoudspeakerSetups().keys())
            keys.append(QString::number(k));
        throw py::key_error(QStringLiteral("%1 has no controller setup %2 (its setups: %3)")
                                .arg(c.loudspeaker)
                                .arg(key)
                                .arg(keys.isEmpty() ? QStringLiteral("none") : keys.join(QStringLiteral(", ")))
                                .toStdString());
    }
    return key;
}

// Switch settings checked against the setup's value lists. Coupling switches left out sit at
// their 0 dB position, as in lpsdk, rather than at position 0.
QMap<int, int> switchSettings(LoudspeakerSetup *setup, const std::map<int, int> &given)
{
    QMap<int, int> settings;
    for (const auto &[number, value] : given) {
        const QMap<int, QString> values = setup->GetSwitchValues(number);
        if (values.isEmpty())
            throw py::key_error(QStringLiteral("setup \"%1\" has no switch %2").arg(setup->GetFullName()).arg(number).toStdString());
        if (!values.contains(value)) {
            QStringList accepted;
            for (auto it = values.cbegin(); it != values.cend(); ++it)
                accepted.append(QStringLiteral("%1 (%2)").arg(it.key()).arg(it.value().trimmed()));
            throw py::value_error(QStringLiteral("switch %1 has no value %2 (accepted: %3)")
                                      .arg(number)
                                      .arg(value)
                                      .arg(accepted.join(QStringLiteral(", ")))
                                      .toStdString());
        }
        settings.insert(number, value);
    }
    return setup->WithCouplingSwitchesAtZero(settings);
}

py::tuple transferFunction(const Channel &c, const std::optional<int> &setup, const std::map<int, int> &switches, const std::string &grid,
                           int sensitivity, bool apEq, const QString &mounting)
{
    DspChannelDescriptor *channel = alive(c.channel);
    const int key = setupKey(c, setup, mounting);
    if (sensitivity < 0 || sensitivity > 3)
        throw py::value_error("sensitivity must be 0 (none), 1 (measured), 2 (array EQ) or 3 (both)");
    const Tolvane::FrequencyRange range = frequencyRange(grid);
    const QMap<int, int> settings = switchSettings(channel->GetLoudspeakerSetups().value(key), switches);
    const QList<double> frequencies = channel->GetFrequencyVector(range);
    py::array_t<std::complex<double>> values(frequencies.size());
    std::complex<double> *out = values.mutable_data();
    // The GIL stays held: coupling filters come from the process-wide provider and its SQL
    // connection, which are not made for parallel callers.
    for (int i = 0; i < frequencies.size(); ++i) {
        const Complex h = channel->GetTransferFunction(range, i, key, settings, Tolvane::SensitivityTypes(sensitivity), apEq);
        out[i] = {h.real(), h.imag()};
    }
    return py::make_tuple(py::array_t<double>(frequencies.size(), frequencies.constData()), values);
}

} // namespace

void bindChannel(py::module_ &m)
{
    py::class_<Channel>(m, "Channel", "The DSP (amplifier) channel that drives a source point, with its controller setups.")
        .def_property_readonly("name", [](const Channel &c) { return alive(c.channel)->GetName(); })
        .def(
            "setups",
            [](const Channel &c) {
                py::dict result;
                const QMap<int, LoudspeakerSetup *> setups = alive(c.channel)->GetLoudspeakerSetups();
                for (auto it = setups.cbegin(); it != setups.cend(); ++it)
                    result[py::int_(it.key())] = it.value() ? it.value()->GetFullName() : QString();
                return result;
            },
            "{setup key: full name} of every controller setup.")
        .def(
            "default_setup", [](const Channel &c, const QString &mounting) { return setupKey(c, std::nullopt, mounting); },
            py::arg("mounting") = QStringLiteral("flown"), "The default setup key of a mounting (\"flown\", \"stacked\", ...).")
        .def(
            "switches",
            [](const Channel &c, const std::optional<int> &setup, const QString &mounting) {
                LoudspeakerSetup *s = alive(c.channel)->GetLoudspeakerSetups().value(setupKey(c, setup, mounting));
                py::dict result;
                for (int number = 1; number <= Vocabulary::MidCouplingSwitch; ++number) {
                    const QMap<int, QString> values = s->GetSwitchValues(number);
                    if (values.isEmpty())
                        continue;
                    py::dict labels;
                    for (auto it = values.cbegin(); it != values.cend(); ++it)
                        labels[py::int_(it.key())] = it.value().trimmed();
                    result[py::int_(number)] = py::make_tuple(s->GetSwitchDescription(number), labels);
                }
                return result;
            },
            py::arg("setup") = py::none(), py::arg("mounting") = QStringLiteral("flown"),
            "{switch number: (description, {value: label})} of a setup (the mounting's default setup when None).")
        .def("transfer_function", &transferFunction, py::arg("setup") = py::none(), py::arg("switches") = std::map<int, int>(),
             py::arg("grid") = "log", py::arg("sensitivity") = 0, py::arg("ap_eq") = false, py::arg("mounting") = QStringLiteral("flown"),
             R"(The complex transfer function of a controller setup: (frequencies in Hz, complex128 values).

`setup` is a setup key (the mounting's default when None); `switches` maps switch numbers to
value numbers (4 and 5 are the low and mid coupling positions; left out, they sit at 0 dB);
`grid` is "log" (249 points, 1/24 octave) or "linear" (1025 points); `sensitivity` 0 none,
1 measured, 2 array EQ, 3 both; `ap_eq` applies the all-pass EQ. KeyError for a setup or switch
the channel lacks, ValueError for a switch value not in its list.)")
        .def("__repr__", [](const Channel &c) {
            return QStringLiteral("<nvlps.Channel %1 of %2>").arg(c.channel ? c.channel->GetName() : QStringLiteral("(unloaded)"), c.loudspeaker);
        });
}

} // namespace nvlps
