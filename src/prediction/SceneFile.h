// SPDX-License-Identifier: MIT
#pragma once

#include "PredictionScene.h"
#include "nvloudspeakerpluginsdkprediction_export.h"

#include <QByteArray>
#include <QString>

/**
 * Reads a prediction scene from JSON (see the reference's "Coverage prediction"). Every problem
 * throws std::invalid_argument whose text names the key and the value, or the line and column of
 * a JSON syntax error. Unknown keys are errors, so that a misspelt key never passes silently.
 */
class NVLPS_PREDICTION_EXPORT SceneFile
{
public:
    static PredictionScene Read(const QString &fileName);
    static PredictionScene Parse(const QByteArray &json);
    /// The index on the 1/24-octave grid (1000 * 2^(k/24) Hz, k = -140 ... 108) nearest `frequency`.
    static int NearestGridIndex(double frequency);
};
