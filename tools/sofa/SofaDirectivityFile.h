// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <array>
#include <complex>
#include <optional>
#include <vector>

/**
 * One measurement of an AES69 SOFA file with the FreeFieldDirectivityTF conventions (1.0, 1.1),
 * or GeneralTF with the same variables: complex spectra per receiver direction.
 * Read through the netCDF C library; without it, Read() answers what to install.
 */
class SofaDirectivityFile
{
public:
    using Vector = std::array<double, 3>;

    QString conventions;        ///< global attribute SOFAConventions
    QString conventionsVersion; ///< global attribute SOFAConventionsVersion
    int measurementCount = 0;   ///< dimension M
    QList<double> frequencies;  ///< variable N, Hz
    Vector view{1.0, 0.0, 0.0}; ///< SourceView of the chosen measurement, cartesian
    Vector up{0.0, 0.0, 1.0};   ///< SourceUp of the chosen measurement, cartesian
    std::vector<Vector> receivers;             ///< cartesian receiver positions, any radius
    std::vector<std::complex<double>> values;  ///< receiver-major: values[r * frequencies.size() + f]

    /// True when the file starts like a netCDF file (HDF5 or classic signature), whatever its name.
    static bool LooksLikeSofa(const QString &path);
    /// Reads measurement `measurement` (0-based); on failure nothing is returned and `error` says why.
    static std::optional<SofaDirectivityFile> Read(const QString &path, int measurement, QString *error);
};
