// SPDX-License-Identifier: MIT
#include "FrequencyVectors.h"

#include "Warning.h"

#include <QtDebug>

#include <cmath>

namespace {

QList<double> *BuildThirdOctaveBands()
{
    // Nominal band values; 163 and 1630 are what the data has always used.
    return new QList<double> {32,   40,   50,   63,   80,   100,  125,  163,  200,   250,   315,   400,   500,   630,  800,
                              1000, 1250, 1630, 2000, 2500, 3150, 4000, 5000, 6300, 8000, 10000, 12500, 16000, 20000};
}

QList<double> *BuildTwentyFourthOctaveBands()
{
    auto *list = new QList<double>;
    list->reserve(249);
    for (int k = -140; k <= 108; ++k)
        list->append(1000.0 * std::pow(2.0, k / 24.0));
    return list;
}

QList<double> *BuildLinear()
{
    auto *list = new QList<double>;
    list->reserve(1025);
    for (int i = 0; i <= 1024; ++i)
        list->append(i * 5.859375);
    return list;
}

} // namespace

const QList<double> &FrequencyVectors::GetFrequencyVector(int bandsPerOctave)
{
    // Function-local statics give the thread-safe first use; the lists live until exit.
    if (bandsPerOctave == 3) {
        static const QList<double> *const thirds = BuildThirdOctaveBands();
        return *thirds;
    }
    if (bandsPerOctave == 24) {
        static const QList<double> *const twentyFourths = BuildTwentyFourthOctaveBands();
        return *twentyFourths;
    }
    qCWarning(lcSetup, "frequency vector not supported");
    static const QList<double> *const empty = new QList<double>;
    return *empty;
}

const QList<double> &FrequencyVectors::GetLinearFrequencyVector()
{
    static const QList<double> *const linear = BuildLinear();
    return *linear;
}
