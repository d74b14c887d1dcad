// SPDX-License-Identifier: MIT
// Umbrella header of the directivity analysis library.
#pragma once

#include "nvloudspeakerpluginsdkanalysis_export.h"

#include "AcousticOnAxisResponse.h"
#include "DirectivityAnalysis.h"
#include "DirectivityPlane.h"
#include "IsobarMap.h"
#include "SpinoramaCurves.h"
