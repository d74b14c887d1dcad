// SPDX-License-Identifier: MIT
#pragma once

#include "nvloudspeakerpluginsdk_export.h"

#include <QObject>

/**
 * A common QObject base that plugins may give their own rigging objects, so that hosts can
 * tell them apart through the meta-object system. It carries no state and no operations.
 */
class NVLPS_EXPORT RiggingObject_Abstract : public QObject
{
    Q_OBJECT
public:
    explicit RiggingObject_Abstract(QObject *parent = nullptr) : QObject(parent) { }
};
