// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class CoveragePredictor;
class SoundField;

/// The picture of lpsdk predict.
namespace PredictPlot {
/// A plan view of the receivers as a colour map in dB (band `band`, or the A-weighted sum for -1)
/// with a colour bar, the sources drawn with their aim, and a side view of the sources.
void draw(const QString &file, const QString &title, const CoveragePredictor &predictor, const SoundField &field, int band);
} // namespace PredictPlot
