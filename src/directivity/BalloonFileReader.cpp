// SPDX-License-Identifier: MIT
#include "BalloonFileReader_p.h"
#include "UpperState.h"

#include <QDataStream>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double DegreesPerRadian = 57.29577951308232;
constexpr double SpeedOfSound = 343.0;
constexpr int ReservedHeaderBytes = 79;

enum class Kind { Byte, Double, None };

Kind kindOf(int format)
{
    switch (format) {
    case Tolvane::ByteScaled:
        return Kind::Byte;
    case Tolvane::Double:
        return Kind::Double;
    default:
        return Kind::None;
    }
}

constexpr int bytesOf(Kind kind)
{
    return kind == Kind::Byte ? 1 : kind == Kind::Double ? 8 : 0;
}

// The per-value formulas. Both the tables and the direct path go through these, so a value
// decoded through a table is bit-for-bit the value decoded on its own.
inline double scaleByte(double min, double max, unsigned b)
{
    return min + (max - min) * b / 255.0;
}

inline double modulusOf(double magnitude, double level)
{
    return std::pow(10.0, (magnitude + level) / 20.0);
}

inline double radians(double degrees)
{
    return degrees * Pi / 180.0;
}

inline std::complex<float> polar(double modulus, double cosine, double sine)
{
    return std::complex<float>(static_cast<float>(modulus * cosine), static_cast<float>(modulus * sine));
}

inline double leDouble(const uchar *p)
{
    const quint64 bits = qFromLittleEndian<quint64>(p);
    double d;
    std::memcpy(&d, &bits, sizeof d);
    return d;
}

struct PhaseTables {
    double cosine[256];
    double sine[256];
};

/*
 * Decodes the `count` pairs of one frequency. Pairs the data holds in full take the fast path;
 * a pair cut by the end of the data reads what is there, and everything after it reads as
 * zero bytes, which decode to one constant per frequency.
 */
template<Kind M, Kind P>
void decodeFrequency(const uchar *&cursor, const uchar *end, std::complex<float> *out, qint64 count,
                     const BalloonFileReader::Header &h, double level, const PhaseTables &phases)
{
    constexpr int magnitudeBytes = bytesOf(M);
    constexpr int phaseBytes = bytesOf(P);
    constexpr int pairBytes = magnitudeBytes + phaseBytes;

    double moduli[M == Kind::Byte ? 256 : 1];
    if constexpr (M == Kind::Byte) {
        for (unsigned b = 0; b < 256; ++b)
            moduli[b] = modulusOf(scaleByte(h.magnitudeMin, h.magnitudeMax, b), level);
    } else {
        moduli[0] = modulusOf(0.0, level); // what a missing or unknown-format magnitude gives
    }
    const double zeroAngle = radians(0.0);
    const double zeroCos = P == Kind::Byte ? phases.cosine[0] : std::cos(zeroAngle);
    const double zeroSin = P == Kind::Byte ? phases.sine[0] : std::sin(zeroAngle);

    const qint64 full = pairBytes == 0 ? count : std::min<qint64>(count, (end - cursor) / pairBytes);
    const uchar *p = cursor;
    for (qint64 i = 0; i < full; ++i) {
        double modulus;
        if constexpr (M == Kind::Byte)
            modulus = moduli[*p];
        else if constexpr (M == Kind::Double)
            modulus = modulusOf(leDouble(p), level);
        else
            modulus = moduli[0];
        p += magnitudeBytes;
        double c;
        double s;
        if constexpr (P == Kind::Byte) {
            c = phases.cosine[*p];
            s = phases.sine[*p];
        } else if constexpr (P == Kind::Double) {
            const double angle = radians(leDouble(p));
            c = std::cos(angle);
            s = std::sin(angle);
        } else {
            c = zeroCos;
            s = zeroSin;
        }
        p += phaseBytes;
        out[i] = polar(modulus, c, s);
    }
    cursor = p;
    if (full == count)
        return;

    // The pair the data ends in.
    double modulus = moduli[0];
    if (end - cursor >= magnitudeBytes) {
        if constexpr (M == Kind::Byte)
            modulus = moduli[*cursor];
        else if constexpr (M == Kind::Double)
            modulus = modulusOf(leDouble(cursor), level);
        cursor += magnitudeBytes;
    } else {
        cursor = end;
    }
    double c = zeroCos;
    double s = zeroSin;
    if (end - cursor >= phaseBytes) {
        if constexpr (P == Kind::Byte) {
            c = phases.cosine[*cursor];
            s = phases.sine[*cursor];
        } else if constexpr (P == Kind::Double) {
            const double angle = radians(leDouble(cursor));
            c = std::cos(angle);
            s = std::sin(angle);
        }
        cursor += phaseBytes;
    } else {
        cursor = end;
    }
    out[full] = polar(modulus, c, s);

    const std::complex<float> pastEnd = polar(moduli[0], zeroCos, zeroSin);
    std::fill(out + full + 1, out + count, pastEnd);
}

template<Kind M, Kind P>
void decodeBody(const uchar *&cursor, const uchar *end, std::complex<float> *out, const BalloonFileReader::Header &h,
                const std::vector<double> &levelOffsets)
{
    ClearUpperState(); // the zero fill of the table may just have run the C library's memset
    PhaseTables phases;
    if constexpr (P == Kind::Byte) {
        for (unsigned b = 0; b < 256; ++b) {
            const double angle = radians(scaleByte(h.phaseMin, h.phaseMax, b));
            phases.cosine[b] = std::cos(angle);
            phases.sine[b] = std::sin(angle);
        }
    }
    const qint64 perFrequency = qint64(h.nh) * h.nv;
    for (qint32 f = 0; f < h.frequencyCount; ++f) {
        const double level = std::size_t(f) < levelOffsets.size() ? levelOffsets[f] : 0.0;
        decodeFrequency<M, P>(cursor, end, out + f * perFrequency, perFrequency, h, level, phases);
    }
}

using BodyDecoder = void (*)(const uchar *&, const uchar *, std::complex<float> *, const BalloonFileReader::Header &,
                             const std::vector<double> &);

BodyDecoder bodyDecoder(Kind m, Kind p)
{
    static const BodyDecoder decoders[3][3] = {
        { decodeBody<Kind::Byte, Kind::Byte>, decodeBody<Kind::Byte, Kind::Double>, decodeBody<Kind::Byte, Kind::None> },
        { decodeBody<Kind::Double, Kind::Byte>, decodeBody<Kind::Double, Kind::Double>, decodeBody<Kind::Double, Kind::None> },
        { decodeBody<Kind::None, Kind::Byte>, decodeBody<Kind::None, Kind::Double>, decodeBody<Kind::None, Kind::None> },
    };
    return decoders[int(m)][int(p)];
}

// (a * b + c) * d + e without overflow; false when the exact value does not fit in 64 bits.
bool flatIndex(qint64 a, qint64 b, qint64 c, qint64 d, qint64 e, qint64 &result)
{
    qint64 r;
    return !__builtin_mul_overflow(a, b, &r) && !__builtin_add_overflow(r, c, &r) && !__builtin_mul_overflow(r, d, &r)
        && !__builtin_add_overflow(r, e, &result);
}

} // namespace

BalloonFileReader::BalloonFileReader(QByteArrayView data)
    : m_data(reinterpret_cast<const uchar *>(data.data()))
    , m_size(data.size())
{
    Header &h = m_header;
    h.frequencyCount = ReadInt32();
    h.nh = ReadInt32();
    h.nv = ReadInt32();
    h.thetaStepWidth = ReadDouble();
    h.phiStepWidth = ReadDouble();
    h.symmetry = ReadInt32();
    h.magnitudeMin = ReadDouble();
    h.magnitudeMax = ReadDouble();
    h.phaseMin = ReadDouble();
    h.phaseMax = ReadDouble();
    h.magnitudeFormat = ReadByte();
    h.phaseFormat = ReadByte();
    h.hasFlushMount = ReadByte();
    for (double &parameter : h.flushMount)
        parameter = ReadDouble();
    m_pos = std::min<qsizetype>(m_pos + ReservedHeaderBytes, m_size);
}

qint32 BalloonFileReader::ReadInt32()
{
    if (m_size - m_pos < 4) {
        m_pos = m_size;
        return 0;
    }
    const qint32 v = qFromLittleEndian<qint32>(m_data + m_pos);
    m_pos += 4;
    return v;
}

double BalloonFileReader::ReadDouble()
{
    if (m_size - m_pos < 8) {
        m_pos = m_size;
        return 0.0;
    }
    const double v = leDouble(m_data + m_pos);
    m_pos += 8;
    return v;
}

quint8 BalloonFileReader::ReadByte()
{
    if (m_pos >= m_size)
        return 0;
    return m_data[m_pos++];
}

void BalloonFileReader::ReadFrequencies(QList<double> &frequencies, std::vector<double> &levelOffsets)
{
    frequencies.clear();
    levelOffsets.clear();
    const qint32 count = m_header.frequencyCount;
    if (count <= 0)
        return;
    if (count > (m_size - m_pos + 7) / 8 + MaxUnbackedValues)
        throw std::length_error("balloon frequency count larger than its file");
    frequencies.reserve(count);
    for (qint32 i = 0; i < count; ++i)
        frequencies.append(ReadDouble());
    levelOffsets.reserve(count);
    for (qint32 i = 0; i < count; ++i)
        levelOffsets.push_back(ReadDouble());
}

qint64 BalloonFileReader::TableAllowance() const
{
    if (m_tableAllowance < 0) {
        const int pairBytes = BytesPerValue(m_header.magnitudeFormat) + BytesPerValue(m_header.phaseFormat);
        const qint64 remaining = m_size - m_pos;
        const qint64 backed = pairBytes == 0 ? 0 : (remaining + pairBytes - 1) / pairBytes;
        m_tableAllowance = backed + MaxUnbackedValues;
    }
    return m_tableAllowance;
}

std::vector<std::complex<float>> BalloonFileReader::ReadTable(const std::vector<double> &levelOffsets)
{
    const Header &h = m_header;
    qint64 count;
    if (__builtin_mul_overflow(qint64(h.frequencyCount) * h.nh, qint64(h.nv), &count) || count < 0)
        throw std::length_error("vector too long");
    if (count > TableAllowance())
        throw std::length_error("balloon table larger than its file");

    std::vector<std::complex<float>> table(count);
    if (h.frequencyCount <= 0 || h.nh <= 0 || h.nv <= 0)
        return table; // no pair to read, whatever the product
    const uchar *cursor = m_data + m_pos;
    bodyDecoder(kindOf(h.magnitudeFormat), kindOf(h.phaseFormat))(cursor, m_data + m_size, table.data(), h, levelOffsets);
    m_pos = cursor - m_data;
    return table;
}

std::vector<std::complex<float>> BalloonFileReader::BuildFlushMountTable(const QList<double> &frequencies,
                                                                         const std::vector<std::complex<float>> &table) const
{
    const Header &h = m_header;
    const qint64 count = qint64(h.frequencyCount) * h.nh * 2;
    if (count < 0)
        throw std::length_error("vector too long");
    if (count > TableAllowance())
        throw std::length_error("balloon flush-mount table larger than its file");

    std::vector<std::complex<float>> flush(count);
    if (h.frequencyCount <= 0 || h.nh <= 0)
        return flush;

    // Phi columns of the balloon at 90 and 270 degrees, truncated to whole indexes.
    bool columnValid[2];
    qint64 column[2];
    for (int side = 0; side < 2; ++side) {
        const double index = std::trunc(PhiIndex(side * 180 + 90, h.symmetry, h.phiStepWidth));
        columnValid[side] = std::abs(index) < 4.0e18; // false for NaN and infinities too
        column[side] = columnValid[side] ? qint64(index) : 0;
    }
    const float attenuation = static_cast<float>(h.flushMount[2]);
    const qint64 tableSize = qint64(table.size());

    for (qint32 f = 0; f < h.frequencyCount; ++f) {
        const double frequency = f < frequencies.size() ? frequencies[f] : 0.0;
        const bool aboveCutOn = frequency > h.flushMount[0];
        double limit = 0.0;
        if (aboveCutOn) {
            const double x = h.flushMount[4] / ((frequency * Pi / SpeedOfSound) * h.flushMount[3]);
            limit = ArcSineModulus(x) * DegreesPerRadian + h.flushMount[5];
        }
        for (qint32 t = 0; t < h.nh; ++t) {
            const bool attenuate = aboveCutOn && limit < t * h.thetaStepWidth;
            for (int side = 0; side < 2; ++side) {
                std::complex<float> v;
                qint64 source;
                if (columnValid[side] && flatIndex(f, h.nh, t, h.nv, column[side], source) && source >= 0
                    && source < tableSize)
                    v = table[source];
                if (attenuate)
                    v = std::complex<float>(v.real() * attenuation, v.imag() * attenuation);
                flush[(qint64(f) * h.nh + t) * 2 + side] = v;
            }
        }
    }
    return flush;
}

double BalloonFileReader::ReadValue(QDataStream &stream, Tolvane::LoudspeakerDataFormat format, double min, double max)
{
    switch (format) {
    case Tolvane::ByteScaled: {
        quint8 b = 0;
        stream >> b;
        return min + (max - min) * b / (std::pow(2.0, 8) - 1);
    }
    case Tolvane::Double: {
        double d = 0.0;
        stream >> d;
        return d;
    }
    }
    return 0.0;
}

int BalloonFileReader::BytesPerValue(int format)
{
    return bytesOf(kindOf(format));
}

double BalloonFileReader::ArcSineModulus(double x)
{
    const double ax = std::abs(x);
    if (!(ax > 1.0))
        return std::asin(ax); // NaN stays NaN
    const double imaginary = std::acosh(ax);
    return std::sqrt((Pi / 2) * (Pi / 2) + imaginary * imaginary);
}
