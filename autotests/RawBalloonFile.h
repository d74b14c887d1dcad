// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QList>

#include <cmath>

/**
 * Lays out balloon data files byte by byte for the reader's tests, field by field through a
 * little-endian QDataStream. Unlike the library's BalloonFileWriter it checks nothing: the header
 * counts are written as given and need not match the value lists, so files can lie.
 * Value lists hold raw values: bytes 0..255 for the byte-scaled format (2), doubles for the
 * double format (20); other format codes write nothing.
 */
struct RawBalloonFile {
    qint32 frequencyCount = 0;
    qint32 nh = 0;
    qint32 nv = 0;
    double thetaStepWidth = 0.0;
    double phiStepWidth = 0.0;
    qint32 symmetry = 0;
    double magnitudeMin = 0.0;
    double magnitudeMax = 0.0;
    double phaseMin = 0.0;
    double phaseMax = 0.0;
    quint8 magnitudeFormat = 20;
    quint8 phaseFormat = 20;
    quint8 hasFlushMount = 0;
    double flushMount[6] = {};
    QList<double> frequencies;
    QList<double> levelOffsets;
    QList<double> magnitudes;
    QList<double> phases;

    /// A consistent grid: counts from the arguments, value lists sized to match (zeros).
    static RawBalloonFile grid(QList<double> frequencies, qint32 nh, qint32 nv, double thetaStep, double phiStep)
    {
        RawBalloonFile w;
        w.frequencyCount = qint32(frequencies.size());
        w.nh = nh;
        w.nv = nv;
        w.thetaStepWidth = thetaStep;
        w.phiStepWidth = phiStep;
        w.frequencies = frequencies;
        w.levelOffsets = QList<double>(frequencies.size(), 0.0);
        const qsizetype values = frequencies.size() * nh * nv;
        w.magnitudes = QList<double>(values, 0.0);
        w.phases = QList<double>(values, 0.0);
        return w;
    }

    QByteArray toBytes() const
    {
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setByteOrder(QDataStream::LittleEndian);
        out << frequencyCount << nh << nv << thetaStepWidth << phiStepWidth << symmetry << magnitudeMin << magnitudeMax
            << phaseMin << phaseMax << magnitudeFormat << phaseFormat << hasFlushMount;
        for (double parameter : flushMount)
            out << parameter;
        for (int i = 0; i < 79; ++i)
            out << quint8(0); // reserved
        for (double f : frequencies)
            out << f;
        for (double level : levelOffsets)
            out << level;
        for (qsizetype i = 0; i < magnitudes.size(); ++i) {
            writeValue(out, magnitudeFormat, magnitudes.at(i));
            writeValue(out, phaseFormat, i < phases.size() ? phases.at(i) : 0.0);
        }
        return bytes;
    }

    static void writeValue(QDataStream &out, quint8 format, double value)
    {
        if (format == 2)
            out << quint8(value);
        else if (format == 20)
            out << value;
    }
};

/// 20 * log10(k): the level in dB whose linear modulus is k.
inline double decibels(double k)
{
    return 20.0 * std::log10(k);
}
