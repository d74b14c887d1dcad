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

/**
 * The product of the responses of a list of filter entries at each frequency (Hz), in list
 * order; all ones for an empty list. Each entry with an unknown type logs one warning and
 * contributes ones. The result equals multiplying CalculateFilterResponse() of every entry
 * element by element, but is computed in place without intermediate lists. Reentrant.
 */
NVLPS_EXPORT QList<Complex> CalculateFilterListResponse(const QList<double> &frequencies, const QList<QVariant> &filters);
