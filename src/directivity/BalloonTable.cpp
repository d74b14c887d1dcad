// SPDX-License-Identifier: MIT
#include "BalloonTable.h"

#include "BalloonFileReader_p.h"
#include "BalloonFrequencyIndex_p.h"
#include "BalloonKernel_p.h"

#include <stdexcept>

using namespace BalloonKernel;

// The frequencies with the index that snaps lookups to them, shared by the tables of one grid.
struct BalloonTable::Frequencies {
    QList<double> values;
    BalloonFrequencyIndex index;
};

BalloonTable::BalloonTable(const Grid &grid, QList<double> frequencies, std::vector<std::complex<float>> values,
                           std::optional<FlushMountParameters> flushMount,
                           std::vector<std::complex<float>> flushMountValues)
    : m_grid(grid)
    , m_flushMount(flushMount)
{
    auto f = std::make_shared<Frequencies>();
    f->values = std::move(frequencies);
    f->index.Reset(f->values.constData(), f->values.size());
    m_frequencies = std::move(f);
    m_compactGrid = grid.nh >= 0 && grid.nv >= 0 && qint64(m_frequencies->values.size()) * grid.nh < (qint64(1) << 31);
    m_values = std::make_shared<const Values>(std::move(values));
    if (flushMount)
        m_flushMountValues = std::make_shared<const Values>(std::move(flushMountValues));
}

BalloonTable::~BalloonTable() = default;

std::shared_ptr<const BalloonTable> BalloonTable::WithGridOf(const BalloonTable &grid, const BalloonTable &values,
                                                             const BalloonTable *flushMount)
{
    std::shared_ptr<BalloonTable> table(new BalloonTable);
    table->m_grid = grid.m_grid;
    table->m_compactGrid = grid.m_compactGrid;
    table->m_frequencies = grid.m_frequencies;
    table->m_values = values.m_values;
    if (flushMount && flushMount->m_flushMount) {
        table->m_flushMount = flushMount->m_flushMount;
        table->m_flushMountValues = flushMount->m_flushMountValues;
    }
    return table;
}

const QList<double> &BalloonTable::GetFrequencies() const
{
    return m_frequencies->values;
}

const std::complex<float> *BalloonTable::GetValues() const
{
    return m_values->empty() ? nullptr : m_values->data();
}

qsizetype BalloonTable::GetValueCount() const
{
    return qsizetype(m_values->size());
}

BalloonTable::FlushMountParameters BalloonTable::GetFlushMountParameters() const
{
    return m_flushMount.value_or(FlushMountParameters{});
}

const std::complex<float> *BalloonTable::GetFlushMountValues() const
{
    return m_flushMountValues && !m_flushMountValues->empty() ? m_flushMountValues->data() : nullptr;
}

qsizetype BalloonTable::GetFlushMountValueCount() const
{
    return m_flushMountValues ? qsizetype(m_flushMountValues->size()) : 0;
}

int BalloonTable::FindFrequencyIndex(double frequency) const
{
    const QList<double> &v = m_frequencies->values;
    return m_frequencies->index.Find(v.constData(), v.size(), frequency);
}

BalloonCell BalloonTable::GetCell(double theta, double phi, bool flushMount) const
{
    BalloonCell cell;
    cell.flushMount = flushMount && m_flushMount;
    const double t = theta / m_grid.thetaStepWidth;
    const double p = cell.flushMount ? flushMountColumn(phi)
                                     : BalloonFileReader::PhiIndex(phi, m_grid.symmetry, m_grid.phiStepWidth);
    cell.theta = interpolationIndex(t, cell.thetaFraction);
    cell.phi = interpolationIndex(p, cell.phiFraction);
    constexpr double Limit = 2147483648.0; // with a compact grid, no index product overflows
    cell.plain = !cell.flushMount && t >= 0 && t < Limit && p >= 0 && p < Limit;
    return cell;
}

Complex BalloonTable::GetValue(int frequencyIndex, const BalloonCell &cell) const
{
    // The short way: a plain cell inside the table, with no overflow or per-corner checks and no
    // roots unless the phases nearly cancel. Everything else takes the checked way, with the same
    // results where both go.
    if (Q_LIKELY(cell.plain && m_compactGrid && frequencyIndex >= 0
                 && frequencyIndex < m_frequencies->values.size())) {
        const qint64 stride = m_grid.nv;
        const qint64 first = (frequencyIndex * qint64(m_grid.nh) + cell.theta) * stride + cell.phi;
        if (Q_LIKELY(first < qint64(m_values->size()) - stride - 1)) {
            const std::complex<float> *values = m_values->data() + first;
            const WeightedSum sum = weightedSum(values, stride, cell.thetaFraction, cell.phiFraction);
            return Q_LIKELY(sum.keepsPhases) ? sum.value
                                             : exactCell(values, stride, cell.thetaFraction, cell.phiFraction);
        }
    }
    return GetCheckedValue(frequencyIndex, cell);
}

Q_NEVER_INLINE Complex BalloonTable::GetCheckedValue(int frequencyIndex, const BalloonCell &cell) const
{
    const Values *table = cell.flushMount ? m_flushMountValues.get() : m_values.get();
    const std::complex<float> *data = table ? table->data() : nullptr;
    const qint64 size = table ? qint64(table->size()) : 0;
    const qint64 stride = cell.flushMount ? 2 : m_grid.nv;

    // Checked on the flat index only, as a vector's at() would: a row past the end of one
    // frequency reads the next frequency.
    const auto at = [&](qint64 tt, qint64 pp) {
        qint64 flat;
        if (__builtin_mul_overflow(qint64(frequencyIndex), qint64(m_grid.nh), &flat)
            || __builtin_add_overflow(flat, tt, &flat) || __builtin_mul_overflow(flat, stride, &flat)
            || __builtin_add_overflow(flat, pp, &flat) || flat < 0 || flat >= size)
            throw std::out_of_range("invalid vector subscript");
        return data[flat];
    };

    const double tf = cell.thetaFraction;
    const double pf = cell.phiFraction;
    double weights[4];
    cornerWeights(tf, pf, weights);
    std::complex<float> corners[4];
    for (int corner = 0; corner < 4; ++corner) {
        if (weights[corner] > 0)
            corners[corner] = at(cell.theta + corner / 2, cell.phi + corner % 2);
    }
    Complex sum;
    double magnitudeSum;
    if (interpolateCell(corners, 2, tf, pf, sum, magnitudeSum))
        return sum;
    const Complex nearest(at(cell.theta + roundFraction(tf), cell.phi + roundFraction(pf)));
    return Complex::fromPolar(magnitudeSum, nearest.arg());
}
