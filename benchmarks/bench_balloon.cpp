// SPDX-License-Identifier: MIT
// Balloon reading and lookup. Run a Release build: build/bin/bench_balloon
#include "AllocationCounter.h"
#include "BalloonFileReader_p.h"
#include "SourcePointDescriptor.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QFile>
#include <QRandomGenerator>

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

void BM_ReadBalloonTable(benchmark::State &state)
{
    const QByteArray bytes = fileBytes();
    for (auto _ : state)
        benchmark::DoNotOptimize(readFast(bytes).data());
    state.SetBytesProcessed(state.iterations() * bytes.size());
}
BENCHMARK(BM_ReadBalloonTable)->Unit(benchmark::kMillisecond);

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
    double theta;
    double phi;
};

// Arg 0: the smooth balloon; arg 1: random phases (the cancellation branch on most calls).
void BM_GetBalloonData(benchmark::State &state)
{
    const QString file = state.range(0) == 0 ? QStringLiteral("bench_249x37x72.bin") : QStringLiteral("bench_random_249x37x72.bin");
    SourcePointDescriptor point;
    point.Read({{QStringLiteral("balloonData"), QVariantMap{{QStringLiteral("default"), file}}}});
    point.ReadBalloonData(SourcePointDescriptor::Synchronous);
    const QString key = QStringLiteral("default");

    // Random frequencies (log-uniform, 20 Hz to 20 kHz) and directions inside the stored grid.
    QRandomGenerator rng(42);
    std::vector<Query> queries(4096);
    for (Query &q : queries)
        q = {20.0 * std::pow(1000.0, rng.generateDouble()), rng.bounded(175.0), rng.bounded(355.0)};

    std::size_t i = 0;
    const long long allocationsBefore = g_allocations.load();
    for (auto _ : state) {
        const Query &q = queries[i++ & 4095];
        benchmark::DoNotOptimize(point.GetBalloonData(key, q.frequency, q.theta, q.phi, false));
    }
    state.counters["allocations/call"] =
        benchmark::Counter(double(g_allocations.load() - allocationsBefore) / double(state.iterations()));
}
BENCHMARK(BM_GetBalloonData)->Arg(0)->Arg(1);

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
    const bool identical = fast.size() == plain.size()
        && std::memcmp(fast.data(), plain.data(), fast.size() * sizeof(fast[0])) == 0;
    std::printf("file %lld bytes, %zu values; tables bit-for-bit identical: %s\n", (long long)bytes.size(), fast.size(),
                identical ? "yes" : "NO");
    if (!identical)
        return 1;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
