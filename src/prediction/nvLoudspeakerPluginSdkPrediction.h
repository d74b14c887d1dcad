// SPDX-License-Identifier: MIT
// Coverage prediction over the SDK: scenes, the predictor and its sound field.
#pragma once

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include "AirAbsorption.h"
#include "CoveragePredictor.h"
#include "PlacedSource.h"
#include "PredictionArray.h"
#include "PredictionScene.h"
#include "PredictionSource.h"
#include "SceneFile.h"
#include "SoundField.h"
