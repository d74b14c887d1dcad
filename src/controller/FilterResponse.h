// SPDX-License-Identifier: MIT
#pragma once

#include "Complex.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QList>
#include <QVariantMap>

/**
 * The complex response of one filter entry { "type", "fp", "Q", "G" } at each of the
 * given frequencies (Hz), evaluated as an analog prototype with s = j f / fp. Missing keys
 * read as 0; "G" is in dB. A type outside 0 … 15 gives ones and logs
 * "unknown filter type <type>". Reentrant.
 */
NVLPS_EXPORT QList<Complex> CalculateFilterResponse(const QList<double> &frequencies, const QVariantMap &filter);
