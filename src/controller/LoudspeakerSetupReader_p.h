// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

class LoudspeakerSetup;

/// Names of the top-level filter sets the queries use besides the switch responses.
namespace SetupKeys {
inline const QString SystemEq = QStringLiteral("System_EQ");
inline const QString ArrayEq = QStringLiteral("Sensitivity_Array_EQ");
inline const QString ApEq = QStringLiteral("Sensitivity_AP_EQ");
} // namespace SetupKeys

/**
 * Reads a controller setup file into a LoudspeakerSetup: names and levels, switch labels
 * and balloon keys, every filter evaluated on both grids, and the parameter blocks handed
 * on to signal-processing engines. The setup itself only answers queries.
 */
class LoudspeakerSetupReader
{
public:
    explicit LoudspeakerSetupReader(LoudspeakerSetup &setup) : m_setup(setup) { }

    /// Adds what a setup file's top-level object holds; a second file extends the maps and lists
    /// of the first. `fileName` becomes the setup's file name.
    void Read(const QVariantMap &map, const QString &fileName);

private:
    void ReadSwitches(const QVariantMap &switches);
    void AddCouplingSwitches();
    void ReadSwitchParameters(const QVariantMap &switches);
    void ReadPeakLimiter(const QVariantMap &peakLimiter);
    void ReadThermoLimiter(const QVariantMap &thermoLimiter);
    /// Stores a response on both grids under its public name and, where a query reads it, in the grid tables:
    /// value `value` of switch `switchNumber` (1 to 3), or the named set the queries use.
    void AddResponses(const QString &name, const QVariantList &filters, int switchNumber = 0, std::optional<int> value = {});
    void AddNamedResponses(const QString &name, const QVariantList &filters);

    LoudspeakerSetup &m_setup;
};
