// SPDX-License-Identifier: MIT
// A host starting up on the demo series: load the plugin from the "Plugins" folder beside this
// program and ask every source point for its balloons, read at once (Synchronous) or on the
// global thread pool (Asynchronous, timed until the calls return; flush-mountable points still
// read at once). Each iteration unloads the plugin again, untimed, after the reads finished.
#include "LoudspeakerDescriptor.h"
#include "LoudspeakerDescriptorProvider.h"
#include "PluginProvider.h"
#include "SourcePointDescriptor.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QThreadPool>

#include <cstdio>

namespace {

void BM_LoadDemoSeries(benchmark::State &state)
{
    const auto mode = SourcePointDescriptor_Interface::ReadBalloonDataMode(state.range(0));
    PluginProvider &provider = PluginProvider::GetInstance();
    int balloons = 0;
    for (auto _ : state) {
        provider.SetBalloonDataReadMode(mode);
        provider.LoadPlugin(QStringLiteral("libdemoseries"));
        for (LoudspeakerDescriptor *loudspeaker : provider.GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptors()) {
            for (SourcePointDescriptor *point : loudspeaker->GetSourcePointDescriptors())
                point->ReadBalloonData(provider.GetBalloonDataReadMode());
        }
        state.PauseTiming();
        QThreadPool::globalInstance()->waitForDone();
        balloons = 0;
        for (LoudspeakerDescriptor *loudspeaker : provider.GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptors()) {
            for (SourcePointDescriptor *point : loudspeaker->GetSourcePointDescriptors())
                balloons += point->IsBalloonDataLoaded() ? 1 : 0;
        }
        provider.Clear();
        state.ResumeTiming();
    }
    state.counters["source points read"] = balloons;
    state.SetLabel(mode == SourcePointDescriptor_Interface::Synchronous ? "Synchronous" : "Asynchronous");
}
BENCHMARK(BM_LoadDemoSeries)
    ->ArgName("mode")
    ->Arg(SourcePointDescriptor_Interface::Synchronous)
    ->Arg(SourcePointDescriptor_Interface::Asynchronous)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
