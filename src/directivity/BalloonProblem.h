// SPDX-License-Identifier: MIT
#pragma once

#include "nvloudspeakerpluginsdk_export.h"

#include <QList>
#include <QString>

/**
 * One problem of a balloon file, located by the header field it concerns (its name in the file
 * layout, such as "NH" or "thetaStepWidth") and by the byte offset where it lies (-1 when the
 * problem is not at one place).
 */
struct NVLPS_EXPORT BalloonProblem {
    QString field;
    qint64 offset = -1;
    QString message;

    /// "field (byte offset): message", leaving out what is unknown.
    QString ToString() const;
};
