// SPDX-License-Identifier: MIT
#include "BalloonFile.h"

#include "BalloonFileReader_p.h"
#include "BalloonFormat.h"

#include <QFile>
#include <QIODevice>
#include <QtEndian>

#include <cmath>
#include <cstring>

namespace {

using Field = BalloonFormat::Field;

class Checker
{
public:
    explicit Checker(QByteArrayView bytes)
        : m_data(reinterpret_cast<const uchar *>(bytes.data()))
        , m_size(bytes.size())
    {
    }

    QList<BalloonProblem> problems;

    void add(const QString &field, qint64 offset, const QString &message) { problems.append({field, offset, message}); }
    void add(const Field &field, const QString &message) { add(QString::fromLatin1(field.name), field.offset, message); }

    qint32 int32(const Field &field) const { return qFromLittleEndian<qint32>(m_data + field.offset); }
    quint8 byte(const Field &field) const { return m_data[field.offset]; }
    double real(qint64 offset) const
    {
        const quint64 bits = qFromLittleEndian<quint64>(m_data + offset);
        double d;
        std::memcpy(&d, &bits, sizeof d);
        return d;
    }
    double real(const Field &field) const { return real(field.offset); }

    void check()
    {
        if (m_size < BalloonFormat::HeaderSize) {
            add(QStringLiteral("header"), m_size,
                QStringLiteral("the file ends after %1 bytes, inside the %2-byte header").arg(m_size).arg(BalloonFormat::HeaderSize));
            return;
        }
        const qint32 frequencyCount = int32(BalloonFormat::FrequencyCount);
        const qint32 nh = int32(BalloonFormat::NH);
        const qint32 nv = int32(BalloonFormat::NV);
        const qint32 symmetry = int32(BalloonFormat::Symmetry);
        const bool rotational = symmetry == Tolvane::RotationalSymmetry;
        if (frequencyCount < 1)
            add(BalloonFormat::FrequencyCount, QStringLiteral("%1 frequencies; a balloon needs at least one").arg(frequencyCount));
        if (nh < 2)
            add(BalloonFormat::NH, QStringLiteral("%1 theta rows; a lookup interpolates between at least 2").arg(nh));
        if (nv < (rotational ? 1 : 2))
            add(BalloonFormat::NV, QStringLiteral("%1 phi columns; this symmetry needs at least %2").arg(nv).arg(rotational ? 1 : 2));
        checkStep(BalloonFormat::ThetaStepWidth);
        if (!rotational) // a rotational balloon never divides by its phi step
            checkStep(BalloonFormat::PhiStepWidth);
        if (symmetry < 0 || symmetry > BalloonFormat::LastSymmetry)
            add(BalloonFormat::Symmetry, QStringLiteral("unknown symmetry code %1 (0 to %2)").arg(symmetry).arg(BalloonFormat::LastSymmetry));
        const int magnitudeFormat = byte(BalloonFormat::MagnitudeFormat);
        const int phaseFormat = byte(BalloonFormat::PhaseFormat);
        checkFormat(BalloonFormat::MagnitudeFormat, magnitudeFormat, BalloonFormat::MagnitudeMin, BalloonFormat::MagnitudeMax);
        checkFormat(BalloonFormat::PhaseFormat, phaseFormat, BalloonFormat::PhaseMin, BalloonFormat::PhaseMax);
        if (byte(BalloonFormat::HasFlushMount)) {
            for (int i = 0; i < BalloonFormat::FlushMountCount; ++i) {
                const qint64 offset = BalloonFormat::FlushMountOffset + 8 * i;
                if (!std::isfinite(real(offset)))
                    add(QStringLiteral("flushMount[%1]").arg(i), offset, QStringLiteral("%1 is not finite").arg(real(offset)));
            }
        }
        if (!problems.isEmpty())
            return; // the body's layout follows from the fields above

        const int pairBytes = BalloonFormat::BytesPerValue(magnitudeFormat) + BalloonFormat::BytesPerValue(phaseFormat);
        const qint64 valuesOffset = BalloonFormat::HeaderSize + 16 * qint64(frequencyCount);
        qint64 expected;
        if (__builtin_mul_overflow(qint64(frequencyCount) * nh, qint64(nv) * pairBytes, &expected)
            || __builtin_add_overflow(expected, valuesOffset, &expected) || expected > m_size) {
            add(QStringLiteral("body"), m_size,
                QStringLiteral("the file ends after %1 bytes; its header declares %2 frequencies of %3 x %4 values")
                    .arg(m_size).arg(frequencyCount).arg(nh).arg(nv));
            return;
        }
        if (expected < m_size)
            add(QStringLiteral("body"), expected, QStringLiteral("%1 bytes after the last value").arg(m_size - expected));
        checkFrequencies(frequencyCount);
        checkValues(valuesOffset, qint64(frequencyCount) * nh * nv, magnitudeFormat, phaseFormat);
    }

private:
    const uchar *m_data;
    qint64 m_size;

    void checkStep(const Field &field)
    {
        const double step = real(field);
        if (!(std::isfinite(step) && step > 0))
            add(field, QStringLiteral("%1 is not a positive step in degrees").arg(step));
    }

    void checkFormat(const Field &field, int format, const Field &min, const Field &max)
    {
        if (BalloonFormat::BytesPerValue(format) == 0) {
            add(field, QStringLiteral("unknown format code %1 (%2 byte-scaled, %3 double)")
                           .arg(format).arg(BalloonFormat::ByteScaled).arg(BalloonFormat::Double));
            return;
        }
        if (format != BalloonFormat::ByteScaled)
            return; // the range scales bytes only
        for (const Field *end : {&min, &max}) {
            if (!std::isfinite(real(*end)))
                add(*end, QStringLiteral("%1 is not finite").arg(real(*end)));
        }
        if (std::isfinite(real(min)) && std::isfinite(real(max)) && real(min) > real(max))
            add(min, QStringLiteral("%1 is above %2 %3").arg(real(min)).arg(QLatin1String(max.name)).arg(real(max)));
    }

    void checkFrequencies(qint32 count)
    {
        double previous = 0.0;
        for (qint32 i = 0; i < count; ++i) {
            const qint64 offset = BalloonFormat::HeaderSize + 8 * qint64(i);
            const double frequency = real(offset);
            if (!(std::isfinite(frequency) && frequency > previous)) {
                add(QStringLiteral("frequencies[%1]").arg(i), offset,
                    QStringLiteral("%1 Hz; frequencies must be finite, positive and ascending").arg(frequency));
                break;
            }
            previous = frequency;
        }
        for (qint32 i = 0; i < count; ++i) {
            const qint64 offset = BalloonFormat::HeaderSize + 8 * (qint64(count) + i);
            if (!std::isfinite(real(offset))) {
                add(QStringLiteral("levelOffsets[%1]").arg(i), offset, QStringLiteral("%1 is not finite").arg(real(offset)));
                break;
            }
        }
    }

    // Byte-scaled values are finite whenever their range is; doubles are checked one by one.
    void checkValues(qint64 offset, qint64 count, int magnitudeFormat, int phaseFormat)
    {
        const int magnitudeBytes = BalloonFormat::BytesPerValue(magnitudeFormat);
        const int phaseBytes = BalloonFormat::BytesPerValue(phaseFormat);
        if (magnitudeFormat != BalloonFormat::Double && phaseFormat != BalloonFormat::Double)
            return;
        for (qint64 i = 0; i < count; ++i, offset += magnitudeBytes + phaseBytes) {
            const bool magnitude = magnitudeFormat == BalloonFormat::Double && !std::isfinite(real(offset));
            if (magnitude || (phaseFormat == BalloonFormat::Double && !std::isfinite(real(offset + magnitudeBytes)))) {
                add(magnitude ? QStringLiteral("magnitude") : QStringLiteral("phase"), magnitude ? offset : offset + magnitudeBytes,
                    QStringLiteral("value %1 of the table is not finite").arg(i));
                return;
            }
        }
    }
};

} // namespace

QList<BalloonProblem> BalloonFile::Check(QByteArrayView bytes)
{
    Checker checker(bytes);
    checker.check();
    return checker.problems;
}

BalloonReadResult BalloonFile::Read(QByteArrayView bytes)
{
    BalloonReadResult result;
    result.problems = Check(bytes);
    if (result.problems.isEmpty())
        result.table = Decode(bytes);
    return result;
}

BalloonReadResult BalloonFile::Read(QIODevice &device)
{
    if (!device.isReadable())
        return {nullptr, {{QString(), -1, QStringLiteral("the device is not open for reading")}}};
    return Read(QByteArrayView(device.readAll()));
}

BalloonReadResult BalloonFile::Read(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {nullptr, {{QString(), -1, QStringLiteral("cannot open %1: %2").arg(fileName, file.errorString())}}};
    // Resources stored uncompressed and plain files are mapped in place.
    if (const uchar *mapped = file.size() > 0 ? file.map(0, file.size()) : nullptr)
        return Read(QByteArrayView(mapped, file.size()));
    return Read(file);
}

std::shared_ptr<const BalloonTable> BalloonFile::Decode(QByteArrayView bytes)
{
    BalloonFileReader reader(bytes);
    const BalloonFileReader::Header &h = reader.header();
    QList<double> frequencies;
    std::vector<double> levelOffsets;
    reader.ReadFrequencies(frequencies, levelOffsets);
    std::vector<std::complex<float>> values = reader.ReadTable(levelOffsets);
    std::optional<BalloonTable::FlushMountParameters> flushMount;
    std::vector<std::complex<float>> flushValues;
    if (h.hasFlushMount) {
        flushValues = reader.BuildFlushMountTable(frequencies, values);
        flushMount.emplace();
        std::copy(std::begin(h.flushMount), std::end(h.flushMount), flushMount->begin());
    }
    const BalloonTable::Grid grid{h.nh, h.nv, h.thetaStepWidth, h.phiStepWidth, h.symmetry};
    return std::make_shared<const BalloonTable>(grid, std::move(frequencies), std::move(values), flushMount,
                                                std::move(flushValues));
}
