#pragma once

#include <QApplication>

#include <benchmark/benchmark.h>

namespace bench {

// Runs the benchmarks inside an application, which windows and the fonts of
// reports need; on the offscreen platform unless another is asked for.
inline int runWithApplication(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace bench
