// SPDX-License-Identifier: MIT
// Coverage prediction of the demo line array (12 cabinets, 77 x 61 receivers, 26 bands): the
// plain loop a host would write over the public API (one GetBalloonData() per source, receiver
// and band) against the predictor's field on one and two threads; "evaluations" counts source x
// receiver x band terms per second.
#include "CoveragePredictor.h"
#include "PluginProvider.h"
#include "SceneFile.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <cmath>
#include <cstdio>

namespace {

const CoveragePredictor &predictor()
{
    static const CoveragePredictor instance = [] {
        PluginProvider &provider = PluginProvider::GetInstance();
        provider.SetBalloonDataReadMode(SourcePointDescriptor_Interface::Synchronous);
        provider.LoadPlugin(QStringLiteral("libdemoseries"));
        return CoveragePredictor(SceneFile::Read(QStringLiteral(LPSDK_LINE_ARRAY_SCENE)));
    }();
    return instance;
}

void setCounters(benchmark::State &state, const SoundField &field)
{
    const double evaluations = double(predictor().GetSources().size()) * double(field.GetReceiverCount()) * field.GetBandCount();
    state.counters["evaluations"] = benchmark::Counter(evaluations, benchmark::Counter::kIsIterationInvariantRate);
}

void BM_PlainLoop(benchmark::State &state)
{
    SoundField field;
    for (auto _ : state)
        benchmark::DoNotOptimize(field = predictor().ComputeReference());
    setCounters(state, field);
}
BENCHMARK(BM_PlainLoop)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_Predictor(benchmark::State &state)
{
    SoundField field;
    for (auto _ : state)
        benchmark::DoNotOptimize(field = predictor().Compute(int(state.range(0))));
    setCounters(state, field);
}
BENCHMARK(BM_Predictor)->ArgName("threads")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    // The two paths must agree before their times mean anything.
    const SoundField fast = predictor().Compute(2), plain = predictor().ComputeReference();
    double largest = 0.0;
    for (qsizetype r = 0; r < fast.GetReceiverCount(); ++r) {
        for (int b = 0; b < fast.GetBandCount(); ++b)
            largest = std::max(largest, std::abs(fast.GetLevel(r, b) - plain.GetLevel(r, b)));
    }
    std::printf("largest level difference, predictor against plain loop: %g dB\n", largest);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return largest <= 0.01 ? 0 : 1;
}
