// SPDX-License-Identifier: MIT
// The full directivity analysis of a 5-degree full-sphere balloon of 100 frequencies against
// reading that balloon from memory, in the same run. Run a Release build: build/bin/bench_directivity.
#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>
#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdkAnalysis.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>

namespace {

// A smooth, frequency-dependent pattern with a phase that turns with angle and frequency, in the
// given value format: 100 frequencies from 20 Hz to 20 kHz, theta 0 ... 180 and phi 0 ... 360.
QByteArray balloonBytes(Tolvane::LoudspeakerDataFormat format)
{
    BalloonFileWriter::Data data;
    data.nh = 37;
    data.nv = 73;
    data.thetaStepWidth = 5.0;
    data.phiStepWidth = 5.0;
    for (int f = 0; f < 100; ++f)
        data.frequencies.append(20.0 * std::pow(1000.0, f / 99.0));
    for (double frequency : std::as_const(data.frequencies)) {
        const double n = std::min(8.0, frequency / 500.0);
        for (int t = 0; t < data.nh; ++t) {
            for (int p = 0; p < data.nv; ++p) {
                const double theta = t * 5.0 * M_PI / 180.0;
                const double phi = p * 5.0 * M_PI / 180.0;
                const double squeeze = 1.0 + 0.5 * std::cos(phi) * std::cos(phi);
                data.magnitudes.append(20.0 * std::log10(std::max(1e-3, std::pow((1.0 + std::cos(theta)) / 2.0, n * squeeze))));
                data.phases.append(std::remainder(frequency * 1e-3 * t * 5.0, 360.0));
            }
        }
    }
    BalloonFileWriter writer(format, format);
    return writer.toByteArray(data);
}

const QByteArray &bytes(int format)
{
    static const QByteArray byteScaled = balloonBytes(Tolvane::ByteScaled);
    static const QByteArray doubles = balloonBytes(Tolvane::Double);
    return format == Tolvane::ByteScaled ? byteScaled : doubles;
}

void BM_ReadBalloon(benchmark::State &state)
{
    const QByteArray &file = bytes(int(state.range(0)));
    for (auto _ : state) {
        BalloonReadResult result = BalloonFile::Read(QByteArrayView(file));
        benchmark::DoNotOptimize(result.table);
    }
    state.SetLabel(state.range(0) == Tolvane::ByteScaled ? "byte-scaled" : "double");
}

void BM_AnalyseBalloon(benchmark::State &state)
{
    const auto table = BalloonFile::Read(QByteArrayView(bytes(int(state.range(0))))).table;
    if (!table) {
        state.SkipWithError("the generated balloon does not read");
        return;
    }
    for (auto _ : state) {
        DirectivityAnalysis analysis(table);
        benchmark::DoNotOptimize(analysis.GetSpinorama().soundPower.data());
    }
    state.SetLabel(state.range(0) == Tolvane::ByteScaled ? "byte-scaled" : "double");
}

// What a picture adds: both planes' isobar maps at 2 degrees.
void BM_IsobarMaps(benchmark::State &state)
{
    const DirectivityAnalysis analysis(BalloonFile::Read(QByteArrayView(bytes(Tolvane::Double))).table);
    for (auto _ : state) {
        IsobarMap horizontal = analysis.GetIsobarMap(DirectivityPlane::Horizontal, 2.0);
        IsobarMap vertical = analysis.GetIsobarMap(DirectivityPlane::Vertical, 2.0);
        benchmark::DoNotOptimize(horizontal.levels.data());
        benchmark::DoNotOptimize(vertical.levels.data());
    }
}

} // namespace

BENCHMARK(BM_ReadBalloon)->Arg(Tolvane::ByteScaled)->Arg(Tolvane::Double)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AnalyseBalloon)->Arg(Tolvane::ByteScaled)->Arg(Tolvane::Double)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IsobarMaps)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
