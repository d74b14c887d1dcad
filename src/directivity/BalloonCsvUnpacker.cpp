// SPDX-License-Identifier: MIT
#include "BalloonCsvUnpacker.h"

#include <QSaveFile>

#include <cmath>

bool BalloonCsvUnpacker::Write(const BalloonTable &table, QIODevice &device)
{
    const QList<double> &frequencies = table.GetFrequencies();
    const qsizetype nh = table.GetNH();
    const qsizetype nv = table.GetNV();
    if (nh < 0 || nv < 0 || table.GetValueCount() < frequencies.size() * nh * nv)
        return false;
    // The packer closes a full circle itself; a column at 360 that repeats phi 0 is its own.
    const bool seam = table.GetSymmetry() == Tolvane::NoSymmetry && nv > 1 && std::abs((nv - 1) * table.GetPhiStepWidth() - 360.0) < 1e-9;
    const qsizetype columns = seam ? nv - 1 : nv;
    const std::complex<float> *values = table.GetValues();
    QByteArray text = "frequency_hz,theta_deg,phi_deg,magnitude_db,phase_deg\n";
    for (qsizetype f = 0; f < frequencies.size(); ++f) {
        const QByteArray frequency = QByteArray::number(frequencies.at(f), 'g', 17);
        for (qsizetype t = 0; t < nh; ++t) {
            const QByteArray theta = QByteArray::number(t * table.GetThetaStepWidth(), 'g', 15);
            for (qsizetype p = 0; p < columns; ++p) {
                const std::complex<double> v(values[(f * nh + t) * nv + p]);
                const double magnitude = std::abs(v) > 0.0 ? 20.0 * std::log10(std::abs(v)) : -400.0;
                text += frequency + ',' + theta + ',' + QByteArray::number(p * table.GetPhiStepWidth(), 'g', 15) + ','
                    + QByteArray::number(magnitude, 'g', 17) + ',' + QByteArray::number(std::arg(v) * 180.0 / M_PI, 'g', 17) + '\n';
            }
        }
        if (device.write(text) != text.size())
            return false;
        text.clear();
    }
    return true;
}

bool BalloonCsvUnpacker::Write(const BalloonTable &table, const QString &fileName)
{
    QSaveFile file(fileName);
    return file.open(QIODevice::WriteOnly) && Write(table, file) && file.commit();
}
