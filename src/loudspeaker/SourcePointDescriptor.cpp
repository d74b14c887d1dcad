// SPDX-License-Identifier: MIT
#include "SourcePointDescriptor.h"

#include "Balloon.h"
#include "Warning.h"
#include "BalloonFileReader_p.h"
#include "BalloonFrequencyIndex_p.h"
#include "DspChannelDescriptor.h"
#include "UpperState_p.h"
#include "Vocabulary.h"

#include <QFile>
#include <QFileInfo>
#include <QThreadPool>
#include <QtConcurrent/QtConcurrentRun>

#include <algorithm>
#include <climits>
#include <cmath>
#include <stdexcept>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

using Vocabulary::DefaultKey;
const QString DefaultAmplifier = QStringLiteral("D80");

QString resourcePath(const QVariant &fileName)
{
    return Vocabulary::resourcePath(fileName.toString());
}

template<typename T>
T valueForMounting(const QMap<QString, T> &map, Tolvane::Mounting mounting)
{
    return Vocabulary::firstHeld(map, {Vocabulary::mountingText(mounting)});
}

QMap<QString, QList<double>> readAngleMap(const QVariantMap &map)
{
    QMap<QString, QList<double>> angles;
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        QList<double> list;
        const QVariantList values = it.value().toList();
        list.reserve(values.size());
        for (const QVariant &value : values)
            list.append(value.toDouble());
        angles.insert(it.key(), list);
    }
    return angles;
}

// Truncation toward zero that saturates instead of overflowing (hostile step widths).
int truncateToInt(double value)
{
    if (value >= 2147483648.0)
        return INT_MAX;
    if (value <= -2147483649.0)
        return INT_MIN;
    return std::isnan(value) ? 0 : int(value);
}

// Integer part of a grid coordinate; beyond +-2^62 (and NaN) saturates, which always lies
// outside any table.
qint64 saturatedIndex(double integral)
{
    constexpr double Limit = 4611686018427387904.0; // 2^62
    if (integral >= Limit || std::isnan(integral))
        return qint64(1) << 62;
    if (integral <= -Limit)
        return -(qint64(1) << 62);
    return qint64(integral);
}

// Integer part toward zero and fraction, as modf gives them (the sign of a zero fraction aside,
// which no weight can see). Converting through an integer keeps the call out of the hot path.
inline qint64 splitIndex(double value, double &fraction)
{
    if (std::abs(value) < 4503599627370496.0) { // 2^52: from there on every double is an integer
        const qint64 integral = qint64(value);
        fraction = value - double(integral);
        return integral;
    }
    fraction = std::isnan(value) ? value : 0.0; // larger magnitudes are integers already
    return saturatedIndex(value);
}

// On a grid line above the first, a direction is the upper edge of the cell below.
inline qint64 interpolationIndex(double value, double &fraction)
{
    const qint64 i = splitIndex(value, fraction);
    if (fraction == 0.0 && i > 0) {
        fraction = 1.0;
        return i - 1;
    }
    return i;
}

// The flush-mount table has two columns: 90 degrees (0) and 270 degrees (1).
inline double flushMountColumn(double phi)
{
    double p = phi >= 0.0 && phi < 360.0 ? phi : std::fmod(phi, 360.0);
    if (p < 0)
        p += 360.0;
    if (std::abs(p - 90.0) < 0.1)
        return 0.0;
    if (std::abs(p - 270.0) < 0.1)
        return 1.0;
    return 0.0;
}

// Several tables: the first with the key, else the first; one table: that one, whatever the key.
template<typename Tables>
auto chooseTable(const Tables &tables, const QString &key) -> decltype(&tables.front())
{
    if (tables.empty())
        return nullptr;
    if (tables.size() > 1) {
        for (const auto &table : tables) {
            if (table.key == key)
                return &table;
        }
    }
    return &tables.front();
}

// The bilinear weights of the corners (t, p), (t, p + 1), (t + 1, p) and (t + 1, p + 1).
inline void cornerWeights(double tf, double pf, double (&w)[4])
{
    w[0] = (1 - tf) * (1 - pf);
    w[1] = (1 - tf) * pf;
    w[2] = tf * (1 - pf);
    w[3] = tf * pf;
}

// sqrt(x) >= y exactly as with the root, which is only taken where x lies within far more than
// the rounding of either side of y * y.
inline bool rootAtLeast(double x, double y)
{
    if (y > 1e-150 && y < 1e150) {
        const double square = y * y;
        if (x >= square * (1 + 0x1p-40))
            return true;
        if (x <= square * (1 - 0x1p-40))
            return false;
    }
    return std::sqrt(x) >= y;
}

#ifdef __SSE2__
// One row of a cell: the real and imaginary parts of its two neighbouring corners (one load,
// split so that squares, roots and weights need no shuffling), their weights and the mask of the
// positive ones.
struct CellRow {
    __m128d re;
    __m128d im;
    __m128d weight;
    __m128d use;
};

inline CellRow cellRow(const std::complex<float> *corners, double rowWeight, __m128d columns)
{
    __m128 pair = _mm_loadu_ps(reinterpret_cast<const float *>(corners));
    pair = _mm_shuffle_ps(pair, pair, _MM_SHUFFLE(3, 1, 2, 0)); // re, re, im, im
    const __m128d weight = _mm_mul_pd(_mm_set1_pd(rowWeight), columns);
    return {_mm_cvtps_pd(pair), _mm_cvtps_pd(_mm_movehl_ps(pair, pair)), weight,
            _mm_cmpgt_pd(weight, _mm_setzero_pd())};
}

// Adds w * c of the row's corners of positive weight to the (re, im) total, in corner order; a
// skipped corner adds +0, which leaves the total exactly as it was.
inline __m128d addWeighted(__m128d total, const CellRow &row)
{
    const __m128d reParts = _mm_and_pd(row.use, _mm_mul_pd(row.re, row.weight));
    const __m128d imParts = _mm_and_pd(row.use, _mm_mul_pd(row.im, row.weight));
    total = _mm_add_pd(total, _mm_unpacklo_pd(reParts, imParts));
    return _mm_add_pd(total, _mm_unpackhi_pd(reParts, imParts));
}

inline __m128d squaredMagnitudes(const CellRow &row)
{
    return _mm_add_pd(_mm_mul_pd(row.re, row.re), _mm_mul_pd(row.im, row.im));
}
#endif

// Sums w * c and w * |c| over the corners (t, p), (t, p + 1), (t + 1, p) and (t + 1, p + 1) of
// positive weight, at cell[0], cell[1], cell[stride] and cell[stride + 1], in that order, and
// tells whether the phases keep the sum (|sum| >= 0.99 * sum of w * |c|).
inline bool interpolateCell(const std::complex<float> *cell, qint64 stride, double tf, double pf, Complex &sum,
                            double &magnitudeSum)
{
#ifdef __SSE2__
    const __m128d columns = _mm_set_pd(pf, 1 - pf);
    __m128d total = _mm_setzero_pd();
    double m = 0.0;
    for (int row = 0; row < 2; ++row) {
        const CellRow r = cellRow(cell + row * stride, row == 0 ? 1 - tf : tf, columns);
        total = addWeighted(total, r);
        const __m128d magnitudes = _mm_and_pd(r.use, _mm_mul_pd(_mm_sqrt_pd(squaredMagnitudes(r)), r.weight));
        m += _mm_cvtsd_f64(magnitudes);
        m += _mm_cvtsd_f64(_mm_unpackhi_pd(magnitudes, magnitudes));
    }
    magnitudeSum = m;
    sum = Complex(_mm_cvtsd_f64(total), _mm_cvtsd_f64(_mm_unpackhi_pd(total, total)));
#else
    double w[4];
    cornerWeights(tf, pf, w);
    const Complex corners[4] = {Complex(cell[0]), Complex(cell[1]), Complex(cell[stride]), Complex(cell[stride + 1])};
    sum = Complex(0.0, 0.0);
    magnitudeSum = 0.0;
    for (int corner = 0; corner < 4; ++corner) {
        if (w[corner] > 0) {
            sum += corners[corner] * w[corner];
            magnitudeSum += corners[corner].abs() * w[corner];
        }
    }
#endif
    return rootAtLeast(sum.real() * sum.real() + sum.imag() * sum.imag(), 0.99 * magnitudeSum);
}

// A cell inside a table: its corner (t, p), the stride to the next row and the fractions.
struct Cell {
    const std::complex<float> *values = nullptr;
    qint64 stride = 0;
    double tf = 0.0;
    double pf = 0.0;
};

// The value of a cell inside the table, deciding the cancellation rule with the roots.
Q_NEVER_INLINE Complex exactCell(const std::complex<float> *cell, qint64 stride, double tf, double pf)
{
    Complex sum;
    double magnitudeSum;
    if (interpolateCell(cell, stride, tf, pf, sum, magnitudeSum))
        return sum;
    // Opposite phases cancel: keep the weighted level, with the phase of the nearest corner.
    const Complex nearest(cell[(tf >= 0.5 ? stride : 0) + (pf >= 0.5 ? 1 : 0)]);
    return Complex::fromPolar(magnitudeSum, nearest.arg());
}

// The weighted sum of interpolateCell(), and a test without roots that is sufficient for the
// cancellation rule to keep it. The weights add up to at most 1 plus rounding, so Cauchy-Schwarz
// gives (sum of w|c|)^2 <= sum of w|c|^2: when |sum|^2 >= 0.99^2 * sum of w|c|^2, with a margin
// far above every rounding of either side, the rule keeps the sum. Squares of single-precision
// values are exact and far from overflow; tiny cells, where underflow could eat the margin, and
// NaN fail the test and are decided the exact way.
// Corners of weight zero are added too: a finite one adds a zero, which leaves a sum that started
// at +0 exactly as it was; an infinite or NaN one makes the sum NaN, which goes the exact way.
struct WeightedSum {
    Complex value;
    bool keepsPhases;
};

inline WeightedSum weightedSum(const std::complex<float> *cell, qint64 stride, double tf, double pf)
{
#ifdef __SSE2__
    constexpr double Factor = 0.99 * 0.99 * (1 + 0x1p-40);
    double w[4];
    cornerWeights(tf, pf, w);
    __m128d total = _mm_setzero_pd();
    __m128d squares = _mm_setzero_pd();
    for (int row = 0; row < 2; ++row) {
        const __m128 pair = _mm_loadu_ps(reinterpret_cast<const float *>(cell + row * stride));
        const __m128d corners[2] = {_mm_cvtps_pd(pair), _mm_cvtps_pd(_mm_movehl_ps(pair, pair))};
        for (int column = 0; column < 2; ++column) {
            const __m128d part = _mm_mul_pd(corners[column], _mm_set1_pd(w[2 * row + column]));
            total = _mm_add_pd(total, part);
            squares = _mm_add_pd(squares, _mm_mul_pd(part, corners[column]));
        }
    }
    const double q = _mm_cvtsd_f64(squares) + _mm_cvtsd_f64(_mm_unpackhi_pd(squares, squares));
    const Complex sum(_mm_cvtsd_f64(total), _mm_cvtsd_f64(_mm_unpackhi_pd(total, total)));
    return {sum, q >= 0x1p-800 && sum.real() * sum.real() + sum.imag() * sum.imag() >= Factor * q};
#else
    // Elsewhere the rule itself decides.
    WeightedSum result;
    double magnitudeSum;
    result.keepsPhases = interpolateCell(cell, stride, tf, pf, result.value, magnitudeSum);
    return result;
#endif
}

// std::round of a cell fraction in [-1, 1]: halves away from zero.
qint64 roundFraction(double fraction)
{
    return fraction >= 0.5 ? 1 : fraction <= -0.5 ? -1 : 0;
}

} // namespace

SourcePointDescriptor::SourcePointDescriptor(QObject *parent)
    : QObject(parent)
{
}

SourcePointDescriptor::~SourcePointDescriptor()
{
    // The worker writes into this object; it catches everything it throws, so waiting cannot rethrow.
    WaitForBackgroundRead();
}

bool SourcePointDescriptor::Read(const QVariantMap &map)
{
    m_name = map.value(QStringLiteral("name")).toString();
    m_origins = Point::fromVariantMap(map.value(QStringLiteral("origin")).toMap());
    m_centers = Point::fromVariantMap(map.value(QStringLiteral("center")).toMap());
    m_flushMountAttenuation = map.value(QStringLiteral("flushMountAttenuation")).toBool();

    // The channel reads its own keys from the same entry.
    delete m_dspChannels.take(DefaultAmplifier);
    m_dspChannels.insert(DefaultAmplifier, new DspChannelDescriptor(map, this));

    m_balloonDataMap = map.value(QStringLiteral("balloonData")).toMap();
    for (auto it = m_balloonDataMap.cbegin(); it != m_balloonDataMap.cend(); ++it) {
        QFile file(resourcePath(it.value()));
        if (!file.open(QIODevice::ReadOnly)) {
            qCWarning(lcBalloon, "Balloon data file not found: %s", file.fileName().toLocal8Bit().constData());
            continue;
        }
        if (file.size() != 0)
            m_hasBalloonFiles = true;
    }

    m_verticalAngles = readAngleMap(map.value(QStringLiteral("verticalAngles")).toMap());
    m_normalAngles = readAngleMap(map.value(QStringLiteral("normalAngles")).toMap());
    const QList<double> defaultNormal = m_normalAngles.value(DefaultKey);
    m_hasNormalAngle = !defaultNormal.isEmpty();
    m_normalAngle = m_hasNormalAngle ? defaultNormal.first() : 0.0;
    return true;
}

void SourcePointDescriptor::ReadBalloonData(ReadBalloonDataMode mode)
{
    if (!m_flushMountAttenuation) {
        switch (mode) {
        case Asynchronous: {
            if (m_backgroundRead.isRunning())
                return;
            WaitForBackgroundRead(); // finished: only takes over what the worker wrote
            if (m_tableCount.load(std::memory_order_acquire) > 0)
                return;
            QThreadPool *pool = QThreadPool::globalInstance();
            if (!pool)
                return;
            // The flag's release/acquire pairs publish this object to the worker and back.
            m_backgroundReadDone.store(false, std::memory_order_release);
            m_backgroundRead = QtConcurrent::run(pool, [this] {
                m_backgroundReadDone.load(std::memory_order_acquire);
                // A file the reader refuses leaves the point unloaded; nothing may reach the pool.
                try {
                    ReadBalloonDataFromMap();
                } catch (...) {
                }
                m_backgroundReadDone.store(true, std::memory_order_release);
            });
            return;
        }
        case Synchronous:
            break;
        default:
            qCWarning(lcBalloon, "Unexpected readBalloonDataMode = %d", int(mode));
            return;
        }
    }
    // Never read alongside a background read of the same point.
    WaitForBackgroundRead();
    if (m_tableCount.load(std::memory_order_acquire) == 0)
        ReadBalloonDataFromMap();
}

void SourcePointDescriptor::WaitForBackgroundRead()
{
    if (m_backgroundRead.isRunning())
        m_backgroundRead.waitForFinished();
    // Pairs with the worker's last store, so that everything it wrote is visible here (Qt's own
    // waiting synchronises too, but not in a way every race detector can see).
    m_backgroundReadDone.load(std::memory_order_acquire);
}

void SourcePointDescriptor::ReadBalloonDataFromMap()
{
    for (auto it = m_balloonDataMap.cbegin(); it != m_balloonDataMap.cend(); ++it)
        ReadBalloonFile(it.key(), resourcePath(it.value()));
}

bool SourcePointDescriptor::ReadBalloonFile(const QString &key, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() == 0)
        return false;
    m_balloonDataLoaded.store(false, std::memory_order_release);

    // Resources are mapped in place when they are stored uncompressed.
    QByteArray buffer;
    QByteArrayView bytes;
    if (const uchar *mapped = file.map(0, file.size())) {
        bytes = QByteArrayView(mapped, file.size());
    } else {
        buffer = file.readAll();
        bytes = buffer;
    }

    BalloonFileReader reader(bytes);
    const BalloonFileReader::Header &h = reader.header();
    m_nh = h.nh;
    m_nv = h.nv;
    m_thetaStepWidth = h.thetaStepWidth;
    m_phiStepWidth = h.phiStepWidth;
    m_symmetryValue = h.symmetry;
    m_magnitudeFormat = h.magnitudeFormat;
    m_phaseFormat = h.phaseFormat;
    if (h.hasFlushMount) {
        std::copy(std::begin(h.flushMount), std::end(h.flushMount), std::begin(m_flushMount));
        m_fileHasFlushMount = true;
    }

    std::vector<double> levelOffsets;
    reader.ReadFrequencies(m_frequencies, levelOffsets);
    if (!m_frequencyIndex)
        m_frequencyIndex = std::make_unique<BalloonFrequencyIndex>();
    m_frequencyIndex->Reset(m_frequencies.constData(), m_frequencies.size());
    m_compactGrid = m_nh >= 0 && m_nv >= 0 && qint64(m_frequencies.size()) * m_nh < (qint64(1) << 31);

    m_tables.push_back(Table{key, reader.ReadTable(levelOffsets)});
    m_tableCount.fetch_add(1, std::memory_order_release);
    m_balloonFileNames.insert(key, QFileInfo(path).fileName());

    const std::vector<std::complex<float>> &values = m_tables.back().values;
    m_balloons.insert(key,
                      std::make_shared<const nvScientificComputing::Balloon>(
                          truncateToInt(m_thetaStepWidth), truncateToInt(m_phiStepWidth), m_symmetryValue, m_nh, m_nv,
                          m_frequencies.isEmpty() ? 0.0 : m_frequencies.first(),
                          m_frequencies.isEmpty() ? 0.0 : m_frequencies.last(), values.empty() ? nullptr : values.data(),
                          m_flushMount[5], m_flushMount[3]));

    if (h.hasFlushMount)
        m_flushTables.push_back(Table{key, reader.BuildFlushMountTable(m_frequencies, values)});

    m_balloonDataLoaded.store(true, std::memory_order_release);
    Q_EMIT BalloonDataChanged();
    return true;
}

bool SourcePointDescriptor::IsBalloonDataLoaded() const
{
    return m_balloonDataLoaded.load(std::memory_order_acquire);
}

void SourcePointDescriptor::SetName(const QString &name)
{
    m_name = name;
}

QString SourcePointDescriptor::GetDefaultAmplifier()
{
    return DefaultAmplifier;
}

Point SourcePointDescriptor::GetOrigin(Tolvane::Mounting mounting)
{
    return valueForMounting(m_origins, mounting);
}

Point SourcePointDescriptor::GetCenter(Tolvane::Mounting mounting)
{
    return valueForMounting(m_centers, mounting);
}

QList<double> SourcePointDescriptor::GetVerticalAngles(Tolvane::Mounting mounting)
{
    return valueForMounting(m_verticalAngles, mounting);
}

QList<double> SourcePointDescriptor::GetNormalAngles(Tolvane::Mounting mounting)
{
    return valueForMounting(m_normalAngles, mounting);
}

void SourcePointDescriptor::SetCenterMap(const QMap<QString, Point> &centers)
{
    m_centers = centers;
}

DspChannelDescriptor *SourcePointDescriptor::GetDspChannelDescriptor(const QString &amplifier) const
{
    const auto it = m_dspChannels.constFind(amplifier);
    if (it != m_dspChannels.cend())
        return *it;
    return m_dspChannels.value(DefaultAmplifier, nullptr);
}

QList<int> SourcePointDescriptor::GetSpeakerIds()
{
    DspChannelDescriptor *channel = m_dspChannels.value(DefaultAmplifier, nullptr);
    return channel ? channel->GetSpeakerIds() : QList<int>();
}

QString SourcePointDescriptor::GetSwitchDescription(int switchId, Tolvane::Mounting mounting)
{
    DspChannelDescriptor *channel = m_dspChannels.value(DefaultAmplifier, nullptr);
    return channel ? channel->GetSwitchDescription(channel->GetDefaultLoudspeakerSetupKey(mounting), switchId) : QString();
}

QMap<int, QString> SourcePointDescriptor::GetSwitchValues(int switchId, Tolvane::Mounting mounting)
{
    DspChannelDescriptor *channel = m_dspChannels.value(DefaultAmplifier, nullptr);
    return channel ? channel->GetSwitchValues(channel->GetDefaultLoudspeakerSetupKey(mounting), switchId)
                   : QMap<int, QString>();
}

Tolvane::LoudspeakerSymmetry SourcePointDescriptor::GetSymmetry()
{
    return static_cast<Tolvane::LoudspeakerSymmetry>(m_symmetryValue);
}

QString SourcePointDescriptor::GetBalloonDataKey(double value)
{
    const QString key = QString::number(value, 'f', 1);
    const auto it = m_balloonDataMap.constFind(key);
    if (it != m_balloonDataMap.cend() && !it->isNull())
        return key;
    return DefaultKey;
}

QString SourcePointDescriptor::GetBalloonDataFilename(const QString &key)
{
    return m_balloonFileNames.value(key);
}

std::shared_ptr<const nvScientificComputing::IBalloon> SourcePointDescriptor::GetBalloon(const QString &key)
{
    return m_balloons.value(key);
}

const SourcePointDescriptor::Table *SourcePointDescriptor::ChooseTable(const QString &key, bool flushMount) const
{
    return chooseTable(flushMount && m_fileHasFlushMount ? m_flushTables : m_tables, key);
}

const std::complex<float> *SourcePointDescriptor::GetRawBalloonData(const QString &key, bool flushMount) const
{
    if (!IsBalloonDataLoaded())
        return nullptr;
    const Table *table = ChooseTable(key, flushMount);
    return table && !table->values.empty() ? table->values.data() : nullptr;
}

// The short way of GetBalloonData(), for directions whose cell lies in a table of a plausible
// grid: no overflow or per-corner checks, and no roots unless the phases nearly cancel. Everything
// else takes the checked way, with the same results where both go.
struct SourcePointDescriptor::Lookup
{
    // The corner (t, p) and the fractions in [0, 1], where the checked way would find the same
    // cell inside the table; null values otherwise.
    Q_ALWAYS_INLINE static Cell Locate(const SourcePointDescriptor &s, const Table *table, int f, double theta,
                                       double phi, bool flushMount)
    {
        const double rotated = s.GetPhiWithNormalAngle(phi);
        if (Q_UNLIKELY(!table || !s.m_compactGrid || (flushMount && s.m_fileHasFlushMount)
                       || !(rotated >= 0.0 && rotated < 360.0)))
            return {};
        const double tt = theta / s.m_thetaStepWidth;
        const double pp = BalloonFileReader::TurnPhiIndex(rotated, s.m_symmetryValue, s.m_phiStepWidth);
        constexpr double Limit = 2147483648.0; // with the grid's bounds, no index product overflows
        if (Q_UNLIKELY(f < 0 || !(tt >= 0 && tt < Limit && pp >= 0 && pp < Limit)))
            return {};
        // interpolationIndex() for indices known to lie in [0, 2^31), whose fractions are not negative
        Cell cell;
        qint64 t = qint64(tt);
        qint64 p = qint64(pp);
        cell.tf = tt - double(t);
        cell.pf = pp - double(p);
        if (t > 0 && cell.tf <= 0.0) {
            cell.tf = 1.0;
            --t;
        }
        if (p > 0 && cell.pf <= 0.0) {
            cell.pf = 1.0;
            --p;
        }
        cell.stride = s.m_nv;
        const qint64 first = (f * qint64(s.m_nh) + t) * cell.stride + p;
        if (Q_UNLIKELY(first >= qint64(table->values.size()) - cell.stride - 1))
            return {};
        cell.values = table->values.data() + first;
        return cell;
    }

    // The value at a direction in `table` at the frequency with index f (-1: none); everything
    // outside the short way's bounds is handed to the checked way.
    Q_ALWAYS_INLINE static Complex Value(const SourcePointDescriptor &s, const Table *table, int f, const QString &key,
                                         double frequency, double theta, double phi, bool flushMount)
    {
        const Cell cell = Locate(s, table, f, theta, phi, flushMount);
        if (Q_UNLIKELY(!cell.values))
            return s.GetCheckedBalloonData(key, frequency, theta, phi, flushMount);
        const WeightedSum sum = weightedSum(cell.values, cell.stride, cell.tf, cell.pf);
        return Q_LIKELY(sum.keepsPhases) ? sum.value : exactCell(cell.values, cell.stride, cell.tf, cell.pf);
    }
};

Complex SourcePointDescriptor::GetBalloonData(const QString &key, double frequency, double theta, double phi,
                                              bool flushMount)
{
    ClearUpperState(frequency, theta, phi);
    if (Q_UNLIKELY(!m_balloonDataLoaded.load(std::memory_order_acquire)))
        return Complex(0.0, 0.0);
    // A point with one table asked for a frequency of its grid, the usual case, needs no call
    // (and no registers saved for one): no key comparison and no search.
    const int f = Q_LIKELY(m_tables.size() == 1)
        ? m_frequencyIndex->FindOnGrid(m_frequencies.constData(), m_frequencies.size(), frequency)
        : -1;
    if (Q_UNLIKELY(f < 0))
        return GetSearchedBalloonData(key, frequency, theta, phi, flushMount);
    return Lookup::Value(*this, &m_tables.front(), f, key, frequency, theta, phi, flushMount);
}

Q_NEVER_INLINE Complex SourcePointDescriptor::GetSearchedBalloonData(const QString &key, double frequency,
                                                                     double theta, double phi, bool flushMount) const
{
    const int f = m_frequencyIndex->Find(m_frequencies.constData(), m_frequencies.size(), frequency);
    return Lookup::Value(*this, chooseTable(m_tables, key), f, key, frequency, theta, phi, flushMount);
}

Q_NEVER_INLINE Complex SourcePointDescriptor::GetCheckedBalloonData(const QString &key, double frequency, double theta,
                                                                    double phi, bool flushMount) const
{
    const int frequencyIndex = m_frequencyIndex->Find(m_frequencies.constData(), m_frequencies.size(), frequency);
    phi = GetPhiWithNormalAngle(phi);
    const bool flush = flushMount && m_fileHasFlushMount;
    double tf;
    double pf;
    const qint64 t = interpolationIndex(theta / m_thetaStepWidth, tf);
    const qint64 p = interpolationIndex(
        flush ? flushMountColumn(phi) : BalloonFileReader::PhiIndex(phi, m_symmetryValue, m_phiStepWidth), pf);

    const Table *table = chooseTable(flush ? m_flushTables : m_tables, key);
    const std::complex<float> *data = table ? table->values.data() : nullptr;
    const qint64 size = table ? qint64(table->values.size()) : 0;
    const qint64 stride = flush ? 2 : m_nv;

    // Checked on the flat index only, as a vector's at() would: a row past the end of one
    // frequency reads the next frequency.
    const auto at = [&](qint64 tt, qint64 pp) {
        qint64 flat;
        if (__builtin_mul_overflow(qint64(frequencyIndex), qint64(m_nh), &flat) || __builtin_add_overflow(flat, tt, &flat)
            || __builtin_mul_overflow(flat, stride, &flat) || __builtin_add_overflow(flat, pp, &flat) || flat < 0
            || flat >= size)
            throw std::out_of_range("invalid vector subscript");
        return data[flat];
    };

    double weights[4];
    cornerWeights(tf, pf, weights);
    std::complex<float> corners[4];
    for (int corner = 0; corner < 4; ++corner) {
        if (weights[corner] > 0)
            corners[corner] = at(t + corner / 2, p + corner % 2);
    }
    Complex sum;
    double magnitudeSum;
    if (interpolateCell(corners, 2, tf, pf, sum, magnitudeSum))
        return sum;
    const Complex nearest(at(t + roundFraction(tf), p + roundFraction(pf)));
    return Complex::fromPolar(magnitudeSum, nearest.arg());
}
