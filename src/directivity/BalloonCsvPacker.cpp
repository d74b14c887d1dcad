// SPDX-License-Identifier: MIT
#include "BalloonCsvPacker.h"

#include "BalloonFileReader_p.h"

#include <QFile>
#include <QIODevice>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <vector>

namespace {

const char Header[] = "frequency_hz,theta_deg,phi_deg,magnitude_db,phase_deg";

struct Row {
    double frequency;
    double theta;
    double phi; // as stored: folded by the symmetry
    double magnitude;
    double phase;
    int line;
};

bool parseNumber(QByteArrayView text, double &value)
{
    text = text.trimmed();
    const char *end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end && std::isfinite(value);
}

// The distinct values of a column, sorted.
std::vector<double> distinctSorted(const std::vector<Row> &rows, double Row::*member)
{
    std::vector<double> values;
    values.reserve(rows.size());
    for (const Row &row : rows)
        values.push_back(row.*member);
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

// The grid step of a column: the most common gap between the values that most rows share, so
// that a few stray rows are reported as off the grid rather than shrinking the step.
double commonStep(const std::vector<Row> &rows, double Row::*member)
{
    std::map<double, int> counts;
    for (const Row &row : rows)
        ++counts[row.*member];
    int most = 0;
    for (const auto &entry : counts)
        most = std::max(most, entry.second);
    std::map<long long, int> gaps;
    const double *previous = nullptr;
    for (const auto &entry : counts) {
        if (2 * entry.second < most)
            continue;
        if (previous)
            ++gaps[std::llround((entry.first - *previous) * 1e6)];
        previous = &entry.first;
    }
    const auto common = std::max_element(gaps.cbegin(), gaps.cend(),
                                         [](const auto &a, const auto &b) { return a.second < b.second; });
    return common == gaps.cend() ? 0.0 : common->first / 1e6;
}

// The index of value on a grid of step from 0, or -1 when it lies off the grid.
int gridIndex(double value, double step, int count)
{
    const double k = std::round(value / step);
    if (k < 0 || k >= count || std::abs(k * step - value) > 1e-6)
        return -1;
    return int(k);
}

} // namespace

bool BalloonCsvPacker::read(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        m_error = QStringLiteral("%1: %2").arg(fileName, file.errorString());
        return false;
    }
    return read(&file);
}

bool BalloonCsvPacker::read(QIODevice *device)
{
    m_data = {};
    m_grid = {};
    const auto fail = [this](int line, const QString &message) {
        m_error = line > 0 ? QStringLiteral("line %1: %2").arg(line).arg(message) : message;
        return false;
    };

    const QByteArray text = device->readAll();
    std::vector<Row> rows;
    rows.reserve(text.size() / 20);
    int line = 0;
    bool headerSeen = false;
    for (qsizetype start = 0; start < text.size();) {
        qsizetype end = text.indexOf('\n', start);
        if (end < 0)
            end = text.size();
        const QByteArrayView content = QByteArrayView(text).sliced(start, end - start).trimmed();
        start = end + 1;
        ++line;
        if (content.isEmpty())
            continue;
        if (!headerSeen) {
            if (content != QByteArrayView(Header))
                return fail(line, QStringLiteral("expected the header \"%1\"").arg(QLatin1String(Header)));
            headerSeen = true;
            continue;
        }
        double fields[5];
        int count = 0;
        qsizetype fieldStart = 0;
        for (qsizetype i = 0; i <= content.size(); ++i) {
            if (i < content.size() && content[i] != ',')
                continue;
            if (count == 5 || !parseNumber(content.sliced(fieldStart, i - fieldStart), fields[count]))
                return fail(line, QStringLiteral("not five numbers: \"%1\"").arg(QString::fromUtf8(content)));
            ++count;
            fieldStart = i + 1;
        }
        if (count != 5)
            return fail(line, QStringLiteral("not five numbers: \"%1\"").arg(QString::fromUtf8(content)));
        double phi = fields[2];
        if (m_symmetry != Tolvane::NoSymmetry && m_symmetry != Tolvane::RotationalSymmetry)
            phi = BalloonFileReader::PhiIndex(phi, m_symmetry, 1.0);
        rows.push_back({fields[0], fields[1], phi, fields[3], fields[4], line});
    }
    if (rows.empty())
        return fail(0, QStringLiteral("no data rows"));

    // The grid.
    const std::vector<double> frequencies = distinctSorted(rows, &Row::frequency);
    const std::vector<double> thetas = distinctSorted(rows, &Row::theta);
    const std::vector<double> phis = distinctSorted(rows, &Row::phi);
    const double thetaStep = commonStep(rows, &Row::theta);
    if (!(thetaStep > 0) || thetas.front() != 0.0 || std::abs(thetas.back() - 180.0) > 1e-6)
        return fail(0, QStringLiteral("theta runs %1 .. %2 degrees; a balloon needs 0 .. 180 in equal steps")
                           .arg(thetas.front())
                           .arg(thetas.back()));
    const int nh = int(std::lround(180.0 / thetaStep)) + 1;

    double phiStep = thetaStep; // nominal for the single rotational column
    int columns = 1;
    bool closeSeam = false;
    if (m_symmetry != Tolvane::RotationalSymmetry) {
        phiStep = commonStep(rows, &Row::phi);
        const double span = m_symmetry == Tolvane::NoSymmetry ? 360.0 : m_symmetry == Tolvane::QuarterSymmetry ? 90.0 : 180.0;
        const double last = phis.back();
        const bool openSeam = m_symmetry == Tolvane::NoSymmetry && std::abs(last + phiStep - 360.0) < 1e-6;
        if (!(phiStep > 0) || phis.front() != 0.0 || (std::abs(last - span) > 1e-6 && !openSeam))
            return fail(0, QStringLiteral("phi runs %1 .. %2 degrees; this symmetry needs 0 .. %3 in equal steps")
                               .arg(phis.front())
                               .arg(last)
                               .arg(span));
        columns = int(std::lround(last / phiStep)) + 1;
        closeSeam = openSeam && m_closeSeam;
    }
    const int nv = columns + (closeSeam ? 1 : 0);
    // Every grid point needs a row: a grid far larger than the file is reported, not allocated.
    const double points = double(frequencies.size()) * nh * columns;
    if (points > 2.0 * double(rows.size()))
        return fail(0, QStringLiteral("%1 frequencies x %2 theta x %3 phi angles need %4 rows; there are %5")
                           .arg(frequencies.size())
                           .arg(nh)
                           .arg(columns)
                           .arg(points, 0, 'f', 0)
                           .arg(rows.size()));

    // Every grid point exactly once.
    const qsizetype perFrequency = qsizetype(nh) * nv;
    std::vector<int> lineOf(frequencies.size() * perFrequency, 0);
    QList<double> magnitudes(lineOf.size());
    QList<double> phases(lineOf.size());
    for (const Row &row : rows) {
        const qsizetype f = std::lower_bound(frequencies.cbegin(), frequencies.cend(), row.frequency) - frequencies.cbegin();
        const int t = gridIndex(row.theta, thetaStep, nh);
        const int p = m_symmetry == Tolvane::RotationalSymmetry ? (row.phi == phis.front() ? 0 : -1)
                                                                 : gridIndex(row.phi, phiStep, columns);
        if (t < 0 || p < 0)
            return fail(row.line, QStringLiteral("theta %1, phi %2 is off the grid of %3 by %4 degrees")
                                      .arg(row.theta)
                                      .arg(row.phi)
                                      .arg(thetaStep)
                                      .arg(phiStep));
        const qsizetype index = f * perFrequency + qsizetype(t) * nv + p;
        if (lineOf[index] != 0)
            return fail(row.line, QStringLiteral("duplicate of line %1").arg(lineOf[index]));
        lineOf[index] = row.line;
        magnitudes[index] = row.magnitude;
        phases[index] = row.phase;
    }
    for (qsizetype index = 0; index < qsizetype(lineOf.size()); ++index) {
        if (lineOf[index] != 0 || (closeSeam && index % nv == nv - 1))
            continue;
        return fail(0, QStringLiteral("no row for %1 Hz, theta %2, phi %3")
                           .arg(frequencies[index / perFrequency])
                           .arg(index % perFrequency / nv * thetaStep)
                           .arg(index % nv * phiStep));
    }
    if (closeSeam) {
        for (qsizetype row = 0; row < qsizetype(lineOf.size()); row += nv) {
            magnitudes[row + nv - 1] = magnitudes[row];
            phases[row + nv - 1] = phases[row];
        }
    }

    m_data.frequencies = QList<double>(frequencies.cbegin(), frequencies.cend());
    m_data.nh = nh;
    m_data.nv = nv;
    m_data.thetaStepWidth = thetaStep;
    m_data.phiStepWidth = phiStep;
    m_data.symmetry = m_symmetry;
    m_data.magnitudes = std::move(magnitudes);
    m_data.phases = std::move(phases);
    m_grid = {int(rows.size()), int(frequencies.size()), frequencies.front(), frequencies.back(), nh, nv,
              thetaStep, phiStep, closeSeam};
    m_error.clear();
    return true;
}
