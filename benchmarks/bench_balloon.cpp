// SPDX-License-Identifier: MIT
// Balloon reading and lookup against baselines written here: a straightforward decoder with
// 256-entry tables, a raw read of the file's bytes, a raw 4-corner gather. Run a Release build:
// build/bin/bench_balloon, or benchmarks/run_upper_state.py for the comparison with AVX-512 off.
// Argument "dirty" 1 runs each call after leaving the vector upper halves dirty (UpperState.h).
#include "AllocationCounter.h"
#include "BalloonFile.h"
#include "BalloonFileReader_p.h"
#include "SourcePointDescriptor.h"
#include "UpperState.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtEndian>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

const QString BenchFile = QStringLiteral(":/Resources/bench_249x37x72.bin");

QByteArray fileBytes()
{
    static const QByteArray bytes = [] {
        QFile file(BenchFile);
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }();
    return bytes;
}

std::vector<std::complex<float>> readFast(const QByteArray &bytes)
{
    BalloonFileReader reader(bytes);
    QList<double> frequencies;
    std::vector<double> levels;
    reader.ReadFrequencies(frequencies, levels);
    return reader.ReadTable(levels);
}

// The straightforward decoder: value by value through QDataStream, pow, cos and sin each time.
std::vector<std::complex<float>> readPlain(const QByteArray &bytes)
{
    QDataStream in(bytes);
    in.setByteOrder(QDataStream::LittleEndian);
    qint32 count, nh, nv, symmetry;
    double thetaStep, phiStep, magMin, magMax, phaseMin, phaseMax, parameter;
    quint8 magFormat, phaseFormat, hasFlush, reserved;
    in >> count >> nh >> nv >> thetaStep >> phiStep >> symmetry >> magMin >> magMax >> phaseMin >> phaseMax >> magFormat
        >> phaseFormat >> hasFlush;
    for (int i = 0; i < 6; ++i)
        in >> parameter;
    for (int i = 0; i < 79; ++i)
        in >> reserved;
    QList<double> frequencies(count);
    QList<double> levels(count);
    for (double &f : frequencies)
        in >> f;
    for (double &l : levels)
        in >> l;
    std::vector<std::complex<float>> table(std::size_t(count) * nh * nv);
    const auto mf = Tolvane::LoudspeakerDataFormat(magFormat);
    const auto pf = Tolvane::LoudspeakerDataFormat(phaseFormat);
    for (int f = 0; f < count; ++f)
        for (int t = 0; t < nh; ++t)
            for (int p = 0; p < nv; ++p) {
                const double magnitude = BalloonFileReader::ReadValue(in, mf, magMin, magMax);
                const double phase = BalloonFileReader::ReadValue(in, pf, phaseMin, phaseMax);
                const double modulus = std::pow(10.0, (magnitude + levels[f]) / 20.0);
                const double angle = phase * 3.141592653589793 / 180.0;
                table[(std::size_t(f) * nh + t) * nv + p] =
                    std::complex<float>(float(modulus * std::cos(angle)), float(modulus * std::sin(angle)));
            }
    return table;
}

double leDoubleAt(const uchar *p)
{
    const quint64 bits = qFromLittleEndian<quint64>(p);
    double d;
    std::memcpy(&d, &bits, sizeof d);
    return d;
}

// The straightforward table decoder for the byte-scaled file: per frequency the 256 moduli and
// the 256 phase cosines and sines by the reference formulas, then one plain loop over the pairs.
// `state` is set after the output is allocated, right before the loop.
std::vector<std::complex<float>> readWithTables(const QByteArray &bytes, UpperState state)
{
    const auto *data = reinterpret_cast<const uchar *>(bytes.constData());
    const qint32 count = qFromLittleEndian<qint32>(data);
    const qint32 nh = qFromLittleEndian<qint32>(data + 4);
    const qint32 nv = qFromLittleEndian<qint32>(data + 8);
    const double magMin = leDoubleAt(data + 32), magMax = leDoubleAt(data + 40);
    const double phaseMin = leDoubleAt(data + 48), phaseMax = leDoubleAt(data + 56);
    const uchar *levels = data + BalloonFileReader::HeaderSize + 8 * count;
    const uchar *pair = levels + 8 * count;
    const std::size_t perFrequency = std::size_t(nh) * nv;
    std::vector<std::complex<float>> table(count * perFrequency);
    SetUpperState(state);
    double cosine[256], sine[256], modulus[256];
    for (int b = 0; b < 256; ++b) {
        const double angle = (phaseMin + (phaseMax - phaseMin) * b / 255.0) * 3.141592653589793 / 180.0;
        cosine[b] = std::cos(angle);
        sine[b] = std::sin(angle);
    }
    std::complex<float> *out = table.data();
    for (int f = 0; f < count; ++f) {
        const double level = leDoubleAt(levels + 8 * f);
        for (int b = 0; b < 256; ++b)
            modulus[b] = std::pow(10.0, (magMin + (magMax - magMin) * b / 255.0 + level) / 20.0);
        for (std::size_t i = 0; i < perFrequency; ++i, pair += 2, ++out)
            *out = std::complex<float>(float(modulus[pair[0]] * cosine[pair[1]]), float(modulus[pair[0]] * sine[pair[1]]));
    }
    return table;
}

QString g_diskCopy; // the benchmark file on disk, for the raw read

void BM_ReadBalloonTable(benchmark::State &state)
{
    const QByteArray bytes = fileBytes();
    const UpperState upper = StateOfArgument(state.range(0));
    for (auto _ : state) {
        SetUpperState(upper);
        benchmark::DoNotOptimize(readFast(bytes).data());
    }
    state.SetBytesProcessed(state.iterations() * bytes.size());
}
BENCHMARK(BM_ReadBalloonTable)->ArgName("dirty")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The whole decode into a table, as source points read (lenient), and with every check (strict).
void BM_BalloonFileDecode(benchmark::State &state)
{
    const QByteArray bytes = fileBytes();
    for (auto _ : state)
        benchmark::DoNotOptimize(BalloonFile::Decode(bytes).get());
    state.SetBytesProcessed(state.iterations() * bytes.size());
}
BENCHMARK(BM_BalloonFileDecode)->Unit(benchmark::kMillisecond);

void BM_BalloonFileRead(benchmark::State &state)
{
    const QByteArray bytes = fileBytes();
    for (auto _ : state)
        benchmark::DoNotOptimize(BalloonFile::Read(bytes).table.get());
    state.SetBytesProcessed(state.iterations() * bytes.size());
}
BENCHMARK(BM_BalloonFileRead)->Unit(benchmark::kMillisecond);

// Baseline: the decoder above, from a clean or a dirty upper state.
void BM_ReadBalloonTableDecoder256(benchmark::State &state)
{
    const QByteArray bytes = fileBytes();
    const UpperState upper = state.range(0) == 0 ? UpperState::Clean : UpperState::Dirty;
    for (auto _ : state)
        benchmark::DoNotOptimize(readWithTables(bytes, upper).data());
    state.SetBytesProcessed(state.iterations() * bytes.size());
}
BENCHMARK(BM_ReadBalloonTableDecoder256)->ArgName("dirty")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Baseline: reading the file's bytes from disk (page cache) into memory, nothing decoded.
void BM_ReadBalloonFileBytes(benchmark::State &state)
{
    qint64 size = 0;
    for (auto _ : state) {
        QFile file(g_diskCopy);
        file.open(QIODevice::ReadOnly);
        const QByteArray bytes = file.readAll();
        size = bytes.size();
        benchmark::DoNotOptimize(bytes.constData());
    }
    state.SetBytesProcessed(state.iterations() * size);
}
BENCHMARK(BM_ReadBalloonFileBytes)->Unit(benchmark::kMillisecond);

void BM_ReadBalloonTablePlainDataStream(benchmark::State &state)
{
    const QByteArray bytes = fileBytes();
    for (auto _ : state)
        benchmark::DoNotOptimize(readPlain(bytes).data());
    state.SetBytesProcessed(state.iterations() * bytes.size());
}
BENCHMARK(BM_ReadBalloonTablePlainDataStream)->Unit(benchmark::kMillisecond);

// The whole path of a source point: resource, header, tables, balloon object.
void BM_SourcePointSynchronousRead(benchmark::State &state)
{
    const QVariantMap map{{QStringLiteral("balloonData"), QVariantMap{{QStringLiteral("default"), QStringLiteral("bench_249x37x72.bin")}}}};
    for (auto _ : state) {
        SourcePointDescriptor point;
        point.Read(map);
        point.ReadBalloonData(SourcePointDescriptor::Synchronous);
        benchmark::DoNotOptimize(point.GetRawBalloonData(QStringLiteral("default"), false));
    }
}
BENCHMARK(BM_SourcePointSynchronousRead)->Unit(benchmark::kMillisecond);

struct Query {
    double frequency;
    int frequencyIndex;
    double theta;
    double phi;
};

// Random frequencies of the file's grid (with their index) and random directions inside the
// stored grid, the same for every lookup benchmark.
const std::vector<Query> &queries()
{
    static const std::vector<Query> list = [] {
        const auto *frequencies = reinterpret_cast<const uchar *>(fileBytes().constData()) + BalloonFileReader::HeaderSize;
        QRandomGenerator rng(42);
        std::vector<Query> q(4096);
        for (Query &query : q) {
            const int index = int(rng.bounded(249));
            query = {leDoubleAt(frequencies + 8 * index), index, rng.bounded(175.0), rng.bounded(355.0)};
        }
        return q;
    }();
    return list;
}

QString lookupFile(const benchmark::State &state)
{
    return state.range(0) == 0 ? QStringLiteral("bench_249x37x72.bin") : QStringLiteral("bench_random_249x37x72.bin");
}

void readPoint(SourcePointDescriptor &point, const QString &file)
{
    point.Read({{QStringLiteral("balloonData"), QVariantMap{{QStringLiteral("default"), file}}}});
    point.ReadBalloonData(SourcePointDescriptor::Synchronous);
}

// The point of the lookup benchmarks' file, read once: the gather reads the very table that the
// lookup reads, so that where its allocation lands (pages, cache sets) weighs on both alike.
SourcePointDescriptor &lookupPoint(const benchmark::State &state)
{
    static SourcePointDescriptor points[2];
    SourcePointDescriptor &point = points[state.range(0) == 0 ? 0 : 1];
    if (!point.IsBalloonDataLoaded())
        readPoint(point, lookupFile(state));
    return point;
}

// Arg 0: the smooth balloon; arg 1: random phases (the cancellation branch on most calls).
void BM_GetBalloonData(benchmark::State &state)
{
    SourcePointDescriptor &point = lookupPoint(state);
    const QString key = QStringLiteral("default");
    const UpperState upper = StateOfArgument(state.range(1));
    const std::vector<Query> &q = queries();
    std::size_t i = 0;
    const long long allocationsBefore = g_allocations.load();
    for (auto _ : state) {
        const Query &query = q[i++ & 4095];
        double frequency = query.frequency, theta = query.theta, phi = query.phi;
        SetUpperState(upper, frequency, theta, phi);
        benchmark::DoNotOptimize(point.GetBalloonData(key, frequency, theta, phi, false));
    }
    state.counters["allocations/call"] =
        benchmark::Counter(double(g_allocations.load() - allocationsBefore) / double(state.iterations()));
}
BENCHMARK(BM_GetBalloonData)->ArgNames({"random", "dirty"})->ArgsProduct({{0, 1}, {0, 1}});

// Baseline: the four stored corners around the direction, bilinearly weighted, and nothing
// else: no key, symmetry or range handling, no cancellation test.
void BM_BalloonRawGather(benchmark::State &state)
{
    const std::complex<float> *table = lookupPoint(state).GetRawBalloonData(QStringLiteral("default"), false);
    const qint64 nh = 37, nv = 72;
    const double thetaStep = 5.0, phiStep = 5.0;
    const UpperState upper = StateOfArgument(state.range(1));
    const std::vector<Query> &q = queries();
    std::size_t i = 0;
    for (auto _ : state) {
        const Query &query = q[i++ & 4095];
        SetUpperState(upper);
        const double tt = query.theta / thetaStep;
        const double pp = query.phi / phiStep;
        const qint64 t = qint64(tt);
        const qint64 p = qint64(pp);
        const double tf = tt - double(t);
        const double pf = pp - double(p);
        const std::complex<float> *row = table + (query.frequencyIndex * nh + t) * nv + p;
        const Complex sum = Complex(row[0]) * ((1 - tf) * (1 - pf)) + Complex(row[1]) * ((1 - tf) * pf)
            + Complex(row[nv]) * (tf * (1 - pf)) + Complex(row[nv + 1]) * (tf * pf);
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_BalloonRawGather)->ArgNames({"random", "dirty"})->ArgsProduct({{0, 1}, {0, 1}});

// A frequency sweep of one direction: the cell computed once, then one value per frequency.
void BM_BalloonTableSweep(benchmark::State &state)
{
    const std::shared_ptr<const BalloonTable> table = lookupPoint(state).GetBalloonTable(QStringLiteral("default"));
    const std::vector<Query> &q = queries();
    const int frequencies = int(table->GetFrequencies().size());
    std::size_t i = 0;
    for (auto _ : state) {
        const Query &query = q[i++ & 4095];
        const BalloonCell cell = table->GetCell(query.theta, query.phi);
        for (int f = 0; f < frequencies; ++f)
            benchmark::DoNotOptimize(table->GetValue(f, cell));
    }
    state.SetItemsProcessed(state.iterations() * frequencies);
}
BENCHMARK(BM_BalloonTableSweep)->ArgNames({"random"})->Arg(0)->Arg(1);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QByteArray bytes = fileBytes();
    if (bytes.isEmpty()) {
        std::fprintf(stderr, "benchmark balloon file missing\n");
        return 1;
    }
    const auto fast = readFast(bytes);
    const auto plain = readPlain(bytes);
    const auto tables = readWithTables(bytes, UpperState::AsItIs);
    const auto same = [&](const std::vector<std::complex<float>> &other) {
        return fast.size() == other.size() && std::memcmp(fast.data(), other.data(), fast.size() * sizeof(fast[0])) == 0;
    };
    const bool identical = same(plain) && same(tables);
    std::printf("file %lld bytes, %zu values; tables bit-for-bit identical: %s\n", (long long)bytes.size(), fast.size(),
                identical ? "yes" : "NO");
    if (!identical)
        return 1;
    QTemporaryDir dir;
    g_diskCopy = dir.filePath(QStringLiteral("balloon.bin"));
    QFile copy(g_diskCopy);
    if (!copy.open(QIODevice::WriteOnly) || copy.write(bytes) != bytes.size())
        return 1;
    copy.close();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
