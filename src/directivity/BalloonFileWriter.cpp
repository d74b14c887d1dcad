// SPDX-License-Identifier: MIT
#include "BalloonFileWriter.h"

#include <QFile>
#include <QIODevice>
#include <QSaveFile>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

constexpr int ReservedHeaderBytes = 79;

void putInt32(char *&out, qint32 value)
{
    qToLittleEndian(value, out);
    out += 4;
}

void putDouble(char *&out, double value)
{
    quint64 bits;
    std::memcpy(&bits, &value, sizeof bits);
    qToLittleEndian(bits, out);
    out += 8;
}

int bytesPerValue(Tolvane::LoudspeakerDataFormat format)
{
    return format == Tolvane::ByteScaled ? 1 : 8;
}

std::pair<double, double> rangeOf(const QList<double> &values)
{
    if (values.isEmpty())
        return {0.0, 0.0};
    const auto [min, max] = std::minmax_element(values.cbegin(), values.cend());
    return {*min, *max};
}

// The byte whose decoded value min + (max - min) * b / 255 lies nearest to value.
quint8 scaledByte(double value, double min, double max)
{
    if (!(max > min))
        return 0;
    const double step = std::round((value - min) / (max - min) * 255.0);
    return quint8(std::clamp(step, 0.0, 255.0));
}

void putValue(char *&out, Tolvane::LoudspeakerDataFormat format, double value, const std::pair<double, double> &range)
{
    if (format == Tolvane::ByteScaled)
        *out++ = char(scaledByte(value, range.first, range.second));
    else
        putDouble(out, value);
}

QString pointName(qsizetype index, const BalloonFileWriter::Data &data)
{
    const qsizetype perFrequency = qsizetype(data.nh) * data.nv;
    return QStringLiteral("index %1 (frequency %2, theta %3, phi %4)")
        .arg(index)
        .arg(index / perFrequency)
        .arg(index % perFrequency / data.nv)
        .arg(index % data.nv);
}

} // namespace

BalloonFileWriter::BalloonFileWriter(Tolvane::LoudspeakerDataFormat magnitudeFormat,
                                     Tolvane::LoudspeakerDataFormat phaseFormat)
    : m_magnitudeFormat(magnitudeFormat)
    , m_phaseFormat(phaseFormat)
{
}

void BalloonFileWriter::setMagnitudeRange(double min, double max)
{
    m_magnitudeRange = std::make_pair(min, max);
}

void BalloonFileWriter::setPhaseRange(double min, double max)
{
    m_phaseRange = std::make_pair(min, max);
}

bool BalloonFileWriter::Validate(const Data &data)
{
    const auto fail = [this](const QString &message) {
        m_error = message;
        return false;
    };
    for (const auto format : {m_magnitudeFormat, m_phaseFormat}) {
        if (format != Tolvane::ByteScaled && format != Tolvane::Double)
            return fail(QStringLiteral("unknown value format %1").arg(int(format)));
    }
    const qsizetype frequencyCount = data.frequencies.size();
    if (frequencyCount == 0)
        return fail(QStringLiteral("no frequencies"));
    if (data.nh <= 0 || data.nv <= 0)
        return fail(QStringLiteral("grid of %1 x %2 angles: both counts must be positive").arg(data.nh).arg(data.nv));
    if (!(std::isfinite(data.thetaStepWidth) && data.thetaStepWidth > 0)
        || !(std::isfinite(data.phiStepWidth) && data.phiStepWidth > 0))
        return fail(QStringLiteral("step widths %1 and %2 degrees: both must be positive")
                        .arg(data.thetaStepWidth)
                        .arg(data.phiStepWidth));
    if (data.symmetry < Tolvane::NoSymmetry || data.symmetry > Tolvane::RotationalSymmetry)
        return fail(QStringLiteral("unknown symmetry %1").arg(int(data.symmetry)));

    // The file is assembled in memory: keep it below 2 GiB even with 16 bytes per pair.
    const double count = double(frequencyCount) * data.nh * data.nv;
    if (count > double(std::numeric_limits<qint32>::max()) / 16)
        return fail(QStringLiteral("%1 values are more than a balloon file can hold").arg(count, 0, 'f', 0));
    const qsizetype values = frequencyCount * data.nh * data.nv;
    const auto sizeError = [&](const char *what, qsizetype given, qsizetype expected) {
        return fail(QStringLiteral("%1 %2 given, %3 expected").arg(given).arg(QLatin1String(what)).arg(expected));
    };
    if (data.levelOffsets.size() != 0 && data.levelOffsets.size() != frequencyCount)
        return sizeError("level offsets", data.levelOffsets.size(), frequencyCount);
    if (data.magnitudes.size() != values)
        return sizeError("magnitudes", data.magnitudes.size(), values);
    if (data.phases.size() != 0 && data.phases.size() != values)
        return sizeError("phases", data.phases.size(), values);

    for (qsizetype i = 0; i < frequencyCount; ++i) {
        if (!std::isfinite(data.frequencies[i]))
            return fail(QStringLiteral("frequency %1 is not finite").arg(i));
        if (i < data.levelOffsets.size() && !std::isfinite(data.levelOffsets[i]))
            return fail(QStringLiteral("level offset %1 is not finite").arg(i));
    }
    for (qsizetype i = 0; i < values; ++i) {
        if (!std::isfinite(data.magnitudes[i]))
            return fail(QStringLiteral("magnitude at %1 is not finite").arg(pointName(i, data)));
        if (i < data.phases.size() && !std::isfinite(data.phases[i]))
            return fail(QStringLiteral("phase at %1 is not finite").arg(pointName(i, data)));
    }
    if (data.flushMount) {
        const FlushMount &m = *data.flushMount;
        const double parameters[] = {m.cutOnFrequency, m.unused, m.attenuation, m.aperture, m.angleNumerator, m.angleOffset};
        for (int i = 0; i < 6; ++i) {
            if (!std::isfinite(parameters[i]))
                return fail(QStringLiteral("flush-mount parameter %1 is not finite").arg(i));
        }
    }
    for (const auto &range : {m_magnitudeRange, m_phaseRange}) {
        if (range && !(std::isfinite(range->first) && std::isfinite(range->second) && range->first <= range->second))
            return fail(QStringLiteral("range %1 .. %2 is not a finite range").arg(range->first).arg(range->second));
    }
    m_error.clear();
    return true;
}

QByteArray BalloonFileWriter::toByteArray(const Data &data)
{
    if (!Validate(data))
        return {};
    const qsizetype frequencyCount = data.frequencies.size();
    const qsizetype values = data.magnitudes.size();
    const auto magnitudeRange = m_magnitudeRange.value_or(rangeOf(data.magnitudes));
    const auto phaseRange = m_phaseRange.value_or(rangeOf(data.phases));
    const FlushMount flush = data.flushMount.value_or(FlushMount{0.0, 0.0, 0.0, 0.0, 0.0, 0.0});

    QByteArray bytes(194 + 16 * frequencyCount + values * (bytesPerValue(m_magnitudeFormat) + bytesPerValue(m_phaseFormat)),
                     Qt::Uninitialized);
    char *out = bytes.data();
    putInt32(out, qint32(frequencyCount));
    putInt32(out, data.nh);
    putInt32(out, data.nv);
    putDouble(out, data.thetaStepWidth);
    putDouble(out, data.phiStepWidth);
    putInt32(out, data.symmetry);
    putDouble(out, magnitudeRange.first);
    putDouble(out, magnitudeRange.second);
    putDouble(out, phaseRange.first);
    putDouble(out, phaseRange.second);
    *out++ = char(m_magnitudeFormat);
    *out++ = char(m_phaseFormat);
    *out++ = char(data.flushMount ? 1 : 0);
    for (double parameter : {flush.cutOnFrequency, flush.unused, flush.attenuation, flush.aperture, flush.angleNumerator,
                             flush.angleOffset})
        putDouble(out, parameter);
    std::memset(out, 0, ReservedHeaderBytes);
    out += ReservedHeaderBytes;
    for (double frequency : data.frequencies)
        putDouble(out, frequency);
    for (qsizetype f = 0; f < frequencyCount; ++f)
        putDouble(out, data.levelOffsets.isEmpty() ? 0.0 : data.levelOffsets[f]);
    for (qsizetype i = 0; i < values; ++i) {
        putValue(out, m_magnitudeFormat, data.magnitudes[i], magnitudeRange);
        putValue(out, m_phaseFormat, data.phases.isEmpty() ? 0.0 : data.phases[i], phaseRange);
    }
    Q_ASSERT(out == bytes.data() + bytes.size());
    return bytes;
}

bool BalloonFileWriter::write(const Data &data, QIODevice *device)
{
    const QByteArray bytes = toByteArray(data);
    if (bytes.isEmpty())
        return false;
    if (device->write(bytes) != bytes.size()) {
        m_error = device->errorString();
        return false;
    }
    return true;
}

bool BalloonFileWriter::write(const Data &data, const QString &fileName)
{
    const QByteArray bytes = toByteArray(data);
    if (bytes.isEmpty())
        return false;
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        m_error = QStringLiteral("%1: %2").arg(fileName, file.errorString());
        return false;
    }
    return true;
}
